#include "burn/TranscodeSequence.h"

#include <QFileInfo>
#include <QTimer>

#include "toolrun/ProgressParsers.h"
#include "toolrun/ToolRun.h"

TranscodeSequence::TranscodeSequence(QObject *parent) : QObject(parent) {}

TranscodeSequence::~TranscodeSequence() = default;

void TranscodeSequence::start(const QList<Step> &steps)
{
    if (m_running)
        return;
    m_running = true;
    m_steps = steps;
    m_index = 0;
    // The first file starts from the event loop, as every later one does.
    QTimer::singleShot(0, this, [this] { next(); });
}

void TranscodeSequence::stop()
{
    if (m_run)
        m_run->stop();
}

void TranscodeSequence::next()
{
    if (!m_running)
        return;
    if (m_index >= m_steps.size()) {
        m_running = false;
        m_steps.clear();
        emit finished();
        return;
    }
    const int index = m_index;
    const Step step = m_steps.at(index);
    emit fileStarted(index, step.durationSeconds);

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
    m_run = run;
    connect(run, &ToolRun::progress, this, [this](double percent) { emit upperBar(float(percent)); });
    const QString output = step.output;
    connect(run, &ToolRun::finished, this, [this, run, index, output](const ToolVerdict &ended) {
        run->deleteLater();
        ToolVerdict verdict = ended;
        if (verdict.ok() && !output.isEmpty() && QFileInfo(output).size() <= 0) {
            // A tool that says it is done but left nothing behind has failed.
            verdict.outcome = ToolVerdict::Outcome::Failed;
            verdict.errorLines = {QStringLiteral("%1 left no output file \"%2\".")
                                      .arg(verdict.toolName(), QFileInfo(output).fileName())};
        }
        if (!verdict.ok()) {
            m_running = false;
            m_steps.clear();
            emit failed(index, verdict);
            return;
        }
        emit filesDone(index + 1);
        m_index = index + 1;
        next();
    });
    run->start();
}
