#include "toolrun/ToolRun.h"

#include <QMutex>
#include <QProcess>
#include <QTimer>
#include <memory>
#include <utility>

#include "toolrun/ToolProcess.h"

namespace {

QMutex registryLock;
QList<ToolRun *> &registry()
{
    static QList<ToolRun *> runs;
    return runs;
}
ToolRun::Observer &observer()
{
    static ToolRun::Observer o;
    return o;
}
bool &observerHearsQuietRuns()
{
    static bool all = false;
    return all;
}

void tell(const ToolVerdict &verdict, ToolRun::Report report = ToolRun::Report::Observed)
{
    ToolRun::Observer o;
    {
        QMutexLocker lock(&registryLock);
        if (report == ToolRun::Report::Quiet && !observerHearsQuietRuns())
            return;
        o = observer();
    }
    if (o)
        o(verdict);
}

} // namespace

ToolRun::ToolRun(const ToolCommand &command, const Options &options, QObject *parent)
    : QObject(parent), m_command(command), m_options(options)
{
    m_timeout.setSingleShot(true);
    m_killTimer.setSingleShot(true);
    m_killTimer.setInterval(StopGraceMs);
    m_killTimer.setTimerType(Qt::PreciseTimer);  // never early: the tool gets its whole grace time
    connect(&m_timeout, &QTimer::timeout, this, [this] {
        m_forced = ToolVerdict::Outcome::TimedOut;
        if (m_process)
            m_process->kill();
    });
    connect(&m_killTimer, &QTimer::timeout, this, [this] {
        if (m_process)
            m_process->kill();
    });
}

ToolRun::~ToolRun()
{
    {
        QMutexLocker lock(&registryLock);
        registry().removeAll(this);
    }
    if (m_process && m_process->state() != QProcess::NotRunning) {
        m_process->disconnect(this);
        m_process->kill();
        m_process->waitForFinished(1000);
    }
}

void ToolRun::start()
{
    if (m_started)
        return;
    m_started = true;
    m_clock.start();
    {
        QMutexLocker lock(&registryLock);
        registry().append(this);
    }
    if (m_command.isNull()) {
        m_startError = QStringLiteral("no program to start");
        QMetaObject::invokeMethod(this, [this] { end(ToolVerdict::Outcome::FailedToStart, -1, false); },
                                  Qt::QueuedConnection);
        return;
    }
    m_process = new QProcess(this);
    const bool merged = m_options.channels == Channels::Merged;
    ToolProcess::prepare(*m_process, m_command, merged ? QProcess::MergedChannels : QProcess::SeparateChannels);
    connect(m_process, &QProcess::readyReadStandardOutput, this, [this] { read(false); });
    if (!merged)
        connect(m_process, &QProcess::readyReadStandardError, this, [this] { read(true); });
    connect(m_process, &QProcess::finished, this, [this](int code, QProcess::ExitStatus status) {
        end(m_forced.value_or(ToolVerdict::Outcome::Succeeded), code, status == QProcess::CrashExit);
    });
    connect(m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        m_startError = m_process->errorString();
        QMetaObject::invokeMethod(this, [this] { end(ToolVerdict::Outcome::FailedToStart, -1, false); },
                                  Qt::QueuedConnection);
    });
    if (m_options.timeoutMs > 0) {
        m_timeout.setInterval(m_options.timeoutMs);
        m_timeout.start();
    }
    m_process->start();
}

void ToolRun::stop()
{
    if (m_ended || !m_started)
        return;
    if (!m_forced)
        m_forced = ToolVerdict::Outcome::Stopped;
    if (m_process && m_process->state() != QProcess::NotRunning) {
        m_process->terminate();
        m_killTimer.start();
    }
}

QList<ToolRun *> ToolRun::running()
{
    QMutexLocker lock(&registryLock);
    return registry();
}

bool ToolRun::anyWriting()
{
    for (ToolRun *run : running())
        if (run->purpose() == Purpose::Write && run->isRunning())
            return true;
    return false;
}

void ToolRun::stopAllThen(QObject *context, std::function<void()> done)
{
    const QList<ToolRun *> runs = running();
    if (runs.isEmpty()) {
        done();
        return;
    }
    auto left = std::make_shared<int>(int(runs.size()));
    auto told = std::make_shared<bool>(false);
    auto finish = [done = std::move(done), told] {
        if (!std::exchange(*told, true))
            done();
    };
    for (ToolRun *run : runs) {
        connect(run, &ToolRun::finished, context, [left, finish] {
            if (--*left == 0)
                finish();
        });
        run->stop();
    }
    QTimer::singleShot(StopGraceMs + 2000, context, finish);
}

