#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "toolrun/ToolMessages.h"
#include "burn/MediaBurn.h"
#include "burn/XorrisoRecorder.h"
#include "support/DiscImages.h"
#include "support/SheetLog.h"
#include "support/FakeAlerts.h"
#include "support/FakeDriveBackend.h"
#include "support/Files.h"
#include "support/ListRecords.h"
#include "support/TestMain.h"
#include "support/Tools.h"


class TestBurnXorriso : public QObject {
    Q_OBJECT
private:
    ToolPaths m_tools;  // the Linux tools on PATH
    QTemporaryDir m_media;
    QTemporaryDir m_docs;
    MediaBurnContext m_ctx;

    // Copies the file `isoPath` of an image out, as `name` in the documents.
    QString extractFile(const QString &image, const QString &isoPath, const QString &name)
    {
        const QString target = m_docs.filePath(name);
        QFile::remove(target);
        runTool(m_tools.xorriso, {"-osirrox", "on", "-indev", "stdio:" + image, "-extract", isoPath, target});
        return target;
    }

    void burnAndWait(MediaBurn &burn, BurnOperation op, const QList<NodeMediaFile> &list, const MediaBurnContext &ctx)
    {
        SheetLog log(&burn);
        burn.burn(op, list, ctx);
        QVERIFY(log.waitEnded(1, 60000));
        QVERIFY2(log.endedComplete(), qPrintable(log.sheets().join(", ")));
    }

    // The recorder's command, as the burn started it.
    static ToolCommand recording(const QSignalSpy &started)
    {
        return {started.first().at(0).toString(), started.first().at(1).toStringList()};
    }

private slots:
    void initTestCase()
    {
        m_tools = linuxToolsOnPath();
        QVERIFY(!m_tools.ffmpeg.isEmpty() && !ffprobePath().isEmpty());
        QVERIFY2(!m_tools.xorriso.isEmpty() && !m_tools.cdrskin.isEmpty(), "xorriso and cdrskin must be installed");
        makeMedia({"-f", "lavfi", "-i", "sine=frequency=440:duration=2", m_media.filePath("zulu.mp3")});
        makeMedia({"-f", "lavfi", "-i", "sine=frequency=660:duration=1", m_media.filePath("alpha song.flac")});
        makeMedia({"-f", "lavfi", "-i", "testsrc=duration=1:size=320x240:rate=25", "-f", "lavfi", "-i", "sine=duration=1",
              "-c:v", "libx264", "-preset", "ultrafast", "-c:a", "aac", "-shortest", m_media.filePath("clip.mov")});
        m_ctx.ffmpeg = m_tools.ffmpeg;
        m_ctx.audioFolder = m_docs.filePath("TambloAudio");
        m_ctx.videoFolder = m_docs.filePath("TambloVideo");
        QDir().mkpath(m_ctx.audioFolder);
        QDir().mkpath(m_ctx.videoFolder);
        m_ctx.currentDrive.s_Drive_Number = "1";
    }

    void mp3FolderWrittenAndReadBack()
    {
        const QString image = m_docs.filePath("mp3-disc.iso");
        MediaBurnContext ctx = m_ctx;
        ctx.currentDrive.s_Device_Path = "stdio:" + image;
        XorrisoRecorder recorder(m_tools.xorriso, m_tools.cdrskin);
        FakeAlerts alerts;
        MediaBurn burn(recorder, alerts, FakeDriveBackend::checkOf(FakeDriveBackend::blank("CD")));
        SheetLog sheets(&burn);
        QSignalSpy started(&burn, &Operation::toolStarted);
        burnAndWait(burn, BurnOperation::MP3CD,
                    {mediaFile(m_media.filePath("zulu.mp3"), 2), mediaFile(m_media.filePath("alpha song.flac"), 1)}, ctx);
        QCOMPARE(sheets.steps().last(), QStringLiteral("operationComplete"));
        const ToolCommand cmd = recording(started);
        QCOMPARE(cmd.program, m_tools.xorriso);
        QVERIFY(!cmd.arguments.join(' ').contains("blank"));

        QCOMPARE(filesOn(image), (QStringList{"'/alpha song.mp3'", "'/zulu.mp3'"}));
        const QString pvd = runTool(m_tools.xorriso, {"-indev", "stdio:" + image, "-pvd_info"}).output;
        QVERIFY2(pvd.contains(QRegularExpression("Volume Id\\s*:\\s*TambloAudio")), qPrintable(pvd));
        const QJsonObject a = firstStream(extractFile(image, "/zulu.mp3", "back.mp3"), "audio");
        QCOMPARE(a.value("codec_name").toString(), QStringLiteral("mp3"));
        QCOMPARE(a.value("bit_rate").toString(), QStringLiteral("192000"));
        QCOMPARE(a.value("sample_rate").toString(), QStringLiteral("44100"));
        QCOMPARE(a.value("channels").toInt(), 2);
        QVERIFY(QDir(m_ctx.audioFolder).isEmpty());
    }

