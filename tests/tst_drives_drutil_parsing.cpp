#include "support/Files.h"
#include "support/TestMain.h"

#include <QFile>

#include "drives/DrutilParsing.h"

class TestDrivesDrutilParsing : public QObject {
    Q_OBJECT
private slots:
    void listOneDrive()
    {
        const DriveList drives = DrutilParsing::parseList(fixtureText("drutil-list-one-drive.txt"));
        QCOMPARE(drives.size(), 1);
        QCOMPARE(drives[0].s_Drive_Number, QString("1"));
        QCOMPARE(drives[0].sManufacturer, QString("HL-DT-ST"));
        QCOMPARE(drives[0].sModel, QString("DVDRW  GX50N"));  // inner blanks kept
        QCOMPARE(drives[0].label(), QString("HL-DT-ST - DVDRW  GX50N"));
        QVERIFY(drives[0].s_Device_Path.isEmpty());
    }

    void listTwoDrives()
    {
        const DriveList drives = DrutilParsing::parseList(fixtureText("synthetic-drutil-list-two-drives-respaced.txt"));
        QCOMPARE(drives.size(), 2);
        QCOMPARE(drives[0].s_Drive_Number, QString("1"));
        QCOMPARE(drives[0].label(), QString("OPTIARC - DVD RW AD-5970H"));
        QCOMPARE(drives[1].s_Drive_Number, QString("2"));
        QCOMPARE(drives[1].label(), QString("HL-DT-ST - DVDRAM GSA-H44N"));
    }

    void listFourLetterVendorAndInnerBlanks()
    {
        // Vendor "ACME" then five blanks fills the 9 vendor columns; the product
        // has two inner blanks and trailing blanks.
        const QString text = QStringLiteral(
            "   Vendor   Product           Rev   Bus       SupportLevel\n"
            "1  ACME     SUPER  DRIVE      1.00  USB       Unsupported\n");
        const DriveList drives = DrutilParsing::parseList(text);
        QCOMPARE(drives.size(), 1);
        QCOMPARE(drives[0].sManufacturer, QString("ACME"));
        QCOMPARE(drives[0].sModel, QString("SUPER  DRIVE"));
        QCOMPARE(drives[0].label(), QString("ACME - SUPER  DRIVE"));
    }

    void listHeaderOnlyOrEmpty()
    {
        QVERIFY(DrutilParsing::parseList(QString()).isEmpty());
        QVERIFY(DrutilParsing::parseList(QStringLiteral("\n")).isEmpty());
        QVERIFY(DrutilParsing::parseList(
                    QStringLiteral("   Vendor   Product           Rev   Bus       SupportLevel\n"))
                    .isEmpty());
    }

    void listSkipsShortLines()
    {
        const QString text = QStringLiteral(
            "   Vendor   Product           Rev   Bus       SupportLevel\n"
            "1  SHORT    LINE\n"
            "2  HL-DT-ST DVDRW  GX50N      RR06  USB       Unsupported\n");
        const DriveList drives = DrutilParsing::parseList(text);
        QCOMPARE(drives.size(), 1);
        QCOMPARE(drives[0].s_Drive_Number, QString("2"));
        QCOMPARE(drives[0].sModel, QString("DVDRW  GX50N"));
    }

    void listExactlyThirtyCharactersIsCut()
    {
        const QString line = QStringLiteral("3  VENDOR   PRODUCT-THIRTY    ");
        QCOMPARE(line.size(), 30);
        const DriveList drives = DrutilParsing::parseList(QStringLiteral("header\n") + line + "\n");
        QCOMPARE(drives.size(), 1);
        QCOMPARE(drives[0].s_Drive_Number, QString("3"));
        QCOMPARE(drives[0].sManufacturer, QString("VENDOR"));
        QCOMPARE(drives[0].sModel, QString("PRODUCT-THIRTY"));
        // One character less: skipped.
        QVERIFY(DrutilParsing::parseList(QStringLiteral("header\n") + line.left(29) + "\n").isEmpty());
    }

    void listSkipsTwoDigitNumbers()
    {
        QString text = QStringLiteral("   Vendor   Product           Rev   Bus       SupportLevel\n");
        for (int n = 1; n <= 9; ++n)
            text += QStringLiteral("%1  VENDOR%1  PRODUCT %1         1.00  USB       Unsupported\n").arg(n);
        text += QStringLiteral("10  VENDOR10 PRODUCT 10        1.00  USB       Unsupported\n");
        text += QStringLiteral("11  VENDOR11 PRODUCT 11        1.00  USB       Unsupported\n");
        const DriveList drives = DrutilParsing::parseList(text);
        QCOMPARE(drives.size(), 9);
        QCOMPARE(drives.last().s_Drive_Number, QString("9"));
        QCOMPARE(drives.last().label(), QString("VENDOR9 - PRODUCT 9"));
    }

    void listStopsAtFirstEmptyLine()
    {
        const QString text = QStringLiteral(
            "   Vendor   Product           Rev   Bus       SupportLevel\n"
            "1  OPTIARC  DVD RW AD-5970H   3APE  ATAPI     Apple Shipping\n"
            "\n"
            "2  HL-DT-ST DVDRAM GSA-H44N   RB00  USB       Unsupported\n");
        const DriveList drives = DrutilParsing::parseList(text);
        QCOMPARE(drives.size(), 1);
        QCOMPARE(drives[0].sManufacturer, QString("OPTIARC"));
    }

