#include "burn/MediaBurn.h"

#include <QPointer>
#include <QTimer>
#include <functional>
#include <memory>

#include "platform/WorkingFolders.h"
#include "burn/BurnSheets.h"
#include "burn/DiscRoom.h"
#include "burn/Recorder.h"
#include "burn/TranscodeArguments.h"
#include "burn/TranscodeSequence.h"
#include "platform/Alerts.h"
#include "drives/DiscVerification.h"
#include "toolrun/ToolMessages.h"
#include "toolrun/ToolRun.h"
#include "toolrun/WriteProgress.h"

MediaBurn::MediaBurn(const Recorder &recorder, BurnSheets &sheets, Alerts &alerts, MediumCheckFn check,
                     QObject *parent)
    : QObject(parent),
      m_recorder(recorder),
      m_sheets(sheets),
      m_alerts(alerts),
      m_check(std::move(check)),
      m_sequence(new TranscodeSequence(this))
{
    connect(m_sequence, &TranscodeSequence::fileStarted, this, [this](int index, qint64 seconds) {
        m_i_Orig_Duration_in_Seconds = seconds;
        if (!BurnMessages::isVideoBurn(m_operation))
            m_i_Burn_Audio_Type = m_operation == BurnOperation::AudioCD ? 1 : 2;
        Q_UNUSED(index);
        m_sheets.setFileRange(static_cast<double>(seconds));
        m_sheets.setFileValue(0.0);
    });
    connect(m_sequence, &TranscodeSequence::upperBar, this,
            [this](float percent) { m_sheets.setFileValue(static_cast<double>(percent)); });
    connect(m_sequence, &TranscodeSequence::filesDone, this,
            [this](int count) { m_sheets.setOverallValue(static_cast<double>(count)); });
    connect(m_sequence, &TranscodeSequence::finished, this, [this] {
        m_sheets.endProgress();
        scheduleRecording();
    });
    connect(m_sequence, &TranscodeSequence::failed, this, &MediaBurn::transcodeFailed);
}

MediaBurn::~MediaBurn() = default;

void MediaBurn::Burn_Audio_CD(const QList<NodeMediaFile> &files, const MediaBurnContext &context)
{
    burn(BurnOperation::AudioCD, files, context);
}

void MediaBurn::Burn_Audio_MP3_CD(const QList<NodeMediaFile> &files, const MediaBurnContext &context)
{
    burn(BurnOperation::MP3CD, files, context);
}

void MediaBurn::Burn_Audio_MP3_DVD(const QList<NodeMediaFile> &files, const MediaBurnContext &context)
{
    burn(BurnOperation::MP3DVD, files, context);
}

void MediaBurn::Burn_Video_DVD(const QList<NodeMediaFile> &files, const MediaBurnContext &context)
{
    burn(BurnOperation::VideoDVD, files, context);
}

void MediaBurn::Burn_Video_Bluray(const QList<NodeMediaFile> &files, const MediaBurnContext &context)
{
    burn(BurnOperation::VideoBluray, files, context);
}

void MediaBurn::burn(BurnOperation operation, const QList<NodeMediaFile> &files, const MediaBurnContext &context)
{
    if (m_busy || !BurnMessages::isMediaBurn(operation))
        return;
    m_busy = true;
    m_cancelling = false;
    QPointer<MediaBurn> self(this);
    BurnChecks::run(operation, files.isEmpty(),
                    DiscRoom::forMediaBurn(operation, files, context.s_Audio_Output_Format), m_check, m_alerts,
                    context.m_b_Debug_Mode,
                    [self, operation, files, context](bool passed) {
                        if (!self)
                            return;
                        if (!passed) {
                            self->m_busy = false;
                            emit self->refused(operation);
                            return;
                        }
                        self->m_operation = operation;
                        self->m_files = files;
                        self->m_context = context;
                        self->transcodePhase();
                    });
}

QString MediaBurn::workingFolder() const
{
    return BurnMessages::isVideoBurn(m_operation) ? m_context.s_Video_Folder : m_context.s_Audio_Folder;
}

void MediaBurn::transcodePhase()
{
    FolderOps::emptyFolderThen(workingFolder(), this, [this] { startTranscoding(); });
}

