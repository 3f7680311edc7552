#include "toolrun/Operation.h"

#include <memory>

#include "platform/Alerts.h"

Operation::Operation(Alerts *alerts, QObject *parent) : QObject(parent), m_alerts(alerts) {}

void Operation::begin()
{
    m_busy = true;
    m_cancelling = false;
    m_stoppedWhileWriting = false;
}

void Operation::finish()
{
    m_busy = false;
    emit ended();
}

AlertAnswer Operation::ask(const AlertRequest &request)
{
    return m_alerts ? m_alerts->show(request) : AlertAnswer{};
}

void Operation::tell(const AlertRequest &request)
{
    if (m_alerts)
        m_alerts->show(request);
}

ToolRun *Operation::startToolRun(const ToolCommand &command, const ToolRun::Options &options,
                                 std::function<void(const ToolVerdict &)> terminated)
{
    auto *run = new ToolRun(command, options, this);
    m_run = run;
    connect(run, &ToolRun::writeReport, this, &Operation::writeReported);
    connect(run, &ToolRun::finished, this, [this, run, terminated](const ToolVerdict &verdict) {
        emit toolFinished(verdict.exitCode);
        run->deleteLater();
        terminated(verdict);
    });
    emit toolStarted(command.program, command.arguments);
    run->start();
    return run;
}

void Operation::tellWhenToolVerifies(std::function<bool(const QString &)> saysVerifying)
{
    ToolRun *run = m_run;
    if (!run)
        return;
    auto told = std::make_shared<bool>(false);
    auto look = [this, told, saysVerifying](const QString &text) {
        if (!*told && saysVerifying(text)) {
            *told = true;
            emit sheetShown(OperationSheet::Verifying);
        }
    };
    connect(run, &ToolRun::outputReports, this, look);
    connect(run, &ToolRun::errorReports, this, look);
}

void Operation::cancel()
{
    if (!m_busy || m_cancelling)
        return;
    if (stopWithoutAsking()) {
        m_cancelling = true;
        return;
    }
    if (toolRunning()) {
        const bool writing = runWritesDisc();
        if (writing && !ToolMessages::confirmStopWriting(*m_alerts))
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

void Operation::setCancelTexts(const QString &message, const QString &untouched)
{
    m_cancelMessage = message;
    m_cancelUntouched = untouched;
}

OperationFailure Operation::cancelledFailure(const ToolVerdict *stoppedRun) const
{
    return OperationFailure::cancellation(
        m_cancelMessage, m_stoppedWhileWriting ? ToolMessages::WritingStopped : m_cancelUntouched, stoppedRun);
}

void Operation::tellFailure(const QString &message, const ToolVerdict &verdict)
{
    if (m_cancelling && verdict.outcome == ToolVerdict::Outcome::Stopped) {
        emit lastSheet(OperationEnd::failed(cancelledFailure(&verdict)));
        return;
    }
    if (verdict.outcome == ToolVerdict::Outcome::FailedToStart) {
        tell(ToolMessages::notStarted(verdict));
        return;
    }
    emit lastSheet(OperationEnd::failed(OperationFailure::fromVerdict(message, verdict)));
}
