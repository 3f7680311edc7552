#include "images/IsoCreationFlow.h"

#include <QFile>
#include <QFileInfo>

#include "platform/FilePicker.h"
#include "images/ImageMessages.h"
#include "images/IsoCreation.h"

IsoCreationFlow::IsoCreationFlow(const ImageFlowContext &context, QObject *parent)
    : SheetFlow(context, parent), m_tool(ImageTool::create(context.tools))
{
    m_step.setInterval(m_context.stepMs);
    setCancelTexts(ToolMessages::ImageCancelled, ToolMessages::NoImageMade);
}

void IsoCreationFlow::start()
{
    if (isBusy())
        return;
    begin();
    m_sourcePath.clear();
    m_destPath.clear();
    m_destPathISO.clear();

    const QStringList chosen = m_context.picker->pick(IsoCreation::sourceRequest());
    if (chosen.isEmpty()) {
        finish();
        return;
    }
    m_sourcePath = chosen.first();
    m_step.start([this] { chooseDestination(); });
}

void IsoCreationFlow::chooseDestination()
{
    const QStringList chosen = m_context.picker->pick(IsoCreation::destinationRequest(m_context.homeFolder));
    if (chosen.isEmpty()) {
        finish();
        return;
    }
    m_destPath = chosen.first();
    m_destPathISO = IsoCreation::destPathISO(m_destPath);
    IsoCreation::removeOldImage(m_destPathISO);
    m_oldImageStayed = QFileInfo::exists(m_destPathISO);
    m_step.start([this] { runTool(); });
}

void IsoCreationFlow::runTool()
{
    m_sheetShown = false;
    m_toolEnded = false;
    const ToolCommand command = m_tool->makeImageCommand(m_destPathISO, m_sourcePath);
    startToolRun(
        command, ToolRun::Channels::Merged,
        [this](const ToolVerdict &verdict) {
            m_toolEnded = true;
            m_verdict = verdict;
            // The working sheet comes a step after the launch; a quicker tool
            // is answered once it is up, so it never stays behind.
            if (m_sheetShown)
                taskTerminated(verdict);
        },
        m_tool->progressKind());
    m_step.start([this] { showWorking(); });
}

void IsoCreationFlow::showWorking()
{
    m_sheetShown = true;
    emit sheetShown(OperationSheet::Working);
    if (m_toolEnded)
        taskTerminated(m_verdict);
}

void IsoCreationFlow::taskTerminated(const ToolVerdict &verdict)
{
    emit sheetClosed(OperationSheet::Working);
    if (verdict.ok()) {
        emit lastSheet(OperationEnd::complete());
    } else {
        // A half-written image is no image: it goes (an earlier image that
        // could not be replaced is not ours to remove).
        if (!m_oldImageStayed)
            QFile::remove(m_destPathISO);
        tellFailure(ImageMessages::ImageNotMade, verdict);
    }
    finish();
}