void MediaBurn::startTranscoding()
{
    const QString folder = workingFolder();

    m_sheets.beginProgress();
    m_sheets.setOverallRange(static_cast<double>(m_files.size()));
    m_sheets.setOverallValue(0.0);

    QStringList sources;
    for (const NodeMediaFile &file : std::as_const(m_files))
        sources << file.s_File_Path;
    m_outputs = TranscodeArguments::outputPaths(m_operation, folder, sources);

    QList<TranscodeSequence::Step> steps;
    for (int i = 0; i < m_files.size(); ++i) {
        const NodeMediaFile &file = m_files.at(i);
        TranscodeSequence::Step step;
        step.command = TranscodeArguments::commandTo(m_operation, m_context.sffmpegPath, file.s_File_Path,
                                                     m_outputs.at(i), m_context.s_Video_Output_Format,
                                                     m_context.s_Audio_Output_Format);
        step.durationSeconds = file.i_Duration_in_Seconds;
        step.output = m_outputs.at(i);
        steps << step;
    }
    m_sequence->start(steps);
}

static void replaceTimer(QPointer<QTimer> &slot, QObject *owner, std::function<void()> routine)
{
    if (slot) {
        slot->stop();
        slot->deleteLater();
    }
    auto *timer = new QTimer(owner);
    timer->setSingleShot(true);
    timer->setInterval(100);
    QObject::connect(timer, &QTimer::timeout, owner, [timer, routine = std::move(routine)] {
        timer->deleteLater();
        routine();
    });
    slot = timer;
    timer->start();
}

void MediaBurn::scheduleRecording()
{
    emit transcodesFinished(m_operation);
    switch (m_operation) {
    case BurnOperation::AudioCD:
        replaceTimer(timerBurnAudioCD, this, [this] { TimerBurnAudioCD(); });
        break;
    case BurnOperation::MP3CD:
    case BurnOperation::MP3DVD:
        replaceTimer(timerBurnMP3, this, [this] { TimerBurnMP3(); });
        break;
    default:
        replaceTimer(timerBurnVideo, this, [this] { TimerBurnVideoRoutine(); });
        break;
    }
}

void MediaBurn::cancel()
{
    if (!m_busy || m_cancelling)
        return;
    if (m_sequence->isRunning()) {
        m_cancelling = true;
        m_sequence->stop();  // answered by transcodeFailed with a stopped run
        return;
    }
    const bool recordingDue = (timerBurnAudioCD && timerBurnAudioCD->isActive())
        || (timerBurnMP3 && timerBurnMP3->isActive()) || (timerBurnVideo && timerBurnVideo->isActive());
    if (recordingDue) {
        m_cancelling = true;
        for (QPointer<QTimer> *t : {&timerBurnAudioCD, &timerBurnMP3, &timerBurnVideo})
            if (*t)
                (*t)->stop();
        FolderOps::emptyFolderThen(workingFolder(), this, [this] {
            m_busy = false;
            m_sheets.showOperationFailed(
                OperationFailure::cancellation(ToolMessages::BurnCancelled, ToolMessages::NothingWritten));
            emit failed(m_operation);
        });
        return;
    }
    if (m_verification && m_verification->isRunning()) {  // written already: no question
        m_cancelling = true;
        m_verification->stop();
        return;
    }
    if (isRecording()) {
        if (!ToolMessages::confirmStopWriting(m_alerts) || !isRecording())
            return;
        m_cancelling = true;
        m_recording->stop();  // answered by recordingEnded with a stopped run
    }
}

void MediaBurn::transcodeFailed(int index, const ToolVerdict &verdict)
{
    m_sheets.endProgress();
    const QString file = index >= 0 && index < m_files.size() ? m_files.at(index).s_File_Path : QString();
    FolderOps::emptyFolderThen(workingFolder(), this, [this, file, verdict] {
        m_busy = false;
        if (m_cancelling)
            m_sheets.showOperationFailed(
                OperationFailure::cancellation(ToolMessages::BurnCancelled, ToolMessages::NothingWritten));
        else if (verdict.outcome == ToolVerdict::Outcome::FailedToStart)
            m_alerts.show(ToolMessages::notStarted(verdict));
        else
            m_alerts.show(BurnMessages::transcodeFailed(file, ToolMessages::toolWords(verdict)));
        emit failed(m_operation);
    });
}

