#include "compilation/MediaProbeJob.h"

#include <QMetaObject>
#include <QPointer>
#include <QThread>

#include "compilation/Measurements.h"

MediaProbeJob::MediaProbeJob(QObject *parent) : QObject(parent)
{
    m_pool.setMaxThreadCount(qMax(1, QThread::idealThreadCount()));
    // Probes wait on a child process; a thread kept warm saves nothing
    // between lists, so let idle ones go soon.
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

QList<int> MediaProbeJob::batchSizes(int count, int parallel)
{
    QList<int> sizes;
    if (count <= 0)
        return sizes;
    const int batches = qMin(count, qMax(qMax(1, parallel), (count + MaxBatch - 1) / MaxBatch));
    sizes.reserve(batches);
    for (int i = 0; i < batches; ++i)
        sizes << count / batches + (i < count % batches ? 1 : 0);
    return sizes;
}

bool MediaProbeJob::start(const QStringList &paths, const QString &ffmpegPath)
{
    if (m_running)
        return false;
    m_running = true;
    m_paths = paths;
    m_ffmpeg = ffmpegPath;
    m_waiting.clear();
    m_records.clear();
    m_records.reserve(paths.size());
    m_next = 0;
    m_stop = StopToken();
    const quint64 list = ++m_list;

    if (paths.isEmpty()) {
        QMetaObject::invokeMethod(this, [this, list] {
            if (list == m_list)
                finish();
        }, Qt::QueuedConnection);
        return true;
    }
    int first = 0;
    for (const int size : batchSizes(int(paths.size()), maxParallel())) {
        probe(first, size, false);
        first += size;
    }
    return true;
}

void MediaProbeJob::probe(int first, int count, bool again)
{
    const QStringList paths = m_paths.mid(first, count);
    const QString ffmpeg = m_ffmpeg;
    const int timeoutMs = m_timeoutMs;
    const quint64 list = m_list;
    const StopToken stop = m_stop;
    // A batch probed again holds up every record after it: it goes first.
    const int priority = again ? 1 : 0;
    m_pool.start([this, first, paths, ffmpeg, timeoutMs, list, stop] {
        if (stop.stopped())
            return;
        const Measurements::BatchProbe batch = Measurements::probeBatch(ffmpeg, paths, timeoutMs, stop);
        // What one input alone gives is its answer; so is nothing at all
        // from an ffmpeg that could not start.
        const qsizetype known = (!batch.toolStarted || paths.size() == 1) ? paths.size() : batch.durations.size();
        QList<NodeMediaFile> records;
        records.reserve(known);
        QString folder;
        for (qsizetype i = 0; i < known; ++i) {
            records << Measurements::mediaRecordFor(paths.at(i), batch.durations.value(i), folder);
            folder = records.last().s_Folder_Path;
        }
        // The job outlives its pool's tasks (its destructor waits), so
        // posting to it here is safe; the event is dropped if the job is
        // gone by the time it would run.
        QMetaObject::invokeMethod(this, [this, list, first, records, count = int(paths.size())] {
            if (list != m_list || !m_running)
                return;
            const int known = int(records.size());
            if (known < count) {
                // ffmpeg stopped at input `known`: that one alone, then the rest.
                probe(first + known, 1, true);
                if (known + 1 < count)
                    probe(first + known + 1, count - known - 1, true);
            }
            if (known > 0)
                deliver(first, records);
        }, Qt::QueuedConnection);
    }, priority);
}

void MediaProbeJob::cancel()
{
    if (!m_running)
        return;
    m_stop.stop();
    m_pool.clear();
    ++m_list;
    m_running = false;
    m_waiting.clear();
    m_records.clear();
}

void MediaProbeJob::deliver(int first, const QList<NodeMediaFile> &records)
{
    m_waiting.insert(first, records);
    // Hand out every run of records whose turn has come, in the list's order.
    while (m_running && m_waiting.contains(m_next)) {
        const QList<NodeMediaFile> run = m_waiting.take(m_next);
        const int at = m_next;
        m_records.append(run);
        QPointer<MediaProbeJob> alive(this);
        emit recordsReady(at, run);
        if (!alive)
            return;
        for (int k = 1; k <= run.size(); ++k) {
            m_next = at + k;
            emit progress(m_next);
            if (!alive)
                return;
        }
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
