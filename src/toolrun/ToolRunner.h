#pragma once
#include <QObject>
#include <QString>
#include <functional>
#include <list>
#include <memory>

#include "toolrun/ToolCommand.h"

class QProcess;

// Runs the helper tools for the long operations and turns what they print
// into progress. Three ways to run a tool:
//
// - waited (every transcode): standard output and standard error apart; the
//   error side is read by the parser that u_Type_Progress chooses, feeding
//   the upper bar; `done` is called once the tool has ended, after the
//   runner has let go of every handler and set terminated().
// - notified (every recording, erase, image creation): both channels in one
//   stream, only logged ("Data Available : ..." per read, "Data Ready : ..."
//   with the whole output at the end); the termination handler is the run's
//   only end.
// - combined (image burns, disc copies): channels apart, the error side
//   parsed for the single bar; the operation's own termination handler runs
//   first, then the runner lets go of every handler and sets terminated(),
//   then `afterWait` (what the starter does once the tool has ended).
//
// Nothing blocks: every start returns at once and the callbacks come later
// on this object's thread, never inside the call. No exit status is read: a
// tool that fails, crashes or cannot even be started still reaches its
// termination handler / `done`.
//
// Handlers belong to the runner, as the observers of one controller: starting
// a notified or combined run drops the handlers of every run still going (its
// tool goes on, unheard), and the end of a waited or combined run drops them
// all too. Use a runner per sequence when runs are to overlap.
class ToolRunner : public QObject {
    Q_OBJECT
public:
    // The parser that reads a transcode's or a combined run's error output.
    enum ProgressKind : unsigned {
        VideoTranscode = 0,   // "time=" into the upper bar
        AudioTranscode = 1,   // the same
        DiskImageStatus = 2,  // "DRStatusPercentCompleteKey:" into the single bar
        LinuxRecorder = 3,    // xorriso / cdrskin percentages into the single bar
    };

    enum class OutputLog { Logged, Silent };

    explicit ToolRunner(QObject *parent = nullptr);
    ~ToolRunner() override;

    // NO from the start of a waited or combined run until its tool has ended.
    bool terminated() const { return m_terminated; }
    unsigned u_Type_Progress() const { return m_u_Type_Progress; }
    void setU_Type_Progress(unsigned kind) { m_u_Type_Progress = kind; }
    // The divisor of the "time=" percentage: the duration of the file in hand.
    qint64 i_Orig_Duration_in_Seconds() const { return m_i_Orig_Duration_in_Seconds; }

    void runWaited(const ToolCommand &command, unsigned uTypeProgress, qint64 durationSeconds,
                   std::function<void(float)> upperBar, std::function<void()> done);

    void runNotified(const ToolCommand &command, std::function<void()> terminationHandler,
                     OutputLog log = OutputLog::Logged);

    // `log` Logged: the standard output is logged as "Data Available : ..."
    // per read (the disc copy watches it).
    void runCombined(const ToolCommand &command, ProgressKind kind,
                     std::function<void(double)> singleBar,
                     std::function<void()> terminationHandler,
                     std::function<void()> afterWait = {},
                     OutputLog log = OutputLog::Silent);

    // Lets go of every handler of every run still going.
    void removeObserver();

    // Tools started by this runner that have not ended yet.
    int runningCount() const { return static_cast<int>(m_runs.size()); }

signals:
    // Every line the runner writes to the log, as written.
    void logged(const QString &line);

private:
    struct Run;

    Run *launch(std::unique_ptr<Run> run, const ToolCommand &command, bool merged);
    void readOutput(Run *run);
    void readError(Run *run);
    void outData(Run *run, const QByteArray &bytes);
    void errData(Run *run, const QString &text);
    void dataAvailable(Run *run, const QByteArray &bytes);
    void dataReady(Run *run);
    void terminated(Run *run);
    void finish(Run *run);
    void log(const QString &line);

    std::list<std::unique_ptr<Run>> m_runs;
    bool m_terminated = true;
    unsigned m_u_Type_Progress = AudioTranscode;
    qint64 m_i_Orig_Duration_in_Seconds = 0;
};
