#pragma once
#include <QFutureWatcher>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include "images/DataBurnPlan.h"
#include "toolrun/StopToken.h"

// Copies the listed folders into the data working folder before a macOS data
// burn, one folder at a time, without ever holding up the UI thread: the copy
// runs on a worker, and so does each measurement.
//
// For each folder: the destination folder is made, the copy starts, and the
// copy is polled every interval (a minute in the product): the size at the
// entry's base, in whole KiB, is compared with the size recorded when the
// folder was listed. Polling stops when the size reaches the recorded size,
// or when it did not grow since the previous poll. Every poll starts with a
// full interval, so a folder takes at least one interval. The next folder
// starts once polling has stopped and the copy itself has returned.
//
// Copy errors (an unreadable file, a full disk, a folder that went away)
// never stop the staging: each one is logged as a warning naming the file,
// and the rest is copied. Links are copied as links; special files (pipes,
// sockets, devices) are left out. If the working folder lies inside a listed
// folder it is not copied into itself.
class StagingCopy : public QObject {
    Q_OBJECT
public:
    static constexpr int DefaultPollIntervalMs = 60000;

    explicit StagingCopy(const QList<StagingEntry> &entries, int pollIntervalMs = DefaultPollIntervalMs,
                         QObject *parent = nullptr);
    ~StagingCopy() override;

    void start();
    // Stops after the file being copied: no further file or folder is
    // copied, and finished() follows once the copy has returned.
    void stop();
    bool isRunning() const { return m_running; }
    bool wasStopped() const { return m_stop.stopped(); }
    QStringList errors() const { return m_errors; }


    // Copies `source` into `destinationFolder` under its own name (blocking;
    // run it off the UI thread). A folder whose canonical path is `skip` is
    // not entered. Returns the errors, each already logged.
    static QStringList copyFolderInto(const QString &source, const QString &destinationFolder,
                                      const QString &skip = QString(), const StopToken &stop = StopToken());

signals:
    void folderStarted(int index, const QString &source);
    void folderPolled(int index, double sizeKiB);
    void folderDone(int index);
    void finished();

private:
    void startFolder();
    void poll();
    void measured();
    void pollStopped();
    void copyReturned();
    void folderComplete();

    QList<StagingEntry> m_entries;
    int m_pollIntervalMs;
    int m_index = -1;
    double i_Last_Size = 0.0;
    bool m_running = false;
    bool m_pollDone = false;
    bool m_copyDone = false;
    QStringList m_errors;
    StopToken m_stop;
    QTimer m_pollTimer;
    QFutureWatcher<QStringList> m_copyWatcher;
    QFutureWatcher<quint64> m_sizeWatcher;
};
