#pragma once
#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <optional>
#include <utility>

#include "toolrun/ToolCommand.h"
#include "toolrun/ToolVerdict.h"

class ToolRun;

// The transcode phase of a media burn: one ffmpeg run per file, several side
// by side (as many as the machine has cores, unless told otherwise), started
// in list order. Each file keeps its own command and output, so what lands
// in the folder, and the order the recorder is given, do not depend on which
// run ends first.
//
// The two bars read as they do for one file after the other:
//  - the upper bar follows the earliest unfinished file in list order:
//    fileStarted(index, duration) when a file becomes that one (maximum =
//    its duration, value 0), then upperBar with its "time=" percentages
//    (at once its latest one, when it has already been running);
//  - the lower bar counts finished files: filesDone(n) each time one more
//    ends well, n = how many have.
// finished() when every file is done (later, from the event loop, for an
// empty list).
//
// A file whose transcode fails stops the rest: no further file starts, the
// runs still going are stopped, and once all have ended failed(index,
// verdict) names the earliest file in list order that failed of itself (a
// run stopped because another failed is not a failure of its own). stop()
// stops every run and answers failed() with a Stopped verdict, for the
// earliest unfinished file.
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

    // How many transcodes may run at once (at least 1; default: the ideal
    // thread count). Read when a file is started.
    void setMaxParallel(int n);
    int maxParallel() const { return m_maxParallel; }

signals:
    void fileStarted(int index, qint64 durationSeconds);
    void upperBar(float percent);
    void filesDone(int count);
    void finished();
    void failed(int index, const ToolVerdict &verdict);

private:
    void fill();
    void startFile(int index);
    void fileEnded(int index, ToolVerdict verdict);
    void showEarliest();
    void stopAll();
    void settle();
    int earliestUnfinished() const;

    QList<Step> m_steps;
    QList<bool> m_done;
    QList<std::optional<float>> m_percent;  // each file's latest "time=" percentage
    QMap<int, QPointer<ToolRun>> m_runs;    // the runs going, by file
    int m_nextToStart = 0;
    int m_doneCount = 0;
    int m_shown = -1;  // the file on the upper bar
    int m_maxParallel = 1;
    bool m_running = false;
    bool m_stopping = false;
    std::optional<std::pair<int, ToolVerdict>> m_failure;  // the earliest file that failed of itself
    std::optional<std::pair<int, ToolVerdict>> m_stopped;  // the earliest file stopped
};
