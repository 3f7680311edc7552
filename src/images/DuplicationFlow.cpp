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
    timerDuplicateMediaCopy.setSingleShot(true);
    timerDuplicateMediaCopy.setInterval(m_context.stepMs);
    connect(&timerDuplicateMediaCopy, &QTimer::timeout, this, &DuplicationFlow::TimerDuplicateMediaCopy);
}

void DuplicationFlow::eject()
{
    if (m_context.ejectDisc)
        m_context.ejectDisc();
}

void DuplicationFlow::DuplicateMedia()
{
    if (isBusy())
        return;
    begin();
    QPointer<DuplicationFlow> self(this);
    m_context.media->check(MediumNeed::Disc, QString(), [self](const MediumCheck &check) {
        if (self)
            self->driveAnswered(check);
    });
}

void DuplicationFlow::driveAnswered(const MediumCheck &check)
{
    if (check.result == MediumCheck::NoAnswer) {
        m_context.alerts->show(ToolMessages::driveDidNotAnswer(check.status.verdict));
        finish();
        return;
    }
    if (check.result == MediumCheck::NoDisc) {
        m_context.alerts->show(ImageMessages::noDiscToCopy());
        finish();
        return;
    }
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
                     [this](const ToolVerdict &v) { CreateISOfromDriveTerminated(v); }, m_tool->progressKind());
        emit showPerformingOperation();
    });
}

void DuplicationFlow::CreateISOfromDriveTerminated(const ToolVerdict &verdict)
{
    emit closePerformingOperation();
    if (!verdict.ok()) {
        // No image, no copies: nothing is burned from an image that was never made.
        FolderOps::emptyFolderThen(m_context.dataFolder, this, [this, verdict] {
            tellFailure(ImageMessages::CopyImageNotMade, verdict);
            finish();
        });
        return;
    }
    eject();
    const AlertAnswer answer = m_context.alerts->show(ImageMessages::copyCountQuestion());
    if (answer.button != 0) {
        finish();
        return;
    }
    i_Number_of_Copies = Duplication::parseCopyCount(answer.input, i_Number_of_Copies);
    i_Counter_Number_of_Copies = 0;
    timerDuplicateMediaCopy.start();
}

void DuplicationFlow::TimerDuplicateMediaCopy()
{
    const AlertAnswer answer = m_context.alerts->show(
        ImageMessages::insertBlankQuestion(i_Counter_Number_of_Copies, i_Number_of_Copies));
    if (answer.button != 0) {
        emit closePerformingOperation();
        FolderOps::emptyFolderThen(m_context.dataFolder, this, [this] { finish(); });
        return;
    }
    QPointer<DuplicationFlow> self(this);
    m_context.media->checkMedium(QString(), DiscRoom::forImage(Duplication::imagePath(m_context.dataFolder)),
                                 [self](const MediumCheck &check) {
                                     if (self)
                                         self->blankChecked(check);
                                 });
}

void DuplicationFlow::blankChecked(const MediumCheck &check)
{
    if (check.result == MediumCheck::NoDisc) {
        m_context.alerts->show(ImageMessages::noDisc());
        TimerDuplicateMediaCopy();
        return;
    }
    if (check.result == MediumCheck::NoAnswer) {
        m_context.alerts->show(ToolMessages::driveDidNotAnswer(check.status.verdict));
        TimerDuplicateMediaCopy();
        return;
    }
    if (check.result == MediumCheck::NoRoom) {
        m_context.alerts->show(DiscRoom::noRoom(check.needed, check.freeSectors, DiscRoom::Subject::Copy));
        TimerDuplicateMediaCopy();
        return;
    }
    if (check.result != MediumCheck::Ok) {
        m_context.alerts->show(ImageMessages::notWritable());
        TimerDuplicateMediaCopy();
        return;
    }

    emit showPerformingOperation();
    const Object_Optical_Drive drive = m_context.currentDrive ? m_context.currentDrive() : Object_Optical_Drive{};
    m_device = drive.s_Device_Path;
    const ToolCommand command = m_tool->burnImageCommand(drive, Duplication::imagePath(m_context.dataFolder),
                                                         m_context.verifies());
    m_writingCopy = true;
    startToolRun(command, ToolRun::Channels::Separate,
                 [this](const ToolVerdict &v) { MediaDuplicationTerminated(v); }, m_tool->progressKind());
    if (m_context.verifies() && m_tool->checksItsWriting())
        tellWhenToolVerifies();
}

void DuplicationFlow::MediaDuplicationTerminated(const ToolVerdict &verdict)
{
    if (verdict.ok() && m_context.verifies() && !m_tool->checksItsWriting()) {
        verifyCopy();  // the copy stays in the drive until it is read back
        return;
    }
    if (!verdict.ok()) {
        // A failed copy ends the duplication: the user is told which one.
        const int copy = i_Counter_Number_of_Copies + 1;
        const QString message = m_context.verifies() && DiscVerify::failedWhileVerifying(verdict)
            ? DiscVerify::copyMismatchMessage(copy, i_Number_of_Copies)
            : ImageMessages::copyNotWritten(copy, i_Number_of_Copies);
        eject();
        emit closePerformingOperation();
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
        const int copy = i_Counter_Number_of_Copies + 1;
        const QString message = result.outcome == VerifyResult::Outcome::Mismatch
            ? DiscVerify::copyMismatchMessage(copy, i_Number_of_Copies)
            : DiscVerify::NotCheckedMessage;
        copyFailed(DiscVerify::failure(message, result));
    });
}

// A copy written (and read back, when verifying): out it comes, then the
// next one, or the end.
void DuplicationFlow::copyDone()
{
    eject();
    emit closePerformingOperation();
    ++i_Counter_Number_of_Copies;
    if (Duplication::isComplete(i_Counter_Number_of_Copies, i_Number_of_Copies)) {
        const bool verified = m_context.verifies();
        FolderOps::emptyFolderThen(m_context.dataFolder, this, [this, verified] {
            if (verified)
                emit operationVerified();
            else
                emit operationComplete();
            finish();
        });
        return;
    }
    timerDuplicateMediaCopy.start();
}

// A copy that failed ends the duplication; the image goes.
void DuplicationFlow::copyFailed(const OperationFailure &failure)
{
    eject();
    emit closePerformingOperation();
    FolderOps::emptyFolderThen(m_context.dataFolder, this, [this, failure] {
        emit operationFailed(failure);
        finish();
    });
}
