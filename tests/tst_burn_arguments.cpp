#include <QTemporaryDir>

#include "platform/AppSettings.h"
#include "burn/MediumChecks.h"
#include "support/FakeDriveBackend.h"
#include "burn/BurnMessages.h"
#include "burn/DrutilRecorder.h"
#include "burn/Recorder.h"
#include "burn/TranscodeArguments.h"
#include "burn/VideoSettings.h"
#include "burn/XorrisoRecorder.h"
#include "support/FakeAlerts.h"
#include "support/FakeDriveBackend.h"
#include "support/Files.h"
#include "support/TestMain.h"

using namespace TranscodeArguments;

static const QStringList allQuestions{QStringLiteral("IsDriveEmpty"), QStringLiteral("IsMediaOneTimeWritable"),
                                      QStringLiteral("TypeOfMediaInTheDrive")};

class TestBurnArguments : public QObject {
    Q_OBJECT
private slots:
    void names()
    {
        QCOMPARE(nameWithoutExtension(QStringLiteral("/m/clip.mov")), QStringLiteral("clip"));
        QCOMPARE(nameWithoutExtension(QStringLiteral("/m/a.b.mp3")), QStringLiteral("a.b"));
        QCOMPARE(nameWithoutExtension(QStringLiteral("/m/noext")), QStringLiteral("noext"));
        QCOMPARE(nameWithoutExtension(QStringLiteral("/m/.hidden")), QStringLiteral(".hidden"));
        QCOMPARE(nameWithoutExtension(QStringLiteral("/m/My Song (live).FLAC")), QStringLiteral("My Song (live)"));
        QCOMPARE(nameWithoutExtension(QStringLiteral("song.ogg")), QStringLiteral("song"));
    }

    void outputPaths()
    {
        QCOMPARE(outputPath(BurnOperation::AudioCD, QStringLiteral("/d/TA"), QStringLiteral("/m/a.mp3")),
                 QStringLiteral("/d/TA/a.wav"));
        QCOMPARE(outputPath(BurnOperation::MP3CD, QStringLiteral("/d/TA"), QStringLiteral("/m/a.flac")),
                 QStringLiteral("/d/TA/a.mp3"));
        QCOMPARE(outputPath(BurnOperation::MP3DVD, QStringLiteral("/d/TA"), QStringLiteral("/m/a.mp3")),
                 QStringLiteral("/d/TA/a.mp3"));
        QCOMPARE(outputPath(BurnOperation::VideoDVD, QStringLiteral("/d/TV"), QStringLiteral("/m/clip.mov")),
                 QStringLiteral("/d/TV/clip.mpg"));
        QCOMPARE(outputPath(BurnOperation::VideoBluray, QStringLiteral("/d/TV"), QStringLiteral("/m/clip.mkv")),
                 QStringLiteral("/d/TV/clip.mpg"));
        // Sources differing only in extension share one output file.
        QCOMPARE(outputPath(BurnOperation::AudioCD, QStringLiteral("/d"), QStringLiteral("/x/a.mp3")),
                 outputPath(BurnOperation::AudioCD, QStringLiteral("/d"), QStringLiteral("/y/a.flac")));
    }

    void wavCommand()
    {
        const ToolCommand c = command(BurnOperation::AudioCD, QStringLiteral("/app/ffmpeg"),
                                      QStringLiteral("/m/song.mp3"), QStringLiteral("/d/TambloAudio"));
        QCOMPARE(c.program, QStringLiteral("/app/ffmpeg"));
        QCOMPARE(c.arguments, (QStringList{"-i", "/m/song.mp3", "-acodec", "pcm_s16le", "-ar", "44100", "-ac", "2",
                                           "/d/TambloAudio/song.wav"}));
    }

