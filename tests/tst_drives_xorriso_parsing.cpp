#include "support/Files.h"
#include "support/TestMain.h"

#include <QFile>

#include "drives/XorrisoParsing.h"

class TestDrivesXorrisoParsing : public QObject {
    Q_OBJECT
private slots:
    void devicesOneDrive()
    {
        const DriveList drives = XorrisoParsing::parseDevices(fixtureText("xorriso-devices-one-drive-1.4.2.txt"));
        QCOMPARE(drives.size(), 1);
        QCOMPARE(drives[0].s_Drive_Number, QString("1"));  // xorriso's own index is 0
        QCOMPARE(drives[0].s_Device_Path, QString("/dev/sr0"));
        QCOMPARE(drives[0].sManufacturer, QString("TSSTcorp"));
        QCOMPARE(drives[0].sModel, QString("DVD+-RW TS-L633J"));
        QCOMPARE(drives[0].label(), QString("TSSTcorp - DVD+-RW TS-L633J"));
    }

    void devicesNone()
    {
        QVERIFY(XorrisoParsing::parseDevices(fixtureText("xorriso-devices-no-drives.txt")).isEmpty());
        QVERIFY(XorrisoParsing::parseDevices(fixtureText("xorriso-devices-no-drives-after-stdio-outdev.txt")).isEmpty());
        QVERIFY(XorrisoParsing::parseDevices(QString()).isEmpty());
        QVERIFY(XorrisoParsing::parseDevices(QStringLiteral("garbage\n0 -dev\n'x' 'y'\n-----\n")).isEmpty());
        // A status text is no listing.
        QVERIFY(XorrisoParsing::parseDevices(fixtureText("xorriso-toc-stdio-written-1-session.txt")).isEmpty());
    }

    void devicesManyNumberedByPosition()
    {
        // Vendor padded to 8 with a trailing blank, as xorriso prints it; the
        // eleventh row's xorriso index has two digits.
        QString text = QStringLiteral("Beginning to scan for devices ...\nFull drive scan done\n"
                                      "-----------------------------------------------------------------------------\n");
        for (int i = 0; i < 11; ++i)
            text += QStringLiteral("%1  -dev '/dev/sr%1' rwrw-- :  'PIONEER ' 'BD-RW BDR-207D' \n").arg(i);
        text += QStringLiteral("-----------------------------------------------------------------------------\n");
        const DriveList drives = XorrisoParsing::parseDevices(text);
        QCOMPARE(drives.size(), 11);
        for (int i = 0; i < 11; ++i) {
            QCOMPARE(drives[i].s_Drive_Number, QString::number(i + 1));
            QCOMPARE(drives[i].s_Device_Path, QStringLiteral("/dev/sr%1").arg(i));
            QCOMPARE(drives[i].sManufacturer, QString("PIONEER"));
            QCOMPARE(drives[i].sModel, QString("BD-RW BDR-207D"));
        }
    }

    void commandsAreReadOnlyQueryAndBlanking()
    {
        const ToolCommand status = XorrisoParsing::statusCommand("/usr/bin/xorriso", "/dev/sr1");
        QCOMPARE(status.program, QString("/usr/bin/xorriso"));
        QCOMPARE(status.arguments, QStringList({"-drive_access", "shared:readonly", "-outdev", "/dev/sr1", "-toc"}));
        QCOMPARE(XorrisoParsing::eraseCommand("x", "/dev/sr1", true).arguments,
                 QStringList({"-outdev", "/dev/sr1", "-blank", "all"}));
        QCOMPARE(XorrisoParsing::eraseCommand("x", "/dev/sr1", false).arguments,
                 QStringList({"-outdev", "/dev/sr1", "-blank", "fast"}));
        QCOMPARE(XorrisoParsing::devicesCommand("x").arguments, QStringList({"-devices"}));
    }

    void profileAndStatusLines()
    {
        const QString t = fixtureText("xorriso-toc-stdio-written-1-session.txt");
        QCOMPARE(XorrisoParsing::mediaProfile(t), QString("stdio file"));
        QCOMPARE(XorrisoParsing::mediaStatus(t), QString("is written , is appendable"));
        QCOMPARE(XorrisoParsing::mediaProfile(fixtureText("synthetic-xorriso-toc-blank-bdr.txt")),
                 QString("BD-R sequential recording"));
        QVERIFY(XorrisoParsing::mediaProfile(QString()).isEmpty());
        QVERIFY(XorrisoParsing::mediaStatus(QString()).isEmpty());
    }

