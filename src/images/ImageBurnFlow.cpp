#include "images/ImageBurnFlow.h"

#include <QPointer>

#include "platform/Alerts.h"
#include "platform/FilePicker.h"
#include "burn/DiscRoom.h"
#include "images/ImageMessages.h"
#include "images/IsoCreation.h"

ImageBurnFlow::ImageBurnFlow(const ImageFlowContext &context, QObject *parent)
    : SheetFlow(context, parent), m_tool(ImageTool::create(context.tools))
{
}

void ImageBurnFlow::OnActionISOBurn()
{
    if (isBusy())
        return;
    begin();
    const QStringList chosen = m_context.picker->pick(IsoCreation::imageRequest());
    if (chosen.isEmpty() || chosen.first().isEmpty()) {
        finish();
        return;
    }
    m_image = chosen.first();
    QPointer<ImageBurnFlow> self(this);
    m_context.media->checkMedium(QString(), DiscRoom::forImage(m_image), [self](const MediumCheck &check) {
        if (self)
            self->checked(check);
    });
}

void ImageBurnFlow::checked(const MediumCheck &check)
{
    if (check.result == MediumCheck::NoDisc) {
        m_context.alerts->show(ImageMessages::noDisc());
        finish();
        return;
    }
    if (check.result == MediumCheck::NoAnswer) {
        m_context.alerts->show(ToolMessages::driveDidNotAnswer(check.status.verdict));
        finish();
        return;
    }
    if (check.result == MediumCheck::NotWritable) {
        m_context.alerts->show(ImageMessages::notWritable());
        finish();
        return;
    }
    if (check.result == MediumCheck::NoRoom) {
        m_context.alerts->show(DiscRoom::noRoom(check.needed, check.freeSectors, DiscRoom::Subject::Image));
        finish();
        return;
    }

    emit showPerformingOperation();

    const Object_Optical_Drive drive = m_context.currentDrive ? m_context.currentDrive() : Object_Optical_Drive{};
    m_device = drive.s_Device_Path;
    const ToolCommand command = m_tool->burnImageCommand(drive, m_image, m_context.verifies());
    startToolRun(command, ToolRun::Channels::Separate, [this](const ToolVerdict &v) { taskTerminated(v); },
                 m_tool->progressKind());
    if (m_context.verifies() && m_tool->checksItsWriting())
        tellWhenToolVerifies();
}

void ImageBurnFlow::taskTerminated(const ToolVerdict &verdict)
{
    const bool verifies = m_context.verifies();
    if (verdict.ok() && verifies && !m_tool->checksItsWriting()) {
        verifyThen();
        return;
    }
    emit closePerformingOperation();
    if (verdict.ok() && verifies)
        emit operationVerified();  // hdiutil's own read-back passed
    else if (verdict.ok())
        emit operationComplete();
    else
        tellFailure(verifies && DiscVerify::failedWhileVerifying(verdict) ? DiscVerify::MismatchMessage
                                                                          : ImageMessages::DiscNotWritten,
                    verdict);
    finish();
}

void ImageBurnFlow::verifyThen()
{
    readBackImage(m_image, m_device, [this](const VerifyResult &result) {
        emit closePerformingOperation();
        if (result.verified())
            emit operationVerified();
        else
            emit operationFailed(DiscVerify::failure(DiscVerify::messageFor(result), result));
        finish();
    });
}