    // MP3 and video discs carry a Joliet tree like data discs: a reader
    // without Rock Ridge sees the whole name, in UCS-2, not an 8.3 one.
    void mp3AndVideoDiscsCarryJolietNames()
    {
        const QString song = m_media.filePath("Ünïcødé Lied für Straße.flac");
        const QString clip = m_media.filePath("Vidéo de Noël.mov");
        QVERIFY(QFile::copy(m_media.filePath("alpha song.flac"), song));
        QVERIFY(QFile::copy(m_media.filePath("clip.mov"), clip));
        XorrisoRecorder recorder(m_tools.xorriso, m_tools.cdrskin);
        struct Case {
            BurnOperation op;
            QString family, source, discName;
        };
        const QList<Case> cases{{BurnOperation::MP3CD, "CD", song, "Ünïcødé Lied für Straße.mp3"},
                                {BurnOperation::VideoDVD, "DVD", clip, "Vidéo de Noël.mpg"}};
        for (const Case &c : cases) {
            QTemporaryDir drives(QStringLiteral("/tmp/tamblo-joliet-XXXXXX"));
            const QString image = drives.filePath("disc.iso");
            MediaBurnContext ctx = m_ctx;
            ctx.currentDrive.s_Device_Path = "stdio:" + image;
            FakeAlerts alerts;
            MediaBurn burn(recorder, alerts, FakeDriveBackend::checkOf(FakeDriveBackend::blank(c.family)));
            SheetLog sheets(&burn);
            QSignalSpy started(&burn, &Operation::toolStarted);
            burnAndWait(burn, c.op, {mediaFile(c.source, 1)}, ctx);
            QCOMPARE(started.size(), 1);
            const QStringList args = recording(started).arguments;
            QVERIFY2(args.join(' ').contains("-joliet on"), qPrintable(args.join(' ')));
            QCOMPARE(filesOn(image), QStringList{"'/" + c.discName + "'"});
            QVERIFY2(jolietHolds(image, c.discName), qPrintable(c.discName));

            // The check tells the two apart: the same name written without
            // Joliet is not found.
            QVERIFY(writeFile(drives.filePath("plain/" + c.discName), QByteArray()));
            const QString control = drives.filePath("control.iso");
            runTool(m_tools.xorriso, {"-outdev", "stdio:" + control, "-map", drives.filePath("plain"), "/", "-commit"});
            QVERIFY(QFileInfo(control).size() > 0);
            QVERIFY(!jolietHolds(control, c.discName));
        }
    }

    void videoFolderThenASecondSession()
    {
        const QString image = m_docs.filePath("video-disc.iso");
        MediaBurnContext ctx = m_ctx;
        ctx.currentDrive.s_Device_Path = "stdio:" + image;
        ctx.videoFormat = "1";
        XorrisoRecorder recorder(m_tools.xorriso, m_tools.cdrskin);
        FakeAlerts alerts;
        MediaBurn burn(recorder, alerts, FakeDriveBackend::checkOf(FakeDriveBackend::blank("DVD")));
        SheetLog sheets(&burn);
        burnAndWait(burn, BurnOperation::VideoDVD, {mediaFile(m_media.filePath("clip.mov"), 1)}, ctx);
        QCOMPARE(filesOn(image), QStringList{"'/clip.mpg'"});
        const QJsonObject v = firstStream(extractFile(image, "/clip.mpg", "back.mpg"), "video");
        QCOMPARE(v.value("codec_name").toString(), QStringLiteral("mpeg2video"));
        QCOMPARE(v.value("width").toInt(), 720);
        QCOMPARE(v.value("height").toInt(), 576);
        const QString pvd = runTool(m_tools.xorriso, {"-indev", "stdio:" + image, "-pvd_info"}).output;
        QVERIFY(pvd.contains(QRegularExpression("Volume Id\\s*:\\s*TambloVideo")));
        QVERIFY(QDir(m_ctx.videoFolder).isEmpty());

        // The same disc, now written and appendable: an MP3 DVD adds a session
        // and nothing of the first one is lost.
        MediaBurn second(recorder, alerts, FakeDriveBackend::checkOf(FakeDriveBackend::blank("DVD")));
        burnAndWait(second, BurnOperation::MP3DVD, {mediaFile(m_media.filePath("zulu.mp3"), 2)}, ctx);
        QCOMPARE(filesOn(image), (QStringList{"'/clip.mpg'", "'/zulu.mp3'"}));
        const QString toc = runTool(m_tools.xorriso, {"-indev", "stdio:" + image, "-toc"}).output;
        QCOMPARE(toc.count(QRegularExpression("ISO session\\s*:")), 2);
        QVERIFY(toc.contains("TambloVideo"));
        QVERIFY(toc.contains("TambloAudio"));
    }

