#include "support/Files.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include "drives/DriveAccess.h"
#include "drives/XorrisoParsing.h"

static Object_Optical_Drive drive(const QString &device)
{
    Object_Optical_Drive d;
    d.s_Drive_Number = QStringLiteral("1");
    d.sManufacturer = QStringLiteral("TSSTcorp");
    d.sModel = QStringLiteral("DVD+-RW TS-L633J");
    d.s_Device_Path = device;
    return d;
}

class TestDrivesAccess : public QObject {
    Q_OBJECT
private slots:
    void listingThatSaysPermissionDenied()
    {
        const QString text = fixtureText("synthetic-xorriso-devices-devsr0-permission-denied.txt");
        // Said by xorriso: denied even if the node check found nothing.
        const DriveAccess a = DriveAccess::afterListing(text, XorrisoParsing::parseDevices(text), {});
        QCOMPARE(a.deniedDevices, QStringList{"/dev/sr0"});
        QVERIFY(a.denied());
    }

    void noDriveListedWhileNodesExist()
    {
        const QString text = fixtureText("xorriso-devices-no-drives.txt");
        const DriveAccess a = DriveAccess::afterListing(text, {}, {"/dev/sr0", "/dev/sr1"});
        QCOMPARE(a.deniedDevices, (QStringList{"/dev/sr0", "/dev/sr1"}));
    }

    void noDriveAndNoNodeIsNoProblem()
    {
        const DriveAccess a = DriveAccess::afterListing(fixtureText("xorriso-devices-no-drives.txt"), {}, {});
        QVERIFY(!a.denied());
        QVERIFY(a.menuTitle().isEmpty());
        QVERIFY(a.alertMessage().isEmpty());
        QVERIFY(a.alertInformative().isEmpty());
    }

    void listedDriveIsNoProblem()
    {
        const QString text = fixtureText("xorriso-devices-one-drive-1.4.2.txt");
        const DriveAccess a = DriveAccess::afterListing(text, XorrisoParsing::parseDevices(text), {"/dev/sr0"});
        QVERIFY(!a.denied());
    }

    void listedDriveBesideADeniedOne()
    {
        const QString text = fixtureText("xorriso-devices-one-drive-1.4.2.txt")
            + "libburn : NOTE : Failed to open device '/dev/sr1' : Permission denied\n";
        const DriveAccess a = DriveAccess::afterListing(text, XorrisoParsing::parseDevices(text), {"/dev/sr0", "/dev/sr1"});
        QCOMPARE(a.deniedDevices, QStringList{"/dev/sr1"});
        // The listed drive is fine; a Disc Info on it is not about permission.
        QVERIFY(!a.forDrive(drive("/dev/sr0")).denied());
        QCOMPARE(a.forDrive(drive("/dev/sr1")).deniedDevices, QStringList{"/dev/sr1"});
    }

    void statusQueryDeniesAndClears()
    {
        DriveAccess a;
        a.afterStatus("/dev/sr0", fixtureText("synthetic-xorriso-outdev-devsr0-permission-denied-toc.txt"));
        QCOMPARE(a.deniedDevices, QStringList{"/dev/sr0"});
        a.afterStatus("/dev/sr0", fixtureText("synthetic-xorriso-outdev-devsr0-permission-denied-toc.txt"));
        QCOMPARE(a.deniedDevices, QStringList{"/dev/sr0"});  // once
        // Another drive's denial in the text is not this drive's.
        a.afterStatus("/dev/sr1", fixtureText("synthetic-xorriso-outdev-devsr0-permission-denied-toc.txt"));
        QCOMPARE(a.deniedDevices, QStringList{"/dev/sr0"});
        // Permission granted later (the user logged in again): the next query clears it.
        a.afterStatus("/dev/sr0", fixtureText("xorriso-toc-empty-drive-not-present-1.4.2.txt"));
        QVERIFY(!a.denied());
        // A query without a device tells nothing.
        a.deniedDevices = {"/dev/sr0"};
        a.afterStatus(QString(), QString());
        QCOMPARE(a.deniedDevices, QStringList{"/dev/sr0"});
    }

    void noDriveListedTakesEveryDeniedDevice()
    {
        DriveAccess a;
        a.deniedDevices = {"/dev/sr0", "/dev/sr1"};
        QCOMPARE(a.forDrive(drive(QString())).deniedDevices, (QStringList{"/dev/sr0", "/dev/sr1"}));
    }

    void textsNameTheDeviceAndTheFix()
    {
        DriveAccess a;
        a.deniedDevices = {"/dev/sr0"};
        QCOMPARE(a.menuTitle(),
                 QString("No permission to use /dev/sr0. Add your user to the cdrom group, then log in again."));
        QCOMPARE(a.alertMessage(), QString("No permission to use the drive"));
        QCOMPARE(a.alertInformative(), QString("Tamblo may not open /dev/sr0, so it cannot see the disc. "
                                               "Add your user to the cdrom group, then log in again."));
        a.deniedDevices = {"/dev/sr0", "/dev/sr1"};
        QCOMPARE(a.menuTitle(), QString("No permission to use /dev/sr0 and /dev/sr1. "
                                        "Add your user to the cdrom group, then log in again."));
        a.deniedDevices = {"/dev/sr0", "/dev/sr1", "/dev/sr2"};
        QVERIFY(a.alertInformative().startsWith("Tamblo may not open /dev/sr0, /dev/sr1 and /dev/sr2, "));
    }

    void thisMachinesNodesAreOpticalOnes()
    {
        const QStringList nodes = DriveAccess::opticalDeviceNodes();
        for (const QString &node : nodes) {
            QVERIFY2(QRegularExpression("^/dev/sr[0-9]+$").match(node).hasMatch(), qPrintable(node));
            QVERIFY(QFile::exists(node));
        }
        QCOMPARE(nodes.isEmpty(), QDir("/dev").entryList({"sr[0-9]*"}, QDir::System | QDir::Files).isEmpty());
    }
};

TAMBLO_TEST_MAIN(TestDrivesAccess)
#include "tst_drives_access.moc"
