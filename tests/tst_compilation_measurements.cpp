// Records and measurements: size text, duration text and seconds, folder
// totals, and probes of real media made here with ffmpeg.
#include "support/Files.h"
#include "support/TestMain.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>
#include <atomic>
#include <limits>
#include <sys/stat.h>

#include "compilation/Measurements.h"

using namespace Measurements;

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
        QVERIFY(writeFile(media("garbage.mp3"), QByteArray(5000, '\x7f')));
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

    // One described input: "Input #0, FORMAT, from 'NAME':", an optional
    // metadata block, then the duration line.
    static QString described(const QString &name, const QString &durationLine,
                             const QString &format = QStringLiteral("mp3"))
    {
        return QStringLiteral("Input #0, %1, from '%2':\n  Metadata:\n    encoder         : Lavf59\n%3\n"
                              "  Stream #0:0: Audio: mp3\n")
            .arg(format, name, durationLine);
    }

    void durationText_data()
    {
        QTest::addColumn<QString>("report");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("seconds");
        QTest::newRow("typical") << described("a.mp3", "  Duration: 01:02:03.99, start: 0.000000") << "a.mp3"
                                 << " 01:02:03.9" << qint64(3723);
        QTest::newRow("no metadata") << "Input #0, wav, from 'b.wav':\n  Duration: 00:03:25.43, start: 0.0\n"
                                     << "b.wav" << " 00:03:25.4" << qint64(205);
        QTest::newRow("N/A") << described("c.mp3", "  Duration: N/A, start: 0.025057, bitrate: 192 kb/s") << "c.mp3"
                             << " N/A, start" << qint64(0);
        QTest::newRow("no description") << "/x/y.mp3: Invalid data found when processing input\n" << "/x/y.mp3"
                                        << "" << qint64(0);
        QTest::newRow("empty report") << "" << "a.mp3" << "" << qint64(0);
        QTest::newRow("short line kept") << described("a.mp3", "  Duration: 00:01") << "a.mp3" << " 00:01"
                                         << qint64(60);  // hours 00, minutes 01
        QTest::newRow("marker ends the line") << described("a.mp3", "  Duration:") << "a.mp3" << "" << qint64(0);
        // Over 99 hours the text cannot hold the hours: only two digits are read.
        QTest::newRow("over 99 hours") << described("a.mp3", "  Duration: 100:00:00.00, start: 0") << "a.mp3"
                                       << " 100:00:00." << qint64(36000);
        // The report repeats the file name; a name holding the marker is not the report line.
        QTest::newRow("marker in file name")
            << described("/m/Duration: 12:34:56.78.mp3", "  Duration: 00:00:07.00, start: 0")
            << "/m/Duration: 12:34:56.78.mp3" << " 00:00:07.0" << qint64(7);
        QTest::newRow("demuxer list as format")
            << described("in.mp4", "  Duration: 00:01:00.00, start: 0", "mov,mp4,m4a,3gp,3g2,mj2") << "in.mp4"
            << " 00:01:00.0" << qint64(60);
        // A negative time is no playing time.
        QTest::newRow("negative time") << described("a.mp3", "  Duration: -00:00:-1.-50, start: 0") << "a.mp3"
                                       << " -00:00:-1." << qint64(0);
        // Another name, a line indented otherwise, a line between: no description.
        QTest::newRow("other name") << described("b.mp3", "  Duration: 00:00:07.00, start: 0") << "a.mp3" << ""
                                    << qint64(0);
        QTest::newRow("three blanks") << described("a.mp3", "   Duration: 00:00:07.00, start: 0") << "a.mp3" << ""
                                      << qint64(0);
        QTest::newRow("line between")
            << "Input #0, mp3, from 'a.mp3':\n[mp3 @ 0x1] a warning\n  Duration: 00:00:07.00, start: 0\n" << "a.mp3"
            << "" << qint64(0);
        QTest::newRow("second input only")
            << "Input #1, mp3, from 'a.mp3':\n  Duration: 00:00:07.00, start: 0\n" << "a.mp3" << "" << qint64(0);
    }
    void durationText()
    {
        QFETCH(QString, report);
        QFETCH(QString, name);
        QFETCH(QString, text);
        QFETCH(qint64, seconds);
        const QStringList got = durationTextsFromBatchReport(report, {name});
        QVERIFY(got.size() <= 1);
        QCOMPARE(got.value(0), text);
        QVERIFY(got.value(0).size() <= 11);
        QCOMPARE(Return_Seconds_From_Duration_Str(got.value(0)), seconds);
    }

    void durationFromFixtures_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("seconds");
        QTest::newRow("mp3") << "ffmpeg-probe-mp3.txt" << "in.mp3" << " 00:00:30.0" << qint64(30);
        QTest::newRow("mp4") << "ffmpeg-probe-mp4-h264-aac.txt" << "in.mp4" << " 00:01:00.0" << qint64(60);
        QTest::newRow("wav") << "ffmpeg-probe-wav.txt" << "t1.wav" << " 00:00:10.0" << qint64(10);
        QTest::newRow("raw h264") << "ffmpeg-probe-raw-h264-duration-NA.txt" << "raw.h264" << " N/A, bitra"
                                  << qint64(0);
        QTest::newRow("mp3 from pipe") << "ffmpeg-probe-mp3-from-pipe-duration-NA.txt" << "pipe:0" << " N/A, start"
                                       << qint64(0);
    }
    void durationFromFixtures()
    {
        QFETCH(QString, file);
        QFETCH(QString, name);
        QFETCH(QString, text);
        QFETCH(qint64, seconds);
        const QString report = fixtureText(file);
        QVERIFY2(!report.isEmpty(), qPrintable(file));
        QCOMPARE(durationTextsFromBatchReport(report, {name}), QStringList{text});
        QCOMPARE(Return_Seconds_From_Duration_Str(text), seconds);
    }

    // Several inputs in one report -----------------------------------------

    void batchOfFourFromFixture()
    {
        const QString report = fixtureText("ffmpeg-probe-batch-four-inputs.txt");
        QVERIFY(!report.isEmpty());
        const QStringList got = durationTextsFromBatchReport(report, {"a.mp3", "clip.mp4", "raw.h264", "t.wav"});
        QCOMPARE(got, QStringList({" 00:00:02.0", " 00:00:03.0", " N/A, bitra", " 00:00:04.0"}));
        QList<qint64> seconds;
        for (const QString &t : got)
            seconds << Return_Seconds_From_Duration_Str(t);
        QCOMPARE(seconds, QList<qint64>({2, 3, 0, 4}));
        // The names must be those given, in that order.
        QCOMPARE(durationTextsFromBatchReport(report, {"a.mp3", "t.wav", "raw.h264", "clip.mp4"}),
                 QStringList({" 00:00:02.0"}));
        QCOMPARE(durationTextsFromBatchReport(report, {"clip.mp4", "a.mp3"}), QStringList());
        // Fewer names than inputs: the first ones.
        QCOMPARE(durationTextsFromBatchReport(report, {"a.mp3", "clip.mp4"}),
                 QStringList({" 00:00:02.0", " 00:00:03.0"}));
    }

    void batchStopsAtTheUnreadableInput_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("garbage") << "ffmpeg-probe-batch-garbage-second.txt";
        QTest::newRow("missing") << "ffmpeg-probe-batch-missing-second.txt";
    }
    void batchStopsAtTheUnreadableInput()
    {
        QFETCH(QString, file);
        const QString report = fixtureText(file);
        QVERIFY(!report.isEmpty());
        const QString second = QString(QTest::currentDataTag()) + ".mp3";
        QCOMPARE(durationTextsFromBatchReport(report, {"a.mp3", second, "t.wav"}), QStringList({" 00:00:02.0"}));
    }

    // ffmpeg prints a name as it is: quotes, line breaks, a fake "Input #"
    // line or a fake duration line in a name change no input's duration.
    void hostileNamesFromFixture()
    {
        const QString report = fixtureText("ffmpeg-probe-batch-hostile-names.txt");
        QVERIFY(!report.isEmpty());
        const QString first = QStringLiteral(
            "say \"hi\" it's Input #1, mp3, from 'a.mp3':\n  Duration: -9:-9:-9.00, start: 0.000000, bitrate: 1 "
            "kbps\n.mp3");
        const QString second = QStringLiteral(
            "two':\n  Duration: 77:77:77.77, start: 0\nInput #3, wav, from 't.wav':\n  Duration: 55:00:00.00, "
            "start: 0\n  Stream #3:0: Audio\n.mp3");
        const QStringList got = durationTextsFromBatchReport(report, {"a.mp3", first, second, "t.wav"});
        QCOMPARE(got, QStringList({" 00:00:02.0", " 00:00:02.0", " 00:00:03.0", " 00:00:04.0"}));
        for (const QString &t : got)
            QVERIFY(Return_Seconds_From_Duration_Str(t) > 0);
    }

    // A name may fake the whole description of the input after it; the
    // real one, later, is the one read.
    void fakeDescriptionOfTheNextInput()
    {
        const QString fake = QStringLiteral("x':\n  Duration: 01:00:00.00, start: 0\nInput #1, mp3, from 'b.mp3':\n"
                                            "  Duration: 99:00:00.00, start: 0\n.mp3");
        const QString report = QStringLiteral("Input #0, mp3, from '%1':\n  Duration: 00:00:05.00, start: 0\n"
                                              "  Stream #0:0: Audio: mp3\n"
                                              "Input #1, mp3, from 'b.mp3':\n  Duration: 00:00:06.00, start: 0\n")
                                   .arg(fake);
        QCOMPARE(durationTextsFromBatchReport(report, {fake, "b.mp3"}), QStringList({" 00:00:05.0", " 00:00:06.0"}));
        // The same report when ffmpeg could not open b.mp3 (no real
        // description of it): nothing for b.mp3.
        const QString stopped = QStringLiteral("Input #0, mp3, from '%1':\n  Duration: 00:00:05.00, start: 0\n"
                                               "b.mp3: No such file or directory\n")
                                    .arg(fake);
        QCOMPARE(durationTextsFromBatchReport(stopped, {fake, "b.mp3"}), QStringList({" 00:00:05.0"}));
        // An unreadable input whose name fakes the next input's description.
        const QString third = QStringLiteral("c\nInput #2, mp3, from 'd.mp3':\n  Duration: 98:00:00.00, start: 0\n.mp3");
        const QString failedThird = QStringLiteral("Input #0, mp3, from 'a.mp3':\n  Duration: 00:00:01.00, start: 0\n"
                                                   "%1: Invalid data found when processing input\n")
                                        .arg(third);
        QCOMPARE(durationTextsFromBatchReport(failedThird, {"a.mp3", third, "d.mp3"}), QStringList({" 00:00:01.0"}));
    }

    void nameAsFfmpegPrintsIt()
    {
        QCOMPARE(nameAsPrinted(QStringLiteral("/a/b c.mp3")), QStringLiteral("/a/b c.mp3"));
        QCOMPARE(nameAsPrinted(QStringLiteral("a\nb\tc\rd.mp3")), QStringLiteral("a\nb\tc\rd.mp3"));
        QCOMPARE(nameAsPrinted(QString::fromUtf8("x\x01y\x1bz\x7f é.mp3")), QString::fromUtf8("x?y?z\x7f é.mp3"));
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
        QTest::newRow("fake duration") << " -9:-9:-9.0" << qint64(0);
        QTest::newRow("plus sign") << " +1:00:00.0" << qint64(3600);
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
        QVERIFY(writeFile(dir.filePath("f.bin"), QByteArray(2048, 'x')));
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
        QVERIFY(writeFile(dir.filePath("plain.txt"), QByteArray(300, 'x')));
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
        QVERIFY(writeFile(dir.filePath("top.bin"), QByteArray(100, 'x')));
        QVERIFY(writeFile(dir.filePath(".hidden.bin"), QByteArray(10, 'x')));
        QVERIFY(writeFile(dir.filePath("a/b/c/deep.bin"), QByteArray(1000, 'x')));
        QVERIFY(writeFile(dir.filePath(".hiddendir/in.bin"), QByteArray(7, 'x')));
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
        QVERIFY(writeFile(outside.filePath("target.bin"), QByteArray(5000, 'x')));
        QVERIFY(writeFile(dir.filePath("own.bin"), QByteArray(100, 'x')));
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
                QVERIFY(writeFile(dir.filePath(sub + QStringLiteral("/f%1").arg(j)), QByteArray(10, 'x')));
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
                    QVERIFY(writeFile(copy.filePath(sub + QStringLiteral("/f%1").arg(j)), QByteArray(10, 'x')));
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

    // Totals stop at the top --------------------------------------------

    void saturatingSums()
    {
        constexpr quint64 top = std::numeric_limits<quint64>::max();
        QCOMPARE(saturatingAdd(quint64(2), quint64(3)), quint64(5));
        QCOMPARE(saturatingAdd(top - 1, quint64(1)), top);
        QCOMPARE(saturatingAdd(top - 1, quint64(2)), top);
        QCOMPARE(saturatingAdd(quint64(1) << 63, quint64(1) << 63), top);
        constexpr qint64 stop = std::numeric_limits<qint64>::max();
        QCOMPARE(saturatingAdd(qint64(2), qint64(3)), qint64(5));
        QCOMPARE(saturatingAdd(stop, qint64(1)), stop);
        QCOMPARE(saturatingAdd(stop - 5, stop - 5), stop);
        QCOMPARE(saturatingAdd(qint64(-7), qint64(4)), qint64(4));  // below 0 counts 0
        QCOMPARE(Measurements::sizeText(top), QStringLiteral("16777216.00 TB"));
    }

    // A sparse file of the largest size a file may have plus links to it:
    // the total stays at the top instead of wrapping round to a few bytes.
    void folderTotalNeverWraps()
    {
        // tmpfs takes files up to 2^63 - 1 bytes; so does APFS.
        const QString base = QFileInfo(QStringLiteral("/dev/shm")).isWritable() ? QStringLiteral("/dev/shm")
                                                                               : QDir::tempPath();
        QTemporaryDir dir(base + QStringLiteral("/tamblo-sparse-XXXXXX"));
        QVERIFY(dir.isValid());
        const QString huge = dir.filePath("huge.bin");
        QFile f(huge);
        QVERIFY(f.open(QIODevice::WriteOnly));
        QVERIFY2(f.resize(std::numeric_limits<qint64>::max()), qPrintable(f.errorString()));
        f.close();
        QVERIFY(QFile::link(huge, dir.filePath("link one")));
        QVERIFY(QFile::link(huge, dir.filePath("link two")));
        const quint64 total = folderSize(dir.path());
        QCOMPARE(total, std::numeric_limits<quint64>::max());
        const NodeDataFolder node = makeDataFolderRecord(dir.path());
        QCOMPARE(node.i_Size_in_KBytes, std::numeric_limits<quint64>::max() >> 10);
        QCOMPARE(node.s_Size, QStringLiteral("16777216.00 TB"));
        // The file alone is just under the top.
        QVERIFY(QFile::remove(dir.filePath("link one")));
        QVERIFY(QFile::remove(dir.filePath("link two")));
        QCOMPARE(folderSize(dir.path()), quint64(std::numeric_limits<qint64>::max()));
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

    // Several real files in one ffmpeg run: it stops at the one it cannot
    // read; the inputs before it are described.
    void batchOfRealFiles()
    {
        const BatchProbe stopped =
            probeBatch(m_ffmpeg, {media("tone.wav"), media("clip.mp4"), media("garbage.mp3"), media("tone.mp3")});
        QVERIFY(stopped.toolStarted);
        QCOMPARE(stopped.durations, QStringList({" 00:00:03.0", " 00:00:02.0"}));
        const BatchProbe all = probeBatch(m_ffmpeg, {media("tone.wav"), media("raw.h264"), media("tone.mp3")});
        QVERIFY(all.toolStarted);
        QCOMPARE(all.durations, QStringList({" 00:00:03.0", " N/A, bitra", " 00:00:03.0"}));
        const BatchProbe missing = probeBatch(m_ffmpeg, {media("not-there.mp3"), media("tone.wav")});
        QVERIFY(missing.toolStarted);
        QCOMPARE(missing.durations, QStringList());
        const BatchProbe noTool = probeBatch(m_media.filePath("no-such-ffmpeg"), {media("tone.wav")});
        QVERIFY(!noTool.toolStarted);
        QCOMPARE(noTool.durations, QStringList());
    }

    // Real files whose names fake ffmpeg's own lines, probed together and
    // one by one.
    void hostileNamesOfRealFiles()
    {
        const QStringList names{
            QStringLiteral("say \"hi\" it's Input #1, mp3, from 'tone.wav':\n  Duration: -9:-9:-9.00, start: 0\n.wav"),
            QStringLiteral("two':\n  Duration: 77:77:77.77, start: 0\nInput #2, wav, from 'last.wav':\n"
                           "  Duration: 55:00:00.00, start: 0\n.wav"),
            QStringLiteral("Input #0, wav, from 'x':\n  Duration: 11:11:11.11, start: 0\n.wav"),
            QStringLiteral("last.wav"),
        };
        QStringList paths;
        for (const QString &name : names) {
            paths << media(name);
            QFile::remove(paths.last());
            QVERIFY2(QFile::copy(media("tone.wav"), paths.last()), qPrintable(name));
        }
        const BatchProbe together = probeBatch(m_ffmpeg, paths);
        QCOMPARE(together.durations, QStringList(names.size(), QStringLiteral(" 00:00:03.0")));
        for (const QString &path : paths) {
            const NodeMediaFile node = makeMediaRecord(m_ffmpeg, path);
            QCOMPARE(node.s_Duration, QStringLiteral(" 00:00:03.0"));
            QCOMPARE(node.i_Duration_in_Seconds, qint64(3));
        }
    }
};

TAMBLO_TEST_MAIN(TestCompilationMeasurements)
#include "tst_compilation_measurements.moc"
