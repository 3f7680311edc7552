#pragma once
#include <QList>
#include <QPointer>
#include <QString>

#include "burn/MediumChecks.h"
#include "platform/StepTimer.h"
#include "toolrun/Operation.h"
#include "burn/BurnMessages.h"
#include "compilation/NodeMediaFile.h"
#include "drives/Object_Optical_Drive.h"
#include "toolrun/ToolCommand.h"
#include "toolrun/ToolVerdict.h"

class Alerts;
class DiscVerification;
class Recorder;
class TranscodeSequence;

// What a media burn reads from the controller when it starts.
struct MediaBurnContext {
    QString ffmpeg;
    QString audioFolder;
    QString videoFolder;
    QString videoFormat = QStringLiteral("0");  // "0" NTSC, else PAL
    QString audioFormat = QStringLiteral("0");  // "0" AC-3, else MP2
    Object_Optical_Drive currentDrive;          // number (drutil) or device (Linux)
    bool debugMode = false;
    // Read the disc back after writing it (MP3 and video discs; audio CDs
    // are never verified). The controller sets it from the setting.
    bool verifyAfterWriting = false;
};

// The five burns of the media list: audio CD, MP3 CD, MP3 DVD, video DVD and
// video Blu-ray. Each one:
//   1. runs the checks (empty list, no disc, not writable, wrong family) and
//      stops at the first refusal;
//   2. empties its working folder, shows the Transcoding sheet and
//      transcodes the files, each into a file name of its own;
//      a transcode that fails ends the burn before anything is recorded:
//      the sheet ends, the folder is emptied, and an alert names the file
//      and quotes the transcoder's last error line;
//   3. closes the sheet and, 0.1 s later, starts the recorder on the folder
//      and shows the Working sheet;
//   4. when the recorder ends: ends the working sheet, empties the folder,
//      and shows the operation-complete sheet when the recorder succeeded,
//      else the failure sheet with the recorder's own words.
// Before anything is transcoded, the checks also ask for room: the list's
// estimated size (DiscRoom) against the medium's free space.
// With verifyAfterWriting (MP3 and video discs), a disc that was written is
// read back before the folder is emptied: the working sheet says
// "Verifying the disc…", and the last sheet says "The disc was written and
// verified." or, on a mismatch, the failure sheet says what differs. drutil
// reads back what it writes itself, and its verdict is the verification.
// The list handed in is copied: a burn never changes the compilation. A burn
// asked for while another one is under way is ignored.
class MediaBurn : public Operation {
    Q_OBJECT
public:
    MediaBurn(const Recorder &recorder, Alerts &alerts, MediumCheckFn check, QObject *parent = nullptr);
    ~MediaBurn() override;

    // One of the five burns; the data burns are not handled here.
    void burn(BurnOperation operation, const QList<NodeMediaFile> &files, const MediaBurnContext &context);

    // 1 while an audio CD transcodes, 2 for the MP3 discs (0 before any).
    int audioKind() const { return m_audioKind; }
    // The duration of the file in hand.
    qint64 fileSeconds() const { return m_fileSeconds; }

    // Whether the recorder is writing now.
    bool isRecording() const { return toolRunning(); }

    // Cancel on the burn's sheets. While files are transcoded: every
    // transcode is stopped, the working folder emptied, and the last sheet
    // says the burn was cancelled and nothing was written. While the
    // recorder writes: the user is asked first (Stop / Continue); Stop stops
    // the recorder and the last sheet says the disc was left unfinished.
    // (Operation::cancel.)

protected:
    bool cancelSteps() override;
    bool stopWithoutAsking() override;

private:
    void startTranscoding();
    void record();
    void transcodeFailed(int index, const ToolVerdict &verdict);
    void recordingEnded(const ToolVerdict &verdict);
    void endWith(const OperationEnd &end);
    bool verifies() const;
    void verifyThen(const QString &folder);
    QString workingFolder() const;

    const Recorder &m_recorder;
    MediumCheckFn m_check;
    TranscodeSequence *m_sequence;
    StepTimer m_recordStep{this};
    QPointer<DiscVerification> m_verification;
    QStringList m_outputs;  // the transcoder's output file of each listed file

    BurnOperation m_operation = BurnOperation::AudioCD;
    QList<NodeMediaFile> m_files;
    MediaBurnContext m_context;
    int m_audioKind = 0;
    qint64 m_fileSeconds = 0;
};
