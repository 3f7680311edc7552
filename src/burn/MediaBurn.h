#pragma once
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

#include "burn/BurnChecks.h"
#include "burn/BurnMessages.h"
#include "compilation/NodeMediaFile.h"
#include "drives/Object_Optical_Drive.h"
#include "toolrun/ToolCommand.h"
#include "toolrun/ToolVerdict.h"

class Alerts;
class BurnSheets;
class DiscVerification;
class QTimer;
class Recorder;
class TranscodeSequence;
class ToolRun;

// What a media burn reads from the controller when it starts.
struct MediaBurnContext {
    QString sffmpegPath;
    QString s_Audio_Folder;
    QString s_Video_Folder;
    QString s_Video_Output_Format = QStringLiteral("0");  // "0" NTSC, else PAL
    QString s_Audio_Output_Format = QStringLiteral("0");  // "0" AC-3, else MP2
    Object_Optical_Drive currentDrive;                    // number (drutil) or device (Linux)
    bool m_b_Debug_Mode = false;
    // Read the disc back after writing it (MP3 and video discs; audio CDs
    // are never verified). The controller sets it from the setting.
    bool verifyAfterWriting = false;
};

// The five burns of the media list: audio CD, MP3 CD, MP3 DVD, video DVD and
// video Blu-ray. Each one:
//   1. runs the checks (empty list, no disc, not writable, wrong family) and
//      stops at the first refusal;
//   2. empties its working folder, begins the two-bar sheet and transcodes
//      the files one after the other, each into a file name of its own;
//      a transcode that fails ends the burn before anything is recorded:
//      the sheet ends, the folder is emptied, and an alert names the file
//      and quotes the transcoder's last error line;
//   3. ends the sheet and, 0.1 s later, starts the recorder on the folder
//      and shows the working sheet;
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
class MediaBurn : public QObject {
    Q_OBJECT
public:
    MediaBurn(const Recorder &recorder, BurnSheets &sheets, Alerts &alerts, MediumCheckFn check,
              QObject *parent = nullptr);
    ~MediaBurn() override;

    void Burn_Audio_CD(const QList<NodeMediaFile> &arrayMediaFiles, const MediaBurnContext &context);
    void Burn_Audio_MP3_CD(const QList<NodeMediaFile> &arrayMediaFiles, const MediaBurnContext &context);
    void Burn_Audio_MP3_DVD(const QList<NodeMediaFile> &arrayMediaFiles, const MediaBurnContext &context);
    void Burn_Video_DVD(const QList<NodeMediaFile> &arrayMediaFiles, const MediaBurnContext &context);
    void Burn_Video_Bluray(const QList<NodeMediaFile> &arrayMediaFiles, const MediaBurnContext &context);

    // One of the five above by operation; the data burns are not handled here.
    void burn(BurnOperation operation, const QList<NodeMediaFile> &arrayMediaFiles,
              const MediaBurnContext &context);

    bool isBusy() const { return m_busy; }
    // 1 while an audio CD transcodes, 2 for the MP3 discs (0 before any).
    int i_Burn_Audio_Type() const { return m_i_Burn_Audio_Type; }
    // The duration of the file in hand.
    qint64 i_Orig_Duration_in_Seconds() const { return m_i_Orig_Duration_in_Seconds; }

    // The timer routines (0.1 s after the last transcode) and the recorder's
    // termination handlers.
    void TimerBurnAudioCD();
    void TimerBurnMP3();
    void TimerBurnVideoRoutine();
    void AudioBurnTerminated(const ToolVerdict &verdict);
    void VideoBurnTerminated(const ToolVerdict &verdict);

    // Whether the recorder is writing now.
    bool isRecording() const;

    // Cancel on the burn's sheets. While files are transcoded: every
    // transcode is stopped, the working folder emptied, and the last sheet
    // says the burn was cancelled and nothing was written. While the
    // recorder writes: the user is asked first (Stop / Continue); Stop stops
    // the recorder and the last sheet says the disc was left unfinished.
    void cancel();

signals:
    void refused(BurnOperation operation);
    void transcodesFinished(BurnOperation operation);  // sheet ended, timer scheduled
    void recordingStarted(const ToolCommand &command);
    void completed(BurnOperation operation);            // complete sheet shown
    void failed(BurnOperation operation);               // alert or failure sheet shown, nothing left behind

private:
    void transcodePhase();    // empties the working folder on a worker, then startTranscoding
    void startTranscoding();
    void scheduleRecording();
    void startRecording(const ToolCommand &command, void (MediaBurn::*handler)(const ToolVerdict &));
    void transcodeFailed(int index, const ToolVerdict &verdict);
    void recordingEnded(const QString &folder, const ToolVerdict &verdict);
    bool verifies() const;
    void verifyThen(const QString &folder);
    QString workingFolder() const;

    const Recorder &m_recorder;
    BurnSheets &m_sheets;
    Alerts &m_alerts;
    MediumCheckFn m_check;
    TranscodeSequence *m_sequence;
    QPointer<ToolRun> m_recording;
    QPointer<DiscVerification> m_verification;
    QStringList m_outputs;  // the transcoder's output file of each listed file

    BurnOperation m_operation = BurnOperation::AudioCD;
    QList<NodeMediaFile> m_files;
    MediaBurnContext m_context;
    bool m_busy = false;
    bool m_cancelling = false;
    int m_i_Burn_Audio_Type = 0;
    qint64 m_i_Orig_Duration_in_Seconds = 0;

    QPointer<QTimer> timerBurnAudioCD;
    QPointer<QTimer> timerBurnMP3;
    QPointer<QTimer> timerBurnVideo;
};