void MediaBurn::startRecording(const ToolCommand &command, void (MediaBurn::*handler)(const ToolVerdict &))
{
    ToolRun::Options options;
    options.channels = ToolRun::Channels::Merged;
    options.purpose = ToolRun::Purpose::Write;
    // xorriso and cdrskin report their write (drutil does not: the sheet stays busy).
    options.writeReports = &WriteProgress::parseReports;
    auto *run = new ToolRun(command, options, this);
    m_recording = run;
    connect(run, &ToolRun::writeReport, this, [this](const WriteReport &report) { m_sheets.showWriteProgress(report); });
    connect(run, &ToolRun::finished, this, [this, run, handler](const ToolVerdict &verdict) {
        run->deleteLater();
        (this->*handler)(verdict);
    });
    if (verifies() && m_recorder.checksItsWriting()) {
        // The recorder reads the disc back itself: the sheet says so when it
        // begins.
        auto told = std::make_shared<bool>(false);
        connect(run, &ToolRun::outputReports, this, [this, told](const QString &text) {
            if (!*told && DiscVerify::saysVerifying(text)) {
                *told = true;
                m_sheets.showVerifying();
            }
        });
    }
    run->start();
    m_sheets.showPerformingOperation();
    emit recordingStarted(command);
}

bool MediaBurn::isRecording() const
{
    return m_recording && m_recording->isRunning();
}

void MediaBurn::TimerBurnAudioCD()
{
    const QString folder = m_context.s_Audio_Folder;
    startRecording(m_recorder.burnAudioCommand(m_context.currentDrive, folder, m_outputs),
                   &MediaBurn::AudioBurnTerminated);
}

void MediaBurn::TimerBurnMP3()
{
    startRecording(m_recorder.burnFolderCommand(m_context.currentDrive, m_context.s_Audio_Folder,
                                                m_context.verifyAfterWriting),
                   &MediaBurn::AudioBurnTerminated);
}

void MediaBurn::TimerBurnVideoRoutine()
{
    startRecording(m_recorder.burnFolderCommand(m_context.currentDrive, m_context.s_Video_Folder,
                                                m_context.verifyAfterWriting),
                   &MediaBurn::VideoBurnTerminated);
}

void MediaBurn::AudioBurnTerminated(const ToolVerdict &verdict)
{
    recordingEnded(m_context.s_Audio_Folder, verdict);
}

void MediaBurn::VideoBurnTerminated(const ToolVerdict &verdict)
{
    recordingEnded(m_context.s_Video_Folder, verdict);
}

bool MediaBurn::verifies() const
{
    return m_context.verifyAfterWriting && m_operation != BurnOperation::AudioCD;
}

void MediaBurn::verifyThen(const QString &folder)
{
    m_sheets.showVerifying();
    auto *verification = new DiscVerification(this);
    m_verification = verification;
    connect(verification, &DiscVerification::finished, this, [this, verification, folder](VerifyResult result) {
        verification->deleteLater();
        result.cancelled = m_cancelling;
        m_sheets.endPerformingOperation();
        FolderOps::emptyFolderThen(folder, this, [this, result] {
            m_busy = false;
            if (result.verified()) {
                m_sheets.showOperationVerified();
                emit completed(m_operation);
                return;
            }
            m_sheets.showOperationFailed(DiscVerify::failure(DiscVerify::messageFor(result), result));
            emit failed(m_operation);
        });
    });
    verification->checkFiles(m_recorder.verifyFolderCommand(m_context.currentDrive));
}

void MediaBurn::recordingEnded(const QString &folder, const ToolVerdict &verdict)
{
    if (verdict.ok() && verifies() && !m_recorder.checksItsWriting()) {
        verifyThen(folder);
        return;
    }
    const bool verified = verdict.ok() && verifies();  // the recorder's own read-back passed
    const bool mismatch = verifies() && m_recorder.checksItsWriting() && DiscVerify::failedWhileVerifying(verdict);
    m_sheets.endPerformingOperation();
    FolderOps::emptyFolderThen(folder, this, [this, verdict, verified, mismatch] {
        m_busy = false;
        if (verdict.ok()) {
            if (verified)
                m_sheets.showOperationVerified();
            else
                m_sheets.showOperationComplete();
            emit completed(m_operation);
            return;
        }
        if (m_cancelling && verdict.outcome == ToolVerdict::Outcome::Stopped)
            m_sheets.showOperationFailed(OperationFailure::cancellation(
                ToolMessages::BurnCancelled, ToolMessages::WritingStopped, &verdict));
        else if (verdict.outcome == ToolVerdict::Outcome::FailedToStart)
            m_alerts.show(ToolMessages::notStarted(verdict));
        else
            m_sheets.showOperationFailed(OperationFailure::fromVerdict(
                mismatch ? DiscVerify::MismatchMessage : BurnMessages::DiscNotWritten, verdict));
        emit failed(m_operation);
    });
}
