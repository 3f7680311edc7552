#include "images/DuplicationFlow.h"

#include "platform/Alerts.h"
#include "platform/FilePicker.h"
#include "platform/WorkingFolders.h"
#include "burn/DiscRoom.h"
#include "images/Duplication.h"
#include "images/ImageMessages.h"
#include "images/IsoCreation.h"

DuplicationFlow::DuplicationFlow(const ImageFlowContext &context, QObject *parent)
    : SheetFlow(context, parent), m_tool(ImageTool::create(context.tools))
{
    m_nextCopy.setInterval(m_context.stepMs);
    setCancelTexts(ToolMessages::CopyCancelled, ToolMessages::NothingWritten);
}

void DuplicationFlow::eject()
{
    if (m_context.ejectDisc)
        m_context.ejectDisc();
}

void DuplicationFlow::start()
{
    if (isBusy())
        return;
    begin();
    checkMedium(MediumNeed::Disc, QString(), SizeEstimate{}, ImageMessages::sourceRefusals(), [this](bool passed) {
        if (passed)
            makeImage();
        else
            finish();
    });
}

void DuplicationFlow::makeImage()
{
    const QStringList chosen = m_context.picker->pick(IsoCreation::volumeRequest());
    if (chosen.isEmpty()) {
        finish();
        return;
    }
    m_volume = chosen.first();
    FolderOps::emptyFolderThen(m_context.dataFolder, this, [this] {
        const ToolCommand command = Duplication::imagingCommand(*m_tool, m_context.dataFolder, m_volume);
        m_writingCopy = false;
        startToolRun(command, ToolRun::Channels::Merged,
                     [this](const ToolVerdict &v) { imageMade(v); }, m_tool->progressKind());
        emit sheetShown(OperationSheet::Working);
    });
}

void DuplicationFlow::imageMade(const ToolVerdict &verdict)
{
    emit sheetClosed(OperationSheet::Working);
    if (!verdict.ok()) {
        // No image, no copies: nothing is burned from an image that was never made.
        FolderOps::emptyFolderThen(m_context.dataFolder, this, [this, verdict] {
            tellFailure(ImageMessages::CopyImageNotMade, verdict);
            finish();
        });
        return;
    }
    eject();
    const AlertAnswer answer = ask(ImageMessages::copyCountQuestion());
    if (answer.button != 0) {
        finish();
        return;
    }
    m_copies = Duplication::parseCopyCount(answer.input, m_copies);
    m_copiesDone = 0;
    m_nextCopy.start([this] { askForBlank(); });
}

void DuplicationFlow::askForBlank()
{
    const AlertAnswer answer = ask(
        ImageMessages::insertBlankQuestion(m_copiesDone, m_copies));
    if (answer.button != 0) {
        emit sheetClosed(OperationSheet::Working);
        FolderOps::emptyFolderThen(m_context.dataFolder, this, [this] { finish(); });
        return;
    }
    checkMedium(MediumNeed::Writable, QString(), DiscRoom::forImage(Duplication::imagePath(m_context.dataFolder)),
                MediumRefusals::forBlank(DiscRoom::Subject::Copy), [this](bool passed) {
                    if (passed)
                        writeCopy();
                    else
                        askForBlank();  // asked again after the refusal
                });
}

void DuplicationFlow::writeCopy()
{
    emit sheetShown(OperationSheet::Working);
    const Object_Optical_Drive drive = m_context.currentDrive ? m_context.currentDrive() : Object_Optical_Drive{};
    m_device = drive.s_Device_Path;
    const ToolCommand command = m_tool->burnImageCommand(drive, Duplication::imagePath(m_context.dataFolder),
                                                         m_context.verifies());
    m_writingCopy = true;
    startToolRun(command, ToolRun::Channels::Separate,
                 [this](const ToolVerdict &v) { copyWritten(v); }, m_tool->progressKind());
    if (m_context.verifies() && m_tool->checksItsWriting())
        tellWhenToolVerifies();
}

void DuplicationFlow::copyWritten(const ToolVerdict &verdict)
{
    if (verdict.ok() && m_context.verifies() && !m_tool->checksItsWriting()) {
        verifyCopy();  // the copy stays in the drive until it is read back
        return;
    }
    if (!verdict.ok()) {
        // A failed copy ends the duplication: the user is told which one.
        const int copy = m_copiesDone + 1;
        const QString message = m_context.verifies() && DiscVerify::failedWhileVerifying(verdict)
            ? DiscVerify::copyMismatchMessage(copy, m_copies)
            : ImageMessages::copyNotWritten(copy, m_copies);
        eject();
        emit sheetClosed(OperationSheet::Working);
        FolderOps::emptyFolderThen(m_context.dataFolder, this, [this, message, verdict] {
            tellFailure(message, verdict);
            finish();
        });
        return;
    }
    copyDone();
}

void DuplicationFlow::verifyCopy()
{
    readBackImage(Duplication::imagePath(m_context.dataFolder), m_device, [this](const VerifyResult &result) {
        if (result.verified()) {
            copyDone();
            return;
        }
        const int copy = m_copiesDone + 1;
        const QString message = result.outcome == VerifyResult::Outcome::Mismatch
            ? DiscVerify::copyMismatchMessage(copy, m_copies)
            : DiscVerify::NotCheckedMessage;
        copyFailed(DiscVerify::failure(message, result));
    });
}

// A copy written (and read back, when verifying): out it comes, then the
// next one, or the end.
void DuplicationFlow::copyDone()
{
    eject();
    emit sheetClosed(OperationSheet::Working);
    ++m_copiesDone;
    if (Duplication::isComplete(m_copiesDone, m_copies)) {
        const bool verified = m_context.verifies();
        FolderOps::emptyFolderThen(m_context.dataFolder, this, [this, verified] {
            if (verified)
                emit lastSheet(OperationEnd::verified());
            else
                emit lastSheet(OperationEnd::complete());
            finish();
        });
        return;
    }
    m_nextCopy.start([this] { askForBlank(); });
}

// A copy that failed ends the duplication; the image goes.
void DuplicationFlow::copyFailed(const OperationFailure &failure)
{
    eject();
    emit sheetClosed(OperationSheet::Working);
    FolderOps::emptyFolderThen(m_context.dataFolder, this, [this, failure] {
        emit lastSheet(OperationEnd::failed(failure));
        finish();
    });
}
