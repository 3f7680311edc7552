#pragma once
#include <QList>
#include <QObject>

#include "toolrun/ToolCommand.h"

class ToolRunner;

// The transcode phase of a media burn: one waited run per file, one after
// the other, in list order. For each file, in this order: fileStarted (the
// upper bar takes the file's duration as maximum and 0 as value), the run
// (upperBar with each "time=" percentage), filesDone(index + 1) (the lower
// bar). finished() after the last file, also when a transcode failed (a
// failure is not noticed) and, later, for an empty list.
class TranscodeSequence : public QObject {
    Q_OBJECT
public:
    struct Step {
        ToolCommand command;
        qint64 durationSeconds = 0;
    };

    explicit TranscodeSequence(ToolRunner &runner, QObject *parent = nullptr);

    // `uTypeProgress` 1 for audio, 0 for video. Ignored while running.
    void start(const QList<Step> &steps, unsigned uTypeProgress);
    bool isRunning() const { return m_running; }

signals:
    void fileStarted(int index, qint64 durationSeconds);
    void upperBar(float percent);
    void filesDone(int count);
    void finished();

private:
    void next();

    ToolRunner &m_runner;
    QList<Step> m_steps;
    unsigned m_uTypeProgress = 1;
    int m_index = 0;
    bool m_running = false;
};
