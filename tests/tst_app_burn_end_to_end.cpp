// Whole burns driven from the main window's Burn button, through the
// application controller, down to the tools: real ffmpeg and xorriso writing
// into a pseudo-drive (a file) on Linux, and the stand-in drutil on the macOS
// path. The status sheets are watched through the controller's outlets and
// the disc is read back afterwards.
#include <QAccessible>
#include <QAction>
#include <QDir>
#include <QMenu>
#include <QPointer>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <memory>

#include "platform/AppSettings.h"
#include "app/ui/AppContext.h"
#include "app/ui/AppDelegate.h"
#include "app/ui/MainWindow.h"
#include "burn/MediaBurn.h"
#include "compilation/CompilationActions.h"
#include "compilation/DataFolderModel.h"
#include "compilation/MediaListModel.h"
#include "images/DataBurnFlow.h"
#include "images/ImageBurnFlow.h"
#include "support/DiscImages.h"
#include "support/FileSizeLimit.h"
#include "support/ScopedEnv.h"
#include "support/Tools.h"
#include "support/AppHarness.h"
#include "support/FakeAlerts.h"
#include "support/FakeDriveBackend.h"
#include "support/FakeFilePicker.h"
#include "support/Files.h"
#include "support/TestMain.h"
#include "support/SheetChecks.h"
#include "drives/XorrisoBackend.h"
#include "toolrun/ToolRun.h"
#include "toolrun/ui/StatusWindows.h"
#include <QPlainTextEdit>


namespace {

// Watches the controller's four status-sheet outlets and notes, in order,
// each sheet that appears ("two-bar", "working", "complete", "single-bar")
// and each that goes ("-two-bar" ...). It looks on every turn of the event
// loop; every sheet of a burn lives across at least one turn (a tool runs
// while it is up).
class SheetWatch : public QObject {
public:
    explicit SheetWatch(AppDelegate *app) : m_app(app)
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(1);
        connect(&m_timer, &QTimer::timeout, this, &SheetWatch::tick);
        m_timer.start();
        tick();
    }

    void tick()
    {
        if (!m_app)
            return;  // the controller was closed while this watch looked on
        const QObject *now[4] = {m_app->windowProgress.data(), m_app->windowPerformingOperation.data(),
                                 m_app->windowOperationCompleted.data(), m_app->windowUniqueProgress.data()};
        static const char *const names[4] = {"two-bar", "working", "complete", "single-bar"};
        // Departures first: a handler that ends one sheet and shows the next
        // in the same turn reads in that order.
        for (int i = 0; i < 4; ++i)
            if (m_seen[i] && now[i] != m_seen[i]) {
                events << QStringLiteral("-") + QLatin1String(names[i]);
                m_seen[i] = nullptr;
            }
        for (int i = 0; i < 4; ++i)
            if (now[i] && !m_seen[i]) {
                events << QLatin1String(names[i]);
                m_seen[i] = now[i];
                if (!static_cast<const QWidget *>(now[i])->isVisible())
                    notShown << QLatin1String(names[i]);
            }
    }

    QStringList events;
    QStringList notShown;  // sheets that were in their outlet but not on screen

private:
    QPointer<AppDelegate> m_app;
    QTimer m_timer;
    const QObject *m_seen[4] = {nullptr, nullptr, nullptr, nullptr};
};

// One controller on its own Documents, settings file and pseudo-drive, all
// inside the test's temporary HOME.
struct Rig : AppHarness<> {
    QString disc = root.filePath(QStringLiteral("disc.iso"));
    QString device = QStringLiteral("stdio:") + disc;

    Rig() : AppHarness(QString(), TestEnv::home() + QStringLiteral("/e2e-XXXXXX"))
    {
        listingWaitMs = 10000;
    }
    ~Rig()
    {
        app.reset();
        makeWritable(root.path());
    }

    QString audioFolder() const { return documents + QStringLiteral("/TambloAudio"); }
    QString videoFolder() const { return documents + QStringLiteral("/TambloVideo"); }
    QString dataFolder() const { return documents + QStringLiteral("/TambloData"); }

    // Everything the operation logs wrote, newest file last.
    QString logText() const
    {
        QString all;
        QDir dir(logsDir());
        for (const QString &f : dir.entryList({QStringLiteral("*.log")}, QDir::Files, QDir::Name))
            all += readText(dir.filePath(f));
        return all;
    }

    // Starts the controller on `tools` and waits for the drive listing and
    // the window. Without the fake drive the controller uses `backend`, or
    // builds its own from the tools (drutil with `tools.backend` MacOS).
    bool start(const ToolPaths &tools, bool withFakeDrive)
    {
        tune = [this, tools, withFakeDrive](AppContext &c) {
            // One drive whose device is a file: the Linux recorders write
            // their session into that file.
            drive->drives = {opticalDrive(QStringLiteral("1"), QStringLiteral("E2E"),
                                                     QStringLiteral("Pseudo drive"), device)};
            c.tools = tools;
            if (!withFakeDrive)
                c.driveBackend = backend;
        };
        return AppHarness::start() && QTest::qWaitForWindowExposed(window());
    }
};

} // namespace

class TestAppBurnEndToEnd : public QObject {
    Q_OBJECT

    ToolPaths m_tools;  // the Linux tools on PATH
    QTemporaryDir m_media;
    QString m_mp3, m_wav, m_mp4;

    // Clicks Burn and waits for the completion sheet.
    static bool burnAndWaitForComplete(Rig &rig, SheetWatch &watch, int timeoutMs = 60000)
    {
        QTest::mouseClick(rig.window()->btnBurn, Qt::LeftButton);
        QElapsedTimer t;
        t.start();
        while (!rig.app->windowOperationCompleted && t.elapsed() < timeoutMs)
            QTest::qWait(10);
        watch.tick();
        return !rig.app->windowOperationCompleted.isNull();
    }

