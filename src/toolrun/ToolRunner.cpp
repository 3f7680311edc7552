#include "toolrun/ToolRunner.h"

#include <QDebug>
#include <QPointer>
#include <QProcess>

#include "toolrun/ChunkAssembler.h"
#include "toolrun/ProgressParsers.h"
#include "toolrun/ToolProcess.h"

struct ToolRunner::Run {
    enum class Mode { Waited, Notified, Combined };
    Mode mode = Mode::Waited;
    QProcess *process = nullptr;
    QString program;
    ChunkAssembler errors;
    QByteArray allOutput;  // notified: everything, for the end of file

    std::function<void(float)> upperBar;
    std::function<void(double)> singleBar;
    std::function<void()> terminationHandler;
    std::function<void()> afterEnd;

    // The handlers still listening to this run.
    bool hearsProgress = false;     // outData / errData
    bool hearsLog = false;          // dataAvailable / dataReady
    bool hearsTermination = false;  // the operation's own termination handler
    bool hearsTerminated = false;   // the runner's own end (terminated flag)

    bool ended = false;
};

ToolRunner::ToolRunner(QObject *parent) : QObject(parent) {}

ToolRunner::~ToolRunner()
{
    // The runner goes only when the application ends; its handlers must not
    // be called while it is being taken apart.
    for (auto &run : m_runs) {
        if (run->process) {
            run->process->disconnect(this);
        }
    }
}

void ToolRunner::log(const QString &line)
{
    qInfo().noquote() << line;
    emit logged(line);
}

static QString describe(const char *name, const QString &program, qsizetype bytes)
{
    return QStringLiteral("{name = %1; tool = %2; bytes = %3}")
        .arg(QLatin1String(name), program)
        .arg(bytes);
}

void ToolRunner::removeObserver()
{
    for (auto &run : m_runs) {
        run->hearsProgress = false;
        run->hearsLog = false;
        run->hearsTermination = false;
        run->hearsTerminated = false;
    }
}

ToolRunner::Run *ToolRunner::launch(std::unique_ptr<Run> owned, const ToolCommand &command, bool merged)
{
    Run *run = owned.get();
    run->program = command.program;
    m_runs.push_back(std::move(owned));

    if (command.isNull()) {
        // Nothing to start: the run ends at once, later, like a tool that
        // could not be started.
        QMetaObject::invokeMethod(this, [this, run] { finish(run); }, Qt::QueuedConnection);
        return run;
    }

    auto *process = new QProcess(this);
    run->process = process;
    ToolProcess::prepare(*process, command,
                         merged ? QProcess::MergedChannels : QProcess::SeparateChannels);

    connect(process, &QProcess::readyReadStandardOutput, this, [this, run] { readOutput(run); });
    if (!merged)
        connect(process, &QProcess::readyReadStandardError, this, [this, run] { readError(run); });
    connect(process, &QProcess::finished, this, [this, run] { finish(run); });
    connect(process, &QProcess::errorOccurred, this, [this, run](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            QMetaObject::invokeMethod(this, [this, run] { finish(run); }, Qt::QueuedConnection);
    });
    process->start();
    return run;
}

void ToolRunner::runWaited(const ToolCommand &command, unsigned uTypeProgress, qint64 durationSeconds,
                           std::function<void(float)> upperBar, std::function<void()> done)
{
    m_u_Type_Progress = uTypeProgress;
    m_i_Orig_Duration_in_Seconds = durationSeconds;
    m_terminated = false;

    auto run = std::make_unique<Run>();
    run->mode = Run::Mode::Waited;
    run->upperBar = std::move(upperBar);
    run->afterEnd = std::move(done);
    run->hearsProgress = true;
    run->hearsTerminated = true;
    launch(std::move(run), command, false);
}

void ToolRunner::runNotified(const ToolCommand &command, std::function<void()> terminationHandler,
                             OutputLog log)
{
    removeObserver();
    auto run = std::make_unique<Run>();
    run->mode = Run::Mode::Notified;
    run->terminationHandler = std::move(terminationHandler);
    run->hearsLog = log == OutputLog::Logged;
    run->hearsTermination = true;
    launch(std::move(run), command, true);
}

