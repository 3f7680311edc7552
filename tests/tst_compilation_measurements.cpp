// Records and measurements: size text, duration text and seconds, folder
// totals, and probes of real media made here with ffmpeg.
#include "support/TestMain.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>
#include <atomic>
#include <sys/stat.h>

#include "compilation/Measurements.h"

using namespace Measurements;

static bool writeBytes(const QString &path, qint64 n, char fill = 'x')
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return false;
    f.write(QByteArray(int(n), fill));
    return f.error() == QFile::NoError;
}

static QString fixture(const QString &name)
{
    QFile f(QStringLiteral(TAMBLO_FIXTURES_DIR "/") + name);
    if (!f.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(f.readAll());
}

class TestCompilationMeasurements : public QObject {
    Q_OBJECT

    QTemporaryDir m_media;
    QString m_ffmpeg;

    QString media(const QString &name) const { return m_media.filePath(name); }

    bool runFfmpeg(const QStringList &args)
    {
        QProcess p;
        p.setProgram(m_ffmpeg);
        p.setArguments(QStringList{QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-y")} + args);
        p.setStandardInputFile(QProcess::nullDevice());
        p.start();
        return p.waitForFinished(60000) && p.exitCode() == 0;
    }

private slots:
    void initTestCase()
    {
        m_ffmpeg = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
        QVERIFY2(!m_ffmpeg.isEmpty(), "ffmpeg must be installed for these tests");
        QVERIFY(m_media.isValid());
        const QString sine3 = QStringLiteral("sine=frequency=440:duration=3");
        QVERIFY(runFfmpeg({"-f", "lavfi", "-i", sine3, media("tone.wav")}));
        QVERIFY(runFfmpeg({"-f", "lavfi", "-i", sine3, media("tone.mp3")}));
        QVERIFY(runFfmpeg({"-f", "lavfi", "-i", "testsrc=duration=2:size=320x240:rate=25",
                           "-c:v", "libx264", "-pix_fmt", "yuv420p", media("clip.mp4")}));
        QVERIFY(runFfmpeg({"-f", "lavfi", "-i", "testsrc=duration=2:size=320x240:rate=25",
                           "-c:v", "libx264", "-f", "h264", media("raw.h264")}));
        QVERIFY(writeBytes(media("garbage.mp3"), 5000, '\x7f'));
    }

    // Size text ------------------------------------------------------------

    void sizeText_data()
    {
        QTest::addColumn<quint64>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("zero") << quint64(0) << "0.00 bytes";
        QTest::newRow("one") << quint64(1) << "1.00 bytes";
        QTest::newRow("512") << quint64(512) << "512.00 bytes";
        QTest::newRow("1024 stays bytes") << quint64(1024) << "1024.00 bytes";
        QTest::newRow("1025 is KB") << quint64(1025) << "1.00 KB";
        QTest::newRow("2048") << quint64(2048) << "2.00 KB";
        QTest::newRow("1.5 KB") << quint64(1536) << "1.50 KB";
        QTest::newRow("1 MiB stays KB") << quint64(1048576) << "1024.00 KB";
        QTest::newRow("1 MiB + 1") << quint64(1048577) << "1.00 MB";
        QTest::newRow("700.25 MB") << quint64(734265344) << "700.25 MB";
        QTest::newRow("1 GiB stays MB") << quint64(1073741824) << "1024.00 MB";
        QTest::newRow("5 GiB") << quint64(5) * 1073741824ull << "5.00 GB";
        QTest::newRow("1 TiB stays GB") << (quint64(1) << 40) << "1024.00 GB";
        QTest::newRow("2 TiB") << (quint64(2) << 40) << "2.00 TB";
        // There is no unit past TB: the largest count stays in TB.
        QTest::newRow("largest") << ~quint64(0) << "16777216.00 TB";
    }
    void sizeText()
    {
        QFETCH(quint64, bytes);
        QFETCH(QString, text);
        QCOMPARE(Measurements::sizeText(bytes), text);
    }

    // Duration text and seconds -------------------------------------------

    void durationText_data()
    {
        QTest::addColumn<QString>("report");
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("seconds");
        QTest::newRow("typical") << "  Duration: 01:02:03.99, start: 0.000000" << " 01:02:03.9" << qint64(3723);
        QTest::newRow("three minutes") << "Input #0\n  Duration: 00:03:25.43, start: 0.0" << " 00:03:25.4" << qint64(205);
        QTest::newRow("N/A") << "  Duration: N/A, start: 0.025057, bitrate: 192 kb/s" << " N/A, start" << qint64(0);
        QTest::newRow("no marker") << "/x/y.mp3: Invalid data found when processing input\n" << "" << qint64(0);
        QTest::newRow("empty report") << "" << "" << qint64(0);
        QTest::newRow("short tail kept") << "  Duration: 00:01" << " 00:01" << qint64(60);  // hours 00, minutes 01
        QTest::newRow("marker at end") << "  Duration:" << "" << qint64(0);
        // Over 99 hours the text cannot hold the hours: only two digits are read.
        QTest::newRow("over 99 hours") << "  Duration: 100:00:00.00, start: 0" << " 100:00:00." << qint64(36000);
        // The report repeats the file name; a name holding the marker is not the report line.
        QTest::newRow("marker in file name")
            << "Input #0, mp3, from '/m/Duration: 12:34:56.78.mp3':\n  Duration: 00:00:07.00, start: 0"
            << " 00:00:07.0" << qint64(7);
        QTest::newRow("CR line ends") << "Input #0\r\n  Duration: 00:00:09.50, b" << " 00:00:09.5" << qint64(9);
    }
    void durationText()
    {
        QFETCH(QString, report);
        QFETCH(QString, text);
        QFETCH(qint64, seconds);
        const QString got = durationTextFromProbe(report);
        QCOMPARE(got, text);
        QVERIFY(got.size() <= 11);
        QCOMPARE(Return_Seconds_From_Duration_Str(got), seconds);
    }

    void durationFromFixtures_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("seconds");
        QTest::newRow("mp3") << "ffmpeg-probe-mp3.txt" << " 00:00:30.0" << qint64(30);
        QTest::newRow("mp4") << "ffmpeg-probe-mp4-h264-aac.txt" << " 00:01:00.0" << qint64(60);
        QTest::newRow("wav") << "ffmpeg-probe-wav.txt" << " 00:00:10.0" << qint64(10);
        QTest::newRow("raw h264") << "ffmpeg-probe-raw-h264-duration-NA.txt" << " N/A, bitra" << qint64(0);
        QTest::newRow("mp3 from pipe") << "ffmpeg-probe-mp3-from-pipe-duration-NA.txt" << " N/A, start" << qint64(0);
    }
    void durationFromFixtures()
    {
        QFETCH(QString, file);
        QFETCH(QString, text);
        QFETCH(qint64, seconds);
        const QString report = fixture(file);
        QVERIFY2(!report.isEmpty(), qPrintable(file));
        QCOMPARE(durationTextFromProbe(report), text);
        QCOMPARE(Return_Seconds_From_Duration_Str(text), seconds);
    }

    void secondsFromText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("seconds");
        QTest::newRow("zero") << " 00:00:00.0" << qint64(0);
        QTest::newRow("fraction dropped") << " 00:00:59.9" << qint64(59);
        QTest::newRow("hours") << " 99:59:59.9" << qint64(99 * 3600 + 59 * 60 + 59);
        QTest::newRow("empty") << "" << qint64(0);
        QTest::newRow("garbage") << "abcdefghijk" << qint64(0);
        // Fields " 1:02:03.4x" read as "1:", "2:", "3.": 1 h, 2 min, 3 s.
        QTest::newRow("shifted fields") << " 1:02:03.4x" << qint64(3723);
        QTest::newRow("signed pair") << " 01:-5:00.0" << qint64(3600 - 300);
        // A time below zero, as ffmpeg writes one for a broken file, is no
        // playing time: 0, never negative.
        QTest::newRow("negative hours") << " -1:00:00.0" << qint64(0);
        QTest::newRow("ffmpeg's negative time") << " 00:00:-1.-" << qint64(0);
        QTest::newRow("all fields negative") << " -9:-9:-9.-" << qint64(0);
        QTest::newRow("blank-led pair") << "  1: 2: 3.0" << qint64(3600 + 120 + 3);
    }
    void secondsFromText()
    {
        QFETCH(QString, text);
        QFETCH(qint64, seconds);
        QCOMPARE(Return_Seconds_From_Duration_Str(text), seconds);
    }

    // Path pieces and characters ------------------------------------------

    void pathPieces()
    {
        QCOMPARE(lastPathComponent("/music/track 01.mp3"), QString("track 01.mp3"));
        QCOMPARE(deletingLastPathComponent("/music/track 01.mp3"), QString("/music"));
        QCOMPARE(deletingLastPathComponent("/track.mp3"), QString("/"));
        // Doubled slashes: the folder still ends without one.
        QCOMPARE(deletingLastPathComponent("/music//track.mp3"), QString("/music"));
        QCOMPARE(deletingLastPathComponent("music//track.mp3"), QString("music"));
        QCOMPARE(deletingLastPathComponent("//track.mp3"), QString("/"));
        QCOMPARE(deletingLastPathComponent("/music///"), QString("/"));
        QCOMPARE(pathExtension("/music/Song.MP3"), QString("MP3"));
        QCOMPARE(pathExtension("/v/clip.mpeg-4"), QString("mpeg-4"));
        QCOMPARE(pathExtension("/v/archive.tar.gz"), QString("gz"));
        QCOMPARE(pathExtension("/v/noext"), QString());
        QCOMPARE(pathExtension("/v/.hidden"), QString());
        QCOMPARE(pathExtension("/v.d/noext"), QString());
        QCOMPARE(pathExtension("/v/trailing."), QString());
    }

    void splitChars()
    {
        QVERIFY(splitStringIntoChars(QString()).isEmpty());
        QCOMPARE(splitStringIntoChars("ab c"), QStringList({"a", "b", " ", "c"}));
        const QStringList accented = splitStringIntoChars(QString::fromUtf8("é1"));
        QCOMPARE(accented.size(), 2);
        QCOMPARE(accented.first(), QString::fromUtf8("é"));
    }

    // Folder totals -------------------------------------------------------

    void folderWithOneFile()
    {
        QTemporaryDir dir;
        QVERIFY(writeBytes(dir.filePath("f.bin"), 2048));
        QCOMPARE(folderSize(dir.path()), quint64(2048));
        const NodeDataFolder node = makeDataFolderRecord(dir.path());
        QCOMPARE(node.s_Path, dir.path());
        QCOMPARE(node.i_Size_in_KBytes, quint64(2));
        QCOMPARE(node.s_Size, QString("2.00 KB"));
    }

    void emptyAndBadFolders()
    {
        QTemporaryDir dir;
        QCOMPARE(folderSize(dir.path()), quint64(0));
        QCOMPARE(makeDataFolderRecord(dir.path()).s_Size, QString("0.00 bytes"));
        QCOMPARE(folderSize(dir.filePath("does-not-exist")), quint64(0));
        QCOMPARE(folderSize(QString()), quint64(0));
        QVERIFY(writeBytes(dir.filePath("plain.txt"), 300));
        QCOMPARE(folderSize(dir.filePath("plain.txt")), quint64(0));  // a file is not a folder
        const NodeDataFolder gone = makeDataFolderRecord(dir.filePath("gone"));
        QCOMPARE(gone.i_Size_in_KBytes, quint64(0));
        QCOMPARE(gone.s_Size, QString("0.00 bytes"));
    }

    void nestedHiddenAndFolderEntries()
    {
        QTemporaryDir dir;
        QDir d(dir.path());
        QVERIFY(d.mkpath("a/b/c"));
        QVERIFY(d.mkpath(".hiddendir"));
        QVERIFY(writeBytes(dir.filePath("top.bin"), 100));
        QVERIFY(writeBytes(dir.filePath(".hidden.bin"), 10));
        QVERIFY(writeBytes(dir.filePath("a/b/c/deep.bin"), 1000));
        QVERIFY(writeBytes(dir.filePath(".hiddendir/in.bin"), 7));
        quint64 folders = 0;
        for (const char *sub : {"a", "a/b", "a/b/c", ".hiddendir"})
            folders += quint64(QFileInfo(dir.filePath(sub)).size());
        QVERIFY(folders > 0);  // folders count with their own entry's size
        QCOMPARE(folderSize(dir.path()), quint64(100 + 10 + 1000 + 7) + folders);
    }

    void symbolicLinks()
    {
        QTemporaryDir dir;
        QTemporaryDir outside;
        QVERIFY(writeBytes(outside.filePath("target.bin"), 5000));
        QVERIFY(writeBytes(dir.filePath("own.bin"), 100));
        QVERIFY(QFile::link(outside.filePath("target.bin"), dir.filePath("link.bin")));
        // A link to a file counts as the file it points to.
        QCOMPARE(folderSize(dir.path()), quint64(5100));
        // A link back up the tree counts as a folder entry and is not walked.
        QVERIFY(QFile::link(dir.path(), dir.filePath("loop")));
        QVERIFY(QFile::link(dir.filePath("missing"), dir.filePath("dangling")));
        const quint64 selfEntry = quint64(QFileInfo(dir.path()).size());
        QElapsedTimer t;
        t.start();
        QCOMPARE(folderSize(dir.path()), quint64(5100) + selfEntry);
        QVERIFY(t.elapsed() < 5000);
    }

    void folderVanishesWhileMeasured()
    {
        QTemporaryDir dir;
        QDir d(dir.path());
        quint64 full = 0;
        for (int i = 0; i < 40; ++i) {
            const QString sub = QStringLiteral("d%1").arg(i);
            QVERIFY(d.mkpath(sub));
            for (int j = 0; j < 50; ++j)
                QVERIFY(writeBytes(dir.filePath(sub + QStringLiteral("/f%1").arg(j)), 10));
        }
        full = folderSize(dir.path());
        QVERIFY(full >= 40 * 50 * 10);
        // Take the tree away while another thread walks it, several times.
        for (int round = 0; round < 3; ++round) {
            QTemporaryDir copy;
            QDir c(copy.path());
            for (int i = 0; i < 40; ++i) {
                const QString sub = QStringLiteral("d%1").arg(i);
                QVERIFY(c.mkpath(sub));
                for (int j = 0; j < 50; ++j)
                    QVERIFY(writeBytes(copy.filePath(sub + QStringLiteral("/f%1").arg(j)), 10));
            }
            std::atomic<quint64> measured{~quint64(0)};
            const QString path = copy.path();
            QThread *walker = QThread::create([&] { measured = folderSize(path); });
            walker->start();
            QVERIFY(QDir(path).removeRecursively());
            QVERIFY(walker->wait(30000));
            delete walker;
            QVERIFY(measured.load() != ~quint64(0));
            QVERIFY(measured.load() <= full + 4096 * 41);
            QCOMPARE(folderSize(path), quint64(0));
        }
    }

    // Real probes ---------------------------------------------------------

    void probeRealMedia_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("seconds");
        QTest::newRow("wav 3 s") << "tone.wav" << " 00:00:03.0" << qint64(3);
        QTest::newRow("mp3 3 s") << "tone.mp3" << " 00:00:03.0" << qint64(3);
        QTest::newRow("mp4 2 s") << "clip.mp4" << " 00:00:02.0" << qint64(2);
        QTest::newRow("raw h264 N/A") << "raw.h264" << " N/A, bitra" << qint64(0);
    }
    void probeRealMedia()
    {
        QFETCH(QString, name);
        QFETCH(QString, text);
        QFETCH(qint64, seconds);
        const QString got = GetMediaFileDuration(m_ffmpeg, media(name));
        QCOMPARE(got, text);
        QCOMPARE(got.size(), 11);
        QCOMPARE(Return_Seconds_From_Duration_Str(got), seconds);
    }

    void mediaRecordFilledInFull()
    {
        const QString path = media("tone.wav");
        const NodeMediaFile node = makeMediaRecord(m_ffmpeg, path);
        QCOMPARE(node.s_File_URL, QUrl::fromLocalFile(path));
        QCOMPARE(node.s_File_Path, path);
        QCOMPARE(node.s_Folder_Path, m_media.path());
        QCOMPARE(node.s_File_Name_With_Extension, QString("tone.wav"));
        QCOMPARE(node.s_File_Extension, QString("wav"));
        QCOMPARE(node.s_Duration, QString(" 00:00:03.0"));
        QCOMPARE(node.i_Duration_in_Seconds, qint64(3));
        QCOMPARE(node.s_File_Size, Measurements::sizeText(quint64(QFileInfo(path).size())));
        QVERIFY(node.s_File_Size.endsWith(" KB"));
    }

    void awkwardNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("spaces") << "my  song 01.wav";
        QTest::newRow("quotes") << "it's \"loud\".wav";
        QTest::newRow("non-ASCII") << QString::fromUtf8("Café Ünïcødé 日本.wav");
        QTest::newRow("leading dash") << "-i.wav";
        QTest::newRow("leading dashes") << "--help.wav";
        QTest::newRow("shell characters") << "a;b $(x) `y` *.wav";
        QTest::newRow("marker in name") << "Duration: 12:34:56.78.wav";
    }
    void awkwardNames()
    {
        QFETCH(QString, name);
        const QString path = media(name);
        QFile::remove(path);
        QVERIFY(QFile::copy(media("tone.wav"), path));
        const NodeMediaFile node = makeMediaRecord(m_ffmpeg, path);
        QCOMPARE(node.s_File_Name_With_Extension, name);
        QCOMPARE(node.s_File_Extension, QString("wav"));
        QCOMPARE(node.s_Duration, QString(" 00:00:03.0"));
        QCOMPARE(node.i_Duration_in_Seconds, qint64(3));
        QVERIFY(QFile::exists(path));  // a name that looks like an option did not become an output
    }

    void unreadableInput()
    {
        // Not media at all.
        NodeMediaFile bad = makeMediaRecord(m_ffmpeg, media("garbage.mp3"));
        QCOMPARE(bad.s_Duration, QString());
        QCOMPARE(bad.i_Duration_in_Seconds, qint64(0));
        QCOMPARE(bad.s_File_Size, QString("4.88 KB"));
        // Gone before the probe.
        NodeMediaFile gone = makeMediaRecord(m_ffmpeg, media("vanished.mp3"));
        QCOMPARE(gone.s_Duration, QString());
        QCOMPARE(gone.i_Duration_in_Seconds, qint64(0));
        QCOMPARE(gone.s_File_Size, QString("0.00 bytes"));
        QCOMPARE(gone.s_File_Name_With_Extension, QString("vanished.mp3"));
        // A folder where a file was expected.
        QVERIFY(QDir(m_media.path()).mkpath("folder.mp3"));
        NodeMediaFile folder = makeMediaRecord(m_ffmpeg, media("folder.mp3"));
        QCOMPARE(folder.s_Duration, QString());
        QCOMPARE(folder.i_Duration_in_Seconds, qint64(0));
        // A file the user may not read (only meaningful when not running as root).
        const QString locked = media("locked.wav");
        QVERIFY(QFile::copy(media("tone.wav"), locked));
        QVERIFY(QFile::setPermissions(locked, QFileDevice::Permissions()));
        const NodeMediaFile lockedNode = makeMediaRecord(m_ffmpeg, locked);
        if (QFile(locked).open(QIODevice::ReadOnly))
            QCOMPARE(lockedNode.i_Duration_in_Seconds, qint64(3));  // root reads it anyway
        else
            QCOMPARE(lockedNode.s_Duration, QString());
    }

    void missingTranscoder()
    {
        QCOMPARE(GetMediaFileDuration(m_media.filePath("no-such-ffmpeg"), media("tone.wav")), QString());
        QCOMPARE(GetMediaFileDuration(QString(), media("tone.wav")), QString());
        const NodeMediaFile node = makeMediaRecord(QString(), media("tone.wav"));
        QCOMPARE(node.s_Duration, QString());
        QCOMPARE(node.i_Duration_in_Seconds, qint64(0));
        QVERIFY(node.s_File_Size.endsWith(" KB"));
    }

    void probeThatHangsIsGivenUp()
    {
        // Opening a named pipe for reading waits for a writer that never comes.
        const QString fifo = media("stuck.mp3");
        QVERIFY(::mkfifo(QFile::encodeName(fifo).constData(), 0600) == 0);
        QElapsedTimer t;
        t.start();
        const QString text = GetMediaFileDuration(m_ffmpeg, fifo, 1500);
        QCOMPARE(text, QString());
        QVERIFY2(t.elapsed() < 10000, qPrintable(QString::number(t.elapsed())));
        QVERIFY(t.elapsed() >= 1400);
    }
};

TAMBLO_TEST_MAIN(TestCompilationMeasurements)
#include "tst_compilation_measurements.moc"
