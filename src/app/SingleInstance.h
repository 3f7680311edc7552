#pragma once
#include <QLockFile>
#include <QObject>
#include <QString>
#include <memory>

class QLocalServer;

// One Tamblo per user. The first start holds a lock file in `folder` (never
// one of the working folders, which start-up empties) and listens on a local
// socket; a later start finds the lock held by a live process, asks the
// first one to come to the front, and is told to end before it touches
// anything. A lock left by a Tamblo that died is taken over.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    SingleInstance(const QString &folder, const QString &name, QObject *parent = nullptr);
    ~SingleInstance() override;

    // True: this is the only Tamblo; false: another one runs and was asked
    // to show its window.
    bool claim();

    // The name for this user ("Tamblo-<user>").
    static QString nameForThisUser();

signals:
    void activationRequested();

private:
    QString m_name;
    std::unique_ptr<QLockFile> m_lock;
    QLocalServer *m_server = nullptr;
};