    void mp3Command()
    {
        for (BurnOperation op : {BurnOperation::MP3CD, BurnOperation::MP3DVD}) {
            const ToolCommand c = command(op, QStringLiteral("ffmpeg"), QStringLiteral("/m/song.mp3"),
                                          QStringLiteral("/d/TambloAudio"));
            QCOMPARE(c.arguments, (QStringList{"-i", "/m/song.mp3", "-vn", "-ar", "44100", "-ac", "2", "-ab", "192k",
                                               "-f", "mp3", "/d/TambloAudio/song.mp3"}));
        }
    }

    void mpgCommand_data()
    {
        QTest::addColumn<QString>("video");
        QTest::addColumn<QString>("audio");
        QTest::addColumn<QStringList>("expected");
        const auto args = [](const char *target, const char *size, const char *rate, const char *codec) {
            QStringList a{"-i", "/m/clip.mov", "-target", target, "-s", size, "-r", rate, "-acodec", codec,
                          "-ar", "48000", "-ac", "2"};
            // MP2 cannot take the presets' 448 kbit/s.
            if (QByteArray(codec) == "mp2")
                a << "-ab" << "384k";
            a << "/d/TV/clip.mpg";
            return a;
        };
        QTest::newRow("NTSC AC-3") << "0" << "0" << args("ntsc-dvd", "720x480", "29.97", "ac3");
        QTest::newRow("NTSC MP2") << "0" << "1" << args("ntsc-dvd", "720x480", "29.97", "mp2");
        QTest::newRow("PAL AC-3") << "1" << "0" << args("pal-dvd", "720x576", "25", "ac3");
        QTest::newRow("PAL MP2") << "1" << "1" << args("pal-dvd", "720x576", "25", "mp2");
        QTest::newRow("other values count as 1") << "2" << "" << args("pal-dvd", "720x576", "25", "mp2");
        // The case of a PAL disc with Dolby Digital sound, word for word.
        QTest::newRow("clip.mov PAL AC-3")
            << "1" << "0"
            << QStringList{"-i",   "/m/clip.mov", "-target", "pal-dvd", "-s", "720x576", "-r", "25", "-acodec", "ac3",
                           "-ar", "48000",       "-ac",     "2",       "/d/TV/clip.mpg"};
    }
    void mpgCommand()
    {
        QFETCH(QString, video);
        QFETCH(QString, audio);
        QFETCH(QStringList, expected);
        for (BurnOperation op : {BurnOperation::VideoDVD, BurnOperation::VideoBluray}) {
            const ToolCommand c = command(op, QStringLiteral("ffmpeg"), QStringLiteral("/m/clip.mov"),
                                          QStringLiteral("/d/TV"), video, audio);
            QCOMPARE(c.arguments, expected);
        }
    }

    void audioTrackOrder()
    {
        QTemporaryDir dir;
        const QString folder = dir.path();
        const QStringList sources{QStringLiteral("/m/zeta.mp3"), QStringLiteral("/m/alpha.flac"),
                                  QStringLiteral("/n/zeta.ogg"), QStringLiteral("/m/mid.wav")};
        // Two sources of one name each get a file of their own, in list order.
        QCOMPARE(audioTracks(folder, sources, false),
                 (QStringList{folder + "/zeta.wav", folder + "/alpha.wav", folder + "/zeta 1.wav", folder + "/mid.wav"}));
        // Only what the transcoder produced.
        for (const char *n : {"zeta.wav", "mid.wav"})
            QVERIFY(writeFile(folder + "/" + n, QByteArray()));
        QCOMPARE(audioTracks(folder, sources, true), (QStringList{folder + "/zeta.wav", folder + "/mid.wav"}));
    }

