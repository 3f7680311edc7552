#include "support/DriveQueries.h"
#include "support/TestMain.h"

#include "drives/DriveSelection.h"

static DriveList drives(int count)
{
    DriveList list;
    for (int i = 1; i <= count; ++i)
        list << opticalDrive(QString::number(i), QStringLiteral("VEND%1").arg(i), QStringLiteral("MODEL %1").arg(i));
    return list;
}

static QList<bool> checkedOf(const DriveMenuState &s) { return QList<bool>(s.checked.begin(), s.checked.end()); }
static QList<bool> visibleOf(const DriveMenuState &s) { return QList<bool>(s.visible.begin(), s.visible.end()); }

class TestDrivesSelection : public QObject {
    Q_OBJECT
private slots:
    void firstRunTwoDrives()
    {
        const DriveMenuState s = DriveSelection::afterListing(drives(2), QString());
        QCOMPARE(s.currentDriveNumber, QString("1"));
        QCOMPARE(s.currentDriveIndex, 0);
        QVERIFY(s.storeLabel);
        QCOMPARE(s.labelToStore, QString("VEND1 - MODEL 1"));
        QCOMPARE(checkedOf(s), QList<bool>({true, false, false, false, false, false}));
        QCOMPARE(s.titles[0], QString("VEND1 - MODEL 1"));
        QCOMPARE(s.titles[1], QString("VEND2 - MODEL 2"));
        for (int i = 2; i < 6; ++i)
            QVERIFY(s.titles[i].isEmpty());
        QCOMPARE(visibleOf(s), QList<bool>({true, true, false, false, false, false}));
    }

    void savedDriveIsSecond()
    {
        const DriveMenuState s = DriveSelection::afterListing(drives(2), QStringLiteral("VEND2 - MODEL 2"));
        QCOMPARE(s.currentDriveNumber, QString("2"));
        QCOMPARE(s.currentDriveIndex, 1);
        QVERIFY(!s.storeLabel);
        QCOMPARE(checkedOf(s), QList<bool>({false, true, false, false, false, false}));
        QCOMPARE(s.titles[0], QString("VEND1 - MODEL 1"));
    }

    void savedDriveGone()
    {
        const DriveMenuState s = DriveSelection::afterListing(drives(3), QStringLiteral("OLD - GONE"));
        QCOMPARE(s.currentDriveNumber, QString("1"));
        QCOMPARE(s.currentDriveIndex, 0);
        QVERIFY(s.storeLabel);
        QCOMPARE(s.labelToStore, QString("VEND1 - MODEL 1"));
        QCOMPARE(checkedOf(s), QList<bool>({true, false, false, false, false, false}));
        QCOMPARE(visibleOf(s), QList<bool>({true, true, true, false, false, false}));
    }

    void savedDriveKeepsSelectionWhenRenumbered()
    {
        // drutil numbers need not follow the order; the label decides.
        DriveList list{opticalDrive("4", "AAA", "ONE"), opticalDrive("2", "BBB", "TWO")};
        const DriveMenuState s = DriveSelection::afterListing(list, QStringLiteral("BBB - TWO"));
        QCOMPARE(s.currentDriveNumber, QString("2"));
        QCOMPARE(s.currentDriveIndex, 1);
    }

    void twoEqualLabels()
    {
        DriveList list{opticalDrive("1", "SAME", "DRIVE"), opticalDrive("2", "OTHER", "DRIVE"), opticalDrive("3", "SAME", "DRIVE")};
        const DriveMenuState s = DriveSelection::afterListing(list, QStringLiteral("SAME - DRIVE"));
        QCOMPARE(checkedOf(s), QList<bool>({true, false, true, false, false, false}));
        QCOMPARE(s.currentDriveNumber, QString("3"));
        QCOMPARE(s.currentDriveIndex, 2);
        QVERIFY(!s.storeLabel);
        // First run with equal labels: the first is remembered, both checked, the later current.
        const DriveMenuState f = DriveSelection::afterListing(list, QString());
        QCOMPARE(f.labelToStore, QString("SAME - DRIVE"));
        QCOMPARE(checkedOf(f), QList<bool>({true, false, true, false, false, false}));
        QCOMPARE(f.currentDriveNumber, QString("3"));
    }

