#include "images/DataBurnFlow.h"

#include <QtDebug>

#include "platform/Alerts.h"
#include "platform/WorkingFolders.h"
#include "burn/DiscRoom.h"
#include "drives/DiscVerify.h"
#include "images/StagingCopy.h"

DataBurnFlow::DataBurnFlow(const ImageFlowContext &context, QObject *parent) : SheetFlow(context, parent)
{
    m_stagingStep.setInterval(m_context.stepMs);
    m_recordStep.setInterval(m_context.stepMs);
}

DataBurnFlow::~DataBurnFlow() = default;

void DataBurnFlow::burn(ImageMessages::DataDisc kind, const QList<NodeDataFolder> &folders)
{
    if (isBusy())
        return;
    begin();
    m_kind = kind;
    m_folders = folders;
    if (m_folders.isEmpty()) {
        tell(ImageMessages::noFolders());
        finish();
        return;
    }
    QStringList paths;
    for (const NodeDataFolder &folder : std::as_const(m_folders))
        paths << folder.s_Path;
    checkMedium(MediumNeed::Writable, ImageMessages::dataDisc(kind).mediaWord, DiscRoom::forFolders(paths, this),
                ImageMessages::dataDiscRefusals(kind), [this](bool passed) {
                    if (passed)
                        prepare();
                    else
                        finish();
                });
}

void DataBurnFlow::prepare()
{
    FolderOps::emptyFolderThen(m_context.dataFolder, this, [this] {
        m_stagingDone = false;
        if (onMac()) {
            emit sheetShown(OperationSheet::Staging);
            m_stagingStep.start([this] { startStaging(); });  // the copy starts first ...
        }
        m_recordStep.start([this] { record(); });  // ... and the burn waits for it
    });
}

DataBurnPlan DataBurnFlow::makePlan() const
{
    const DataBurnPlan plan = DataBurnPlan::make(m_folders, m_context.dataFolder,
                                                 onMac() ? Qt::CaseInsensitive : Qt::CaseSensitive);
    for (const QString &gone : plan.skipped())
        qWarning().noquote() << QStringLiteral("Data disc: the folder \"%1\" is no longer there; it is left out").arg(gone);
    return plan;
}

bool DataBurnFlow::refuseIfFoldersGone()
{
    if (m_plan.skipped().isEmpty())
        return false;
    // A disc without a listed folder is not the disc the user asked for.
    m_recordStep.stop();
    const QStringList gone = m_plan.skipped();
    if (onMac())
        emit sheetClosed(OperationSheet::Staging);
    FolderOps::emptyFolderThen(m_context.dataFolder, this, [this, gone] {
        tell(ImageMessages::foldersGone(gone));
        finish();
    });
    return true;
}

void DataBurnFlow::startStaging()
{
    m_plan = makePlan();
    if (refuseIfFoldersGone())
        return;
    auto *staging = new StagingCopy(m_plan.entries(), m_context.stagingPollMs, this);
    m_staging = staging;
    connect(staging, &StagingCopy::finished, this, [this, staging] {
        staging->deleteLater();
        if (isCancelling()) {
            // Cancelled while copying: nothing is recorded, nothing is kept.
            m_recordStep.stop();
            emit sheetClosed(OperationSheet::Staging);
            FolderOps::emptyFolderThen(m_context.dataFolder, this, [this] {
                emit lastSheet(OperationEnd::failed(cancelledFailure(nullptr)));
                finish();
            });
            return;
        }
        if (!staging->errors().isEmpty()) {
            // Nothing is recorded from a folder that is not complete.
            m_recordStep.stop();
            const QStringList errors = staging->errors();
            emit sheetClosed(OperationSheet::Staging);
            FolderOps::emptyFolderThen(m_context.dataFolder, this, [this, errors] {
                tell(ImageMessages::stagingFailed(errors));
                finish();
            });
            return;
        }
        m_stagingDone = true;
        // The burn step was due long ago; it goes on now.
        if (!m_recordStep.isActive())
            record();
    });
    staging->start();
}

bool DataBurnFlow::cancelSteps()
{
    if (!m_staging || !m_staging->isRunning())
        return false;
    m_staging->stop();  // its end comes back through finished
    return true;
}

void DataBurnFlow::record()
{
    if (onMac() && !m_stagingDone)
        return;  // staging still under way; its end comes back here

    const Object_Optical_Drive drive = m_context.currentDrive ? m_context.currentDrive() : Object_Optical_Drive{};
    ToolCommand command;
    if (onMac()) {
        command = m_plan.drutilBurnCommand(m_context.tools.drutil, drive.s_Drive_Number, m_context.verifies());
    } else {
        m_plan = makePlan();
        if (refuseIfFoldersGone())
            return;
        command = m_plan.xorrisoBurnCommand(m_context.tools.xorriso, drive.s_Device_Path, m_context.verifies());
    }
    m_device = drive.s_Device_Path;

    // xorriso reports its write; drutil does not, and its sheet stays busy.
    std::optional<ImageProgress::Kind> reports;
    if (!onMac())
        reports = ImageProgress::Kind::XorrisoRecordPercent;
    startToolRun(command, ToolRun::Channels::Merged, [this](const ToolVerdict &v) { dataBurnTerminated(v); }, reports);
    if (onMac() && m_context.verifies())
        tellWhenToolVerifies();
    if (onMac())
        emit sheetClosed(OperationSheet::Staging);
    emit sheetShown(OperationSheet::Working);
}

void DataBurnFlow::dataBurnTerminated(const ToolVerdict &verdict)
{
    const bool verifies = m_context.verifies();
    if (verdict.ok() && verifies && !onMac()) {
        verifyThen();
        return;
    }
    // drutil read its writing back itself: its verdict is the verification.
    const bool mismatch = verifies && onMac() && DiscVerify::failedWhileVerifying(verdict);
    emit sheetClosed(OperationSheet::Working);
    FolderOps::emptyFolderThen(m_context.dataFolder, this, [this, verdict, verifies, mismatch] {
        if (verdict.ok() && verifies)
            emit lastSheet(OperationEnd::verified());
        else if (verdict.ok())
            emit lastSheet(OperationEnd::complete());
        else
            tellFailure(mismatch ? DiscVerify::MismatchMessage : ImageMessages::DiscNotWritten, verdict);
        finish();
    });
}

void DataBurnFlow::verifyThen()
{
    readBackFiles(DiscVerify::md5CheckCommand(m_context.tools.xorriso, m_device, m_plan.discPaths()),
                  [this](const VerifyResult &result) {
                      emit sheetClosed(OperationSheet::Working);
                      FolderOps::emptyFolderThen(m_context.dataFolder, this, [this, result] {
                          if (result.verified())
                              emit lastSheet(OperationEnd::verified());
                          else
                              emit lastSheet(OperationEnd::failed(DiscVerify::failure(DiscVerify::messageFor(result), result)));
                          finish();
                      });
                  });
}
