#pragma once
#include <QFutureWatcher>
#include <QObject>
#include <QString>

#include "compilation/NodeDataFolder.h"
#include "toolrun/StopToken.h"

// Measures one data folder on a worker thread, so a large tree never holds
// up the window, and reports the finished record on the UI thread.
class FolderMeasureJob : public QObject {
    Q_OBJECT
public:
    explicit FolderMeasureJob(QObject *parent = nullptr);
    ~FolderMeasureJob() override;

    // False (and nothing started) while a measure runs.
    bool start(const QString &folderPath);
    // Ends the walk under way early; its record never comes. Harmless when idle.
    void cancel();
    bool isRunning() const { return m_running; }

signals:
    void finished(const NodeDataFolder &record);
    void stopped();  // a cancelled walk has ended

private:
    QFutureWatcher<NodeDataFolder> m_watcher;
    bool m_running = false;
    StopToken m_stop;
};