    void answersOnFixtures_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("empty");
        QTest::addColumn<bool>("writable");
        QTest::addColumn<bool>("rewritable");
        QTest::addColumn<QString>("family");
        QTest::newRow("empty drive") << "xorriso-toc-empty-drive-not-present-1.4.2.txt" << true << false << false << "Other";
        QTest::newRow("drive missing") << "xorriso-outdev-devsr0-absent-toc.txt" << true << false << false << "Other";
        QTest::newRow("blank CD-R") << "xorriso-toc-blank-cdr-excerpt.txt" << false << true << false << "CD";
        QTest::newRow("blank DVD+RW") << "synthetic-xorriso-toc-blank-dvdplusrw.txt" << false << true << true << "DVD";
        QTest::newRow("appendable DVD+R") << "xorriso-toc-dvdplusr-appendable-non-iso-sessions-excerpt.txt"
                                          << false << true << false << "DVD";
        QTest::newRow("appendable DVD+R, toc unreadable") << "xorriso-toc-dvdplusr-damaged-toc-failure-excerpt.txt"
                                                          << false << true << false << "DVD";
        QTest::newRow("blank BD-R") << "synthetic-xorriso-toc-blank-bdr.txt" << false << true << false << "BD";
        QTest::newRow("closed (stdio)") << "xorriso-toc-stdio-nonISO-data-closed.txt" << false << false << true << "Other";
        QTest::newRow("blank (stdio)") << "xorriso-toc-stdio-nonexistent-file-blank.txt" << false << true << true << "Other";
        QTest::newRow("one session (stdio)") << "xorriso-toc-stdio-written-1-session.txt" << false << true << true << "Other";
        QTest::newRow("two sessions (stdio)") << "xorriso-toc-stdio-written-2-sessions.txt" << false << true << true << "Other";
        QTest::newRow("loaded image (stdio)") << "xorriso-dev-toc-stdio-written-1-session.txt" << false << true << true << "Other";
        QTest::newRow("sequential (/dev/null)") << "xorriso-toc-stdio-devnull-sequential.txt" << false << true << false << "Other";
    }

    void answersOnFixtures()
    {
        QFETCH(QString, file);
        QFETCH(bool, empty);
        QFETCH(bool, writable);
        QFETCH(bool, rewritable);
        QFETCH(QString, family);
        const MediaAnswers a = XorrisoParsing::answers(fixtureText(file));
        QCOMPARE(a.driveEmpty, empty);
        QCOMPARE(a.oneTimeWritable, writable);
        QCOMPARE(a.reWritable, rewritable);
        QCOMPARE(a.family, family);
    }

    // The blank CD-R excerpt with another profile in its "Media current:" line.
    void profiles_data()
    {
        QTest::addColumn<QString>("profile");
        QTest::addColumn<bool>("rewritable");
        QTest::addColumn<QString>("family");
        QTest::newRow("CD-R") << "CD-R" << false << "CD";
        QTest::newRow("CD-RW") << "CD-RW" << true << "CD";
        QTest::newRow("CD-ROM") << "CD-ROM" << false << "CD";
        QTest::newRow("DVD-R") << "DVD-R sequential recording" << false << "DVD";
        QTest::newRow("DVD-R/DL seq") << "DVD-R/DL sequential recording" << false << "DVD";
        QTest::newRow("DVD-R/DL jump") << "DVD-R/DL layer jump recording" << false << "DVD";
        QTest::newRow("DVD-RW ovw") << "DVD-RW restricted overwrite" << true << "DVD";
        QTest::newRow("DVD-RW seq") << "DVD-RW sequential recording" << true << "DVD";
        QTest::newRow("DVD-RAM") << "DVD-RAM" << true << "DVD";
        QTest::newRow("DVD+R") << "DVD+R" << false << "DVD";
        QTest::newRow("DVD+R/DL") << "DVD+R/DL" << false << "DVD";
        QTest::newRow("DVD+RW") << "DVD+RW" << true << "DVD";
        QTest::newRow("DVD+RW/DL") << "DVD+RW/DL" << true << "DVD";
        QTest::newRow("DVD-ROM") << "DVD-ROM" << false << "DVD";
        QTest::newRow("BD-R seq") << "BD-R sequential recording" << false << "BD";
        QTest::newRow("BD-R rand") << "BD-R random recording" << false << "BD";
        QTest::newRow("BD-RE") << "BD-RE" << true << "BD";
        QTest::newRow("BD-ROM") << "BD-ROM" << false << "BD";
        QTest::newRow("unknown") << "HD DVD-R" << false << "Other";
        QTest::newRow("not recognizable") << "is not recognizable" << false << "Other";
        QTest::newRow("prefix only BD-R") << "BD-R" << false << "Other";
    }

    void profiles()
    {
        QFETCH(QString, profile);
        QFETCH(bool, rewritable);
        QFETCH(QString, family);
        QString text = fixtureText("xorriso-toc-blank-cdr-excerpt.txt");
        QVERIFY(text.contains("Media current: CD-R\n"));
        text.replace("Media current: CD-R\n", "Media current: " + profile + "\n");
        const MediaAnswers a = XorrisoParsing::answers(text);
        QCOMPARE(a.driveEmpty, false);
        QCOMPARE(a.oneTimeWritable, true);  // "is blank"
        QCOMPARE(a.reWritable, rewritable);
        QCOMPARE(a.family, family);
    }

    void statuses_data()
    {
        QTest::addColumn<QString>("status");
        QTest::addColumn<bool>("empty");
        QTest::addColumn<bool>("writable");
        QTest::newRow("blank") << "is blank" << false << true;
        QTest::newRow("appendable") << "is written , is appendable" << false << true;
        QTest::newRow("closed") << "is written , is closed" << false << false;
        QTest::newRow("not present") << "is not present" << true << false;
        QTest::newRow("not recognizable") << "is not recognizable" << false << false;
        QTest::newRow("damaged") << "is written , is appendable , but next track is damaged" << false << false;
        QTest::newRow("no address") << "is written , is appendable , but no writable address" << false << false;
        QTest::newRow("needs close") << "is blank , but will need -close on" << false << true;
    }

    void statuses()
    {
        QFETCH(QString, status);
        QFETCH(bool, empty);
        QFETCH(bool, writable);
        QString text = fixtureText("synthetic-xorriso-toc-blank-dvdplusrw.txt");
        QCOMPARE(text.count("Media status : is blank\n"), 2);
        text.replace("Media status : is blank\n", "Media status : " + status + "\n");
        const MediaAnswers a = XorrisoParsing::answers(text);
        QCOMPARE(a.driveEmpty, empty);
        QCOMPARE(a.oneTimeWritable, writable);
        QCOMPARE(a.reWritable, !empty);  // DVD+RW, unless no medium at all
        QCOMPARE(a.family, empty ? QString("Other") : QString("DVD"));
    }

    void badInputIsAnEmptyDrive()
    {
        const QStringList inputs{QString(), QStringLiteral("\n\n"), QStringLiteral("garbage \x01\x02 text"),
                                 QStringLiteral("Media current: DVD+RW\n"),  // no status line
                                 fixtureText("xorriso-devices-no-drives.txt")};
        for (const QString &in : inputs) {
            const MediaAnswers a = XorrisoParsing::answers(in);
            QVERIFY2(a.driveEmpty, qPrintable(in));
            QCOMPARE(a.oneTimeWritable, false);
            QCOMPARE(a.reWritable, false);
            QCOMPARE(a.family, QString("Other"));
        }
    }

    void carriageReturnsTolerated()
    {
        QString text = fixtureText("synthetic-xorriso-toc-blank-bdr.txt");
        text.replace("\n", "\r\n");
        const MediaAnswers a = XorrisoParsing::answers(text);
        QCOMPARE(a.driveEmpty, false);
        QCOMPARE(a.oneTimeWritable, true);
        QCOMPARE(a.reWritable, false);
        QCOMPARE(a.family, QString("BD"));
    }

    // --- a drive the user may not open

    void deniedDevicesFromXorrisosOwnText()
    {
        const QString toc = fixtureText("synthetic-xorriso-outdev-devsr0-permission-denied-toc.txt");
        QCOMPARE(XorrisoParsing::deniedDevices(toc), QStringList{"/dev/sr0"});
        QVERIFY(XorrisoParsing::answers(toc).driveEmpty);  // no medium can be seen
        QCOMPARE(XorrisoParsing::deniedDevices(fixtureText("synthetic-xorriso-devices-devsr0-permission-denied.txt")),
                 QStringList{"/dev/sr0"});
        QVERIFY(XorrisoParsing::parseDevices(fixtureText("synthetic-xorriso-devices-devsr0-permission-denied.txt")).isEmpty());
    }

    void deniedDevicesOnlyForPermission()
    {
        // A missing node, no drive at all, a readable medium: nothing denied.
        for (const char *name : {"xorriso-outdev-devsr0-absent-toc.txt", "xorriso-devices-no-drives.txt",
                                 "xorriso-devices-one-drive-1.4.2.txt", "xorriso-toc-empty-drive-not-present-1.4.2.txt"})
            QVERIFY2(XorrisoParsing::deniedDevices(fixtureText(name)).isEmpty(), name);
        // Busy is not permission; a pseudo-drive's file is not a drive.
        QVERIFY(XorrisoParsing::deniedDevices("libburn : SORRY : Cannot open busy device '/dev/sr0' : Device or resource busy\n"
                                              "libburn : SORRY : Failed to open device (a pseudo-drive) : Permission denied\n")
                    .isEmpty());
        // The SORRY form (grabbing a listed drive), two drives, each named once, in order.
        const QString two = "libburn : NOTE : Failed to open device '/dev/sr1' : Permission denied\r\n"
                            "libburn : SORRY : Failed to open device '/dev/sr0' : Permission denied\n"
                            "libburn : SORRY : Failed to open device '/dev/sr1' : Permission denied\n";
        QCOMPARE(XorrisoParsing::deniedDevices(two), (QStringList{"/dev/sr1", "/dev/sr0"}));
    }
};

TAMBLO_TEST_MAIN(TestDrivesXorrisoParsing)
#include "tst_drives_xorriso_parsing.moc"