void ToolRun::setObserver(Observer o, Report scope)
{
    QMutexLocker lock(&registryLock);
    observer() = std::move(o);
    observerHearsQuietRuns() = scope == Report::Quiet;
}

void ToolRun::read(bool errorChannel)
{
    if (!m_process)
        return;
    const QByteArray bytes = errorChannel ? m_process->readAllStandardError() : m_process->readAllStandardOutput();
    if (bytes.isEmpty())
        return;
    ChunkAssembler &assembler = errorChannel ? m_err : m_out;
    deliver(assembler.take(bytes), errorChannel);
}

void ToolRun::deliver(const QString &text, bool errorChannel)
{
    if (text.isEmpty())
        return;
    m_output += text;
    if (errorChannel)
        emit errorReports(text);
    else
        emit outputReports(text);
    const bool progressChannel = m_options.channels == Channels::Merged || errorChannel != m_options.progressOnOutput;
    if (progressChannel && m_options.progress) {
        if (const auto value = m_options.progress(text))
            emit progress(*value);
    }
    if (progressChannel && m_options.writeReports) {
        for (const WriteReport &report : m_options.writeReports(text))
            emit writeReport(report);
    }
}

void ToolRun::end(ToolVerdict::Outcome outcome, int exitCode, bool crashed)
{
    if (m_ended)
        return;
    m_ended = true;
    m_timeout.stop();
    m_killTimer.stop();
    if (m_process) {
        read(false);
        if (m_options.channels != Channels::Merged)
            read(true);
        deliver(m_out.flush(), false);
        deliver(m_err.flush(), true);
    }
    {
        QMutexLocker lock(&registryLock);
        registry().removeAll(this);
    }

    ToolVerdict verdict;
    verdict.command = m_command;
    verdict.exitCode = exitCode;
    verdict.output = m_output;
    verdict.startError = m_startError;
    verdict.elapsedMs = m_clock.isValid() ? m_clock.elapsed() : 0;
    if (outcome == ToolVerdict::Outcome::Succeeded) {
        if (crashed) {
            verdict.outcome = ToolVerdict::Outcome::Crashed;
            verdict.errorLines = ToolVerdicts::errorLines(m_command.program, m_output);
        } else {
            ToolVerdicts::judge(verdict);
        }
    } else {
        verdict.outcome = outcome;
        verdict.errorLines = ToolVerdicts::errorLines(m_command.program, m_output);
    }
    tell(verdict);
    emit finished(verdict);
}

ToolVerdict ToolRun::runToEnd(const ToolCommand &command, int timeoutMs, Channels channels, Report report,
                             const StopToken &stop)
{
    auto tell = [report](const ToolVerdict &v) { ::tell(v, report); };
    ToolVerdict verdict;
    verdict.command = command;
    QElapsedTimer clock;
    clock.start();
    if (command.isNull()) {
        verdict.outcome = ToolVerdict::Outcome::FailedToStart;
        verdict.startError = QStringLiteral("no program to start");
        verdict.exitCode = -1;
        tell(verdict);
        return verdict;
    }
    QProcess process;
    ToolProcess::prepare(process, command,
                         channels == Channels::Merged ? QProcess::MergedChannels : QProcess::SeparateChannels);
    process.start();
    if (!process.waitForStarted(-1)) {
        verdict.outcome = ToolVerdict::Outcome::FailedToStart;
        verdict.startError = process.errorString();
        verdict.exitCode = -1;
        tell(verdict);
        return verdict;
    }
    bool timedOut = false;
    bool stopped = false;
    // Waits in slices, so that a stop asked meanwhile is seen soon.
    constexpr int sliceMs = 100;
    while (!process.waitForFinished(sliceMs)) {
        if (process.state() == QProcess::NotRunning)
            break;
        stopped = stop.stopped();
        timedOut = !stopped && timeoutMs > 0 && clock.elapsed() >= timeoutMs;
        if (stopped || timedOut) {
            process.kill();
            process.waitForFinished(-1);
            break;
        }
    }
    QByteArray bytes = process.readAllStandardOutput();
    if (channels == Channels::Separate)
        bytes += process.readAllStandardError();
    verdict.output = QString::fromUtf8(bytes);
    verdict.exitCode = process.exitCode();
    verdict.elapsedMs = clock.elapsed();
    if (stopped) {
        verdict.outcome = ToolVerdict::Outcome::Stopped;
    } else if (timedOut) {
        verdict.outcome = ToolVerdict::Outcome::TimedOut;
    } else if (process.exitStatus() == QProcess::CrashExit) {
        verdict.outcome = ToolVerdict::Outcome::Crashed;
    } else {
        ToolVerdicts::judge(verdict);
    }
    tell(verdict);
    return verdict;
}
