#include "compilation/MediaProbeJob.h"

#include <QMetaObject>
#include <QPointer>
#include <QThread>

#include "compilation/Measurements.h"

MediaProbeJob::MediaProbeJob(QObject *parent) : QObject(parent)
{
    m_pool.setMaxThreadCount(qMax(1, QThread::idealThreadCount()));
    // Probes wait on a child process; a thread kept warm saves nothing
    // between batches, so let idle ones go soon.
    m_pool.setExpiryTimeout(5000);
}

MediaProbeJob::~MediaProbeJob()
{
    m_pool.clear();
    m_pool.waitForDone();
}

void MediaProbeJob::setMaxParallel(int n)
{
    m_pool.setMaxThreadCount(qMax(1, n));
}

int MediaProbeJob::maxParallel() const
{
    return m_pool.maxThreadCount();
}

bool MediaProbeJob::start(const QStringList &paths, const QString &ffmpegPath)
{
    if (m_running)
        return false;
    m_running = true;
    m_paths = paths;
    m_waiting.clear();
    m_records.clear();
    m_records.reserve(paths.size());
    m_next = 0;
    const quint64 batch = ++m_batch;

    if (paths.isEmpty()) {
        QMetaObject::invokeMethod(this, [this, batch] {
            if (batch == m_batch)
                finish();
        }, Qt::QueuedConnection);
        return true;
    }

    for (int i = 0; i < paths.size(); ++i) {
        const QString path = paths.at(i);
        m_pool.start([this, i, path, ffmpegPath, batch] {
            const NodeMediaFile record = Measurements::makeMediaRecord(ffmpegPath, path);
            // The job outlives its pool's tasks (its destructor waits), so
            // posting to it here is safe; the event is dropped if the job is
            // gone by the time it would run.
            QMetaObject::invokeMethod(this, [this, i, record, batch] {
                if (batch == m_batch)
                    deliver(i, record);
            }, Qt::QueuedConnection);
        });
    }
    return true;
}

void MediaProbeJob::deliver(int index, const NodeMediaFile &record)
{
    if (!m_running)
        return;
    m_waiting.insert(index, record);
    // Hand out every record whose turn has come, in the batch's order.
    while (m_running && m_waiting.contains(m_next)) {
        const NodeMediaFile next = m_waiting.take(m_next);
        m_records.append(next);
        const int at = m_next++;
        QPointer<MediaProbeJob> alive(this);
        emit recordReady(at, next);
        if (!alive)
            return;
        emit progress(m_next);
        if (!alive)
            return;
    }
    if (m_running && m_next >= m_paths.size())
        finish();
}

void MediaProbeJob::finish()
{
    m_running = false;
    const QList<NodeMediaFile> records = m_records;
    emit finished(records);
}