    void drutilCommands()
    {
        DrutilRecorder r(QStringLiteral("/usr/bin/drutil"));
        Object_Optical_Drive d;
        d.s_Drive_Number = QStringLiteral("2");
        const ToolCommand audio = r.burnAudioCommand(d, QStringLiteral("/d/TambloAudio"), {"/d/TambloAudio/x.wav"});
        QCOMPARE(audio.program, QStringLiteral("/usr/bin/drutil"));
        QCOMPARE(audio.arguments, (QStringList{"burn", "-audio", "/d/TambloAudio", "-drive", "2"}));
        // drutil reads the disc back after burning unless told not to.
        const ToolCommand data = r.burnFolderCommand(d, QStringLiteral("/d/TambloVideo"), true);
        QCOMPARE(data.arguments, (QStringList{"burn", "/d/TambloVideo", "-drive", "2"}));
        QCOMPARE(r.burnFolderCommand(d, QStringLiteral("/d/TambloVideo"), false).arguments,
                 (QStringList{"burn", "-noverify", "/d/TambloVideo", "-drive", "2"}));
        QVERIFY(r.checksItsWriting());
        QVERIFY(r.verifyFolderCommand(d).isNull());
    }

    void linuxCommands()
    {
        XorrisoRecorder r(QStringLiteral("/usr/bin/xorriso"), QStringLiteral("/usr/bin/cdrskin"));
        Object_Optical_Drive d;
        d.s_Drive_Number = QStringLiteral("1");
        d.s_Device_Path = QStringLiteral("/dev/sr0");
        const ToolCommand audio =
            r.burnAudioCommand(d, QStringLiteral("/d/TA"), {"/d/TA/b.wav", "/d/TA/a.wav", "/d/TA/c.wav"});
        QCOMPARE(audio.program, QStringLiteral("/usr/bin/cdrskin"));
        QCOMPARE(audio.arguments,
                 (QStringList{"-v", "dev=/dev/sr0", "-audio", "/d/TA/b.wav", "/d/TA/a.wav", "/d/TA/c.wav"}));
        const ToolCommand data = r.burnFolderCommand(d, QStringLiteral("/home/u/Documents/TambloVideo/"));
        QCOMPARE(data.program, QStringLiteral("/usr/bin/xorriso"));
        QCOMPARE(data.arguments, (QStringList{"-pacifier", "interval=0.2", "-dev", "/dev/sr0", "-joliet", "on", "-volid", "TambloVideo", "-map",
                                              "/home/u/Documents/TambloVideo/", "/", "-commit"}));

        // Verifying: the files' checksums go onto the disc, and are read back
        // from it afterwards.
        QCOMPARE(r.burnFolderCommand(d, QStringLiteral("/d/TambloVideo"), true).arguments,
                 (QStringList{"-pacifier", "interval=0.2", "-md5", "on", "-dev", "/dev/sr0", "-joliet", "on", "-volid",
                              "TambloVideo", "-map", "/d/TambloVideo", "/", "-commit"}));
        QVERIFY(!r.checksItsWriting());
        QCOMPARE(r.verifyFolderCommand(d).program, QStringLiteral("/usr/bin/xorriso"));
        QCOMPARE(r.verifyFolderCommand(d).arguments,
                 (QStringList{"-drive_access", "shared:readonly", "-md5", "on", "-indev", "/dev/sr0", "-check_md5_r",
                              "SORRY", "/", "--"}));

        d.s_Device_Path = QStringLiteral("stdio:/tmp/disc.iso");
        QCOMPARE(r.burnAudioCommand(d, QStringLiteral("/d/TA"), {"/d/TA/a.wav"}).arguments,
                 (QStringList{"-v", "--allow_emulated_drives", "dev=stdio:/tmp/disc.iso", "-audio", "/d/TA/a.wav"}));

        // Never an erase, whatever the drive.
        for (const ToolCommand &c : {audio, data}) {
            for (const QString &a : c.arguments)
                QVERIFY2(!a.contains(QStringLiteral("blank")) && !a.contains(QStringLiteral("format")),
                         qPrintable(a));
        }

        d.s_Device_Path.clear();
        QVERIFY(r.burnAudioCommand(d, QStringLiteral("/d/TA"), {}).isNull());
        QVERIFY(r.burnFolderCommand(d, QStringLiteral("/d/TA")).isNull());
        QCOMPARE(XorrisoRecorder::volumeName(QString(40, QLatin1Char('v'))).size(), 32);
    }

