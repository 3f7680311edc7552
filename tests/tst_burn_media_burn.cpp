#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <cmath>

#include "support/FakeDriveBackend.h"
#include "toolrun/ToolMessages.h"
#include "toolrun/ToolRun.h"
#include "burn/DrutilRecorder.h"
#include "burn/Recorder.h"
#include "burn/MediaBurn.h"
#include "support/FakeAlerts.h"
#include "support/FakeDriveBackend.h"
#include "support/Files.h"
#include "support/ListRecords.h"
#include "support/SheetLog.h"
#include "support/TestMain.h"
#include "support/Tools.h"
#include "support/SheetChecks.h"
#include "app/ui/OperationSheets.h"
#include "images/ui/Window_Data_Copy_Folders.h"
#include "toolrun/ui/StatusWindows.h"

// The status windows themselves, shown by the controller's own
// OperationSheets on a main window of the test, with what the tests read
// from them on the way: the upper bar each time the lower bar counts a file
// done, and the working sheet as it was begun, after each report that
// changed it, and as it ended.
struct SheetWindows {
    SheetWindows() { main.show(); }

    // Shows the sheets `operation` asks for, as the controller shows them.
    void follow(Operation *operation)
    {
        // Read before the sheets move the bar or let the working sheet go.
        QObject::connect(operation, &Operation::barMoved, &main, [this](OperationBar bar, double value) {
            if (bar == OperationBar::Overall && value > 0 && windowProgress)
                fileBarAtEachFileEnd << qMakePair(windowProgress->progressBar->maxDouble(),
                                                  windowProgress->progressBar->doubleValue());
        });
        QObject::connect(operation, &Operation::sheetClosed, &main, [this](OperationSheet sheet) {
            if ((sheet == OperationSheet::Working || sheet == OperationSheet::Verifying) && windowPerformingOperation)
                workingSheet << QStringLiteral("end: ") + workingSheetNow(windowPerformingOperation);
        });
        sheets.follow(operation);
        // Read once the sheets have shown what was asked.
        QObject::connect(operation, &Operation::sheetShown, &main, [this](OperationSheet sheet) {
            if ((sheet == OperationSheet::Working || sheet == OperationSheet::Verifying)
                && windowPerformingOperation && windowPerformingOperation != m_snapped) {
                m_snapped = windowPerformingOperation;  // a working sheet just begun
                workingSheet << workingSheetNow(windowPerformingOperation);
            }
        });
        QObject::connect(operation, &Operation::writeReported, &main, [this] {
            if (!windowPerformingOperation)
                return;
            const QString now = workingSheetNow(windowPerformingOperation);
            if (workingSheet.isEmpty() || workingSheet.last() != now)
                workingSheet << now;
        });
    }

    QWidget main;
    QPointer<Window_Progress> windowProgress;
    QPointer<Window_Unique_Progress> windowUniqueProgress;
    QPointer<Window_Performing_Operation> windowPerformingOperation;
    QPointer<Window_Operation_Terminated> windowOperationCompleted;
    QPointer<Window_Data_Copy_Folders> windowDataCopyFolders;
    OperationSheets sheets{&main,
                           {windowProgress, windowUniqueProgress, windowPerformingOperation, windowOperationCompleted,
                            windowDataCopyFolders}};
    QList<QPair<double, double>> fileBarAtEachFileEnd;  // (maximum, value)
    QStringList workingSheet;  // the working sheet when begun, after each report, and when ended

private:
    QPointer<Window_Performing_Operation> m_snapped;
};

// A recorder that prints a recorded output slowly, a few bytes a write,
// whatever it is asked to record.
class FixtureRecorder : public Recorder {
public:
    explicit FixtureRecorder(const QString &fixture) : m_fixture(fixture) {}
    ToolCommand burnAudioCommand(const Object_Optical_Drive &, const QString &, const QStringList &) const override
    {
        return command();
    }
    ToolCommand burnFolderCommand(const Object_Optical_Drive &, const QString &, bool) const override
    {
        return command();
    }

private:
    ToolCommand command() const
    {
        return {fake("burn-chunked-tool"),
                {fixture(m_fixture), QStringLiteral("48"), QStringLiteral("out")}};
    }
    QString m_fixture;
};

