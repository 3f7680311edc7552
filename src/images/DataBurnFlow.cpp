#include "images/DataBurnFlow.h"

#include <QtDebug>

#include "platform/Alerts.h"
#include "platform/WorkingFolders.h"
#include "burn/DiscRoom.h"
#include "drives/DiscVerify.h"
#include "images/StagingCopy.h"

DataBurnFlow::DataBurnFlow(const ImageFlowContext &context, QObject *parent) : SheetFlow(context, parent)
{
    timerBurnDataFolder.setSingleShot(true);
    timerBurnDataFolder.setInterval(m_context.stepMs);
    m_stagingTimer.setSingleShot(true);
    m_stagingTimer.setInterval(m_context.stepMs);
    connect(&timerBurnDataFolder, &QTimer::timeout, this, &DataBurnFlow::TimerBurnDataFolder);
    connect(&m_stagingTimer, &QTimer::timeout, this, &DataBurnFlow::startStaging);
}

DataBurnFlow::~DataBurnFlow() = default;

void DataBurnFlow::Burn_Data_CD(const QList<NodeDataFolder> &folders)
{
    burnData(ImageMessages::DataDisc::CD, folders);
}

void DataBurnFlow::Burn_Data_DVD(const QList<NodeDataFolder> &folders)
{
    burnData(ImageMessages::DataDisc::DVD, folders);
}

void DataBurnFlow::Burn_Data_Bluray(const QList<NodeDataFolder> &folders)
{
    burnData(ImageMessages::DataDisc::Bluray, folders);
}

void DataBurnFlow::burnData(ImageMessages::DataDisc kind, const QList<NodeDataFolder> &folders)
{
    if (isBusy())
        return;
    begin();
    m_kind = kind;
    arrayDataFolders = folders;
    if (arrayDataFolders.isEmpty()) {
        m_context.alerts->show(ImageMessages::noFolders());
        finish();
        return;
    }
    QStringList paths;
    for (const NodeDataFolder &folder : std::as_const(arrayDataFolders))
        paths << folder.s_Path;
    QPointer<DataBurnFlow> self(this);
    m_context.media->checkMedium(ImageMessages::dataDisc(kind).mediaWord, DiscRoom::forFolders(paths, this),
                                 [self](const MediumCheck &check) {
                                     if (self)
                                         self->checked(check);
                                 });
}

void DataBurnFlow::checked(const MediumCheck &check)
{
    switch (check.result) {
    case MediumCheck::NoDisc:
        m_context.alerts->show(ImageMessages::noDisc());
        finish();
        return;
    case MediumCheck::NotWritable:
    case MediumCheck::NotRewritable:
        m_context.alerts->show(ImageMessages::notWritable());
        finish();
        return;
    case MediumCheck::NoAnswer:
        m_context.alerts->show(ToolMessages::driveDidNotAnswer(check.status.verdict));
        finish();
        return;
    case MediumCheck::NoRoom:
        m_context.alerts->show(DiscRoom::noRoom(check.needed, check.freeSectors, DiscRoom::Subject::Compilation));
        finish();
        return;
    case MediumCheck::WrongFamily:
        m_context.alerts->show(ImageMessages::wrongMedia(m_kind));
        if (m_context.debugMode && m_context.debugMode())
            m_context.alerts->show(ImageMessages::wrongMediaDebug(m_kind, check.detectedFamily));
        finish();
        return;
    case MediumCheck::Ok:
        break;
    }

    FolderOps::emptyFolderThen(m_context.dataFolder, this, [this] {
        m_stagingDone = false;
        if (onMac()) {
            emit showStagingSheet();
            m_stagingTimer.start();  // the copy starts first ...
        }
        timerBurnDataFolder.start();  // ... and the burn waits for it
    });
}

DataBurnPlan DataBurnFlow::makePlan() const
{
    const DataBurnPlan plan = DataBurnPlan::make(arrayDataFolders, m_context.dataFolder,
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
    timerBurnDataFolder.stop();
    const QStringList gone = m_plan.skipped();
    if (onMac())
        emit closeStagingSheet();
    FolderOps::emptyFolderThen(m_context.dataFolder, this, [this, gone] {
        m_context.alerts->show(ImageMessages::foldersGone(gone));
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
            timerBurnDataFolder.stop();
            emit closeStagingSheet();
            FolderOps::emptyFolderThen(m_context.dataFolder, this, [this] {
                emit operationFailed(cancelledFailure(nullptr));
                finish();
            });
            return;
        }
        if (!staging->errors().isEmpty()) {
            // Nothing is recorded from a folder that is not complete.
            timerBurnDataFolder.stop();
            const QStringList errors = staging->errors();
            emit closeStagingSheet();
            FolderOps::emptyFolderThen(m_context.dataFolder, this, [this, errors] {
                m_context.alerts->show(ImageMessages::stagingFailed(errors));
                finish();
            });
            return;
        }
        m_stagingDone = true;
        // The burn step was due long ago; it goes on now.
        if (!timerBurnDataFolder.isActive())
            TimerBurnDataFolder();
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

void DataBurnFlow::TimerBurnDataFolder()
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
        emit closeStagingSheet();
    emit showPerformingOperation();
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
    emit closePerformingOperation();
    FolderOps::emptyFolderThen(m_context.dataFolder, this, [this, verdict, verifies, mismatch] {
        if (verdict.ok() && verifies)
            emit operationVerified();
        else if (verdict.ok())
            emit operationComplete();
        else
            tellFailure(mismatch ? DiscVerify::MismatchMessage : ImageMessages::DiscNotWritten, verdict);
        finish();
    });
}

void DataBurnFlow::verifyThen()
{
    readBackFiles(DiscVerify::md5CheckCommand(m_context.tools.xorriso, m_device, m_plan.discPaths()),
                  [this](const VerifyResult &result) {
                      emit closePerformingOperation();
                      FolderOps::emptyFolderThen(m_context.dataFolder, this, [this, result] {
                          if (result.verified())
                              emit operationVerified();
                          else
                              emit operationFailed(DiscVerify::failure(DiscVerify::messageFor(result), result));
                          finish();
                      });
                  });
}
