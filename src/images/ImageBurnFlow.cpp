#include "images/ImageBurnFlow.h"

#include <QPointer>

#include "app/Alerts.h"
#include "app/FilePicker.h"
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
    m_context.media->checkMedium(QString(), [self](const MediumCheck &check) {
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

    emit showPerformingOperation();

    const Object_Optical_Drive drive = m_context.currentDrive ? m_context.currentDrive() : Object_Optical_Drive{};
    const ToolCommand command = m_tool->burnImageCommand(drive, m_image);
    startToolRun(command, ToolRun::Channels::Separate, [this](const ToolVerdict &v) { taskTerminated(v); },
                 m_tool->progressKind());
}

void ImageBurnFlow::taskTerminated(const ToolVerdict &verdict)
{
    emit closePerformingOperation();
    if (verdict.ok())
        emit operationComplete();
    else
        tellFailure(ImageMessages::DiscNotWritten, verdict);
    finish();
}
