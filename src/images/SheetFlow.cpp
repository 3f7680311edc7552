#include "images/SheetFlow.h"

#include "drives/DiscVerify.h"
#include "platform/Alerts.h"

SheetFlow::SheetFlow(const ImageFlowContext &context, QObject *parent)
    : Operation(context.alerts, parent), m_context(context)
{
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
    Operation::startToolRun(command, options, std::move(terminated));
}

DiscVerification *SheetFlow::startReadBack(std::function<void(const VerifyResult &)> done)
{
    emit sheetShown(OperationSheet::Verifying);
    auto *verification = new DiscVerification(this);
    m_readBack = verification;
    connect(verification, &DiscVerification::finished, this, [this, verification, done](VerifyResult result) {
        verification->deleteLater();
        result.cancelled = isCancelling();
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
    connect(verification, &DiscVerification::progress, this,
            [this](double percent) { emit barMoved(OperationBar::Check, percent); });
    verification->compareImage(image, drive);
}

bool SheetFlow::stopWithoutAsking()
{
    if (!readingBack())
        return false;
    m_readBack->stop();  // the disc is written: reading it back is stopped without a question
    return true;
}

void SheetFlow::checkMedium(MediumNeed need, const QString &family, const SizeEstimate &size,
                            const MediumRefusals &refusals, std::function<void(bool passed)> passed)
{
    QPointer<SheetFlow> self(this);
    const bool debug = m_context.debugMode && m_context.debugMode();
    MediumChecks::run(m_context.media->checker(), alerts(), need, family, size, refusals, debug,
                      [self, passed](bool ok) {
                          if (self)
                              passed(ok);
                      });
}

void SheetFlow::tellWhenToolVerifies()
{
    Operation::tellWhenToolVerifies(&DiscVerify::saysVerifying);
}
