#include "images/IsoCreationFlow.h"

#include <QFile>
#include <QFileInfo>

#include "platform/FilePicker.h"
#include "images/ImageMessages.h"
#include "images/IsoCreation.h"

IsoCreationFlow::IsoCreationFlow(const ImageFlowContext &context, QObject *parent)
    : SheetFlow(context, parent), m_tool(ImageTool::create(context.tools))
{
    for (QTimer *t : {&m_step1, &m_step2, &m_step3}) {
        t->setSingleShot(true);
        t->setInterval(m_context.stepMs);
    }
    connect(&m_step1, &QTimer::timeout, this, &IsoCreationFlow::TimerCreateISOStep1Routine);
    connect(&m_step2, &QTimer::timeout, this, &IsoCreationFlow::TimerCreateISOStep2Routine);
    connect(&m_step3, &QTimer::timeout, this, &IsoCreationFlow::TimerCreateISOStep3Routine);
}

void IsoCreationFlow::OnActionISOCreate()
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
    m_step1.start();
}

void IsoCreationFlow::TimerCreateISOStep1Routine()
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
    m_step2.start();
}

void IsoCreationFlow::TimerCreateISOStep2Routine()
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
    m_step3.start();
}

void IsoCreationFlow::TimerCreateISOStep3Routine()
{
    m_sheetShown = true;
    emit showPerformingOperation();
    if (m_toolEnded)
        taskTerminated(m_verdict);
}

void IsoCreationFlow::taskTerminated(const ToolVerdict &verdict)
{
    emit closePerformingOperation();
    if (verdict.ok()) {
        emit operationComplete();
    } else {
        // A half-written image is no image: it goes (an earlier image that
        // could not be replaced is not ours to remove).
        if (!m_oldImageStayed)
            QFile::remove(m_destPathISO);
        tellFailure(ImageMessages::ImageNotMade, verdict);
    }
    finish();
}