    void listGarbage()
    {
        QVERIFY(DrutilParsing::parseList(QStringLiteral("x")).isEmpty());
        QVERIFY(DrutilParsing::parseList(QStringLiteral(
                    "drutil: unknown command\nusage: drutil command [options] and a long tail of text\n"))
                    .isEmpty());
        QByteArray junk;
        for (int i = 0; i < 4096; ++i)
            junk.append(char((i * 7919) % 251 + 1));
        const DriveList drives = DrutilParsing::parseList(QString::fromUtf8(junk));
        for (const auto &d : drives)
            QVERIFY(d.s_Drive_Number.size() == 1 && d.s_Drive_Number.at(0).isDigit());
    }

    void searchTextStartsAtTypeLine()
    {
        const QString text = fixtureText("drutil-status-pressed-cdrom-audio.txt");
        const QString s = DrutilParsing::statusSearchText(text);
        QVERIFY(s.startsWith(QStringLiteral("           Type: CD-ROM")));
        QVERIFY(!s.contains(QStringLiteral("GX50N")));
        QVERIFY(text.endsWith(s));
        QCOMPARE(DrutilParsing::statusSearchText(QStringLiteral("no such line\nDVD")),
                 QStringLiteral("no such line\nDVD"));
        QCOMPARE(DrutilParsing::statusSearchText(QStringLiteral("Type: X")), QStringLiteral("Type: X"));
    }

    void answers_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("empty");
        QTest::addColumn<bool>("writable");
        QTest::addColumn<bool>("rewritable");
        QTest::addColumn<QString>("family");
        QTest::newRow("no medium") << "synthetic-drutil-status-no-media.txt" << true << false << false << "Other";
        QTest::newRow("blank DVD-R") << "drutil-status-blank-dvdr.txt" << false << true << false << "DVD";
        QTest::newRow("pressed CD-ROM") << "drutil-status-pressed-cdrom-audio.txt" << false << false << false << "CD";
        QTest::newRow("blank CD-R") << "synthetic-drutil-status-blank-cdr.txt" << false << true << false << "CD";
        QTest::newRow("blank BD-R") << "synthetic-drutil-status-blank-bdr.txt" << false << true << false << "BD";
        QTest::newRow("blank DVD+RW") << "synthetic-drutil-status-blank-dvdplusrw.txt" << false << true << true << "DVD";
    }

    void answers()
    {
        QFETCH(QString, file);
        QFETCH(bool, empty);
        QFETCH(bool, writable);
        QFETCH(bool, rewritable);
        QFETCH(QString, family);
        const MediaAnswers a = DrutilParsing::answers(fixtureText(file));
        QCOMPARE(a.driveEmpty, empty);
        QCOMPARE(a.oneTimeWritable, writable);
        QCOMPARE(a.reWritable, rewritable);
        QCOMPARE(a.family, family);
    }

    void emptyTextAnswersNothing()
    {
        const MediaAnswers a = DrutilParsing::answers(QString());
        QCOMPARE(a.driveEmpty, false);
        QCOMPARE(a.oneTimeWritable, false);
        QCOMPARE(a.reWritable, false);
        QCOMPARE(a.family, QString("Other"));
    }

    void rejectedDriveNumberText()
    {
        const MediaAnswers a = DrutilParsing::answers(QStringLiteral("drutil: invalid drive number 7\n"));
        QCOMPARE(a.driveEmpty, false);
        QCOMPARE(a.oneTimeWritable, false);
        QCOMPARE(a.reWritable, false);
        QCOMPARE(a.family, QString("Other"));
    }

    void dvdBeatsCd()
    {
        const MediaAnswers a = DrutilParsing::answers(QStringLiteral("Type: CD and DVD\n"));
        QCOMPARE(a.family, QString("DVD"));
        QCOMPARE(DrutilParsing::answers(QStringLiteral("Type: CD BD")).family, QString("CD"));
        QCOMPARE(DrutilParsing::answers(QStringLiteral("Type: BD-RE")).family, QString("BD"));
    }

    void otherLetterCaseIsNoHit()
    {
        const MediaAnswers a = DrutilParsing::answers(QStringLiteral(
            "           Type: dvd cd bd Dvd Cd Bd\n"
            "    Writability: Overwritable, Erasable, no media inserted, No media Inserted\n"));
        QCOMPARE(a.driveEmpty, false);
        QCOMPARE(a.oneTimeWritable, false);
        QCOMPARE(a.reWritable, false);
        QCOMPARE(a.family, QString("Other"));
    }

    void driveNameAboveTypeLineIsIgnored()
    {
        // An empty drive whose product names DVD: the header is not searched.
        const MediaAnswers a = DrutilParsing::answers(fixtureText("synthetic-drutil-status-no-media.txt"));
        QCOMPARE(a.family, QString("Other"));
        // Without a "Type:" line the whole text counts, header included.
        const QString headerOnly = QStringLiteral(
            " Vendor   Product           Rev \n HL-DT-ST DVDRW  GX50N      RR06\n");
        QCOMPARE(DrutilParsing::answers(headerOnly).family, QString("DVD"));
    }

    void hitAnywhereAfterTypeLineCounts()
    {
        // "erasable" in any field, not only Writability.
        const MediaAnswers a = DrutilParsing::answers(QStringLiteral(
            "           Type: CD-RW\n       Media ID: erasable overwritable\n"));
        QCOMPARE(a.oneTimeWritable, true);
        QCOMPARE(a.reWritable, true);
        QCOMPARE(a.family, QString("CD"));
    }
};

TAMBLO_TEST_MAIN(TestDrivesDrutilParsing)
#include "tst_drives_drutil_parsing.moc"
