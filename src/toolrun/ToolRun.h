#pragma once
#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <optional>

#include "toolrun/ChunkAssembler.h"
#include "toolrun/ToolCommand.h"
#include "toolrun/StopToken.h"
#include "toolrun/ToolVerdict.h"
#include "toolrun/WriteProgress.h"

class QProcess;

// One run of one tool: the only owner of a child process in Tamblo.
//
// It starts the command through ToolProcess (locale, null standard input),
// reads both channels as they arrive, cuts each into complete reports
// (ChunkAssembler: a report split across two reads is put back together
// before anyone sees it), hands the reports of the progress channel to the
// run's progress parser, and ends exactly once with finished(verdict):
// also when the program could not be started (from the event loop, never
// inside start()), when it crashed, when it ran past its time limit, and when
// it was stopped. Nothing blocks the thread that owns it.
class ToolRun : public QObject {
    Q_OBJECT
public:
    enum class Channels { Merged, Separate };
    // What the run does to the world; quitting asks before stopping a Write.
    enum class Purpose { Query, Transcode, Write };
    using ProgressParser = std::function<std::optional<double>(const QString &reports)>;
    // Reads a writing tool's reports with all their figures (WriteProgress).
    using ReportParser = std::function<QList<WriteReport>(const QString &reports)>;

    struct Options {
        Channels channels = Channels::Separate;
        Purpose purpose = Purpose::Query;
        int timeoutMs = 0;            // 0: no limit
        ProgressParser progress;      // fed the complete reports of the progress channel
        bool progressOnOutput = false;  // the progress channel is standard output (else standard error)
        ReportParser writeReports;    // fed the same reports as `progress`: each one goes out as writeReport
    };

    // How long a stopped tool is given to end before it is killed.
    static constexpr int StopGraceMs = 3000;

    ToolRun(const ToolCommand &command, const Options &options, QObject *parent = nullptr);
    // A run still going is killed: a tool never outlives the object that owns it.
    ~ToolRun() override;

    void start();
    // Asks the tool to end (terminate), kills it after StopGraceMs; the run
    // then ends as Stopped. Harmless once ended.
    void stop();

    bool isRunning() const { return m_started && !m_ended; }
    bool hasEnded() const { return m_ended; }
    const ToolCommand &command() const { return m_command; }
    Purpose purpose() const { return m_options.purpose; }
    QString output() const { return m_output; }

    // Every run of this process that has started and not ended, oldest first.
    static QList<ToolRun *> running();
    // Whether any running tool writes a disc or an image.
    static bool anyWriting();
    // Stops every running tool (terminate, then kill) and calls `done` once,
    // when the last has ended, or StopGraceMs + 2 s later should even a kill
    // not be enough; at once when none runs. The wait ends with `context`.
    static void stopAllThen(QObject *context, std::function<void()> done);

    // Quiet runs (the media probes, which always "fail" for want of an
    // output) are told only to an observer that asks for them.
    enum class Report { Observed, Quiet };

    // Told of every run that ends, on the thread it ran on (the run log).
    // With scope Quiet, the quiet runs too (a test counting probes).
    using Observer = std::function<void(const ToolVerdict &)>;
    static void setObserver(Observer observer, Report scope = Report::Observed);

    // For worker threads only (a disk walk's or a probe's own thread): runs
    // the command to its end, or to the time limit, and answers its verdict.
    // A stop asked through `stop` kills the tool within a tenth of a second;
    // the run then ends as Stopped.
    static ToolVerdict runToEnd(const ToolCommand &command, int timeoutMs,
                                Channels channels = Channels::Merged, Report report = Report::Observed,
                                const StopToken &stop = StopToken());

signals:
    // Complete reports as they arrive, per channel (merged runs: output only).
    void outputReports(const QString &text);
    void errorReports(const QString &text);
    void progress(double value);
    void writeReport(const WriteReport &report);
    void finished(const ToolVerdict &verdict);

private:
    void read(bool errorChannel);
    void deliver(const QString &text, bool errorChannel);
    void end(ToolVerdict::Outcome forced, int exitCode, bool crashed);

    ToolCommand m_command;
    Options m_options;
    QProcess *m_process = nullptr;
    ChunkAssembler m_out;
    ChunkAssembler m_err;
    QString m_output;
    QString m_startError;
    QTimer m_timeout;
    QTimer m_killTimer;
    QElapsedTimer m_clock;
    std::optional<ToolVerdict::Outcome> m_forced;  // TimedOut or Stopped once asked
    bool m_started = false;
    bool m_ended = false;
};
