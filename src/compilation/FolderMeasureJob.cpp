#include "compilation/FolderMeasureJob.h"

#include <QtConcurrent/QtConcurrentRun>

#include "compilation/Measurements.h"

FolderMeasureJob::FolderMeasureJob(QObject *parent) : QObject(parent)
{
    connect(&m_watcher, &QFutureWatcher<NodeDataFolder>::finished, this, [this] {
        m_running = false;
        if (m_stop.stopped())
            emit stopped();
        else
            emit finished(m_watcher.result());
    });
}

FolderMeasureJob::~FolderMeasureJob()
{
    // The walk touches nothing of ours; let it end on its own.
    m_watcher.disconnect(this);
}

bool FolderMeasureJob::start(const QString &folderPath)
{
    if (m_running)
        return false;
    m_running = true;
    m_stop = StopToken();
    m_watcher.setFuture(QtConcurrent::run(&Measurements::makeDataFolderRecord, folderPath, m_stop));
    return true;
}

void FolderMeasureJob::cancel()
{
    // The walk looks at the token between entries and ends soon; until it
    // has, the job stays busy, so a new walk never overlaps it.
    if (m_running)
        m_stop.stop();
}
