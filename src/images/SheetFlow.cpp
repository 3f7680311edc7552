#include "images/SheetFlow.h"

#include <memory>

#include "app/Alerts.h"
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
        options.progress = [kind](const QString &reports) { return ImageProgress::parse(kind, reports); };
    }
    auto *run = new ToolRun(command, options, this);
    m_run = run;
    connect(run, &ToolRun::progress, this, &SheetFlow::uniqueProgress);
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
    connect(verification, &DiscVerification::finished, this, [verification, done](const VerifyResult &result) {
        verification->deleteLater();
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
    emit uniqueProgress(0.0);
    connect(verification, &DiscVerification::progress, this, &SheetFlow::uniqueProgress);
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

void SheetFlow::tellFailure(const QString &message, const ToolVerdict &verdict)
{
    if (verdict.outcome == ToolVerdict::Outcome::FailedToStart) {
        m_context.alerts->show(ToolMessages::notStarted(verdict));
        return;
    }
    emit operationFailed(OperationFailure::fromVerdict(message, verdict));
}