void ToolRunner::runCombined(const ToolCommand &command, ProgressKind kind,
                             std::function<void(double)> singleBar,
                             std::function<void()> terminationHandler,
                             std::function<void()> afterWait, OutputLog log)
{
    m_u_Type_Progress = kind;
    m_terminated = false;
    removeObserver();

    auto run = std::make_unique<Run>();
    run->mode = Run::Mode::Combined;
    run->singleBar = std::move(singleBar);
    run->terminationHandler = std::move(terminationHandler);
    run->afterEnd = std::move(afterWait);
    run->hearsLog = log == OutputLog::Logged;
    run->hearsTermination = true;
    run->hearsTerminated = true;
    run->hearsProgress = true;
    launch(std::move(run), command, false);
}

void ToolRunner::readOutput(Run *run)
{
    if (!run->process)
        return;
    const QByteArray bytes = run->process->readAllStandardOutput();
    if (bytes.isEmpty())
        return;
    if (run->mode == Run::Mode::Notified) {
        run->allOutput += bytes;
        dataAvailable(run, bytes);
    } else {
        outData(run, bytes);
    }
}

void ToolRunner::readError(Run *run)
{
    if (!run->process)
        return;
    const QByteArray bytes = run->process->readAllStandardError();
    if (bytes.isEmpty())
        return;
    const QString text = run->errors.take(bytes);
    if (!text.isEmpty())
        errData(run, text);
}

void ToolRunner::outData(Run *run, const QByteArray &bytes)
{
    // The transcoders' standard output carries nothing we use; it is read
    // only so that the pipe never fills. A combined run that watches its
    // output logs it.
    if (run->mode == Run::Mode::Combined)
        dataAvailable(run, bytes);
}

void ToolRunner::errData(Run *run, const QString &text)
{
    if (!run->hearsProgress)
        return;
    switch (m_u_Type_Progress) {
    case VideoTranscode:
    case AudioTranscode:
        if (const auto percent = ProgressParsers::transcoderPercent(text, m_i_Orig_Duration_in_Seconds)) {
            if (run->upperBar)
                run->upperBar(*percent);
        }
        break;
    case DiskImageStatus: {
        const QString fraction = ProgressParsers::recorderFractionText(text);
        if (!fraction.isNull())
            emit logged(fraction);
        if (const auto percent = ProgressParsers::recorderPercent(text)) {
            if (run->singleBar)
                run->singleBar(*percent);
        }
        break;
    }
    case LinuxRecorder:
        if (const auto percent = ProgressParsers::linuxRecorderPercent(text)) {
            if (run->singleBar)
                run->singleBar(*percent);
        }
        break;
    default:
        break;
    }
}

void ToolRunner::dataAvailable(Run *run, const QByteArray &bytes)
{
    if (!run->hearsLog)
        return;
    log(QStringLiteral("Data Available : %1").arg(describe("DataAvailable", run->program, bytes.size())));
}

void ToolRunner::dataReady(Run *run)
{
    if (!run->hearsLog)
        return;
    log(QStringLiteral("Data Ready : %1").arg(describe("ReadCompletion", run->program, run->allOutput.size())));
    if (!run->allOutput.isEmpty())
        log(QStringLiteral("Data Ready : %1").arg(QString::fromUtf8(run->allOutput)));
}

void ToolRunner::terminated(Run *run)
{
    if (!run->hearsTerminated)
        return;
    removeObserver();
    m_terminated = true;
}

void ToolRunner::finish(Run *run)
{
    if (run->ended)
        return;
    run->ended = true;

    // Whatever is still in the pipes is read before the end is told.
    if (run->process) {
        readOutput(run);
        if (run->mode != Run::Mode::Notified)
            readError(run);
    }
    if (run->mode != Run::Mode::Notified) {
        const QString rest = run->errors.flush();
        if (!rest.isEmpty())
            errData(run, rest);
    }

    // Out of the list before any handler runs, so that a handler may start
    // the next run at once.
    std::unique_ptr<Run> owned;
    for (auto it = m_runs.begin(); it != m_runs.end(); ++it) {
        if (it->get() == run) {
            owned = std::move(*it);
            m_runs.erase(it);
            break;
        }
    }
    if (run->process) {
        run->process->disconnect(this);
        run->process->deleteLater();
        run->process = nullptr;
    }

    QPointer<ToolRunner> self(this);
    switch (run->mode) {
    case Run::Mode::Waited:
        terminated(run);
        if (run->afterEnd)
            run->afterEnd();
        break;
    case Run::Mode::Notified:
        dataReady(run);
        if (run->hearsTermination && run->terminationHandler)
            run->terminationHandler();
        break;
    case Run::Mode::Combined:
        if (run->hearsTermination && run->terminationHandler)
            run->terminationHandler();
        if (!self)
            return;
        terminated(run);
        if (run->afterEnd)
            run->afterEnd();
        break;
    }
}