    void labelWithInnerBlanks()
    {
        DriveList list{opticalDrive("1", "ACME", "SUPER  DRIVE")};
        const DriveMenuState s = DriveSelection::afterListing(list, QString());
        QCOMPARE(s.titles[0], QString("ACME - SUPER  DRIVE"));
        QCOMPARE(s.labelToStore, QString("ACME - SUPER  DRIVE"));
    }

    void seventhDriveSaved()
    {
        const DriveMenuState s = DriveSelection::afterListing(drives(7), QStringLiteral("VEND7 - MODEL 7"));
        QCOMPARE(s.currentDriveNumber, QString("7"));
        QCOMPARE(s.currentDriveIndex, 6);
        QVERIFY(!s.storeLabel);
        QCOMPARE(checkedOf(s), QList<bool>(6, false));
        QCOMPARE(visibleOf(s), QList<bool>(6, true));
        for (int i = 0; i < 6; ++i)
            QCOMPARE(s.titles[i], QStringLiteral("VEND%1 - MODEL %1").arg(i + 1));
    }

    void sixDrivesAllVisible()
    {
        const DriveMenuState s = DriveSelection::afterListing(drives(6), QStringLiteral("VEND6 - MODEL 6"));
        QCOMPARE(visibleOf(s), QList<bool>(6, true));
        QCOMPARE(checkedOf(s), QList<bool>({false, false, false, false, false, true}));
        QCOMPARE(s.currentDriveNumber, QString("6"));
    }

    void hidingFollowsCount_data()
    {
        QTest::addColumn<int>("count");
        for (int n = 0; n <= 7; ++n)
            QTest::newRow(qPrintable(QString::number(n))) << n;
    }

    void hidingFollowsCount()
    {
        QFETCH(int, count);
        const DriveMenuState s = DriveSelection::afterListing(drives(count), QString());
        QVERIFY(s.visible[0]);
        for (int n = 2; n <= 6; ++n)
            QCOMPARE(s.visible[n - 1], count >= n);
    }

    void emptyList()
    {
        const DriveMenuState s = DriveSelection::afterListing(DriveList(), QStringLiteral("VEND1 - MODEL 1"));
        QCOMPARE(s.currentDriveNumber, QString("1"));
        QCOMPARE(s.currentDriveIndex, -1);
        QVERIFY(!s.storeLabel);
        QVERIFY(s.titles[0].isEmpty());  // item 1 keeps its own title
        QCOMPARE(visibleOf(s), QList<bool>({true, false, false, false, false, false}));
        QCOMPARE(checkedOf(s), QList<bool>(6, false));
        const DriveMenuState first = DriveSelection::afterListing(DriveList(), QString());
        QVERIFY(!first.storeLabel);
        // The current number before the listing is kept.
        QCOMPARE(DriveSelection::afterListing(DriveList(), QString(), "5").currentDriveNumber, QString("5"));
    }

    void emptyListItemOneDoesNothing()
    {
        DriveMenuState s = DriveSelection::afterListing(DriveList(), QString());
        const DriveMenuState before = s;
        QVERIFY(!DriveSelection::chooseItem(DriveList(), 1, s));
        QCOMPARE(s.currentDriveNumber, before.currentDriveNumber);
        QCOMPARE(s.currentDriveIndex, -1);
        QVERIFY(!s.storeLabel);
        QCOMPARE(checkedOf(s), checkedOf(before));
    }

