#include "images/SheetFlow.h"

#include <memory>

#include "platform/Alerts.h"
#include "drives/DiscVerify.h"

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

DiscVerification *SheetFlow::startReadBack(std::function<void(const VerifyResult &)> done)
{
    emit verifying();
    auto *verification = new DiscVerification(this);
    m_readBack = verification;
    connect(verification, &DiscVerification::finished, this, [this, verification, done](VerifyResult result) {
        verification->deleteLater();
        result.cancelled = m_cancelling;
        if (done)
            done(result);
    });
    return verification;
}

void SheetFlow::readBackFiles(const ToolCommand &check, std::function<void(const VerifyResult &)> done)
{
    startReadBack(std::move(done))->checkFiles(check);
}

void SheetFlow::readBackImage(const QString &image, const QString &drive,
                              std::function<void(const VerifyResult &)> done)
{
    DiscVerification *verification = startReadBack(std::move(done));
    connect(verification, &DiscVerification::progress, this, &SheetFlow::checkProgress);
    verification->compareImage(image, drive);
}

void SheetFlow::tellWhenToolVerifies()
{
    ToolRun *run = m_run;
    if (!run)
        return;
    auto told = std::make_shared<bool>(false);
    auto look = [this, told](const QString &text) {
        if (!*told && DiscVerify::saysVerifying(text)) {
            *told = true;
            emit verifying();
        }
    };
    connect(run, &ToolRun::outputReports, this, look);
    connect(run, &ToolRun::errorReports, this, look);
}

void SheetFlow::cancel()
{
    if (!m_busy || m_cancelling)
        return;
    if (readingBack()) {  // the disc is written: reading it back is stopped without a question
        m_cancelling = true;
        m_readBack->stop();
        return;
    }
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
