#include "images/SheetFlow.h"

#include "app/Alerts.h"

SheetFlow::SheetFlow(const ImageFlowContext &context, QObject *parent) : QObject(parent), m_context(context) {}

void SheetFlow::finish()
{
    m_busy = false;
    emit ended();
}

void SheetFlow::startToolRun(const ToolCommand &command, ToolRun::Channels channels,
                             std::function<void(const ToolVerdict &)> terminated,
                             std::optional<ImageProgress::Kind> progress, ToolRun::Purpose purpose)
{
    ToolRun::Options options;
    options.channels = channels;
    options.purpose = purpose;
    if (progress) {
        const ImageProgress::Kind kind = *progress;
        options.writeReports = [kind](const QString &reports) { return ImageProgress::reports(kind, reports); };
    }
    auto *run = new ToolRun(command, options, this);
    m_run = run;
    connect(run, &ToolRun::writeReport, this, &SheetFlow::writeProgress);
    connect(run, &ToolRun::finished, this, [this, run, terminated](const ToolVerdict &verdict) {
        emit toolFinished(verdict.exitCode);
        run->deleteLater();
        terminated(verdict);
    });
    emit toolStarted(command.program, command.arguments);
    run->start();
}

void SheetFlow::cancel()
{
    if (!m_busy || m_cancelling)
        return;
    if (toolRunning()) {
        const bool writing = runWritesDisc();
        if (writing && !ToolMessages::confirmStopWriting(*m_context.alerts))
            return;
        if (!toolRunning())
            return;  // it ended while the question was up
        m_cancelling = true;
        m_stoppedWhileWriting = writing;
        m_run->stop();
        return;
    }
    m_cancelling = cancelSteps();
}

OperationFailure SheetFlow::cancelledFailure(const ToolVerdict *stoppedRun) const
{
    return OperationFailure::cancellation(
        ToolMessages::BurnCancelled,
        m_stoppedWhileWriting ? ToolMessages::WritingStopped : ToolMessages::NothingWritten, stoppedRun);
}

void SheetFlow::tellFailure(const QString &message, const ToolVerdict &verdict)
{
    if (m_cancelling && verdict.outcome == ToolVerdict::Outcome::Stopped) {
        emit operationFailed(cancelledFailure(&verdict));
        return;
    }
    if (verdict.outcome == ToolVerdict::Outcome::FailedToStart) {
        m_context.alerts->show(ToolMessages::notStarted(verdict));
        return;
    }
    emit operationFailed(OperationFailure::fromVerdict(message, verdict));
}