class TestBurnMediaBurn : public QObject {
    Q_OBJECT
private:
    QString m_ffmpeg;
    QTemporaryDir m_media;
    QTemporaryDir m_docs;
    QString m_log;
    MediaBurnContext m_ctx;

    QStringList logLines() const
    {
        QFile f(m_log);
        if (!f.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    static QStringList names(const QString &folder) { return QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot); }

    QList<NodeMediaFile> audioList() const
    {
        return {mediaFile(m_media.filePath("b song.mp3"), 2), mediaFile(m_media.filePath("a.flac"), 1)};
    }

    // An MP3 CD of one file whose recorder prints `fixture`: the working
    // sheet as it was begun, after each report, and as it ended; empty when
    // the burn did not complete.
    QStringList workingSheetWhileRecording(const QString &fixture)
    {
        FixtureRecorder recorder(fixture);
        SheetWindows sheets;
        FakeAlerts alerts;
        FakeDriveBackend drive(FakeDriveBackend::blank(QStringLiteral("CD")));
        MediaBurn burn(recorder, alerts, drive.check());
        sheets.follow(&burn);
        SheetLog log(&burn);
        burn.burn(BurnOperation::MP3CD, {mediaFile(m_media.filePath("b song.mp3"), 2)}, m_ctx);
        if (!log.waitEnded(1, 60000) || !log.endedComplete() || !sheets.windowOperationCompleted)
            return {};
        return sheets.workingSheet;
    }

private slots:
    void initTestCase()
    {
        m_ffmpeg = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
        QVERIFY(!m_ffmpeg.isEmpty());
        makeMedia({"-f", "lavfi", "-i", "sine=frequency=440:duration=2", m_media.filePath("b song.mp3")});
        makeMedia({"-f", "lavfi", "-i", "sine=frequency=660:duration=1", m_media.filePath("a.flac")});
        makeMedia({"-f", "lavfi", "-i", "testsrc=duration=1:size=320x240:rate=25", "-f", "lavfi", "-i", "sine=duration=1",
              "-c:v", "libx264", "-preset", "ultrafast", "-c:a", "aac", "-shortest", m_media.filePath("clip.mov")});
        m_log = m_docs.filePath(QStringLiteral("drutil.log"));
        qputenv("TAMBLO_FAKE_BURN_LOG", m_log.toLocal8Bit());
        m_ctx.ffmpeg = m_ffmpeg;
        m_ctx.audioFolder = m_docs.filePath(QStringLiteral("TambloAudio"));
        m_ctx.videoFolder = m_docs.filePath(QStringLiteral("TambloVideo"));
        m_ctx.currentDrive.s_Drive_Number = QStringLiteral("1");
    }

    void init()
    {
        QFile::remove(m_log);
        qunsetenv("TAMBLO_FAKE_BURN_EXIT");
        qunsetenv("TAMBLO_FAKE_BURN_SLEEP");
        QDir(m_ctx.audioFolder).removeRecursively();
        QDir(m_ctx.videoFolder).removeRecursively();
        QDir().mkpath(m_ctx.audioFolder);
        QDir().mkpath(m_ctx.videoFolder);
    }

    void audioCDFromStartToEnd()
    {
        qputenv("TAMBLO_FAKE_BURN_SLEEP", "0.3");
        writeFile(m_ctx.audioFolder + "/left over.wav", "stale");
        QDir().mkpath(m_ctx.audioFolder + "/old folder");
        DrutilRecorder recorder(fake("burn-drutil"));
        FakeAlerts alerts;
        FakeDriveBackend drive(FakeDriveBackend::blank(QStringLiteral("CD")));
        MediaBurn burn(recorder, alerts, drive.check());
        SheetLog sheets(&burn);

        const QList<NodeMediaFile> list = audioList();
        burn.burn(BurnOperation::AudioCD, list, m_ctx);
        QVERIFY(burn.isBusy());
        QVERIFY(sheets.waitEnded(1, 30000));
        QVERIFY2(sheets.endedComplete(), qPrintable(sheets.sheets().join(", ")));
        QVERIFY(!burn.isBusy());

        QVERIFY(alerts.shown.isEmpty());
        QCOMPARE(drive.calls, (QStringList{"IsDriveEmpty", "IsMediaOneTimeWritable", "TypeOfMediaInTheDrive"}));
        // The two files transcode side by side: the lower bar counts them as
        // they end; the upper bar shows the first until it ends, then the
        // second if that one is still going.
        const QStringList outline = sheets.outline();
        QCOMPARE(outline.mid(0, 5), (QStringList{"showTranscoding", "overallRange 2", "overall 0", "fileRange 2", "file 0"}));
        QCOMPARE(outline.mid(outline.size() - 5),
                 (QStringList{"overall 2", "closeTranscoding", "showPerformingOperation", "closePerformingOperation", "operationComplete"}));
        QVERIFY(outline.indexOf("overall 1") < outline.indexOf("overall 2"));
        QVERIFY(!outline.contains("fileRange 1") || outline.indexOf("fileRange 1") > outline.indexOf("overall 1"));
        // The recorder starts from the 0.1 s timer after the sheet ended.
        const qint64 recordingAt = sheets.timeOf("toolStarted");
        QVERIFY2(recordingAt - sheets.timeOf("closeTranscoding") >= 90, qPrintable(QString::number(recordingAt - sheets.timeOf("closeTranscoding"))));
        QVERIFY(sheets.timeOf("operationComplete") - sheets.timeOf("showPerformingOperation") >= 250);
        QCOMPARE(sheets.events.count("toolStarted"), 1);

        QCOMPARE(logLines(), (QStringList{"burn|-audio|" + m_ctx.audioFolder + "|-drive|1", "list: a.wav b song.wav "}));
        QVERIFY(names(m_ctx.audioFolder).isEmpty());
        QCOMPARE(burn.audioKind(), 1);
        QCOMPARE(burn.fileSeconds(), outline.contains("fileRange 1") ? qint64(1) : qint64(2));
        QCOMPARE(list.size(), 2);
    }

    void mp3Discs_data()
    {
        QTest::addColumn<int>("op");
        QTest::addColumn<QString>("family");
        QTest::newRow("MP3 CD") << int(BurnOperation::MP3CD) << "CD";
        QTest::newRow("MP3 DVD") << int(BurnOperation::MP3DVD) << "DVD";
    }
    void mp3Discs()
    {
        QFETCH(int, op);
        QFETCH(QString, family);
        writeFile(m_ctx.audioFolder + "/left over.mp3", "stale");
        writeFile(m_ctx.videoFolder + "/keep.mpg", "stale");
        DrutilRecorder recorder(fake("burn-drutil"));
        FakeAlerts alerts;
        FakeDriveBackend drive(FakeDriveBackend::blank(family));
        MediaBurn burn(recorder, alerts, drive.check());
        SheetLog sheets(&burn);
        if (BurnOperation(op) == BurnOperation::MP3CD)
            burn.burn(BurnOperation::MP3CD, audioList(), m_ctx);
        else
            burn.burn(BurnOperation::MP3DVD, audioList(), m_ctx);
        QVERIFY(sheets.waitEnded(1, 30000));
        QVERIFY2(sheets.endedComplete(), qPrintable(sheets.sheets().join(", ")));
        QVERIFY(alerts.shown.isEmpty());
        QCOMPARE(logLines(), (QStringList{"burn|-noverify|" + m_ctx.audioFolder + "|-drive|1", "list: a.mp3 b song.mp3 "}));
        QCOMPARE(sheets.outline().last(), QStringLiteral("operationComplete"));
        QVERIFY(names(m_ctx.audioFolder).isEmpty());
        QCOMPARE(names(m_ctx.videoFolder), QStringList{QStringLiteral("keep.mpg")});
        QCOMPARE(burn.audioKind(), 2);
    }

    void videoDiscs_data()
    {
        QTest::addColumn<int>("op");
        QTest::addColumn<QString>("family");
        QTest::newRow("video DVD") << int(BurnOperation::VideoDVD) << "DVD";
        QTest::newRow("video Blu-ray") << int(BurnOperation::VideoBluray) << "BD";
    }
    void videoDiscs()
    {
        QFETCH(int, op);
        QFETCH(QString, family);
        writeFile(m_ctx.videoFolder + "/left over.mpg", "stale");
        writeFile(m_ctx.audioFolder + "/keep.wav", "stale");
        DrutilRecorder recorder(fake("burn-drutil"));
        FakeAlerts alerts;
        FakeDriveBackend drive(FakeDriveBackend::blank(family));
        MediaBurn burn(recorder, alerts, drive.check());
        SheetLog sheets(&burn);
        MediaBurnContext ctx = m_ctx;
        ctx.videoFormat = QStringLiteral("1");
        ctx.audioFormat = QStringLiteral("0");
        ctx.currentDrive.s_Drive_Number = QStringLiteral("2");
        burn.burn(BurnOperation(op), {mediaFile(m_media.filePath("clip.mov"), 1)}, ctx);
        QVERIFY(sheets.waitEnded(1, 30000));
        QVERIFY2(sheets.endedComplete(), qPrintable(sheets.sheets().join(", ")));
        QVERIFY(alerts.shown.isEmpty());
        QCOMPARE(logLines(), (QStringList{"burn|-noverify|" + m_ctx.videoFolder + "|-drive|2", "list: clip.mpg "}));
        QCOMPARE(sheets.outline(),
                 (QStringList{"showTranscoding", "overallRange 1", "overall 0", "fileRange 1", "file 0", "file 100", "overall 1",
                              "closeTranscoding", "showPerformingOperation", "closePerformingOperation", "operationComplete"}));
        QVERIFY(names(m_ctx.videoFolder).isEmpty());
        QCOMPARE(names(m_ctx.audioFolder), QStringList{QStringLiteral("keep.wav")});
        QCOMPARE(burn.audioKind(), 0);
    }

    void refusals_data()
    {
        QTest::addColumn<int>("op");
        QTest::addColumn<bool>("emptyList");
        QTest::addColumn<bool>("noDisc");
        QTest::addColumn<QString>("family");
        QTest::addColumn<QStringList>("texts");
        const QString cdText = QStringLiteral("The media on the drive is not a CD. insert a writable CD on the drive and try again.");
        const QString dvdText = QStringLiteral("The media on the drive is not a DVD. insert a writable DVD on the drive and try again.");
        const QString bdText =
            QStringLiteral("The media on the drive is not a Blu-ray. insert a writable Blu-ray on the drive and try again.");
        QTest::newRow("empty audio list, no disc")
            << int(BurnOperation::AudioCD) << true << true << "CD"
            << QStringList{"No audio files on the list / There are no audio files on the list. Add audio files to the list and try again."};
        QTest::newRow("empty video list")
            << int(BurnOperation::VideoBluray) << true << false << "BD"
            << QStringList{"No video files on the list / There are no video files on the list. Add video files to the list and try again."};
        QTest::newRow("no disc") << int(BurnOperation::VideoDVD) << false << true << "DVD"
                                 << QStringList{"No disc / There is no disc on the drive. insert a writable media on the drive and try again."};
        QTest::newRow("DVD for audio CD") << int(BurnOperation::AudioCD) << false << false << "DVD"
                                          << QStringList{"Media not CD / " + cdText, "DVD / Warning 0060."};
        QTest::newRow("CD for MP3 DVD") << int(BurnOperation::MP3DVD) << false << false << "CD"
                                        << QStringList{"Media not DVD / " + dvdText, "CD / Warning 0010."};
        QTest::newRow("DVD for MP3 CD") << int(BurnOperation::MP3CD) << false << false << "DVD"
                                        << QStringList{"Media not CD / " + cdText, "DVD / Warning 0050."};
        QTest::newRow("BD for MP3 CD") << int(BurnOperation::MP3CD) << false << false << "BD"
                                       << QStringList{"Media not CD / " + cdText, "BD / Warning 0050."};
        QTest::newRow("BD for MP3 DVD") << int(BurnOperation::MP3DVD) << false << false << "BD"
                                        << QStringList{"Media not DVD / " + dvdText, "BD / Warning 0010."};
        QTest::newRow("DVD for video BD") << int(BurnOperation::VideoBluray) << false << false << "DVD"
                                          << QStringList{"Media not Blu-ray / " + bdText, "DVD / Warning 0090."};
        QTest::newRow("BD for video DVD") << int(BurnOperation::VideoDVD) << false << false << "BD"
                                          << QStringList{"Media not DVD / " + dvdText, "BD / Warning 0000."};
    }
    void refusals()
    {
        QFETCH(int, op);
        QFETCH(bool, emptyList);
        QFETCH(bool, noDisc);
        QFETCH(QString, family);
        QFETCH(QStringList, texts);
        writeFile(m_ctx.audioFolder + "/keep.wav", "stale");
        writeFile(m_ctx.videoFolder + "/keep.mpg", "stale");
        DrutilRecorder recorder(fake("burn-drutil"));
        FakeAlerts alerts;
        FakeDriveBackend drive(noDisc ? FakeDriveBackend::noDisc() : FakeDriveBackend::blank(family));
        MediaBurn burn(recorder, alerts, drive.check());
        SheetLog sheets(&burn);
        MediaBurnContext ctx = m_ctx;
        ctx.debugMode = true;
        const QList<NodeMediaFile> list = emptyList ? QList<NodeMediaFile>{}
                                                    : QList<NodeMediaFile>{mediaFile(m_media.filePath("a.flac"), 1)};
        burn.burn(BurnOperation(op), list, ctx);
        QCOMPARE(sheets.endedCount, 1);
        QVERIFY(sheets.endedRefused());
        QVERIFY(!burn.isBusy());
        QCOMPARE(alerts.texts(), texts);
        if (emptyList)
            QVERIFY(drive.calls.isEmpty());
        QTest::qWait(300);
        QVERIFY(sheets.outline().isEmpty());
        QCOMPARE(sheets.completions(), 0);
        QCOMPARE(ToolRun::running().size(), 0);
        QVERIFY(!QFile::exists(m_log));
        QCOMPARE(names(m_ctx.audioFolder), QStringList{QStringLiteral("keep.wav")});
        QCOMPARE(names(m_ctx.videoFolder), QStringList{QStringLiteral("keep.mpg")});

        // Out of debug mode the second alert is not shown.
        FakeAlerts quiet;
        FakeDriveBackend again(noDisc ? FakeDriveBackend::noDisc() : FakeDriveBackend::blank(family));
        MediaBurn burn2(recorder, quiet, again.check());
        burn2.burn(BurnOperation(op), list, m_ctx);
        QCOMPARE(quiet.texts(), texts.mid(0, 1));
    }

    void failedRecordingEndsInTheFailureSheet()
    {
        DrutilRecorder recorder(fake("burn-drutil"));
        qputenv("TAMBLO_FAKE_BURN_EXIT", "1");
        qputenv("TAMBLO_FAKE_BURN_SAY", "Burn failed: Medium write error (0x80020022).");
        FakeAlerts alerts;
        FakeDriveBackend drive(FakeDriveBackend::blank(QStringLiteral("CD")));
        MediaBurn burn(recorder, alerts, drive.check());
        SheetLog sheets(&burn);
        burn.burn(BurnOperation::AudioCD, {mediaFile(m_media.filePath("a.flac"), 1)}, m_ctx);
        QVERIFY(sheets.waitEnded(1, 30000));
        QVERIFY2(sheets.endedFailed(), qPrintable(sheets.sheets().join(", ")));
        qunsetenv("TAMBLO_FAKE_BURN_EXIT");
        qunsetenv("TAMBLO_FAKE_BURN_SAY");
        QCOMPARE(sheets.completions(), 0);
        QCOMPARE(sheets.outline().mid(sheets.outline().size() - 3),
                 (QStringList{"showPerformingOperation", "closePerformingOperation", "operationFailed"}));
        QCOMPARE(sheets.failure().message, QStringLiteral("The disc could not be written."));
        QCOMPARE(sheets.failure().informative, QStringLiteral("Burn failed: Medium write error (0x80020022)."));
        QVERIFY(sheets.failure().details.contains("exit code 1"));
        QVERIFY(alerts.shown.isEmpty());
        QVERIFY(names(m_ctx.audioFolder).isEmpty());
        QVERIFY(!burn.isBusy());
    }

    void aMissingRecorderIsNamedWithItsInstallHint()
    {
        DrutilRecorder recorder(QStringLiteral("/nonexistent/drutil"));
        FakeAlerts alerts;
        FakeDriveBackend drive(FakeDriveBackend::blank(QStringLiteral("CD")));
        MediaBurn burn(recorder, alerts, drive.check());
        SheetLog sheets(&burn);
        burn.burn(BurnOperation::AudioCD, {mediaFile(m_media.filePath("a.flac"), 1)}, m_ctx);
        QVERIFY(sheets.waitEnded(1, 30000));
        QVERIFY2(sheets.endedFailed(), qPrintable(sheets.sheets().join(", ")));
        QCOMPARE(alerts.shown.size(), 1);
        QCOMPARE(alerts.shown.first().messageText, QStringLiteral("drutil could not be started."));
        QVERIFY(!sheets.outline().contains(QStringLiteral("operationComplete")));
        // No sheet is left open.
        QCOMPARE(sheets.outline().mid(sheets.outline().size() - 2), (QStringList{"showPerformingOperation", "closePerformingOperation"}));
        QVERIFY(names(m_ctx.audioFolder).isEmpty());
    }

    void failedTranscodeStopsTheBurnBeforeRecording()
    {
        DrutilRecorder recorder(fake("burn-drutil"));
        FakeAlerts alerts;
        FakeDriveBackend drive(FakeDriveBackend::blank(QStringLiteral("CD")));
        MediaBurn burn(recorder, alerts, drive.check());
        SheetLog sheets(&burn);
        const QString missing = m_media.filePath("missing.mp3");
        burn.burn(BurnOperation::AudioCD, {mediaFile(m_media.filePath("a.flac"), 1), mediaFile(missing, 4)}, m_ctx);
        QVERIFY(sheets.waitEnded(1, 30000));
        QVERIFY2(sheets.endedFailed(), qPrintable(sheets.sheets().join(", ")));
        QTest::qWait(300);
        QCOMPARE(sheets.events.count("toolStarted"), 0);
        QVERIFY(!QFile::exists(m_log));  // the recorder never ran
        QCOMPARE(alerts.shown.size(), 1);
        QCOMPARE(alerts.shown.first().messageText, QStringLiteral("\"missing.mp3\" could not be converted."));
        QVERIFY2(alerts.shown.first().informativeText.contains("No such file or directory"),
                 qPrintable(alerts.shown.first().informativeText));
        QVERIFY(alerts.shown.first().informativeText.contains(missing));
        QVERIFY(!sheets.outline().contains(QStringLiteral("showPerformingOperation")));
        QCOMPARE(sheets.outline().last(), QStringLiteral("closeTranscoding"));
        // The first file's WAV was made, and is gone with the rest.
        QVERIFY(names(m_ctx.audioFolder).isEmpty());
        QVERIFY(!burn.isBusy());
    }

    void aSecondBurnWhileBusyIsIgnored()
    {
        DrutilRecorder recorder(fake("burn-drutil"));
        FakeAlerts alerts;
        FakeDriveBackend drive(FakeDriveBackend::blank(QStringLiteral("CD")));
        MediaBurn burn(recorder, alerts, drive.check());
        SheetLog sheets(&burn);
        burn.burn(BurnOperation::AudioCD, {mediaFile(m_media.filePath("a.flac"), 1)}, m_ctx);
        burn.burn(BurnOperation::VideoDVD, {mediaFile(m_media.filePath("clip.mov"), 1)}, m_ctx);
        QVERIFY(sheets.waitEnded(1, 30000));
        QVERIFY2(sheets.endedComplete(), qPrintable(sheets.sheets().join(", ")));
        QTest::qWait(300);
        QCOMPARE(sheets.completions(), 1);
        QCOMPARE(drive.calls.count(QStringLiteral("IsDriveEmpty")), 1);
        QCOMPARE(sheets.outline().count(QStringLiteral("showTranscoding")), 1);
        QCOMPARE(logLines().size(), 2);
    }

    void theWorkingSheetReadsTheRecordersReports()
    {
        // cdrskin's reports of a 50 MB track, 48 bytes at a time: the sheet
        // spins until the first one, then shows each as it comes.
        qputenv("TAMBLO_FAKE_PAUSE", "0.02");
        const QStringList seen = workingSheetWhileRecording(QStringLiteral("cdrskin-v-stdio-50mb-throttled-speed4-sync1m.stdout.txt"));
        qunsetenv("TAMBLO_FAKE_PAUSE");
        QVERIFY2(seen.size() == 52, qPrintable(seen.join(QLatin1Char('\n'))));
        QCOMPARE(seen.first(), QStringLiteral("busy | - | - | - | -"));
        QCOMPARE(seen.at(1), QStringLiteral("bar 2 of 100 | 2% | 1 MB of 50 MB written | Speed: 36.3x | Estimating the time left…"));
        QVERIFY(seen.at(2).startsWith(QStringLiteral("bar 4 of 100 | 4% | 2 MB of 50 MB written | Speed: 4.2x | ")));
        const QRegularExpression timeLeft(QStringLiteral(
            " \\| (Estimating the time left…|About \\d+ seconds? left|About \\d+ minutes? left)$"));
        for (int mb = 1; mb < 50; ++mb) {
            const QString line = seen.at(mb);
            QVERIFY2(line.startsWith(QStringLiteral("bar %1 of 100 | %1% | %2 MB of 50 MB written | Speed: ").arg(mb * 2).arg(mb)),
                     qPrintable(line));
            QVERIFY2(timeLeft.match(line).hasMatch(), qPrintable(line));
        }
        QCOMPARE(seen.at(50), QStringLiteral("bar 100 of 100 | 100% | 50 MB of 50 MB written | Speed: 4.2x | Finishing…"));
        QCOMPARE(seen.last(), QStringLiteral("end: ") + seen.at(50));
    }

    void aRecorderThatReportsNothingLeavesTheSheetBusy()
    {
        QCOMPARE(workingSheetWhileRecording(QStringLiteral("xorriso-blank-fast-stdio-written.txt")),
                 (QStringList{"busy | - | - | - | -", "end: busy | - | - | - | -"}));
    }

    void theTwoBarWindow()
    {
        // The upper bar's maximum is the file's seconds while it is fed the
        // percentage: a 2 s file ends at 100 on a bar of maximum 2.
        DrutilRecorder recorder(fake("burn-drutil"));
        SheetWindows sheets;
        FakeAlerts alerts;
        FakeDriveBackend drive(FakeDriveBackend::blank(QStringLiteral("CD")));
        MediaBurn burn(recorder, alerts, drive.check());
        sheets.follow(&burn);
        SheetLog log(&burn);
        bool progressShownDuringTranscode = false;
        QTimer poll;
        connect(&poll, &QTimer::timeout, this, [&] {
            if (sheets.windowProgress && sheets.windowProgress->isVisible())
                progressShownDuringTranscode = true;
        });
        poll.start(10);
        burn.burn(BurnOperation::AudioCD, audioList(), m_ctx);
        QVERIFY(log.waitEnded(1, 30000));
        QVERIFY2(log.endedComplete(), qPrintable(log.sheets().join(", ")));
        QVERIFY(progressShownDuringTranscode);
        // The first file is on the upper bar until it ends; the file that
        // ends last ends at 100.
        QCOMPARE(sheets.fileBarAtEachFileEnd.size(), 2);
        QCOMPARE(sheets.fileBarAtEachFileEnd.first().first, 2.0);
        QCOMPARE(sheets.fileBarAtEachFileEnd.last().second, 100.0);
        QVERIFY(sheets.windowProgress.isNull());
        QVERIFY(sheets.windowPerformingOperation.isNull());
        QVERIFY(sheets.windowOperationCompleted);
        QVERIFY(sheets.windowOperationCompleted->isVisible());
    }
};

TAMBLO_TEST_MAIN(TestBurnMediaBurn)
#include "tst_burn_media_burn.moc"