    void recorderPerPlatform()
    {
        ToolPaths mac;
        mac.backend = ToolPaths::Backend::MacOS;
        mac.drutil = QStringLiteral("/usr/bin/drutil");
        ToolPaths onLinux;
        onLinux.backend = ToolPaths::Backend::Linux;
        onLinux.xorriso = QStringLiteral("/usr/bin/xorriso");
        onLinux.cdrskin = QStringLiteral("/usr/bin/cdrskin");
        Object_Optical_Drive d;
        d.s_Drive_Number = QStringLiteral("1");
        d.s_Device_Path = QStringLiteral("/dev/sr0");
        QCOMPARE(Recorder::create(mac)->burnFolderCommand(d, QStringLiteral("/f")).program,
                 QStringLiteral("/usr/bin/drutil"));
        QCOMPARE(Recorder::create(onLinux)->burnFolderCommand(d, QStringLiteral("/f")).program,
                 QStringLiteral("/usr/bin/xorriso"));
        QCOMPARE(Recorder::create(onLinux)->burnAudioCommand(d, QStringLiteral("/f"), {}).program,
                 QStringLiteral("/usr/bin/cdrskin"));
    }

    void messages_data()
    {
        QTest::addColumn<int>("op");
        QTest::addColumn<QString>("empty");
        QTest::addColumn<QString>("family");
        QTest::addColumn<QString>("wrong");
        QTest::addColumn<QString>("word");
        QTest::addColumn<QString>("code");
        QTest::newRow("audio CD") << int(BurnOperation::AudioCD) << "audio files" << "CD" << "Media not CD" << "CD"
                                  << "Warning 0060.";
        QTest::newRow("MP3 CD") << int(BurnOperation::MP3CD) << "audio files" << "CD" << "Media not CD" << "CD"
                                << "Warning 0050.";
        QTest::newRow("MP3 DVD") << int(BurnOperation::MP3DVD) << "audio files" << "DVD" << "Media not DVD" << "DVD"
                                 << "Warning 0010.";
        QTest::newRow("video DVD") << int(BurnOperation::VideoDVD) << "video files" << "DVD" << "Media not DVD"
                                   << "DVD" << "Warning 0000.";
        QTest::newRow("video BD") << int(BurnOperation::VideoBluray) << "video files" << "BD" << "Media not Blu-ray"
                                  << "Blu-ray" << "Warning 0090.";
        QTest::newRow("data CD") << int(BurnOperation::DataCD) << "folders" << "CD" << "Media not CD" << "CD"
                                 << "Warning 0070.";
        QTest::newRow("data DVD") << int(BurnOperation::DataDVD) << "folders" << "DVD" << "Media not DVD" << "DVD"
                                  << "Warning 0020.";
        QTest::newRow("data BD") << int(BurnOperation::DataBluray) << "folders" << "BD" << "Media not Blu-ray"
                                 << "Blu-ray" << "Warning 0090.";
    }
    void messages()
    {
        QFETCH(int, op);
        QFETCH(QString, empty);
        QFETCH(QString, family);
        QFETCH(QString, wrong);
        QFETCH(QString, word);
        QFETCH(QString, code);
        const BurnTexts t = BurnMessages::forOperation(BurnOperation(op));
        QCOMPARE(t.emptyListMessage, QStringLiteral("No %1 on the list").arg(empty));
        const QString add = empty == QLatin1String("folders") ? QStringLiteral("folders") : empty;
        QCOMPARE(t.emptyListInformative,
                 QStringLiteral("There are no %1 on the list. Add %2 to the list and try again.").arg(empty, add));
        QCOMPARE(t.family, family);
        QCOMPARE(t.wrongMediumMessage, wrong);
        QCOMPARE(t.wrongMediumInformative,
                 QStringLiteral("The media on the drive is not a %1. insert a writable %1 on the drive and try again.")
                     .arg(word));
        QCOMPARE(t.debugCode, code);
    }

