#include "support/DriveQueries.h"
#include "support/Files.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include "drives/DrutilBackend.h"
#include "drives/DrutilParsing.h"

static const QString kFakeDrutil = fake("drutil");
static const QString kHangTool = fake("hang-tool");

#define STATUS(var, backend, drive)             \
    MediaStatus var;                            \
    statusOnce(backend, drive, var, 10000, 50); \
    if (QTest::currentTestFailed())             \
        return;

class TestDrivesDrutilBackend : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_log;

    QStringList logLines() const
    {
        return readText(m_log).split('\n', Qt::SkipEmptyParts);
    }

private slots:
    void init()
    {
        m_log = m_dir.filePath(QStringLiteral("drutil-%1.log").arg(QTest::currentTestFunction()));
        QFile::remove(m_log);
        qputenv("TAMBLO_FAKE_DRUTIL_LOG", m_log.toLocal8Bit());
        qputenv("TAMBLO_FAKE_DRUTIL_LIST", fixture("synthetic-drutil-list-two-drives-respaced.txt").toLocal8Bit());
        qunsetenv("TAMBLO_FAKE_DRUTIL_STATUS");
        qputenv("TAMBLO_FAKE_DRUTIL_STATUS_1", fixture("synthetic-drutil-status-blank-cdr.txt").toLocal8Bit());
        qputenv("TAMBLO_FAKE_DRUTIL_STATUS_2", fixture("synthetic-drutil-status-blank-dvdplusrw.txt").toLocal8Bit());
    }

    void listRunsDrutilListAndParses()
    {
        DrutilBackend backend(kFakeDrutil);
        DriveList got;
        bool answered = false;
        backend.listDrives([&](const DriveList &l) {
            got = l;
            answered = true;
        });
        QVERIFY(!answered);  // never inside the call
        QTRY_VERIFY_WITH_TIMEOUT(answered, 10000);
        QCOMPARE(logLines(), QStringList{"list"});
        QCOMPARE(got.size(), 2);
        QCOMPARE(got[0].label(), QString("OPTIARC - DVD RW AD-5970H"));
        QCOMPARE(got[1].s_Drive_Number, QString("2"));
        QCOMPARE(got[1].label(), QString("HL-DT-ST - DVDRAM GSA-H44N"));
    }

    void listOneDriveFromRealText()
    {
        qputenv("TAMBLO_FAKE_DRUTIL_LIST", fixture("drutil-list-one-drive.txt").toLocal8Bit());
        DrutilBackend backend(kFakeDrutil);
        DriveList got;
        bool answered = false;
        backend.listDrives([&](const DriveList &l) { got = l; answered = true; });
        QTRY_VERIFY_WITH_TIMEOUT(answered, 10000);
        QCOMPARE(got.size(), 1);
        QCOMPARE(got[0].label(), QString("HL-DT-ST - DVDRW  GX50N"));
    }

    void statusOfEachDrive()
    {
        DrutilBackend backend(kFakeDrutil);
        STATUS(s1, backend, numberedDrive("1"))
        QCOMPARE(s1.text, fixtureText("synthetic-drutil-status-blank-cdr.txt"));
        QCOMPARE(s1.answers.driveEmpty, false);
        QCOMPARE(s1.answers.oneTimeWritable, true);
        QCOMPARE(s1.answers.reWritable, false);
        QCOMPARE(s1.answers.family, QString("CD"));  // though the drive is a "DVDRW"

        STATUS(s2, backend, numberedDrive("2"))
        QCOMPARE(s2.answers.driveEmpty, false);
        QCOMPARE(s2.answers.oneTimeWritable, true);
        QCOMPARE(s2.answers.reWritable, true);
        QCOMPARE(s2.answers.family, QString("DVD"));
        QCOMPARE(logLines(), QStringList({"status|-drive|1", "status|-drive|2"}));
    }

    void statusOfRealFixtures_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("empty");
        QTest::addColumn<bool>("writable");
        QTest::addColumn<bool>("rewritable");
        QTest::addColumn<QString>("family");
        QTest::newRow("pressed CD") << "drutil-status-pressed-cdrom-audio.txt" << false << false << false << "CD";
        QTest::newRow("blank DVD-R") << "drutil-status-blank-dvdr.txt" << false << true << false << "DVD";
        QTest::newRow("no medium") << "synthetic-drutil-status-no-media.txt" << true << false << false << "Other";
        QTest::newRow("blank BD-R") << "synthetic-drutil-status-blank-bdr.txt" << false << true << false << "BD";
    }

    void statusOfRealFixtures()
    {
        QFETCH(QString, file);
        QFETCH(bool, empty);
        QFETCH(bool, writable);
        QFETCH(bool, rewritable);
        QFETCH(QString, family);
        qputenv("TAMBLO_FAKE_DRUTIL_STATUS_1", fixture(file).toLocal8Bit());
        DrutilBackend backend(kFakeDrutil);
        STATUS(s, backend, numberedDrive("1"))
        QCOMPARE(s.text, fixtureText(file));
        QCOMPARE(s.answers.driveEmpty, empty);
        QCOMPARE(s.answers.oneTimeWritable, writable);
        QCOMPARE(s.answers.reWritable, rewritable);
        QCOMPARE(s.answers.family, family);
    }

    void rejectedDriveNumberIsSearchedLikeAnyText()
    {
        DrutilBackend backend(kFakeDrutil);
        STATUS(s, backend, numberedDrive("7"))
        QCOMPARE(logLines(), QStringList{"status|-drive|7"});
        QVERIFY2(s.text.contains("invalid drive number 7"), qPrintable(s.text));  // standard error is read too
        QCOMPARE(s.answers.driveEmpty, false);
        QCOMPARE(s.answers.oneTimeWritable, false);
        QCOMPARE(s.answers.reWritable, false);
        QCOMPARE(s.answers.family, QString("Other"));
    }

    void noDriveNumberMeansDriveOne()
    {
        DrutilBackend backend(kFakeDrutil);
        STATUS(s, backend, Object_Optical_Drive{})
        QCOMPARE(logLines(), QStringList{"status|-drive|1"});
        QCOMPARE(s.answers.family, QString("CD"));
    }

    void emptyOutput()
    {
        qunsetenv("TAMBLO_FAKE_DRUTIL_STATUS_1");
        qunsetenv("TAMBLO_FAKE_DRUTIL_LIST");
        DrutilBackend backend(kFakeDrutil);
        STATUS(s, backend, numberedDrive("1"))
        QCOMPARE(logLines(), QStringList{"status|-drive|1"});
        QVERIFY(s.text.isEmpty());
        QCOMPARE(s.answers.driveEmpty, false);
        QCOMPARE(s.answers.oneTimeWritable, false);
        QCOMPARE(s.answers.reWritable, false);
        QCOMPARE(s.answers.family, QString("Other"));
        DriveList got{numberedDrive("x")};
        bool answered = false;
        backend.listDrives([&](const DriveList &l) { got = l; answered = true; });
        QTRY_VERIFY_WITH_TIMEOUT(answered, 10000);
        QVERIFY(got.isEmpty());
    }

    void missingTool()
    {
        DrutilBackend backend(m_dir.filePath("no-such-drutil"));
        STATUS(s, backend, numberedDrive("1"))
        QVERIFY(s.text.isEmpty());
        QCOMPARE(s.answers.driveEmpty, false);
        QCOMPARE(s.answers.oneTimeWritable, false);
        QCOMPARE(s.answers.reWritable, false);
        QCOMPARE(s.answers.family, QString("Other"));
        bool answered = false;
        DriveList got{numberedDrive("x")};
        backend.listDrives([&](const DriveList &l) { got = l; answered = true; });
        QVERIFY(!answered);
        QTRY_VERIFY_WITH_TIMEOUT(answered, 10000);
        QVERIFY(got.isEmpty());

        DrutilBackend noPath{QString()};
        STATUS(none, noPath, numberedDrive("1"))
        QVERIFY(none.text.isEmpty());
    }

    void hangingToolTimesOutWithoutBlocking()
    {
        const QString hangLog = m_dir.filePath("hang.log");
        qputenv("TAMBLO_FAKE_HANG_LOG", hangLog.toLocal8Bit());
        DrutilBackend backend(kHangTool, nullptr, 400, 400);
        int ticks = 0;
        QTimer ticker;
        connect(&ticker, &QTimer::timeout, [&] { ++ticks; });
        ticker.start(20);
        QElapsedTimer clock;
        clock.start();
        STATUS(s, backend, numberedDrive("3"))
        const qint64 ms = clock.elapsed();
        QVERIFY2(ms >= 350 && ms < 5000, qPrintable(QString::number(ms)));
        QVERIFY2(ticks >= 5, "the event loop kept running while the tool hung");
        // What it printed before the time-out is dropped: no answer at all.
        QVERIFY(!s.answered);
        QCOMPARE(s.verdict.outcome, ToolVerdict::Outcome::TimedOut);
        QVERIFY(s.text.isEmpty());
        QCOMPARE(s.answers.driveEmpty, false);
        QCOMPARE(s.answers.oneTimeWritable, false);
        QCOMPARE(s.answers.reWritable, false);
        QCOMPARE(s.answers.family, QString("Other"));
        QCOMPARE(readText(hangLog), QString("status -drive 3\n"));

        bool answered = false;
        DriveList got{numberedDrive("x")};
        backend.listDrives([&](const DriveList &l) { got = l; answered = true; });
        QTRY_VERIFY_WITH_TIMEOUT(answered, 5000);
        QVERIFY(got.isEmpty());
        qunsetenv("TAMBLO_FAKE_HANG_LOG");
    }

    void trayCommandsAreLaunched()
    {
        DrutilBackend backend(kFakeDrutil);
        backend.ejectTray(numberedDrive("2"));
        QTRY_COMPARE_WITH_TIMEOUT(logLines(), QStringList{"tray|eject|-drive|2"}, 10000);
        backend.closeTray(numberedDrive("2"));
        QTRY_COMPARE_WITH_TIMEOUT(logLines(), QStringList({"tray|eject|-drive|2", "tray|close|-drive|2"}), 10000);
        QCOMPARE(backend.trayCommand(numberedDrive("1"), true),
                 (ToolCommand{kFakeDrutil, {"tray", "eject", "-drive", "1"}}));
    }

    void eraseAndInfoCommands()
    {
        DrutilBackend backend("/usr/bin/drutil");
        QCOMPARE(backend.eraseCommand(numberedDrive("2"), true),
                 (ToolCommand{"/usr/bin/drutil", {"erase", "full", "-drive", "2"}}));
        QCOMPARE(backend.eraseCommand(numberedDrive("2"), false),
                 (ToolCommand{"/usr/bin/drutil", {"erase", "quick", "-drive", "2"}}));
        QCOMPARE(backend.discInfoCommand(numberedDrive("3")),
                 (ToolCommand{"/usr/bin/drutil", {"status", "-drive", "3"}}));
        QCOMPARE(backend.listCommand(), (ToolCommand{"/usr/bin/drutil", {"list"}}));
        QCOMPARE(backend.statusCommand(numberedDrive("3")),
                 (ToolCommand{"/usr/bin/drutil", {"status", "-drive", "3"}}));
    }

    void manyQueriesAtOnce()
    {
        DrutilBackend backend(kFakeDrutil);
        QStringList families(6);
        int answered = 0;
        for (int i = 0; i < 6; ++i) {
            backend.queryStatus(numberedDrive(i % 2 ? "2" : "1"), [&, i](const MediaStatus &s) {
                families[i] = s.answers.family;
                ++answered;
            });
        }
        QTRY_COMPARE_WITH_TIMEOUT(answered, 6, 10000);
        QCOMPARE(families, QStringList({"CD", "DVD", "CD", "DVD", "CD", "DVD"}));
        QCOMPARE(logLines().size(), 6);
    }
};

TAMBLO_TEST_MAIN(TestDrivesDrutilBackend)
#include "tst_drives_drutil_backend.moc"
