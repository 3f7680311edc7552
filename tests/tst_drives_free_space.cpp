// The room left on a medium: read from drutil's "Space Free:" line on macOS
// (the stand-in drutil printing recorded status texts) and from xorriso's
// "Media space" on Linux (the real xorriso on pseudo-drives of a size the
// test chooses), and the room as the last link of the medium check chain.
#include "support/DriveQueries.h"
#include "support/FakeAlerts.h"
#include "support/FakeDriveBackend.h"
#include "support/SmallDisk.h"
#include "support/Files.h"
#include "support/TestMain.h"

#include <QFile>
#include <QTemporaryDir>

#include "drives/DrutilBackend.h"
#include "drives/DrutilParsing.h"
#include "drives/MediaQuestions.h"
#include "drives/XorrisoBackend.h"
#include "drives/XorrisoParsing.h"

static const QString kFakeDrutil = fake("drutil");
static const QString kHangTool = fake("hang-tool");

#define SPACE(var, backend, drive)                  \
    MediaSpace var;                                 \
    freeSpaceOnce(backend, drive, var, 60000, 20);  \
    if (QTest::currentTestFailed())                 \
        return;

class TestDrivesFreeSpace : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;

private slots:
    // ---- reading the tools' texts -------------------------------------------
    void drutilSpaceFree_data()
    {
        QTest::addColumn<QString>("fixture");
        QTest::addColumn<bool>("known");
        QTest::addColumn<qint64>("sectors");
        QTest::newRow("blank DVD-R") << "drutil-status-blank-dvdr.txt" << true << qint64(2297888);
        QTest::newRow("blank CD-R") << "synthetic-drutil-status-blank-cdr.txt" << true << qint64(359846);
        QTest::newRow("blank BD-R") << "synthetic-drutil-status-blank-bdr.txt" << true << qint64(12219392);
        QTest::newRow("blank DVD+RW") << "synthetic-drutil-status-blank-dvdplusrw.txt" << true << qint64(2295104);
        QTest::newRow("pressed CD") << "drutil-status-pressed-cdrom-audio.txt" << true << qint64(0);
        QTest::newRow("no disc") << "synthetic-drutil-status-no-media.txt" << false << qint64(0);
    }
    void drutilSpaceFree()
    {
        QFETCH(QString, fixture);
        QFETCH(bool, known);
        QFETCH(qint64, sectors);
        const std::optional<qint64> got = DrutilParsing::spaceFreeSectors(fixtureText(fixture));
        QCOMPARE(got.has_value(), known);
        if (known)
            QCOMPARE(*got, sectors);
    }

    void drutilTimeIsTheSameCount()
    {
        // The time is minutes:seconds:frames at 75 frames a second: the same
        // count as the blocks, read when the blocks are missing.
        const QString line = QStringLiteral("           Type: CD-R                 Name: /dev/disk4\n"
                                            "     Space Free:   79:57:71\n");
        QCOMPARE(DrutilParsing::spaceFreeSectors(line).value_or(-1), qint64(79 * 60 * 75 + 57 * 75 + 71));
        QCOMPARE(qint64(79 * 60 * 75 + 57 * 75 + 71), qint64(359846));
        QVERIFY(!DrutilParsing::spaceFreeSectors(QStringLiteral("drutil: invalid drive number 7\n")).has_value());
        // A figure past any disc is no figure (found by the fuzz target).
        QVERIFY(!DrutilParsing::spaceFreeSectors(QStringLiteral("Space Free: 400000000000000079:57:71")).has_value());
        QVERIFY(!DrutilParsing::spaceFreeSectors(
                     QStringLiteral("Space Free:  blocks: 99999999999999999999999 / 1GB")).has_value());
    }

    void xorrisoMediaSpace()
    {
        QCOMPARE(XorrisoParsing::mediaSpaceSectors(fixtureText("xorriso-tell-media-space-stdio-blank.txt"))
                     .value_or(-1),
                 qint64(41107816));
        QCOMPARE(XorrisoParsing::mediaSpaceSectors(fixtureText("xorriso-tell-media-space-stdio-written.txt"))
                     .value_or(-1),
                 qint64(41082158));
        // A drive that could not be acquired prints no such line.
        QVERIFY(!XorrisoParsing::mediaSpaceSectors(fixtureText("xorriso-outdev-devsr0-absent-toc.txt")).has_value());
        QVERIFY(!XorrisoParsing::mediaSpaceSectors(QString()).has_value());
        const ToolCommand c = XorrisoParsing::spaceCommand(QStringLiteral("/usr/bin/xorriso"), QStringLiteral("/dev/sr0"));
        QCOMPARE(c.arguments, (QStringList{"-drive_access", "shared:readonly", "-outdev", "/dev/sr0", "-tell_media_space"}));
    }

    // ---- macOS: the stand-in drutil ------------------------------------------
    void macRoomFromTheStandInDrutil()
    {
        const QString log = m_dir.filePath(QStringLiteral("drutil.log"));
        qputenv("TAMBLO_FAKE_DRUTIL_LOG", log.toLocal8Bit());
        qputenv("TAMBLO_FAKE_DRUTIL_LIST", fixture("synthetic-drutil-list-two-drives-respaced.txt").toLocal8Bit());
        qputenv("TAMBLO_FAKE_DRUTIL_STATUS_1", fixture("synthetic-drutil-status-blank-cdr.txt").toLocal8Bit());
        qputenv("TAMBLO_FAKE_DRUTIL_STATUS_2", fixture("drutil-status-blank-dvdr.txt").toLocal8Bit());
        DrutilBackend backend(kFakeDrutil);
        SPACE(cd, backend, numberedDrive(QStringLiteral("1")));
        SPACE(dvd, backend, numberedDrive(QStringLiteral("2")));
        SPACE(unknown, backend, numberedDrive(QStringLiteral("7")));
        qunsetenv("TAMBLO_FAKE_DRUTIL_LOG");
        qunsetenv("TAMBLO_FAKE_DRUTIL_STATUS_1");
        qunsetenv("TAMBLO_FAKE_DRUTIL_STATUS_2");
        QVERIFY(cd.answered && cd.known);
        QCOMPARE(cd.freeSectors, qint64(359846));
        QVERIFY(dvd.answered && dvd.known);
        QCOMPARE(dvd.freeSectors, qint64(2297888));
        // A drive drutil refuses answers, without a figure.
        QVERIFY(unknown.answered);
        QVERIFY(!unknown.known);
        QCOMPARE(readText(log).split('\n', Qt::SkipEmptyParts),
                 (QStringList{"status|-drive|1", "status|-drive|2", "status|-drive|7"}));
    }

    void aHungDrutilDoesNotAnswer()
    {
        DrutilBackend backend(kHangTool, nullptr, 1000, 300);
        SPACE(s, backend, numberedDrive(QStringLiteral("1")));
        QVERIFY(!s.answered);
        QVERIFY(!s.known);
        QCOMPARE(s.verdict.outcome, ToolVerdict::Outcome::TimedOut);
    }

    // ---- Linux: xorriso on pseudo-drives --------------------------------------
    void linuxRoomOfAPseudoDriveIsItsFileSystemsLessThirtyTwo()
    {
        const QString xorriso = QStandardPaths::findExecutable(QStringLiteral("xorriso"));
        QVERIFY2(!xorriso.isEmpty(), "xorriso must be installed");
        SmallDisk disk(8 * 1024 * 1024);
        QVERIFY2(disk.isMounted(), qPrintable(disk.error()));
        XorrisoBackend backend(xorriso, QStringLiteral("eject"));
        SPACE(blank, backend, numberedDrive(QStringLiteral("1"), disk.device()));
        QVERIFY(blank.answered);
        QVERIFY2(blank.known, qPrintable(blank.text));
        QCOMPARE(blank.freeSectors, qint64(8 * 1024 * 1024 / 2048 - SmallDisk::ReservedSectors));
        // Asking made nothing: the file is still not there.
        QVERIFY(!QFile::exists(disk.file()));

        // Another file on the same file system takes its room.
        QVERIFY(writeFile(disk.file(QStringLiteral("other")), QByteArray(1024 * 1024, 'x')));
        SPACE(less, backend, numberedDrive(QStringLiteral("1"), disk.device()));
        QCOMPARE(less.freeSectors, blank.freeSectors - 512);

        SmallDisk room = SmallDisk::withRoomFor(4000);
        QVERIFY2(room.isMounted(), qPrintable(room.error()));
        SPACE(exact, backend, numberedDrive(QStringLiteral("1"), room.device()));
        QCOMPARE(exact.freeSectors, qint64(4000));
    }

    void linuxNoDeviceNoFigure()
    {
        XorrisoBackend backend(QStringLiteral("xorriso"), QStringLiteral("eject"));
        QVERIFY(backend.spaceCommand(numberedDrive(QStringLiteral("1"))).isNull());
        SPACE(none, backend, numberedDrive(QStringLiteral("1")));
        QVERIFY(none.answered);
        QVERIFY(!none.known);
        SPACE(missing, backend, numberedDrive(QStringLiteral("1"), QStringLiteral("/dev/sr9")));
        QVERIFY(!missing.known);
    }

    // ---- the room in the check chain -----------------------------------------
    void theRoomIsAskedLastAndComparedWhole_data()
    {
        QTest::addColumn<qint64>("needed");
        QTest::addColumn<bool>("known");
        QTest::addColumn<bool>("answered");
        QTest::addColumn<int>("result");
        QTest::newRow("exactly fits") << qint64(1000) << true << true << int(MediumCheck::Ok);
        QTest::newRow("one sector more") << qint64(1001) << true << true << int(MediumCheck::NoRoom);
        QTest::newRow("not known") << qint64(999999) << false << true << int(MediumCheck::Ok);
        QTest::newRow("no answer") << qint64(1) << false << false << int(MediumCheck::NoAnswer);
    }
    void theRoomIsAskedLastAndComparedWhole()
    {
        QFETCH(qint64, needed);
        QFETCH(bool, known);
        QFETCH(bool, answered);
        QFETCH(int, result);
        FakeDriveBackend drive;
        FakeAlerts alerts;
        drive.status = FakeDriveBackend::blank(QStringLiteral("DVD"));
        drive.space.answered = answered;
        drive.space.known = known;
        drive.space.freeSectors = 1000;
        if (!answered)
            drive.space.verdict.outcome = ToolVerdict::Outcome::TimedOut;
        MediaQuestions q(drive, alerts, [] { return false; }, [] { return numberedDrive(QStringLiteral("3")); });
        int sized = 0;
        SizeEstimate size = [&](std::function<void(const DiscSize &)> done) {
            ++sized;
            DiscSize s;
            s.sectors = needed;
            done(s);
        };
        bool ended = false;
        MediumCheck got;
        q.check(MediumNeed::Writable, QStringLiteral("DVD"), size, [&](MediumCheck c) {
            got = c;
            ended = true;
        });
        QVERIFY(QTest::qWaitFor([&] { return ended; }, 5000));
        QCOMPARE(int(got.result), result);
        QCOMPARE(sized, 1);
        QCOMPARE(drive.calls, (QStringList{"status 3", "status 3", "status 3", "space 3"}));
        QCOMPARE(got.needed.sectors, needed);
        QCOMPARE(got.roomKnown, known && answered);
        if (known && answered)
            QCOMPARE(got.freeSectors, qint64(1000));
        QVERIFY(alerts.shown.isEmpty());
    }

    void aRefusedMediumIsNeverMeasured()
    {
        FakeDriveBackend drive;
        FakeAlerts alerts;
        drive.status = FakeDriveBackend::blank(QStringLiteral("CD"));
        MediaQuestions q(drive, alerts, [] { return false; }, [] { return numberedDrive(QStringLiteral("1")); });
        int sized = 0;
        SizeEstimate size = [&](std::function<void(const DiscSize &)> done) {
            ++sized;
            done(DiscSize{});
        };
        bool ended = false;
        MediumCheck got;
        q.check(MediumNeed::Writable, QStringLiteral("DVD"), size, [&](MediumCheck c) {
            got = c;
            ended = true;
        });
        QVERIFY(QTest::qWaitFor([&] { return ended; }, 5000));
        QCOMPARE(got.result, MediumCheck::WrongFamily);
        QCOMPARE(sized, 0);
        QCOMPARE(drive.count(QStringLiteral("space")), 0);

        // Without an estimate the chain asks nothing about the room.
        ended = false;
        drive.calls.clear();
        drive.status = FakeDriveBackend::blank(QStringLiteral("DVD"));
        q.check(MediumNeed::Writable, QStringLiteral("DVD"), [&](MediumCheck c) {
            got = c;
            ended = true;
        });
        QVERIFY(QTest::qWaitFor([&] { return ended; }, 5000));
        QCOMPARE(got.result, MediumCheck::Ok);
        QCOMPARE(drive.count(QStringLiteral("space")), 0);
    }
};

TAMBLO_TEST_MAIN(TestDrivesFreeSpace)
#include "tst_drives_free_space.moc"