    void commonMessages()
    {
        QCOMPARE(BurnMessages::NoDiscMessage, QStringLiteral("No disc"));
        QCOMPARE(BurnMessages::NoDiscInformative,
                 QStringLiteral("There is no disc on the drive. insert a writable media on the drive and try again."));
        QCOMPARE(BurnMessages::NotWritableMessage, QStringLiteral("Media not writable"));
        QCOMPARE(BurnMessages::NotWritableInformative,
                 QStringLiteral("The media on the drive is not writable. insert a writable media on the drive and try again."));
    }

    void emptyListIsCheckedBeforeTheDrive()
    {
        for (BurnOperation op : {BurnOperation::AudioCD, BurnOperation::VideoDVD, BurnOperation::DataCD}) {
            FakeDriveBackend drive(FakeDriveBackend::noDisc());  // no disc either
            FakeAlerts alerts;
            int result = -1;
            BurnChecks::run(op, true, drive.check(), alerts, true, [&](bool ok) { result = ok; });
            QCOMPARE(result, 0);
            QVERIFY(drive.calls.isEmpty());
            QCOMPARE(alerts.shown.size(), 1);
            QCOMPARE(alerts.shown.first().messageText, BurnMessages::forOperation(op).emptyListMessage);
            QCOMPARE(alerts.shown.first().buttons, QStringList{QStringLiteral("Close")});
        }
    }

    void noDisc()
    {
        FakeDriveBackend drive(FakeDriveBackend::noDisc());
        FakeAlerts alerts;
        int result = -1;
        BurnChecks::run(BurnOperation::AudioCD, false, drive.check(), alerts, true, [&](bool ok) { result = ok; });
        QCOMPARE(result, 0);
        QCOMPARE(drive.calls, QStringList{QStringLiteral("IsDriveEmpty")});
        QCOMPARE(alerts.texts(), QStringList{BurnMessages::NoDiscMessage + " / " + BurnMessages::NoDiscInformative});
    }

    void notWritableAsksBothQuestions()
    {
        FakeDriveBackend drive(FakeDriveBackend::finished(QStringLiteral("CD")));
        FakeAlerts alerts;
        int result = -1;
        BurnChecks::run(BurnOperation::MP3DVD, false, drive.check(), alerts, true, [&](bool ok) { result = ok; });
        QCOMPARE(result, 0);
        QCOMPARE(drive.calls, (QStringList{"IsDriveEmpty", "IsMediaOneTimeWritable", "IsMediaReWritable"}));
        QCOMPARE(alerts.texts(),
                 QStringList{BurnMessages::NotWritableMessage + " / " + BurnMessages::NotWritableInformative});
    }

    void rewritableIsAskedOnlyAfterANo()
    {
        FakeDriveBackend drive(FakeDriveBackend::blank(QStringLiteral("CD")));
        FakeAlerts alerts;
        int result = -1;
        BurnChecks::run(BurnOperation::AudioCD, false, drive.check(), alerts, false, [&](bool ok) { result = ok; });
        QCOMPARE(result, 1);
        QCOMPARE(drive.calls, allQuestions);
        QVERIFY(alerts.shown.isEmpty());

        FakeDriveBackend rw(FakeDriveBackend::rewritable(QStringLiteral("DVD")));
        BurnChecks::run(BurnOperation::VideoDVD, false, rw.check(), alerts, false, [&](bool ok) { result = ok; });
        QCOMPARE(result, 1);
        QCOMPARE(rw.calls, (QStringList{"IsDriveEmpty", "IsMediaOneTimeWritable", "IsMediaReWritable",
                                        "TypeOfMediaInTheDrive"}));
    }

