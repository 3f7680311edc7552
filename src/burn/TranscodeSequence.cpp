#include "burn/TranscodeSequence.h"

#include <QFileInfo>
#include <QThread>
#include <QTimer>

#include "toolrun/ProgressParsers.h"
#include "toolrun/ToolRun.h"

TranscodeSequence::TranscodeSequence(QObject *parent)
    : QObject(parent), m_maxParallel(qMax(1, QThread::idealThreadCount()))
{
}

// Runs still going are children: each one kills its tool as it goes.
TranscodeSequence::~TranscodeSequence() = default;

void TranscodeSequence::setMaxParallel(int n)
{
    m_maxParallel = qMax(1, n);
}

void TranscodeSequence::start(const QList<Step> &steps)
{
    if (m_running)
        return;
    m_running = true;
    m_stopping = false;
    m_steps = steps;
    m_done = QList<bool>(steps.size(), false);
    m_percent = QList<std::optional<float>>(steps.size());
    m_runs.clear();
    m_nextToStart = 0;
    m_doneCount = 0;
    m_shown = -1;
    m_failure.reset();
    m_stopped.reset();
    // The first files start from the event loop, as every later one does.
    QTimer::singleShot(0, this, [this] { fill(); });
}

void TranscodeSequence::stop()
{
    if (!m_running || m_stopping)
        return;
    m_stopping = true;
    stopAll();
    if (m_runs.isEmpty())
        QTimer::singleShot(0, this, [this] { settle(); });
}

void TranscodeSequence::stopAll()
{
    for (const QPointer<ToolRun> &run : std::as_const(m_runs))
        if (run)
            run->stop();
}

int TranscodeSequence::earliestUnfinished() const
{
    for (int i = 0; i < m_done.size(); ++i)
        if (!m_done.at(i))
            return i;
    return -1;
}

// Starts files, in list order, while there is room.
void TranscodeSequence::fill()
{
    if (!m_running || m_stopping)
        return;
    if (m_doneCount == m_steps.size()) {
        m_running = false;
        m_steps.clear();
        emit finished();
        return;
    }
    while (m_runs.size() < m_maxParallel && m_nextToStart < m_steps.size())
        startFile(m_nextToStart++);
    showEarliest();
}

// The upper bar follows the earliest file not done yet.
void TranscodeSequence::showEarliest()
{
    const int earliest = earliestUnfinished();
    if (earliest < 0 || earliest == m_shown || earliest >= m_nextToStart)
        return;
    m_shown = earliest;
    emit fileStarted(earliest, m_steps.at(earliest).durationSeconds);
    if (m_shown == earliest && m_percent.at(earliest))
        emit upperBar(*m_percent.at(earliest));
}

void TranscodeSequence::startFile(int index)
{
    const Step &step = m_steps.at(index);
    ToolRun::Options options;
    options.channels = ToolRun::Channels::Separate;
    options.purpose = ToolRun::Purpose::Transcode;
    const qint64 duration = step.durationSeconds;
    options.progress = [duration](const QString &reports) -> std::optional<double> {
        if (const auto percent = ProgressParsers::transcoderPercent(reports, duration))
            return double(*percent);
        return std::nullopt;
    };
    auto *run = new ToolRun(step.command, options, this);
    m_runs.insert(index, run);
    connect(run, &ToolRun::progress, this, [this, index](double percent) {
        if (!m_running || index >= m_percent.size())
            return;
        m_percent[index] = float(percent);
        if (index == m_shown)
            emit upperBar(float(percent));
    });
    connect(run, &ToolRun::finished, this, [this, run, index](const ToolVerdict &verdict) {
        run->deleteLater();
        fileEnded(index, verdict);
    });
    run->start();
}

void TranscodeSequence::fileEnded(int index, ToolVerdict verdict)
{
    m_runs.remove(index);
    if (!m_running)
        return;
    const QString output = m_steps.at(index).output;
    if (verdict.ok() && !output.isEmpty() && QFileInfo(output).size() <= 0) {
        // A tool that says it is done but left nothing behind has failed.
        verdict.outcome = ToolVerdict::Outcome::Failed;
        verdict.errorLines = {QStringLiteral("%1 left no output file \"%2\".")
                                  .arg(verdict.toolName(), QFileInfo(output).fileName())};
    }
    if (verdict.ok()) {
        m_done[index] = true;
        ++m_doneCount;
        if (m_stopping) {
            settle();
            return;
        }
        emit filesDone(m_doneCount);
        if (!m_running)
            return;
        fill();
        return;
    }
    // A run stopped is not a failure of its own; any other end is. Either
    // way the rest is stopped, and the answer waits for every run to end.
    auto &slot = verdict.outcome == ToolVerdict::Outcome::Stopped ? m_stopped : m_failure;
    if (!slot || index < slot->first)
        slot = std::make_pair(index, verdict);
    if (!m_stopping) {
        m_stopping = true;
        stopAll();
    }
    settle();
}

// Once stopping and no run is left: the answer.
void TranscodeSequence::settle()
{
    if (!m_running || !m_runs.isEmpty())
        return;
    m_running = false;
    std::optional<std::pair<int, ToolVerdict>> answer = m_failure ? m_failure : m_stopped;
    const int earliest = earliestUnfinished();
    if (!answer && earliest < 0) {
        m_steps.clear();
        emit finished();
        return;
    }
    if (!answer) {
        // Stopped before the next file could start.
        ToolVerdict stopped;
        stopped.outcome = ToolVerdict::Outcome::Stopped;
        stopped.command = m_steps.at(earliest).command;
        answer = std::make_pair(earliest, stopped);
    }
    m_steps.clear();
    emit failed(answer->first, answer->second);
}
