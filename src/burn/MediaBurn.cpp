#include "burn/MediaBurn.h"

#include <QPointer>

#include "burn/DiscRoom.h"
#include "burn/Recorder.h"
#include "burn/TranscodeArguments.h"
#include "burn/TranscodeSequence.h"
#include "drives/DiscVerification.h"
#include "drives/DiscVerify.h"
#include "platform/Alerts.h"
#include "platform/WorkingFolders.h"
#include "toolrun/ToolMessages.h"
#include "toolrun/WriteProgress.h"

MediaBurn::MediaBurn(const Recorder &recorder, Alerts &alerts, MediumCheckFn check, QObject *parent)
    : Operation(&alerts, parent), m_recorder(recorder), m_check(std::move(check)), m_sequence(new TranscodeSequence(this))
{
    connect(m_sequence, &TranscodeSequence::fileStarted, this, [this](int, qint64 seconds) {
        m_fileSeconds = seconds;
        if (!BurnMessages::isVideoBurn(m_operation))
            m_audioKind = m_operation == BurnOperation::AudioCD ? 1 : 2;
        emit barRanged(OperationBar::File, static_cast<double>(seconds));
        emit barMoved(OperationBar::File, 0.0);
    });
    connect(m_sequence, &TranscodeSequence::upperBar, this,
            [this](float percent) { emit barMoved(OperationBar::File, static_cast<double>(percent)); });
    connect(m_sequence, &TranscodeSequence::filesDone, this,
            [this](int count) { emit barMoved(OperationBar::Overall, static_cast<double>(count)); });
    connect(m_sequence, &TranscodeSequence::finished, this, [this] {
        emit sheetClosed(OperationSheet::Transcoding);
        m_recordStep.start([this] { record(); });
    });
    connect(m_sequence, &TranscodeSequence::failed, this, &MediaBurn::transcodeFailed);
}

MediaBurn::~MediaBurn() = default;

void MediaBurn::burn(BurnOperation operation, const QList<NodeMediaFile> &files, const MediaBurnContext &context)
{
    if (isBusy() || !BurnMessages::isMediaBurn(operation))
        return;
    begin();
    QPointer<MediaBurn> self(this);
    BurnChecks::run(operation, files.isEmpty(), DiscRoom::forMediaBurn(operation, files, context.audioFormat),
                    m_check, alerts(), context.debugMode, [self, operation, files, context](bool passed) {
                        if (!self)
                            return;
                        if (!passed) {
                            self->finish();  // the alert was the verdict
                            return;
                        }
                        self->m_operation = operation;
                        self->m_files = files;
                        self->m_context = context;
                        FolderOps::emptyFolderThen(self->workingFolder(), self, [self] { self->startTranscoding(); });
                    });
}

QString MediaBurn::workingFolder() const
{
    return BurnMessages::isVideoBurn(m_operation) ? m_context.videoFolder : m_context.audioFolder;
}

void MediaBurn::startTranscoding()
{
    emit sheetShown(OperationSheet::Transcoding);
    emit barRanged(OperationBar::Overall, static_cast<double>(m_files.size()));
    emit barMoved(OperationBar::Overall, 0.0);

    QStringList sources;
    for (const NodeMediaFile &file : std::as_const(m_files))
        sources << file.s_File_Path;
    m_outputs = TranscodeArguments::outputPaths(m_operation, workingFolder(), sources);

    QList<TranscodeSequence::Step> steps;
    for (int i = 0; i < m_files.size(); ++i) {
        const NodeMediaFile &file = m_files.at(i);
        TranscodeSequence::Step step;
        step.command = TranscodeArguments::commandTo(m_operation, m_context.ffmpeg, file.s_File_Path,
                                                     m_outputs.at(i), m_context.videoFormat, m_context.audioFormat);
        step.durationSeconds = file.i_Duration_in_Seconds;
        step.output = m_outputs.at(i);
        steps << step;
    }
    m_sequence->start(steps);
}