    void audioCdTracksInCompilationOrder()
    {
        const QString log = m_docs.filePath("cdrskin.log");
        qputenv("TAMBLO_FAKE_BURN_LOG", log.toLocal8Bit());
        for (const QString &device : {QStringLiteral("/dev/sr0"), "stdio:" + m_docs.filePath("cd.img")}) {
            QFile::remove(log);
            MediaBurnContext ctx = m_ctx;
            ctx.currentDrive.s_Device_Path = device;
            XorrisoRecorder recorder(m_tools.xorriso, fake("burn-args-logger"));
            FakeAlerts alerts;
            MediaBurn burn(recorder, alerts, FakeDriveBackend::checkOf(FakeDriveBackend::blank("CD")));
            SheetLog sheets(&burn);
            // zulu before alpha: the list's order, not the folder's.
            burnAndWait(burn, BurnOperation::AudioCD,
                        {mediaFile(m_media.filePath("zulu.mp3"), 2), mediaFile(m_media.filePath("alpha song.flac"), 1),
                         mediaFile(m_media.filePath("zulu.mp3"), 2)},
                        ctx);
            QFile f(log);
            QVERIFY(f.open(QIODevice::ReadOnly));
            const QStringList args = QString::fromUtf8(f.readAll()).trimmed().split('|');
            QStringList expected{"-v"};
            if (device.startsWith("stdio:"))
                expected << "--allow_emulated_drives";
            // The file listed twice is two tracks, each from a file of its own.
            expected << "dev=" + device << "-audio" << m_ctx.audioFolder + "/zulu.wav"
                     << m_ctx.audioFolder + "/alpha song.wav" << m_ctx.audioFolder + "/zulu 1.wav";
            QCOMPARE(args, expected);
            QVERIFY(QDir(m_ctx.audioFolder).isEmpty());
        }
        qunsetenv("TAMBLO_FAKE_BURN_LOG");
    }

    void refusedAudioOnAPseudoDriveEndsInTheFailureSheet()
    {
        // The real cdrskin will not write audio tracks to a file: the burn
        // says the disc could not be written, in cdrskin's own words, and
        // keeps the whole output behind Details.
        MediaBurnContext ctx = m_ctx;
        ctx.currentDrive.s_Device_Path = "stdio:" + m_docs.filePath("refused.img");
        XorrisoRecorder recorder(m_tools.xorriso, m_tools.cdrskin);
        FakeAlerts alerts;
        MediaBurn burn(recorder, alerts, FakeDriveBackend::checkOf(FakeDriveBackend::blank("CD")));
        SheetLog sheets(&burn);
        burn.burn(BurnOperation::AudioCD, {mediaFile(m_media.filePath("alpha song.flac"), 1)}, ctx);
        QTRY_COMPARE_WITH_TIMEOUT(sheets.endedCount, 1, 60000);
        QVERIFY2(sheets.endedFailed(), qPrintable(sheets.sheets().join(", ")));
        QCOMPARE(sheets.steps(), (QStringList{"showTranscoding", "closeTranscoding", "showPerformingOperation", "closePerformingOperation", "operationFailed"}));
        QCOMPARE(sheets.failure().message, QStringLiteral("The disc could not be written."));
        QVERIFY2(sheets.failure().informative.contains("cdrskin: SORRY"), qPrintable(sheets.failure().informative));
        QVERIFY(sheets.failure().details.contains("--allow_emulated_drives"));
        QVERIFY(sheets.failure().details.contains("cdrskin"));
        QVERIFY(!burn.isBusy());
        QVERIFY(alerts.texts().isEmpty());
        QVERIFY(QDir(m_ctx.audioFolder).isEmpty());
    }
};

TAMBLO_TEST_MAIN(TestBurnXorriso)
#include "tst_burn_xorriso.moc"