    // The last sheet of a burn; discs are read back after writing unless the
    // setting is off, and audio CDs never are.
    static void closeCompleteSheet(Rig &rig,
                                   const QString &message = QStringLiteral("The disc was written and verified."))
    {
        QVERIFY(rig.app->windowOperationCompleted);
        QVERIFY(rig.app->windowOperationCompleted->isVisible());
        QCOMPARE(rig.app->windowOperationCompleted->labelMessage->text(), message);
        QTest::mouseClick(rig.app->windowOperationCompleted->btnOK, Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(!rig.app->windowOperationCompleted, 5000);
    }

private slots:
    void initTestCase()
    {
        m_tools = linuxToolsOnPath();
        if (m_tools.ffmpeg.isEmpty() || ffprobePath().isEmpty())
            QFAIL("ffmpeg and ffprobe must be installed (on PATH) for the end-to-end burns");
        if (m_tools.xorriso.isEmpty() || m_tools.cdrskin.isEmpty())
            QFAIL("xorriso and cdrskin must be installed (on PATH) for the end-to-end burns");
        QVERIFY(m_media.isValid());

        m_mp3 = m_media.filePath("tone one.mp3");
        m_wav = m_media.filePath("tone two.wav");
        m_mp4 = m_media.filePath("clip.mp4");
        QVERIFY(makeMedia({"-f", "lavfi", "-i", "sine=frequency=440:duration=2", m_mp3}));
        QVERIFY(makeMedia({"-f", "lavfi", "-i", "sine=frequency=660:duration=3", m_wav}));
        QVERIFY(makeMedia({"-f", "lavfi", "-i", "testsrc=duration=2:size=320x240:rate=25", "-f", "lavfi", "-i",
                      "sine=frequency=550:duration=2", "-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt",
                      "yuv420p", "-c:a", "aac", "-shortest", m_mp4}));
    }

    // MP3 CD on Linux: two files measured through the Add Files button, the
    // kind button, Burn; two-bar, working and complete sheets in that order;
    // the pseudo-drive then holds both MP3s at its root.
    void linuxMp3CdFromTheBurnButton()
    {
        Rig rig;
        QVERIFY(rig.start(m_tools, true));
        rig.drive->status = FakeDriveBackend::blank(QStringLiteral("CD"));
        MainWindow *w = rig.window();
        QCOMPARE(rig.drive->count("list"), 1);
        QCOMPARE(rig.app->currentDrive().s_Device_Path, rig.device);
        QCOMPARE(w->tabviewMain->currentIndex(), 0);

        QVERIFY(rig.addFiles(w->toolbar_btn_Audio_Add_Files, {m_mp3, m_wav}));
        QCOMPARE(rig.app->arrayMediaFiles->at(0).s_File_Path, m_mp3);
        QCOMPARE(rig.app->arrayMediaFiles->at(1).s_File_Path, m_wav);
        QCOMPARE(rig.app->arrayMediaFiles->at(0).i_Duration_in_Seconds, qint64(2));
        QCOMPARE(rig.app->arrayMediaFiles->at(1).i_Duration_in_Seconds, qint64(3));

        QVERIFY(w->btnMP3CD->isVisible());
        QTest::mouseClick(w->btnMP3CD, Qt::LeftButton);
        QCOMPARE(w->btnBurn->text(), QStringLiteral("Burn MP3 CD"));
        QCOMPARE(rig.app->arrayMediaFiles->count(), 2);  // choosing the kind keeps the list

        QList<ToolCommand> recordings;
        connect(rig.app->mediaBurn(), &Operation::toolStarted, this,
                [&](const QString &program, const QStringList &arguments) { recordings << ToolCommand{program, arguments}; });
        SheetWatch watch(rig.app.get());
        QVERIFY2(burnAndWaitForComplete(rig, watch), qPrintable(watch.events.join(", ")));

        QCOMPARE(watch.events, (QStringList{"two-bar", "-two-bar", "working", "-working", "complete"}));
        QVERIFY2(watch.notShown.isEmpty(), qPrintable(watch.notShown.join(", ")));
        QVERIFY2(rig.alerts.shown.isEmpty(), qPrintable(rig.alerts.texts().join("\n")));
        QCOMPARE(rig.drive->count("status"), 3);  // empty?, writable?, which family?
        QCOMPARE(recordings.size(), 1);
        QCOMPARE(recordings.first().program, m_tools.xorriso);
        QCOMPARE(recordings.first().arguments,
                 (QStringList{"-pacifier", "interval=0.2", "-md5", "on", "-dev", rig.device, "-joliet", "on", "-volid", "TambloAudio", "-map", rig.audioFolder(), "/", "-commit"}));
        QVERIFY(!rig.app->mediaBurn()->isBusy());

        // The working folder is emptied after the recording, but kept.
        QVERIFY(QFileInfo(rig.audioFolder()).isDir());
        QCOMPARE(entries(rig.audioFolder()), QStringList());

        // The disc: both files, renamed to .mp3, at the root.
        QVERIFY2(QFileInfo(rig.disc).size() > 0, qPrintable(rig.disc));
        QCOMPARE(filesOn(rig.disc), (QStringList{"'/tone one.mp3'", "'/tone two.mp3'"}));
        QCOMPARE(volumeId(rig.disc), QStringLiteral("TambloAudio"));
        const QString out = rig.root.filePath("readback");
        QString log;
        QVERIFY2(extract(rig.disc, out, &log), qPrintable(log));
        for (const QString &name : {QStringLiteral("tone one.mp3"), QStringLiteral("tone two.mp3")}) {
            const QJsonObject a = firstStream(out + "/" + name, "audio");
            QVERIFY2(!a.isEmpty(), qPrintable(name));
            QCOMPARE(a.value("codec_name").toString(), QStringLiteral("mp3"));
            QCOMPARE(a.value("bit_rate").toString(), QStringLiteral("192000"));
            QCOMPARE(a.value("sample_rate").toString(), QStringLiteral("44100"));
            QCOMPARE(a.value("channels").toInt(), 2);
        }

        closeCompleteSheet(rig);
        QVERIFY(rig.exits.isEmpty());
    }

    // Video DVD on Linux with the first-run settings (NTSC, AC-3).
    void linuxVideoDvdFromTheBurnButton()
    {
        Rig rig;
        QVERIFY(rig.start(m_tools, true));
        rig.drive->status = FakeDriveBackend::blank(QStringLiteral("DVD"));
        MainWindow *w = rig.window();
        QCOMPARE(rig.app->s_Video_Output_Format, QStringLiteral("0"));
        QCOMPARE(rig.app->s_Audio_Output_Format, QStringLiteral("0"));
        QCOMPARE(rig.settings->value(SettingsKeys::VideoFormat).toString(), QStringLiteral("0"));
        QCOMPARE(rig.settings->value(SettingsKeys::AudioFormat).toString(), QStringLiteral("0"));

        w->tabviewMain->setCurrentIndex(1);
        QCOMPARE(w->selectedTabIdentifier(), QStringLiteral("2"));
        QCOMPARE(w->btnBurn->text(), QStringLiteral("Burn Video DVD"));
        QVERIFY(rig.addFiles(w->toolbar_btn_Video_Add_Files, {m_mp4}));
        QCOMPARE(rig.app->arrayMediaFiles->at(0).i_Duration_in_Seconds, qint64(2));
        QVERIFY(w->btnVideoDVD->isVisible());
        QTest::mouseClick(w->btnVideoDVD, Qt::LeftButton);
        QCOMPARE(w->btnBurn->text(), QStringLiteral("Burn Video DVD"));

        QList<ToolCommand> recordings;
        connect(rig.app->mediaBurn(), &Operation::toolStarted, this,
                [&](const QString &program, const QStringList &arguments) { recordings << ToolCommand{program, arguments}; });
        SheetWatch watch(rig.app.get());
        QVERIFY2(burnAndWaitForComplete(rig, watch), qPrintable(watch.events.join(", ")));

        QCOMPARE(watch.events, (QStringList{"two-bar", "-two-bar", "working", "-working", "complete"}));
        QVERIFY2(watch.notShown.isEmpty(), qPrintable(watch.notShown.join(", ")));
        QVERIFY2(rig.alerts.shown.isEmpty(), qPrintable(rig.alerts.texts().join("\n")));
        QCOMPARE(recordings.size(), 1);
        QCOMPARE(recordings.first().arguments,
                 (QStringList{"-pacifier", "interval=0.2", "-md5", "on", "-dev", rig.device, "-joliet", "on", "-volid", "TambloVideo", "-map", rig.videoFolder(), "/", "-commit"}));
        QVERIFY(QFileInfo(rig.videoFolder()).isDir());
        QCOMPARE(entries(rig.videoFolder()), QStringList());

        QCOMPARE(filesOn(rig.disc), QStringList{"'/clip.mpg'"});
        const QString out = rig.root.filePath("readback");
        QString log;
        QVERIFY2(extract(rig.disc, out, &log), qPrintable(log));
        const QJsonObject v = firstStream(out + "/clip.mpg", "video");
        const QJsonObject a = firstStream(out + "/clip.mpg", "audio");
        QCOMPARE(v.value("codec_name").toString(), QStringLiteral("mpeg2video"));
        QCOMPARE(v.value("width").toInt(), 720);
        QCOMPARE(v.value("height").toInt(), 480);
        QCOMPARE(a.value("codec_name").toString(), QStringLiteral("ac3"));
        QCOMPARE(a.value("sample_rate").toString(), QStringLiteral("48000"));

        closeCompleteSheet(rig);
    }

    // An empty audio list is refused before the drive is asked anything.
    void emptyAudioListIsRefusedBeforeTheDriveIsAsked()
    {
        Rig rig;
        QVERIFY(rig.start(m_tools, true));
        rig.drive->status = FakeDriveBackend::blank(QStringLiteral("CD"));
        MainWindow *w = rig.window();
        writeFile(rig.audioFolder() + "/left-over.wav", "mine");
        QCOMPARE(w->btnBurn->text(), QStringLiteral("Burn Audio CD"));
        QCOMPARE(rig.app->arrayMediaFiles->count(), 0);

        SheetWatch watch(rig.app.get());
        QTest::mouseClick(w->btnBurn, Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(rig.alerts.shown.size(), 1, 5000);
        QTest::qWait(300);  // nothing else may follow
        watch.tick();
        QCOMPARE(rig.alerts.texts(), QStringList{"No audio files on the list / There are no audio files on the list. "
                                                 "Add audio files to the list and try again."});
        QCOMPARE(rig.alerts.shown.first().buttons, QStringList{"Close"});
        QCOMPARE(rig.drive->count("status"), 0);
        QCOMPARE(watch.events, QStringList());
        QVERIFY(!rig.app->mediaBurn()->isBusy());
        QVERIFY(QFileInfo::exists(rig.audioFolder() + "/left-over.wav"));
        QVERIFY(!QFileInfo::exists(rig.disc));
    }

    // A DVD in the drive refuses an audio CD; in debug mode a second alert
    // names the medium read and the burn's warning code.
    void dvdInTheDriveRefusesAnAudioCd()
    {
        Rig rig;
        QVERIFY(rig.start(m_tools, true));
        rig.drive->status = FakeDriveBackend::blank(QStringLiteral("DVD"));
        MainWindow *w = rig.window();
        QVERIFY(rig.addFiles(w->toolbar_btn_Audio_Add_Files, {m_mp3}));
        QTest::mouseClick(w->btnAudioCD, Qt::LeftButton);
        QCOMPARE(w->btnBurn->text(), QStringLiteral("Burn Audio CD"));
        const QString notCd = QStringLiteral(
            "Media not CD / The media on the drive is not a CD. insert a writable CD on the drive and try again.");

        SheetWatch watch(rig.app.get());
        QTest::mouseClick(w->btnBurn, Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(rig.alerts.shown.size(), 1, 5000);
        QTRY_VERIFY_WITH_TIMEOUT(!rig.app->mediaBurn()->isBusy(), 5000);
        QCOMPARE(rig.alerts.texts(), QStringList{notCd});
        QCOMPARE(rig.alerts.shown.first().buttons, QStringList{"Close"});
        QCOMPARE(rig.drive->count("status"), 3);  // empty?, writable?, which family?

        QVERIFY(!rig.app->m_b_Debug_Mode);
        rig.app->OnMenuDebugMode();
        QVERIFY(rig.app->m_b_Debug_Mode);
        QVERIFY(w->menuitemDebugMode->isChecked());
        QTest::mouseClick(w->btnBurn, Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(rig.alerts.shown.size(), 3, 5000);
        QTRY_VERIFY_WITH_TIMEOUT(!rig.app->mediaBurn()->isBusy(), 5000);
        QTest::qWait(300);  // nothing else may follow
        watch.tick();
        QCOMPARE(rig.alerts.texts(), (QStringList{notCd, notCd, "DVD / Warning 0060."}));
        QCOMPARE(rig.alerts.shown.at(2).messageText, QStringLiteral("DVD"));
        QCOMPARE(rig.alerts.shown.at(2).informativeText, QStringLiteral("Warning 0060."));
        QCOMPARE(rig.alerts.shown.at(2).buttons, QStringList{"Close"});
        QCOMPARE(rig.drive->count("status"), 6);
        QCOMPARE(watch.events, QStringList());
        QVERIFY(!QFileInfo::exists(rig.disc));
        QCOMPARE(rig.app->arrayMediaFiles->count(), 1);
    }

    // The Data tab with nothing on its list.
    void emptyDataListIsRefused()
    {
        Rig rig;
        QVERIFY(rig.start(m_tools, true));
        rig.drive->status = FakeDriveBackend::blank(QStringLiteral("CD"));
        MainWindow *w = rig.window();
        w->tabviewMain->setCurrentIndex(2);
        QCOMPARE(w->selectedTabIdentifier(), QStringLiteral("3"));
        QCOMPARE(w->btnBurn->text(), QStringLiteral("Burn Data CD"));

        SheetWatch watch(rig.app.get());
        QTest::mouseClick(w->btnBurn, Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(rig.alerts.shown.size(), 1, 5000);
        QTest::qWait(300);
        watch.tick();
        QCOMPARE(rig.alerts.texts(), QStringList{"No folders on the list / There are no folders on the list. "
                                                 "Add folders to the list and try again."});
        QCOMPARE(rig.alerts.shown.first().buttons, QStringList{"Close"});
        QCOMPARE(rig.drive->count("status"), 0);
        QCOMPARE(watch.events, QStringList());
        QVERIFY(!QFileInfo::exists(rig.disc));
    }

    // Data CD on Linux: two folders both called Photos; the second goes under
    // "Photos 1". Read back byte for byte.
    void linuxDataCdWithTwoFoldersCalledPhotos()
    {
        Rig rig;
        QVERIFY(rig.start(m_tools, true));
        rig.drive->status = FakeDriveBackend::blank(QStringLiteral("CD"));
        MainWindow *w = rig.window();

        const QString a = rig.root.filePath("sources/first place/Photos");
        const QString b = rig.root.filePath("sources/second/Photos");
        writeFile(a + "/beach day.jpg", pseudoRandom(200000, 1));
        writeFile(a + "/Ünïcødé 写真 ñ.txt", "unicode name\n");
        writeFile(a + "/2024/summer/sea.jpg", pseudoRandom(70000, 2));
        writeFile(b + "/beach day.jpg", pseudoRandom(150000, 3));  // same name, other bytes
        writeFile(b + "/notes.txt", "second folder\n");
        writeFile(rig.dataFolder() + "/stale.bin", "old");

        w->tabviewMain->setCurrentIndex(2);
        QCOMPARE(w->selectedTabIdentifier(), QStringLiteral("3"));
        QVERIFY(rig.addDataFolder(a));
        QVERIFY(rig.addDataFolder(b));
        QCOMPARE(rig.app->arrayDataFolders->at(0).s_Path, a);
        QCOMPARE(rig.app->arrayDataFolders->at(1).s_Path, b);
        QVERIFY(rig.app->arrayDataFolders->at(0).i_Size_in_KBytes > 0);
        QVERIFY(w->btnDataCD->isVisible());
        QTest::mouseClick(w->btnDataCD, Qt::LeftButton);
        QCOMPARE(w->btnBurn->text(), QStringLiteral("Burn Data CD"));

        QStringList dataFolderDuringBurn{"unset"};
        SheetWatch watch(rig.app.get());
        connect(rig.app->dataBurn(), &Operation::sheetShown, this, [&](OperationSheet sheet) {
            if (sheet == OperationSheet::Working)
                dataFolderDuringBurn = entries(rig.dataFolder());
        });
        QVERIFY2(burnAndWaitForComplete(rig, watch), qPrintable(watch.events.join(", ")));

        QCOMPARE(watch.events, (QStringList{"working", "-working", "complete"}));
        QVERIFY2(watch.notShown.isEmpty(), qPrintable(watch.notShown.join(", ")));
        QVERIFY2(rig.alerts.shown.isEmpty(), qPrintable(rig.alerts.texts().join("\n")));
        QCOMPARE(rig.drive->count("status"), 3);
        QCOMPARE(dataFolderDuringBurn, QStringList());  // emptied before the burn ...
        QVERIFY(QFileInfo(rig.dataFolder()).isDir());
        QCOMPARE(entries(rig.dataFolder()), QStringList());  // ... and after

        const QString out = rig.root.filePath("readback");
        QString log;
        QVERIFY2(extract(rig.disc, out, &log), qPrintable(log));
        QMap<QString, QString> expected = under("Photos", tree(a));
        expected.insert(under("Photos 1/Photos", tree(b)));
        expected.insert("Photos 1", "dir");
        const QMap<QString, QString> got = tree(out);
        QCOMPARE(got.keys(), expected.keys());
        QCOMPARE(got, expected);
        QVERIFY(got.contains("Photos/Ünïcødé 写真 ñ.txt"));
        QVERIFY(jolietHolds(rig.disc, QStringLiteral("Ünïcødé 写真 ñ.txt")));  // Windows sees it too
        QVERIFY(got.contains("Photos 1/Photos/beach day.jpg"));
        QVERIFY(got.value("Photos/beach day.jpg") != got.value("Photos 1/Photos/beach day.jpg"));
        QCOMPARE(volumeId(rig.disc), QStringLiteral("TambloData"));
        // The sources stay where they were.
        QVERIFY(QFileInfo::exists(a + "/Ünïcødé 写真 ñ.txt"));
        QVERIFY(QFileInfo::exists(b + "/notes.txt"));

        closeCompleteSheet(rig);
    }

    // A data DVD written by xorriso held to 4x DVD speed: the working sheet
    // spins until xorriso's first report, then its bar and lines follow the
    // write, from below 100 % up to 100 % with the MB written of the total.
    void linuxDataBurnShowsTheWriteAsItGoes()
    {
        Rig rig;
        ToolPaths tools = m_tools;
        tools.xorriso = fake("xorriso-slow");
        QVERIFY(rig.start(tools, true));
        rig.drive->status = FakeDriveBackend::blank(QStringLiteral("DVD"));
        MainWindow *w = rig.window();
        const QString folder = rig.root.filePath("sources/Big");
        writeFile(folder + "/a.bin", pseudoRandom(16 * 1024 * 1024, 11));
        w->tabviewMain->setCurrentIndex(2);
        QVERIFY(rig.addDataFolder(folder));
        QTest::mouseClick(w->btnDataDVD, Qt::LeftButton);
        QCOMPARE(w->btnBurn->text(), QStringLiteral("Burn Data DVD"));

        // The sheet as it appears, then after each report; one picture of it
        // half way.
        QStringList seen;
        QString picture;
        connect(rig.app->dataBurn(), &Operation::sheetShown, this, [&](OperationSheet shown) {
            if (shown != OperationSheet::Working)
                return;
            Window_Performing_Operation *sheet = rig.app->windowPerformingOperation;
            QVERIFY(sheet);
            seen << workingSheetNow(sheet);
            connect(sheet, &Window_Performing_Operation::readoutChanged, this, [&, sheet] {
                seen << workingSheetNow(sheet);
                const double v = sheet->pgAnimation->doubleValue();
                if (picture.isEmpty() && v >= 30.0 && v < 90.0 && !sheet->labelSpeed->isHidden()) {
                    picture = QDir::current().filePath(QStringLiteral("tamblo-working-sheet.png"));
                    if (!sheet->grab().save(picture))
                        picture = QStringLiteral("(not saved)");
                    qInfo("screenshot: %s", qPrintable(picture));
                }
            });
        });
        SheetWatch watch(rig.app.get());
        QVERIFY2(burnAndWaitForComplete(rig, watch, 120000), qPrintable(watch.events.join(", ")));
        QCOMPARE(watch.events, (QStringList{"working", "-working", "complete"}));
        QVERIFY2(rig.alerts.shown.isEmpty(), qPrintable(rig.alerts.texts().join("\n")));

        qInfo().noquote() << seen.join(QLatin1Char('\n'));
        QVERIFY2(seen.size() >= 3, qPrintable(seen.join(QLatin1Char('\n'))));
        QCOMPARE(seen.first(), QStringLiteral("busy | - | - | - | -"));
        // The recorder may report before it knows the size ("0 MB written",
        // the bar at 0); every report after that carries the total.
        static const QRegularExpression shown(QStringLiteral(
            "^bar ([0-9.]+) of 100 \\| (\\d+)% \\| (\\d+) MB(?: of (\\d+) MB)? written \\| (-|Speed: [0-9.]+x|Speed: [0-9.]+ MB/s)"
            " \\| (Estimating the time left…|About \\d+ seconds? left|About \\d+ minutes? left|Finishing…)$"));
        double before = -1.0;
        int firstWithTotal = -1;
        for (int i = 1; i < seen.size(); ++i) {
            const QRegularExpressionMatch m = shown.match(seen.at(i));
            QVERIFY2(m.hasMatch(), qPrintable(seen.at(i)));
            const double value = m.captured(1).toDouble();
            QVERIFY2(value >= before, qPrintable(seen.at(i)));
            QCOMPARE(m.captured(2).toInt(), int(value));
            if (m.captured(4).isEmpty()) {
                QVERIFY2(firstWithTotal < 0, qPrintable(seen.at(i)));
                QCOMPARE(value, 0.0);
            } else if (firstWithTotal < 0) {
                firstWithTotal = i;
            }
            before = value;
        }
        QVERIFY2(firstWithTotal > 0, qPrintable(seen.join(QLatin1Char('\n'))));
        const QRegularExpressionMatch first = shown.match(seen.at(firstWithTotal));
        QVERIFY2(first.captured(1).toDouble() < 100.0, qPrintable(seen.at(firstWithTotal)));
        QVERIFY(first.captured(3).toInt() < first.captured(4).toInt());
        const QRegularExpressionMatch last = shown.match(seen.last());
        QCOMPARE(last.captured(1), QStringLiteral("100"));
        QCOMPARE(last.captured(2), QStringLiteral("100"));
        QCOMPARE(last.captured(3), last.captured(4));  // all of it written
        QVERIFY2(last.captured(4).toInt() >= 16 && last.captured(4).toInt() <= 18, qPrintable(seen.last()));
        QCOMPARE(last.captured(6), QStringLiteral("Finishing…"));
        // A report on the way gave the speed.
        QVERIFY2(seen.join(QLatin1Char('\n')).contains(QStringLiteral("| Speed: ")), qPrintable(seen.join(QLatin1Char('\n'))));
        QVERIFY2(!picture.isEmpty() && QFileInfo(picture).size() > 0, qPrintable(picture));

        QCOMPARE(filesOn(rig.disc), QStringList{"'/Big/a.bin'"});
        closeCompleteSheet(rig);
    }

    // The macOS path with the controller's own drutil backend on the
    // stand-in drutil: list, four status queries (the last for the room),
    // then one audio burn of the working folder holding the transcoded WAV.
    void macAudioCdThroughDrutil()
    {
        Rig rig;
        const QString drutilLog = rig.root.filePath("drutil.log");
        const QString snapshot = rig.root.filePath("handed-to-drutil");
        ScopedEnv env;
        env.set("TAMBLO_FAKE_DRUTIL_LOG", drutilLog);
        env.set("TAMBLO_FAKE_DRUTIL_LIST", fixture("drutil-list-one-drive.txt"));
        env.set("TAMBLO_FAKE_DRUTIL_STATUS", fixture("synthetic-drutil-status-blank-cdr.txt"));
        env.set("TAMBLO_E2E_SNAPSHOT_DIR", snapshot);

        ToolPaths tools;
        tools.backend = ToolPaths::Backend::MacOS;
        tools.ffmpeg = m_tools.ffmpeg;
        tools.drutil = fake("e2e-drutil-snapshot");  // copies the folder, then runs ./drutil
        tools.hdiutil = fake("hdiutil");
        QVERIFY(QFileInfo(tools.drutil).isExecutable());
        QVERIFY(rig.start(tools, false));
        MainWindow *w = rig.window();
        QCOMPARE(rig.app->array_Optical_Media_Drives.size(), 1);
        QCOMPARE(rig.app->currentDrive().s_Drive_Number, QStringLiteral("1"));
        QCOMPARE(readLines(drutilLog), QStringList{"list"});

        QVERIFY(rig.addFiles(w->toolbar_btn_Audio_Add_Files, {m_mp3}));
        QTest::mouseClick(w->btnAudioCD, Qt::LeftButton);
        QCOMPARE(w->btnBurn->text(), QStringLiteral("Burn Audio CD"));

        SheetWatch watch(rig.app.get());
        QVERIFY2(burnAndWaitForComplete(rig, watch), qPrintable(watch.events.join(", ")));

        QCOMPARE(watch.events, (QStringList{"two-bar", "-two-bar", "working", "-working", "complete"}));
        QVERIFY2(watch.notShown.isEmpty(), qPrintable(watch.notShown.join(", ")));
        QVERIFY2(rig.alerts.shown.isEmpty(), qPrintable(rig.alerts.texts().join("\n")));
        const QStringList log = readLines(drutilLog);
        // Three medium questions, then the room ("Space Free:").
        QCOMPARE(int(log.count("status|-drive|1")), 4);
        QCOMPARE(log, (QStringList{"list", "status|-drive|1", "status|-drive|1", "status|-drive|1", "status|-drive|1",
                                   "burn|-audio|" + rig.documents + "/TambloAudio|-drive|1"}));

        // What drutil was handed: the one transcoded track, CD audio.
        QCOMPARE(entries(snapshot), QStringList{"tone one.wav"});
        const QJsonObject a = firstStream(snapshot + "/tone one.wav", "audio");
        QCOMPARE(a.value("codec_name").toString(), QStringLiteral("pcm_s16le"));
        QCOMPARE(a.value("sample_rate").toString(), QStringLiteral("44100"));
        QCOMPARE(a.value("channels").toInt(), 2);
        QVERIFY(QFileInfo(rig.audioFolder()).isDir());
        QCOMPARE(entries(rig.audioFolder()), QStringList());

        // Audio CDs are not read back.
        closeCompleteSheet(rig, QStringLiteral("The operation is complete."));
    }

    // Duplication walked as a user walks it: Copy Disc on the Data tab, a
    // volume chosen, the working sheet while the image is made, the count
    // question, one blank-disc question and one single-bar sheet per copy,
    // and the completion sheet after the last copy. Each copy comes out of
    // the pseudo-drive on its eject and is read back.
    void linuxDuplicationOfTwoCopiesFromTheCopyDiscButton()
    {
        Rig rig;
        QVERIFY(rig.start(m_tools, true));
        rig.drive->status = FakeDriveBackend::finished(QStringLiteral("CD"));  // the disc to copy
        MainWindow *w = rig.window();

        const QString volume = rig.root.filePath("Volumes/HOLIDAY 2024");
        writeFile(volume + "/README.txt", "readme\n");
        writeFile(volume + "/photos/beach day.jpg", pseudoRandom(180000, 7));
        writeFile(volume + "/Ünïcødé/ñ.txt", "n\n");
        writeFile(rig.dataFolder() + "/stale.bin", "old");
        QStringList copies;
        rig.drive->onEject = [&] {
            // Out comes the disc in the drive; in goes a blank one.
            if (QFileInfo::exists(rig.disc)) {
                const QString copy = rig.root.filePath(QStringLiteral("copy%1.bin").arg(copies.size() + 1));
                QVERIFY(QFile::rename(rig.disc, copy));
                copies << copy;
            }
            rig.drive->status = FakeDriveBackend::blank(QStringLiteral("CD"));
        };
        rig.picker.answers.enqueue({volume});
        rig.alerts.answer(0, QStringLiteral("2"));
        QByteArray image;
        QStringList dataFolderWhileImaging{"unset"};
        rig.alerts.onShow = [&](const AlertRequest &r) {
            if (r.messageText == QLatin1String("Enter Number of Copies")) {
                QFile f(rig.dataFolder() + "/image.iso");
                if (f.open(QIODevice::ReadOnly))
                    image = f.readAll();
                dataFolderWhileImaging = entries(rig.dataFolder());
            }
        };

        w->tabviewMain->setCurrentIndex(2);
        QVERIFY(w->toolbar_btn_Data_Copy_Disc->isVisible());
        SheetWatch watch(rig.app.get());
        QTest::mouseClick(w->toolbar_btn_Data_Copy_Disc, Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(rig.app->windowOperationCompleted, 120000);
        watch.tick();

        // The imaging, then each copy, on the working sheet.
        QCOMPARE(watch.events, (QStringList{"working", "-working", "working", "-working", "working", "-working",
                                            "complete"}));
        QVERIFY2(watch.notShown.isEmpty(), qPrintable(watch.notShown.join(", ")));
        QCOMPARE(rig.picker.requests.size(), 1);
        QCOMPARE(rig.picker.requests.first().message, QStringLiteral("Select a volume to duplicate."));
        QCOMPARE(dataFolderWhileImaging, QStringList{"image.iso"});  // the stale file went first
        QVERIFY(image.size() > 180000);

        QStringList asked;
        for (const AlertRequest &r : std::as_const(rig.alerts.shown))
            asked << r.messageText + QStringLiteral(" [") + r.buttons.join(QStringLiteral(", ")) + QStringLiteral("]");
        const QString insert = QStringLiteral("Insert a writable media and click OK or click Cancel to stop the media duplication.");
        QCOMPARE(asked, (QStringList{"Enter Number of Copies [OK, Cancel]", insert + " [Burn Copy 1 of 2, Cancel]",
                                     insert + " [Burn Copy 2 of 2, Cancel]"}));
        QCOMPARE(rig.alerts.shown.at(0).inputDefault, QStringLiteral("1"));
        QCOMPARE(rig.drive->count("eject"), 3);  // the source, then each copy
        QCOMPARE(copies.size(), 2);
        for (const QString &copy : std::as_const(copies)) {
            QFile f(copy);
            QVERIFY(f.open(QIODevice::ReadOnly));
            QCOMPARE(f.read(image.size()), image);
            const QString out = copy + QStringLiteral(".tree");
            QString log;
            QVERIFY2(extract(copy, out, &log), qPrintable(log));
            QCOMPARE(tree(out), tree(volume));
            QCOMPARE(volumeId(copy), QStringLiteral("HOLIDAY 2024"));
        }
        QCOMPARE(entries(rig.dataFolder()), QStringList());  // the image is gone after the last copy
        QVERIFY(QFileInfo::exists(volume + "/README.txt"));   // the source is untouched
        closeCompleteSheet(rig);
    }

    // Cancel at the second blank-disc question: the single-bar sheet of the
    // first copy has gone, no completion sheet, the image is deleted, and
    // nothing else is asked.
    void cancellingTheSecondCopyDeletesTheImage()
    {
        Rig rig;
        QVERIFY(rig.start(m_tools, true));
        rig.drive->status = FakeDriveBackend::finished(QStringLiteral("CD"));
        MainWindow *w = rig.window();
        const QString volume = rig.root.filePath("Volumes/OLD DISC");
        writeFile(volume + "/a.txt", "a\n");
        rig.drive->onEject = [&] {
            QFile::remove(rig.disc);
            rig.drive->status = FakeDriveBackend::blank(QStringLiteral("CD"));
        };
        rig.picker.answers.enqueue({volume});
        rig.alerts.answer(0, QStringLiteral("3"));  // three copies
        rig.alerts.answer(0);                       // burn the first
        rig.alerts.answer(1);                       // cancel at the second

        w->tabviewMain->setCurrentIndex(0);
        QVERIFY(w->toolbar_btn_Audio_Copy_Disc->isVisible());
        SheetWatch watch(rig.app.get());
        QTest::mouseClick(w->toolbar_btn_Audio_Copy_Disc, Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(rig.alerts.shown.size(), 3, 60000);
        QTest::qWait(300);
        watch.tick();

        QCOMPARE(rig.alerts.shown.at(1).buttons.value(0), QStringLiteral("Burn Copy 1 of 3"));
        QCOMPARE(rig.alerts.shown.at(2).buttons.value(0), QStringLiteral("Burn Copy 2 of 3"));
        QCOMPARE(watch.events, (QStringList{"working", "-working", "working", "-working"}));
        QVERIFY(!rig.app->windowOperationCompleted);
        QVERIFY(!rig.app->windowUniqueProgress);
        QVERIFY(!rig.app->windowPerformingOperation);
        QCOMPARE(entries(rig.dataFolder()), QStringList());
        QVERIFY(QFileInfo::exists(volume + "/a.txt"));
        QCOMPARE(rig.drive->count("eject"), 2);  // the source and the one copy made
    }

    // ---------------------------------------------------------------- failures

    // Clicks Burn and waits until the burn is over: a last sheet or an alert.
    static void burnAndWaitForTheEnd(Rig &rig, int timeoutMs = 60000)
    {
        const int alertsBefore = rig.alerts.shown.size();
        QTest::mouseClick(rig.window()->btnBurn, Qt::LeftButton);
        QElapsedTimer t;
        t.start();
        while (!rig.app->windowOperationCompleted && rig.alerts.shown.size() == alertsBefore
               && t.elapsed() < timeoutMs)
            QTest::qWait(10);
        QTest::qWait(300);  // anything that would follow shows now
    }

    // The only file cannot be read: nothing is recorded, not even an empty
    // session on the blank, and the alert quotes ffmpeg.
    void unreadableOnlyFileRecordsNothing()
    {
        const QString bad = m_media.filePath("not really.mp3");
        QVERIFY(writeFile(bad, QByteArray(8192, 'x')));
        Rig rig;
        QVERIFY(rig.start(m_tools, true));
        rig.drive->status = FakeDriveBackend::blank(QStringLiteral("CD"));
        MainWindow *w = rig.window();
        QVERIFY(rig.addFiles(w->toolbar_btn_Audio_Add_Files, {bad}));
        QTest::mouseClick(w->btnMP3CD, Qt::LeftButton);
        QSignalSpy recordings(rig.app->mediaBurn(), &Operation::toolStarted);  // the recorder
        SheetWatch watch(rig.app.get());
        burnAndWaitForTheEnd(rig);
        QCOMPARE(rig.alerts.shown.size(), 1);
        QCOMPARE(rig.alerts.shown.first().messageText, QStringLiteral("\"not really.mp3\" could not be converted."));
        QVERIFY2(rig.alerts.shown.first().informativeText.contains("not really.mp3: Invalid"),
                 qPrintable(rig.alerts.shown.first().informativeText));
        QVERIFY(rig.alerts.shown.first().informativeText.contains("Nothing was written to the disc."));
        QCOMPARE(recordings.count(), 0);
        QVERIFY(!QFileInfo::exists(rig.disc));
        QCOMPARE(watch.events, (QStringList{"two-bar", "-two-bar"}));
        QVERIFY(!rig.app->windowOperationCompleted);
        QCOMPARE(entries(rig.audioFolder()), QStringList());
        QVERIFY(!rig.app->mediaBurn()->isBusy());
        // The log holds the transcoder's command line, its words and its end.
        const QString log = rig.logText();
        QVERIFY2(log.startsWith("Burn MP3 CD"), qPrintable(log.left(200)));
        QVERIFY(!log.contains(" -i \"" + bad + "\"\n"));  // measuring is not an operation of its own
        QVERIFY(log.contains("$ " + m_tools.ffmpeg + " -i \"" + bad + "\""));
        QVERIFY(log.contains("ffmpeg: failed, exit code"));
    }

    // a.mp3 and a.wav: two tracks, both on the disc, in list order.
    void twoFilesOfOneNameBothLand()
    {
        QTemporaryDir dir;
        const QString a1 = dir.filePath("a.mp3");
        const QString a2 = dir.filePath("a.wav");
        QVERIFY(makeMedia({"-f", "lavfi", "-i", "sine=frequency=440:duration=2", a1}));
        QVERIFY(makeMedia({"-f", "lavfi", "-i", "sine=frequency=880:duration=1", a2}));
        Rig rig;
        QVERIFY(rig.start(m_tools, true));
        rig.drive->status = FakeDriveBackend::blank(QStringLiteral("CD"));
        MainWindow *w = rig.window();
        QVERIFY(rig.addFiles(w->toolbar_btn_Audio_Add_Files, {a1, a2}));
        QTest::mouseClick(w->btnMP3CD, Qt::LeftButton);
        SheetWatch watch(rig.app.get());
        QVERIFY2(burnAndWaitForComplete(rig, watch), qPrintable(rig.alerts.texts().join("\n")));
        closeCompleteSheet(rig);
        QCOMPARE(filesOn(rig.disc), (QStringList{"'/a 1.mp3'", "'/a.mp3'"}));
    }

    // The recorder fails (no room on the device): the last sheet says so in
    // xorriso's words, and Details shows the whole output.
    void recorderFailureEndsInTheFailureSheet()
    {
        Rig rig;
        rig.device = QStringLiteral("stdio:/dev/full");
        QVERIFY(rig.start(m_tools, true));
        rig.drive->status = FakeDriveBackend::blank(QStringLiteral("CD"));
        const QString folder = rig.root.filePath("Stuff");
        writeFile(folder + "/big.bin", pseudoRandom(1024 * 1024, 9));
        rig.app->OnMenuTabData();
        QVERIFY(rig.addDataFolder(folder));
        SheetWatch watch(rig.app.get());
        burnAndWaitForTheEnd(rig);
        QVERIFY2(rig.alerts.shown.isEmpty(), qPrintable(rig.alerts.texts().join("\n")));
        Window_Operation_Terminated *sheet = rig.app->windowOperationCompleted;
        QVERIFY(sheet);
        QVERIFY(sheet->isVisible());
        QCOMPARE(sheet->labelMessage->text(), QStringLiteral("The disc could not be written."));
        QVERIFY(sheet->labelInformative);
        QVERIFY2(sheet->labelInformative->text().contains("No space left on device"),
                 qPrintable(sheet->labelInformative->text()));
        QVERIFY(sheet->btnDetails && sheet->textDetails);
        QVERIFY(!sheet->textDetails->isVisible());
        QTest::mouseClick(sheet->btnDetails, Qt::LeftButton);
        QVERIFY(sheet->textDetails->isVisible());
        QVERIFY(sheet->textDetails->toPlainText().contains("$ " + m_tools.xorriso));
        QVERIFY(sheet->textDetails->toPlainText().contains("xorriso : FAILURE :"));
        QCOMPARE(watch.events.last(), QStringLiteral("complete"));
        QVERIFY(!watch.events.contains(QStringLiteral("-complete")));
        QCOMPARE(entries(rig.dataFolder()), QStringList());
        QTest::mouseClick(sheet->btnOK, Qt::LeftButton);
        QTRY_VERIFY(!rig.app->windowOperationCompleted);
        QVERIFY(rig.window()->tabviewMain->isEnabled());
        QVERIFY(rig.logText().contains("xorriso: failed, exit code"));
    }

    // A drive whose status query hangs: the burn says the drive does not
    // answer, never "No disc", and no sheet stays up.
    void aHungDriveIsNotNoDisc()
    {
        Rig rig;
        rig.backend = new XorrisoBackend(fake("xorriso-hangs-on-status"), m_tools.eject, nullptr,
                                         5000, 300);
        QVERIFY(rig.start(m_tools, false));
        MainWindow *w = rig.window();
        QVERIFY(!rig.app->currentDrive().s_Device_Path.isEmpty());
        QVERIFY(rig.addFiles(w->toolbar_btn_Audio_Add_Files, {m_mp3}));
        burnAndWaitForTheEnd(rig, 20000);
        QCOMPARE(rig.alerts.shown.size(), 1);
        QCOMPARE(rig.alerts.shown.first().messageText, QStringLiteral("The drive does not answer."));
        QVERIFY(!rig.alerts.texts().first().contains("No disc"));
        QVERIFY(!rig.app->windowProgress && !rig.app->windowPerformingOperation);
        QTRY_VERIFY_WITH_TIMEOUT(ToolRun::running().isEmpty(), 5000);
    }

    // No transcoder: it is named, with how to get it, and no sheet stays up.
    void aMissingTranscoderIsNamed()
    {
        Rig rig;
        ToolPaths tools = m_tools;
        QVERIFY(rig.start(tools, true));
        rig.drive->status = FakeDriveBackend::blank(QStringLiteral("CD"));
        QVERIFY(rig.addFiles(rig.window()->toolbar_btn_Audio_Add_Files, {m_mp3}));
        rig.app->sffmpegPath = rig.root.filePath("gone/ffmpeg");
        QTest::mouseClick(rig.window()->btnMP3CD, Qt::LeftButton);
        burnAndWaitForTheEnd(rig);
        QCOMPARE(rig.alerts.shown.size(), 1);
        QCOMPARE(rig.alerts.shown.first().messageText, QStringLiteral("ffmpeg could not be started."));
        QVERIFY(rig.alerts.shown.first().informativeText.contains("sudo apt install ffmpeg"));
        QVERIFY(!rig.app->windowProgress && !rig.app->windowPerformingOperation && !rig.app->windowOperationCompleted);
        QVERIFY(!QFileInfo::exists(rig.disc));
    }

    // The disk fills up while transcoding: the burn stops before recording.
    void aFullDiskWhileTranscodingRecordsNothing()
    {
        Rig rig;
        QVERIFY(rig.start(m_tools, true));
        rig.drive->status = FakeDriveBackend::blank(QStringLiteral("CD"));
        const QString longer = m_media.filePath("longer.flac");
        QVERIFY(makeMedia({"-f", "lavfi", "-i", "sine=frequency=440:duration=20", longer}));
        QVERIFY(rig.addFiles(rig.window()->toolbar_btn_Audio_Add_Files, {m_mp3, longer}));
        QSignalSpy recordings(rig.app->mediaBurn(), &Operation::toolStarted);  // the recorder
        {
            // Every file a child writes may hold 600 KB: the 2 s WAV fits, the 20 s WAV does not fit.
            FileSizeLimit full(600 * 1024);
            burnAndWaitForTheEnd(rig);
        }
        QCOMPARE(rig.alerts.shown.size(), 1);
        QCOMPARE(rig.alerts.shown.first().messageText, QStringLiteral("\"longer.flac\" could not be converted."));
        QCOMPARE(recordings.count(), 0);
        QVERIFY(!QFileInfo::exists(rig.disc));
        QCOMPARE(entries(rig.audioFolder()), QStringList());
    }

    void showLogsOpensTheLogFolder()
    {
        Rig rig;
        QVERIFY(rig.start(m_tools, true));
        rig.window()->menuitemHelpShowLogs->trigger();
        QVERIFY(QFileInfo(rig.logsDir()).isDir());
        QCOMPARE(rig.opened, QList<QUrl>{QUrl::fromLocalFile(rig.logsDir())});
    }

    // Reading back after writing, as the user sees it: a data disc damaged
    // between its writing and its reading back (the stand-in xorriso
    // overwrites a few bytes of the file once its write has ended). The
    // working sheet says "Verifying the disc…" while xorriso reads the disc
    // back; the last sheet says which file differs, with xorriso's words
    // behind Details.
    void aDataDiscThatDoesNotReadBackAsWritten()
    {
        ScopedEnv env;
        env.set("TAMBLO_DAMAGE_FILE", QStringLiteral("/Stuff/big.bin"));
        Rig rig;
        ToolPaths tools = m_tools;
        tools.xorriso = fake("xorriso-damaging");
        QVERIFY(rig.start(tools, true));
        rig.drive->status = FakeDriveBackend::blank(QStringLiteral("CD"));
        const QString folder = rig.root.filePath("Stuff");
        writeFile(folder + "/big.bin", pseudoRandom(300000, 21));
        writeFile(folder + "/small.txt", "small\n");
        rig.app->OnMenuTabData();
        QVERIFY(rig.addDataFolder(folder));
        QString caption;
        QString title;
        QString spoken;
        connect(rig.app->dataBurn(), &Operation::sheetShown, this, [&](OperationSheet shown) {
            if (shown != OperationSheet::Verifying)
                return;
            if (Window_Performing_Operation *sheet = rig.app->windowPerformingOperation) {
                caption = sheet->labelDescription->text();
                spoken = sheet->labelDescription->accessibleName();
                title = sheet->windowTitle();
            }
        });
        SheetWatch watch(rig.app.get());
        burnAndWaitForTheEnd(rig);
        QVERIFY2(rig.alerts.shown.isEmpty(), qPrintable(rig.alerts.texts().join("\n")));
        QCOMPARE(caption, QStringLiteral("Verifying the disc…"));
        QCOMPARE(spoken, QStringLiteral("Verifying the disc…"));
        QCOMPARE(title, QStringLiteral("Verifying the Disc"));
        // One working sheet, for the writing and the reading back.
        QCOMPARE(watch.events, (QStringList{"working", "-working", "complete"}));
        Window_Operation_Terminated *sheet = rig.app->windowOperationCompleted;
        QVERIFY(sheet && sheet->isVisible());
        QCOMPARE(sheet->labelMessage->text(), QStringLiteral("The disc was written, but verifying it found differences."));
        QVERIFY(sheet->labelInformative);
        QCOMPARE(sheet->labelInformative->text(),
                 QStringLiteral("This file on the disc does not match what was written:\n/Stuff/big.bin"));
        QVERIFY(sheet->btnDetails && sheet->textDetails);
        QTest::mouseClick(sheet->btnDetails, Qt::LeftButton);
        QVERIFY(sheet->textDetails->isVisible());
        QVERIFY2(sheet->textDetails->toPlainText().contains("MD5 MISMATCH: '/Stuff/big.bin'"),
                 qPrintable(sheet->textDetails->toPlainText()));
        QCOMPARE(entries(rig.dataFolder()), QStringList());
        QTest::mouseClick(sheet->btnOK, Qt::LeftButton);
        QTRY_VERIFY(!rig.app->windowOperationCompleted);
    }

    // An image burned from the ISO tab: the working sheet that followed the
    // writing says "Verifying the disc…" and its bar follows the reading
    // back; the last sheet says the disc was written and verified.
    void anImageIsReadBackOnTheWorkingSheet()
    {
        Rig rig;
        QVERIFY(rig.start(m_tools, true));
        rig.drive->status = FakeDriveBackend::blank(QStringLiteral("DVD"));
        const QString image = rig.root.filePath("raw.img");
        writeFile(image, pseudoRandom(4 * 1024 * 1024, 22));
        rig.picker.answers.enqueue({image});
        QString caption;
        QList<double> checked;
        connect(rig.app->imageBurn(), &Operation::sheetShown, this, [&](OperationSheet shown) {
            if (shown != OperationSheet::Verifying)
                return;
            if (rig.app->windowPerformingOperation)
                caption = rig.app->windowPerformingOperation->labelDescription->text();
        });
        connect(rig.app->imageBurn(), &Operation::barMoved, this, [&] {
            if (rig.app->windowPerformingOperation)
                checked << rig.app->windowPerformingOperation->pgAnimation->doubleValue();
        });
        SheetWatch watch(rig.app.get());
        QTest::mouseClick(rig.window()->toolbar_btn_ISO_Burn, Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(rig.app->windowOperationCompleted, 60000);
        watch.tick();
        QCOMPARE(caption, QStringLiteral("Verifying the disc…"));
        QVERIFY(!checked.isEmpty());
        QCOMPARE(checked.last(), 100.0);
        QCOMPARE(watch.events, (QStringList{"working", "-working", "complete"}));
        closeCompleteSheet(rig);
    }

    // The Drive menu's "Verify After Writing": a check, on at first, that a
    // screen reader names and reads as checked; turned off it is kept in the
    // settings, and the discs written then end in the plain completion sheet,
    // with nothing read back.
    void verifyAfterWritingIsACheckInTheDriveMenu()
    {
        Rig rig;
        QVERIFY(rig.start(m_tools, true));
        rig.drive->status = FakeDriveBackend::blank(QStringLiteral("CD"));
        MainWindow *w = rig.window();
        QAction *item = w->menuitemVerifyAfterWriting;
        QVERIFY(item->isCheckable());
        QVERIFY(item->isChecked());
        QMenu *driveMenu = nullptr;
        for (QObject *o : item->associatedObjects())
            if (auto *m = qobject_cast<QMenu *>(o))
                driveMenu = m;
        QVERIFY(driveMenu);
        QCOMPARE(driveMenu->title(), QStringLiteral("D&rive"));
        QAccessibleInterface *menu = QAccessible::queryAccessibleInterface(driveMenu);
        QAccessibleInterface *read = nullptr;
        for (int i = 0; i < menu->childCount(); ++i)
            if (menu->child(i)->text(QAccessible::Name) == QLatin1String("Verify After Writing"))
                read = menu->child(i);
        QVERIFY(read);
        QCOMPARE(read->role(), QAccessible::MenuItem);
        QVERIFY(read->state().checkable);
        QVERIFY(read->state().checked);

        item->trigger();
        QVERIFY(!item->isChecked());
        QVERIFY(!read->state().checked);
        QCOMPARE(rig.settings->value(SettingsKeys::VerifyAfterWriting).toString(), QStringLiteral("0"));

        const QString folder = rig.root.filePath("Stuff");
        writeFile(folder + "/a.bin", pseudoRandom(20000, 23));
        rig.app->OnMenuTabData();
        QVERIFY(rig.addDataFolder(folder));
        int verifying = 0;
        connect(rig.app->dataBurn(), &Operation::sheetShown, this, [&](OperationSheet shown) {
            if (shown == OperationSheet::Verifying)
                ++verifying;
        });
        QStringList recording;
        connect(rig.app->dataBurn(), &SheetFlow::toolStarted, this,
                [&](const QString &, const QStringList &args) { recording = args; });
        SheetWatch watch(rig.app.get());
        QVERIFY2(burnAndWaitForComplete(rig, watch), qPrintable(watch.events.join(", ")));
        QCOMPARE(verifying, 0);
        QVERIFY(!recording.contains(QStringLiteral("-md5")));
        closeCompleteSheet(rig, QStringLiteral("The operation is complete."));

        // The next start reads it back.
        rig.app.reset();
        QVERIFY(rig.start(m_tools, true));
        QVERIFY(!rig.window()->menuitemVerifyAfterWriting->isChecked());
        rig.window()->menuitemVerifyAfterWriting->trigger();
        QCOMPARE(rig.settings->value(SettingsKeys::VerifyAfterWriting).toString(), QStringLiteral("1"));
    }
};

TAMBLO_TEST_MAIN(TestAppBurnEndToEnd)
#include "tst_app_burn_end_to_end.moc"