    void chooseItem()
    {
        const DriveList list = drives(3);
        DriveMenuState s = DriveSelection::afterListing(list, QStringLiteral("VEND1 - MODEL 1"));
        QVERIFY(DriveSelection::chooseItem(list, 3, s));
        QCOMPARE(s.currentDriveNumber, QString("3"));
        QCOMPARE(s.currentDriveIndex, 2);
        QVERIFY(s.storeLabel);
        QCOMPARE(s.labelToStore, QString("VEND3 - MODEL 3"));
        QCOMPARE(checkedOf(s), QList<bool>({false, false, true, false, false, false}));
        QCOMPARE(visibleOf(s), QList<bool>({true, true, true, false, false, false}));
        // Choosing clears a double check of equal labels too.
        DriveList same{opticalDrive("1", "S", "D"), opticalDrive("2", "S", "D")};
        DriveMenuState t = DriveSelection::afterListing(same, QStringLiteral("S - D"));
        QCOMPARE(checkedOf(t), QList<bool>({true, true, false, false, false, false}));
        QVERIFY(DriveSelection::chooseItem(same, 1, t));
        QCOMPARE(checkedOf(t), QList<bool>({true, false, false, false, false, false}));
        QCOMPARE(t.currentDriveNumber, QString("1"));
    }

    void chooseItemBeyondList()
    {
        const DriveList list = drives(2);
        DriveMenuState s = DriveSelection::afterListing(list, QStringLiteral("VEND2 - MODEL 2"));
        for (int item : {0, 3, 6, 7, -1}) {
            DriveMenuState copy = s;
            QVERIFY(!DriveSelection::chooseItem(list, item, copy));
            QCOMPARE(copy.currentDriveNumber, QString("2"));
            QCOMPARE(checkedOf(copy), checkedOf(s));
            QVERIFY(!copy.storeLabel);
        }
    }

    void linuxNumbersOfTwoDigits()
    {
        DriveList list = drives(12);
        const DriveMenuState s = DriveSelection::afterListing(list, QStringLiteral("VEND12 - MODEL 12"));
        QCOMPARE(s.currentDriveNumber, QString("12"));
        QCOMPARE(s.currentDriveIndex, 11);
    }

    // --- drives the user may not open

    void noPermissionNamedOnItemOne()
    {
        DriveAccess denied;
        denied.deniedDevices = {"/dev/sr0"};
        DriveMenuState s = DriveSelection::afterListing(DriveList(), QString(), "1", denied);
        QCOMPARE(s.titles[0],
                 QString("No permission to use /dev/sr0. Add your user to the cdrom group, then log in again."));
        QCOMPARE(visibleOf(s), QList<bool>({true, false, false, false, false, false}));
        QCOMPARE(checkedOf(s), QList<bool>(6, false));
        QCOMPARE(s.currentDriveIndex, -1);
        QVERIFY(!s.storeLabel);
        // Choosing it changes nothing.
        QVERIFY(!DriveSelection::chooseItem(DriveList(), 1, s));
        QCOMPARE(checkedOf(s), QList<bool>(6, false));
    }

    void noPermissionAfterTheListedDrives()
    {
        DriveAccess denied;
        denied.deniedDevices = {"/dev/sr2"};
        DriveMenuState s = DriveSelection::afterListing(drives(2), QString(), "1", denied);
        QCOMPARE(s.titles[0], QString("VEND1 - MODEL 1"));
        QCOMPARE(s.titles[1], QString("VEND2 - MODEL 2"));
        QCOMPARE(s.titles[2], denied.menuTitle());
        QCOMPARE(visibleOf(s), QList<bool>({true, true, true, false, false, false}));
        QCOMPARE(checkedOf(s), QList<bool>({true, false, false, false, false, false}));
        QVERIFY(!DriveSelection::chooseItem(drives(2), 3, s));
        QCOMPARE(s.currentDriveIndex, 0);
        // Six drives leave no item for it; the drives keep theirs.
        const DriveMenuState full = DriveSelection::afterListing(drives(6), QString(), "1", denied);
        QCOMPARE(full.titles[5], QString("VEND6 - MODEL 6"));
        // Nothing denied: no extra item.
        QCOMPARE(visibleOf(DriveSelection::afterListing(drives(2), QString(), "1", DriveAccess{})),
                 QList<bool>({true, true, false, false, false, false}));
    }
};

TAMBLO_TEST_MAIN(TestDrivesSelection)
#include "tst_drives_selection.moc"
