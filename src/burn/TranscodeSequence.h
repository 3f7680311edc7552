#pragma once
#include <QList>
#include <QObject>
#include <QPointer>

#include "toolrun/ToolCommand.h"
#include "toolrun/ToolVerdict.h"

class ToolRun;

// The transcode phase of a media burn: one ffmpeg run per file, one after
// the other, in list order. For each file, in this order: fileStarted (the
// upper bar takes the file's duration as maximum and 0 as value), the run
// (upperBar with each "time=" percentage), filesDone(index + 1) (the lower
// bar). finished() after the last file (later, from the event loop, for an
// empty list). A file whose transcode fails stops the sequence at once:
// failed(index, verdict), and no later file is started. stop() ends the
// run in hand and answers failed() with a Stopped verdict.
class TranscodeSequence : public QObject {
    Q_OBJECT
public:
    struct Step {
        ToolCommand command;
        qint64 durationSeconds = 0;
        QString output;  // the file it must leave, not empty, for the step to count as done
    };

    explicit TranscodeSequence(QObject *parent = nullptr);
    ~TranscodeSequence() override;

    // Ignored while running.
    void start(const QList<Step> &steps);
    void stop();
    bool isRunning() const { return m_running; }

signals:
    void fileStarted(int index, qint64 durationSeconds);
    void upperBar(float percent);
    void filesDone(int count);
    void finished();
    void failed(int index, const ToolVerdict &verdict);

private:
    void next();

    QList<Step> m_steps;
    int m_index = 0;
    bool m_running = false;
    QPointer<ToolRun> m_run;
};
