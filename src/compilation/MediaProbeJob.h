#pragma once
#include <QHash>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QThreadPool>

#include "compilation/NodeMediaFile.h"
#include "toolrun/StopToken.h"

// Measures media files off the UI thread, many per ffmpeg run: starting
// ffmpeg costs far more than describing one more input, so the files go to
// it in batches ("ffmpeg -i A -i B ...", at most MaxBatch inputs, which
// keeps far below any open-file limit), and batches run side by side, as
// many as the machine has cores. ffmpeg stops at the first input it cannot
// open; that input is then probed on its own (its record gets whatever a
// probe of it alone says, usually no duration), and the inputs after it go
// to a new batch.
//
// Results come out in the list's order whatever order the batches end in:
// recordsReady(first, records) with the next run of records, then
// progress(n) once per record of it (n = first + 1, first + 2, ...), then
// finished with every record. Records that are ready early wait for those
// before them.
class MediaProbeJob : public QObject {
    Q_OBJECT
public:
    static constexpr int MaxBatch = 50;

    explicit MediaProbeJob(QObject *parent = nullptr);
    // Waits for the probes already running (queued ones are dropped).
    ~MediaProbeJob() override;

    // Starts measuring; false (and nothing started) while a list runs.
    // An empty list finishes at once, from the event loop.
    bool start(const QStringList &paths, const QString &ffmpegPath);

    // Drops the list under way: no more records or signals come from it,
    // queued batches never start, running ones are killed. Harmless when idle.
    void cancel();

    bool isRunning() const { return m_running; }
    int count() const { return int(m_paths.size()); }
    int doneCount() const { return m_next; }

    // How many ffmpeg runs may go at once (default: the ideal thread count).
    void setMaxParallel(int n);
    int maxParallel() const;
    // The longest a batch may run before it is killed (default 30 s); what
    // it described by then counts, the rest is probed again.
    void setBatchTimeoutMs(int ms) { m_timeoutMs = ms; }

    // How a list of `count` files is cut for `parallel` runs at once: as
    // many batches as runs, or more when a batch would exceed MaxBatch;
    // sizes differ by one at most, in list order. The sizes, first to last.
    static QList<int> batchSizes(int count, int parallel);

signals:
    void recordsReady(int first, const QList<NodeMediaFile> &records);
    void progress(int doneCount);
    void finished(const QList<NodeMediaFile> &records);

private:
    void probe(int first, int count, bool again);
    void deliver(int first, const QList<NodeMediaFile> &records);
    void finish();

    QThreadPool m_pool;
    QStringList m_paths;
    QString m_ffmpeg;
    QHash<int, QList<NodeMediaFile>> m_waiting;  // by their first index
    QList<NodeMediaFile> m_records;
    int m_next = 0;
    int m_timeoutMs = 30000;
    bool m_running = false;
    quint64 m_list = 0;  // which start() the results in flight belong to
    StopToken m_stop;    // the list's: cancel() stops its batches
};