    void wrongFamily_data()
    {
        QTest::addColumn<int>("op");
        QTest::addColumn<QString>("inDrive");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("code");
        QTest::newRow("DVD for audio CD") << int(BurnOperation::AudioCD) << "DVD" << "Media not CD" << "Warning 0060.";
        QTest::newRow("CD for MP3 DVD") << int(BurnOperation::MP3DVD) << "CD" << "Media not DVD" << "Warning 0010.";
        QTest::newRow("DVD for MP3 CD") << int(BurnOperation::MP3CD) << "DVD" << "Media not CD" << "Warning 0050.";
        QTest::newRow("BD for MP3 CD") << int(BurnOperation::MP3CD) << "BD" << "Media not CD" << "Warning 0050.";
        QTest::newRow("BD for MP3 DVD") << int(BurnOperation::MP3DVD) << "BD" << "Media not DVD" << "Warning 0010.";
        QTest::newRow("DVD for video BD") << int(BurnOperation::VideoBluray) << "DVD" << "Media not Blu-ray"
                                          << "Warning 0090.";
        QTest::newRow("BD for video DVD") << int(BurnOperation::VideoDVD) << "BD" << "Media not DVD"
                                          << "Warning 0000.";
        QTest::newRow("Other for audio CD") << int(BurnOperation::AudioCD) << "Other" << "Media not CD"
                                            << "Warning 0060.";
        QTest::newRow("DVD for data CD") << int(BurnOperation::DataCD) << "DVD" << "Media not CD" << "Warning 0070.";
    }
    void wrongFamily()
    {
        QFETCH(int, op);
        QFETCH(QString, inDrive);
        QFETCH(QString, message);
        QFETCH(QString, code);
        const BurnTexts texts = BurnMessages::forOperation(BurnOperation(op));
        for (bool debug : {false, true}) {
            FakeDriveBackend drive(FakeDriveBackend::blank(inDrive));
            FakeAlerts alerts;
            int result = -1;
            BurnChecks::run(BurnOperation(op), false, drive.check(), alerts, debug, [&](bool ok) { result = ok; });
            QCOMPARE(result, 0);
            QCOMPARE(drive.calls, allQuestions);
            QStringList expected{message + " / " + texts.wrongMediumInformative};
            if (debug)
                expected << inDrive + " / " + code;
            QCOMPARE(alerts.texts(), expected);
            for (const AlertRequest &r : alerts.shown)
                QCOMPARE(r.buttons, QStringList{QStringLiteral("Close")});
        }
    }

    void videoSettingsValues()
    {
        QVERIFY(VideoSettings{}.isNtsc());
        QVERIFY(VideoSettings{}.isDolbyDigital());
        VideoSettings odd{QStringLiteral("7"), QStringLiteral("")};
        QVERIFY(!odd.isNtsc());
        QVERIFY(!odd.isDolbyDigital());
        const VideoSettings v = VideoSettings::fromChoices(true, false);
        QCOMPARE(v.s_Video_Output_Format, QStringLiteral("0"));
        QCOMPARE(v.s_Audio_Output_Format, QStringLiteral("1"));
        QStringList writes;
        v.store([&](const QString &k, const QString &val) { writes << k + "=" + val; });
        QCOMPARE(writes, (QStringList{"ZendrovaVideoFormat18=0", "ZendrovaAudioFormat18=1"}));

        QTemporaryDir dir;
        QSettings store(dir.filePath(QStringLiteral("s.ini")), QSettings::IniFormat);
        AppSettings settings(store);
        VideoSettings::fromChoices(false, true).store(settings);
        QCOMPARE(settings.string(SettingsKeys::VideoFormat), QStringLiteral("1"));
        QCOMPARE(settings.string(SettingsKeys::AudioFormat), QStringLiteral("0"));
    }
};

TAMBLO_TEST_MAIN(TestBurnArguments)
#include "tst_burn_arguments.moc"