bool MediaBurn::cancelSteps()
{
    if (m_sequence->isRunning()) {
        setCancelling();
        m_sequence->stop();  // answered by transcodeFailed with a stopped run
        return true;
    }
    if (!m_recordStep.isActive())
        return false;
    m_recordStep.stop();  // the recording was due: nothing is written
    FolderOps::emptyFolderThen(workingFolder(), this, [this] {
        endWith(OperationEnd::failed(cancelledFailure(nullptr)));
    });
    return true;
}

bool MediaBurn::stopWithoutAsking()
{
    if (!m_verification || !m_verification->isRunning())
        return false;
    m_verification->stop();  // written already: no question
    return true;
}

void MediaBurn::transcodeFailed(int index, const ToolVerdict &verdict)
{
    emit sheetClosed(OperationSheet::Transcoding);
    const QString file = index >= 0 && index < m_files.size() ? m_files.at(index).s_File_Path : QString();
    FolderOps::emptyFolderThen(workingFolder(), this, [this, file, verdict] {
        if (isCancelling()) {
            endWith(OperationEnd::failed(cancelledFailure(nullptr)));
            return;
        }
        if (verdict.outcome == ToolVerdict::Outcome::FailedToStart)
            tell(ToolMessages::notStarted(verdict));
        else
            tell(BurnMessages::transcodeFailed(file, ToolMessages::toolWords(verdict)));
        finish();
    });
}

void MediaBurn::record()
{
    const bool audioCD = m_operation == BurnOperation::AudioCD;
    const ToolCommand command = audioCD
        ? m_recorder.burnAudioCommand(m_context.currentDrive, m_context.audioFolder, m_outputs)
        : m_recorder.burnFolderCommand(m_context.currentDrive, workingFolder(), m_context.verifyAfterWriting);
    ToolRun::Options options;
    options.channels = ToolRun::Channels::Merged;
    options.purpose = ToolRun::Purpose::Write;
    // xorriso and cdrskin report their write (drutil does not: the sheet stays busy).
    options.writeReports = &WriteProgress::parseReports;
    startToolRun(command, options, [this](const ToolVerdict &verdict) { recordingEnded(verdict); });
    if (verifies() && m_recorder.checksItsWriting())
        tellWhenToolVerifies(&DiscVerify::saysVerifying);  // the recorder reads the disc back itself
    emit sheetShown(OperationSheet::Working);
}

bool MediaBurn::verifies() const
{
    return m_context.verifyAfterWriting && m_operation != BurnOperation::AudioCD;
}

void MediaBurn::endWith(const OperationEnd &end)
{
    emit lastSheet(end);
    finish();
}

void MediaBurn::verifyThen(const QString &folder)
{
    emit sheetShown(OperationSheet::Verifying);
    auto *verification = new DiscVerification(this);
    m_verification = verification;
    connect(verification, &DiscVerification::finished, this, [this, verification, folder](VerifyResult result) {
        verification->deleteLater();
        result.cancelled = isCancelling();
        emit sheetClosed(OperationSheet::Working);
        FolderOps::emptyFolderThen(folder, this, [this, result] {
            endWith(result.verified() ? OperationEnd::verified()
                                      : OperationEnd::failed(DiscVerify::failure(DiscVerify::messageFor(result), result)));
        });
    });
    verification->checkFiles(m_recorder.verifyFolderCommand(m_context.currentDrive));
}

void MediaBurn::recordingEnded(const ToolVerdict &verdict)
{
    const QString folder = workingFolder();
    if (verdict.ok() && verifies() && !m_recorder.checksItsWriting()) {
        verifyThen(folder);
        return;
    }
    const bool verified = verdict.ok() && verifies();  // the recorder's own read-back passed
    const bool mismatch = verifies() && m_recorder.checksItsWriting() && DiscVerify::failedWhileVerifying(verdict);
    emit sheetClosed(OperationSheet::Working);
    FolderOps::emptyFolderThen(folder, this, [this, verdict, verified, mismatch] {
        if (verdict.ok()) {
            endWith(verified ? OperationEnd::verified() : OperationEnd::complete());
            return;
        }
        tellFailure(mismatch ? DiscVerify::MismatchMessage : BurnMessages::DiscNotWritten, verdict);
        finish();
    });
}
