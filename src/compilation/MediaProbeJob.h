#pragma once
#include <QHash>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QThreadPool>

#include "compilation/NodeMediaFile.h"

// Measures a batch of media files off the UI thread. Probes run side by side,
// as many as the machine has cores, but the results come out in the batch's
// order: recordReady(0), progress(1), recordReady(1), progress(2), ... then
// finished with every record. A record that is ready early waits for those
// before it.
class MediaProbeJob : public QObject {
    Q_OBJECT
public:
    explicit MediaProbeJob(QObject *parent = nullptr);
    // Waits for the probes already running (queued ones are dropped).
    ~MediaProbeJob() override;

    // Starts measuring; false (and nothing started) while a batch runs.
    // An empty batch finishes at once, from the event loop.
    bool start(const QStringList &paths, const QString &ffmpegPath);

    bool isRunning() const { return m_running; }
    int count() const { return m_paths.size(); }
    int doneCount() const { return m_next; }

    // How many probes may run at once (default: the ideal thread count).
    void setMaxParallel(int n);
    int maxParallel() const;

signals:
    void recordReady(int index, const NodeMediaFile &record);
    void progress(int doneCount);
    void finished(const QList<NodeMediaFile> &records);

private:
    void deliver(int index, const NodeMediaFile &record);
    void finish();

    QThreadPool m_pool;
    QStringList m_paths;
    QHash<int, NodeMediaFile> m_waiting;
    QList<NodeMediaFile> m_records;
    int m_next = 0;
    bool m_running = false;
    quint64 m_batch = 0;
};
