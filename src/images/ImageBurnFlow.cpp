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

void ImageBurnFlow::start()
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
    checkMedium(MediumNeed::Writable, QString(), DiscRoom::forImage(m_image),
                MediumRefusals::forBlank(DiscRoom::Subject::Image), [this](bool passed) {
                    if (passed)
                        record();
                    else
                        finish();
                });
}

void ImageBurnFlow::record()
{
    emit sheetShown(OperationSheet::Working);

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
    emit sheetClosed(OperationSheet::Working);
    if (verdict.ok() && verifies)
        emit lastSheet(OperationEnd::verified());  // hdiutil's own read-back passed
    else if (verdict.ok())
        emit lastSheet(OperationEnd::complete());
    else
        tellFailure(verifies && DiscVerify::failedWhileVerifying(verdict) ? DiscVerify::MismatchMessage
                                                                          : ImageMessages::DiscNotWritten,
                    verdict);
    finish();
}

void ImageBurnFlow::verifyThen()
{
    readBackImage(m_image, m_device, [this](const VerifyResult &result) {
        emit sheetClosed(OperationSheet::Working);
        if (result.verified())
            emit lastSheet(OperationEnd::verified());
        else
            emit lastSheet(OperationEnd::failed(DiscVerify::failure(DiscVerify::messageFor(result), result)));
        finish();
    });
}
