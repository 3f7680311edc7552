// Bad input for data discs, images and duplication: a source folder that
// vanishes, an unreadable file, a destination that cannot be written, a
// disk that fills up. Each gives a clear log line, the operation still comes
// to its end, and nothing of the user's is deleted.
#include "compilation/Measurements.h"
#include "support/FakeAlerts.h"
#include "support/FakeFilePicker.h"
#include "support/FlowRig.h"
#include "support/TestMain.h"

#include <QTemporaryDir>
#include <csignal>
#include <sys/resource.h>
#include <unistd.h>
#ifdef Q_OS_LINUX
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#endif

#include "drives/MediaQuestions.h"
#include "support/SheetChecks.h"
#include "support/SheetLog.h"
#include "support/LogCatcher.h"
#include "support/DiscImages.h"
#include "support/FileSizeLimit.h"
#include "support/FakeDriveBackend.h"
#include "support/Files.h"
#include "images/DataBurnFlow.h"
#include "images/DuplicationFlow.h"
#include "images/ImageBurnFlow.h"
#include "images/IsoCreationFlow.h"
#include "images/StagingCopy.h"

namespace {

// A blank DVD in the drive; the staging copy measured often.
struct Rig : FlowRig {
    explicit Rig(ToolPaths::Backend backend = ToolPaths::Backend::Linux) : FlowRig(backend)
    {
        drive.status = FakeDriveBackend::blank(QStringLiteral("DVD"));
        ctx.stagingPollMs = 30;
    }
};

// Holds the file size limit of this process (and of the tools it starts)
// while it lives: writing past it fails as on a full disk.

bool canRead(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly);
}

} // namespace

class TestImagesBadInput : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY2(!xorrisoPath().isEmpty(), "xorriso must be installed");
#ifdef Q_OS_LINUX
        // Running as root, permissions alone stop nothing: give up the
        // capabilities that override them, for this process and every tool
        // it starts.
        if (::geteuid() == 0) {
            for (int cap : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH, CAP_FOWNER})
                QCOMPARE(::prctl(PR_CAPBSET_DROP, cap, 0, 0, 0), 0);
            __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
            __user_cap_data_struct caps[2] = {};
            QCOMPARE(int(::syscall(SYS_capget, &header, caps)), 0);
            for (int cap : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH, CAP_FOWNER}) {
                caps[cap / 32].effective &= ~(1u << (cap % 32));
                caps[cap / 32].permitted &= ~(1u << (cap % 32));
                caps[cap / 32].inheritable &= ~(1u << (cap % 32));
            }
            QCOMPARE(int(::syscall(SYS_capset, &header, caps)), 0);
        }
#endif
        QTemporaryDir probe;
        writeFile(probe.path() + "/locked", "x");
        QVERIFY(QFile::setPermissions(probe.path() + "/locked", QFileDevice::Permissions()));
        QVERIFY2(!canRead(probe.path() + "/locked"), "a file without permissions is still readable here");
    }

    // ---- a source folder that vanishes ----------------------------------
    void linuxDataBurnOfAVanishedFolderRecordsNothing()
    {
        Rig rig;
        const QString a = rig.tmp.path() + "/a/Photos";
        const QString b = rig.tmp.path() + "/b/Photos";
        writeFile(a + "/1.jpg", pseudoRandom(10000, 1));
        writeFile(b + "/2.jpg", pseudoRandom(10000, 2));
        const QList<NodeDataFolder> list{measuredFolder(a), measuredFolder(b)};
        QVERIFY(QDir(a).removeRecursively());
        DataBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        LogCatcher logs;
        flow.burn(ImageMessages::DataDisc::DVD, list);
        QVERIFY(log.waitEnded(1, 60000));
        QCOMPARE(rig.alerts.shown.size(), 1);
        QCOMPARE(rig.alerts.shown.first().messageText, QStringLiteral("A folder on the list is no longer there."));
        QVERIFY(rig.alerts.shown.first().informativeText.contains(a));
        QVERIFY(logs.warned(QStringLiteral("Data disc: the folder \"%1\" is no longer there; it is left out").arg(a)));
        QVERIFY(log.commands.isEmpty());  // nothing was recorded
        QCOMPARE(log.sheets().last(), QStringLiteral("ended"));
        QVERIFY(QFileInfo::exists(b + "/2.jpg"));
        QVERIFY(!QFileInfo::exists(rig.disc) || QFileInfo(rig.disc).size() == 0);
        QVERIFY(QDir(rig.data).isEmpty());
    }

    void macStagingOfAVanishingFolderRecordsNothing()
    {
        Rig rig(ToolPaths::Backend::MacOS);
        const QString a = rig.tmp.path() + "/a/Going";
        const QString b = rig.tmp.path() + "/b/Staying";
        writeFile(a + "/1", "1");
        writeFile(b + "/2", "2");
        DataBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        // It goes away after the checks, when the staging sheet is up.
        connect(&flow, &Operation::sheetShown, this, [&](OperationSheet sheet) {
            if (sheet == OperationSheet::Staging)
                QDir(rig.tmp.path() + "/a").removeRecursively();
        });
        QMap<QString, QString> staged;
        connect(&flow, &SheetFlow::toolStarted, this, [&] { staged = tree(rig.data); });
        LogCatcher logs;
        flow.burn(ImageMessages::DataDisc::DVD, {measuredFolder(a), measuredFolder(b)});
        QVERIFY(log.waitEnded(1, 60000));
        QCOMPARE(rig.alerts.shown.size(), 1);
        QCOMPARE(rig.alerts.shown.first().messageText, QStringLiteral("A folder on the list is no longer there."));
        QVERIFY(logs.warned(QStringLiteral("\"%1\" is no longer there").arg(a)));
        QVERIFY(log.commands.isEmpty());  // nothing was recorded
        QVERIFY(QDir(rig.data).isEmpty());
        QCOMPARE(log.sheets().last(2), (QStringList{"closeStagingSheet", "ended"}));
    }

    void isoOfAVanishedFolderFailsAndKeepsTheRest()
    {
        Rig rig;
        const QString dst = rig.tmp.path() + "/dest";
        writeFile(dst + "/my notes.txt", "mine\n");
        rig.picker.answers.enqueue({rig.tmp.path() + "/gone away"});
        rig.picker.answers.enqueue({dst});
        IsoCreationFlow flow(rig.ctx);
        SheetLog log(&flow);
        LogCatcher logs;
        flow.start();
        QVERIFY(log.waitEnded(1, 60000));
        QVERIFY(rig.alerts.shown.isEmpty() || rig.alerts.shown.first().hasInput);
        QVERIFY(logs.contains(QStringLiteral("Cannot determine attributes of source file")));
        QVERIFY(logs.warned(rig.ctx.tools.xorriso + QStringLiteral(" ended with exit code")));
        CHECK_ENDED_IN_FAILURE(log, QStringLiteral("The image could not be made."));
        QVERIFY2(log.failures.first().informative.contains(QStringLiteral("Cannot determine attributes of source file")), qPrintable(log.failures.first().informative));
        QCOMPARE(readLines(dst + "/my notes.txt"), QStringList{"mine"});
    }

    void duplicationOfAVanishedVolumeStopsBeforeAnyCopy()
    {
        Rig rig;
        rig.drive.status = FakeDriveBackend::finished(QStringLiteral("CD"));
        rig.ctx.ejectDisc = [&rig] { rig.drive.status = FakeDriveBackend::blank(QStringLiteral("CD")); };
        rig.picker.answers.enqueue({rig.tmp.path() + "/Volumes/Gone"});
        rig.alerts.answer(0, QStringLiteral("1"));
        DuplicationFlow flow(rig.ctx);
        SheetLog log(&flow);
        LogCatcher logs;
        flow.start();
        QVERIFY(log.waitEnded(1, 60000));
        QVERIFY(rig.alerts.shown.isEmpty());
        // A failed imaging asks no count and burns nothing.
        QVERIFY(logs.contains(QStringLiteral("Cannot determine attributes of source file")));
        QVERIFY(logs.warned(QStringLiteral("ended with exit code")));
        QCOMPARE(flow.copiesDone(), 0);
        QCOMPARE(log.commands.size(), 1);
        QVERIFY(QDir(rig.data).isEmpty());
        CHECK_ENDED_IN_FAILURE(log, QStringLiteral("The disc could not be copied: its image could not be made."));
        QVERIFY2(log.failures.first().informative.contains(QStringLiteral("Cannot determine attributes of source file")), qPrintable(log.failures.first().informative));
    }

    void burningAVanishedImageFails()
    {
        Rig rig;
        rig.picker.answers.enqueue({rig.tmp.path() + "/was here.iso"});
        ImageBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        LogCatcher logs;
        flow.start();
        QVERIFY(log.waitEnded(1, 60000));
        QVERIFY(rig.alerts.shown.isEmpty() || rig.alerts.shown.first().hasInput);
        QVERIFY(logs.warned(QStringLiteral("ended with exit code")));
        CHECK_ENDED_IN_FAILURE(log, QStringLiteral("The disc could not be written."));
        QVERIFY(!QFileInfo::exists(rig.disc) || QFileInfo(rig.disc).size() == 0);
    }

    // ---- an unreadable file -----------------------------------------------
    void linuxDataBurnWithAnUnreadableFileIsRefusedByTheRecorder()
    {
        Rig rig;
        const QString a = rig.tmp.path() + "/a/Photos";
        writeFile(a + "/fine.jpg", "fine");
        writeFile(a + "/secret.jpg", "secret");
        QVERIFY(QFile::setPermissions(a + "/secret.jpg", QFileDevice::Permissions()));
        DataBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        LogCatcher logs;
        flow.burn(ImageMessages::DataDisc::DVD, {measuredFolder(a)});
        QVERIFY(log.waitEnded(1, 60000));
        QVERIFY(rig.alerts.shown.isEmpty() || rig.alerts.shown.first().hasInput);
        QVERIFY(logs.contains(a + "/secret.jpg"));
        QVERIFY(logs.contains(QStringLiteral("Access to file is not allowed")));
        QVERIFY(logs.warned(QStringLiteral("ended with exit code")));
        CHECK_ENDED_IN_FAILURE(log, QStringLiteral("The disc could not be written."));
        QVERIFY(QFileInfo::exists(a + "/secret.jpg"));
        QVERIFY(QFileInfo::exists(a + "/fine.jpg"));
        QVERIFY(QDir(rig.data).isEmpty());
    }

    void stagingWithAnUnreadableFileRecordsNothing()
    {
        Rig rig(ToolPaths::Backend::MacOS);
        const QString a = rig.tmp.path() + "/a/Photos";
        writeFile(a + "/fine.jpg", "fine");
        writeFile(a + "/sub/secret.jpg", "secret");
        writeFile(a + "/sub/also fine.jpg", "also");
        QDir().mkpath(a + "/closed");
        writeFile(a + "/closed/hidden.jpg", "h");
        QVERIFY(QFile::setPermissions(a + "/sub/secret.jpg", QFileDevice::Permissions()));
        QVERIFY(QFile::setPermissions(a + "/closed", QFileDevice::Permissions()));
        DataBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        QMap<QString, QString> staged;
        connect(&flow, &SheetFlow::toolStarted, this, [&] { staged = tree(rig.data); });
        LogCatcher logs;
        flow.burn(ImageMessages::DataDisc::DVD, {measuredFolder(a)});
        QVERIFY(log.waitEnded(1, 60000));
        QCOMPARE(rig.alerts.shown.size(), 1);
        QCOMPARE(rig.alerts.shown.first().messageText, QStringLiteral("The folders could not be copied for the disc."));
        QVERIFY(rig.alerts.shown.first().informativeText.contains(a + "/sub/secret.jpg"));
        QFile::setPermissions(a + "/closed", QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QVERIFY(logs.warned(QStringLiteral("Staging copy: could not copy \"%1/sub/secret.jpg\"").arg(a)));
        QVERIFY(logs.warned(QStringLiteral("Staging copy: could not read the folder \"%1/closed\"").arg(a)));
        QVERIFY(log.commands.isEmpty());  // nothing is recorded from an incomplete copy
        QVERIFY(QDir(rig.data).isEmpty());
        QCOMPARE(log.sheets().last(2), (QStringList{"closeStagingSheet", "ended"}));
        QVERIFY(QFileInfo::exists(a + "/sub/secret.jpg"));
        QVERIFY(QFileInfo::exists(a + "/closed/hidden.jpg"));
    }

    void isoWithAnUnreadableFileIsLogged()
    {
        Rig rig;
        const QString src = rig.tmp.path() + "/src";
        writeFile(src + "/ok.txt", "ok");
        writeFile(src + "/no.txt", "no");
        QVERIFY(QFile::setPermissions(src + "/no.txt", QFileDevice::Permissions()));
        QDir().mkpath(rig.tmp.path() + "/dst");
        rig.picker.answers.enqueue({src});
        rig.picker.answers.enqueue({rig.tmp.path() + "/dst"});
        IsoCreationFlow flow(rig.ctx);
        SheetLog log(&flow);
        LogCatcher logs;
        flow.start();
        QVERIFY(log.waitEnded(1, 60000));
        QVERIFY(rig.alerts.shown.isEmpty() || rig.alerts.shown.first().hasInput);
        QVERIFY(logs.contains(src + "/no.txt"));
        QVERIFY(logs.warned(QStringLiteral("ended with exit code")));
        CHECK_ENDED_IN_FAILURE(log, QStringLiteral("The image could not be made."));
        QVERIFY(QFileInfo::exists(src + "/no.txt"));
        QVERIFY(QFileInfo::exists(src + "/ok.txt"));
    }

    // ---- a destination that cannot be written -----------------------------
    void isoIntoAReadOnlyFolderIsLoggedAndTheOldImageStays()
    {
        Rig rig;
        const QString src = rig.tmp.path() + "/src";
        writeFile(src + "/f.txt", "f");
        const QString dst = rig.tmp.path() + "/locked";
        writeFile(dst + "/image.iso", "an old image");
        QVERIFY(QFile::setPermissions(dst + "/image.iso", QFile::ReadOwner));
        QVERIFY(QFile::setPermissions(dst, QFile::ReadOwner | QFile::ExeOwner));
        rig.picker.answers.enqueue({src});
        rig.picker.answers.enqueue({dst});
        IsoCreationFlow flow(rig.ctx);
        SheetLog log(&flow);
        LogCatcher logs;
        flow.start();
        QVERIFY(log.waitEnded(1, 60000));
        QVERIFY(rig.alerts.shown.isEmpty() || rig.alerts.shown.first().hasInput);
        QFile::setPermissions(dst, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QVERIFY(logs.warned(QStringLiteral("Could not remove the earlier image \"%1/image.iso\"").arg(dst)));
        QVERIFY(logs.warned(QStringLiteral("ended with exit code")));
        CHECK_ENDED_IN_FAILURE(log, QStringLiteral("The image could not be made."));
        QCOMPARE(readLines(dst + "/image.iso"), QStringList{"an old image"});
        QVERIFY(QFileInfo::exists(src + "/f.txt"));
    }

    void stagingIntoAReadOnlyWorkingFolderRecordsNothing()
    {
        Rig rig(ToolPaths::Backend::MacOS);
        const QString a = rig.tmp.path() + "/a/Photos";
        writeFile(a + "/1.jpg", "1");
        QVERIFY(QFile::setPermissions(rig.data, QFile::ReadOwner | QFile::ExeOwner));
        DataBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        LogCatcher logs;
        flow.burn(ImageMessages::DataDisc::DVD, {measuredFolder(a)});
        QVERIFY(log.waitEnded(1, 60000));
        QCOMPARE(rig.alerts.shown.size(), 1);
        QCOMPARE(rig.alerts.shown.first().messageText, QStringLiteral("The folders could not be copied for the disc."));
        QFile::setPermissions(rig.data, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QVERIFY(logs.warned(QStringLiteral("Staging copy: could not create the folder \"%1/Photos\"").arg(rig.data)));
        QCOMPARE(log.sheets().last(2), (QStringList{"closeStagingSheet", "ended"}));
        QVERIFY(log.commands.isEmpty());
        QVERIFY(QFileInfo::exists(a + "/1.jpg"));
    }

    void burningIntoAnUnwritableDriveFails()
    {
        Rig rig;
        const QString locked = rig.tmp.path() + "/lockeddir";
        QDir().mkpath(locked);
        QVERIFY(QFile::setPermissions(locked, QFile::ReadOwner | QFile::ExeOwner));
        rig.current.s_Device_Path = QStringLiteral("stdio:") + locked + "/disc.bin";
        const QString image = rig.tmp.path() + "/i.img";
        writeFile(image, pseudoRandom(64 * 1024, 3));
        rig.picker.answers.enqueue({image});
        ImageBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        LogCatcher logs;
        flow.start();
        QVERIFY(log.waitEnded(1, 60000));
        QVERIFY(rig.alerts.shown.isEmpty() || rig.alerts.shown.first().hasInput);
        QFile::setPermissions(locked, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QVERIFY(logs.contains(QStringLiteral("Cannot acquire drive")) || logs.contains(QStringLiteral("Permission denied")));
        QVERIFY(logs.warned(QStringLiteral("ended with exit code")));
        CHECK_ENDED_IN_FAILURE(log, QStringLiteral("The disc could not be written."));
        QVERIFY(canRead(image));
    }

    // ---- a disk that fills up ---------------------------------------------
    void dataBurnOntoAFullDeviceFails()
    {
        Rig rig;
        rig.current.s_Device_Path = QStringLiteral("stdio:/dev/full");
        const QString a = rig.tmp.path() + "/a/Photos";
        writeFile(a + "/big.bin", pseudoRandom(2 * 1024 * 1024, 4));
        DataBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        LogCatcher logs;
        flow.burn(ImageMessages::DataDisc::DVD, {measuredFolder(a)});
        QVERIFY(log.waitEnded(1, 60000));
        QVERIFY(rig.alerts.shown.isEmpty() || rig.alerts.shown.first().hasInput);
        QVERIFY(logs.contains(QStringLiteral("No space left on device")));
        QVERIFY(logs.warned(QStringLiteral("ended with exit code")));
        CHECK_ENDED_IN_FAILURE(log, QStringLiteral("The disc could not be written."));
        QVERIFY2(log.failures.first().informative.contains(QStringLiteral("No space left on device")), qPrintable(log.failures.first().informative));
        QVERIFY(canRead(a + "/big.bin"));
        QCOMPARE(QFileInfo(a + "/big.bin").size(), qint64(2 * 1024 * 1024));
    }

    void imageBurnOntoAFullDeviceFails()
    {
        Rig rig;
        rig.current.s_Device_Path = QStringLiteral("stdio:/dev/full");
        const QString image = rig.tmp.path() + "/i.img";
        writeFile(image, pseudoRandom(1024 * 1024, 5));
        rig.picker.answers.enqueue({image});
        ImageBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        LogCatcher logs;
        flow.start();
        QVERIFY(log.waitEnded(1, 60000));
        QVERIFY(rig.alerts.shown.isEmpty() || rig.alerts.shown.first().hasInput);
        QVERIFY(logs.contains(QStringLiteral("No space left on device")));
        QVERIFY(logs.warned(QStringLiteral("ended with exit code")));
        QCOMPARE(QFileInfo(image).size(), qint64(1024 * 1024));
        CHECK_ENDED_IN_FAILURE(log, QStringLiteral("The disc could not be written."));
        QVERIFY2(log.failures.first().informative.contains(QStringLiteral("No space left on device")), qPrintable(log.failures.first().informative));
    }

    void isoOnAFullDiskFailsAndLeavesNoHalfImage()
    {
        Rig rig;
        const QString src = rig.tmp.path() + "/src";
        writeFile(src + "/big.bin", pseudoRandom(3 * 1024 * 1024, 6));
        QDir().mkpath(rig.tmp.path() + "/dst");
        rig.picker.answers.enqueue({src});
        rig.picker.answers.enqueue({rig.tmp.path() + "/dst"});
        IsoCreationFlow flow(rig.ctx);
        SheetLog log(&flow);
        LogCatcher logs;
        {
            FileSizeLimit full(512 * 1024);
            flow.start();
            QVERIFY(log.waitEnded(1, 60000));
            QVERIFY(rig.alerts.shown.isEmpty());
        }
        QVERIFY(logs.warned(QStringLiteral("ended with exit code")) || logs.warned(QStringLiteral("ended abnormally")));
        CHECK_ENDED_IN_FAILURE(log, QStringLiteral("The image could not be made."));
        QCOMPARE(QFileInfo(src + "/big.bin").size(), qint64(3 * 1024 * 1024));
        // The cut-short image is no image: it is gone.
        QVERIFY(!QFileInfo::exists(rig.tmp.path() + "/dst/image.iso"));
    }

    void stagingOnAFullDiskNamesTheFileAndRecordsNothing()
    {
        Rig rig(ToolPaths::Backend::MacOS);
        const QString a = rig.tmp.path() + "/a/Photos";
        writeFile(a + "/small.txt", "small");
        writeFile(a + "/huge.bin", pseudoRandom(2 * 1024 * 1024, 7));
        DataBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        QMap<QString, QString> staged;
        connect(&flow, &SheetFlow::toolStarted, this, [&] { staged = tree(rig.data); });
        LogCatcher logs;
        {
            FileSizeLimit full(256 * 1024);
            flow.burn(ImageMessages::DataDisc::DVD, {measuredFolder(a)});
            QVERIFY(log.waitEnded(1, 60000));
            QCOMPARE(rig.alerts.shown.size(), 1);
        }
        QVERIFY(logs.warned(QStringLiteral("Staging copy: could not copy \"%1/huge.bin\"").arg(a)));
        QCOMPARE(rig.alerts.shown.first().messageText, QStringLiteral("The folders could not be copied for the disc."));
        QVERIFY(rig.alerts.shown.first().informativeText.contains(a + "/huge.bin"));
        QVERIFY(log.commands.isEmpty());
        QCOMPARE(log.sheets().last(2), (QStringList{"closeStagingSheet", "ended"}));
        QCOMPARE(QFileInfo(a + "/huge.bin").size(), qint64(2 * 1024 * 1024));
        QVERIFY(QDir(rig.data).isEmpty());
    }
};

TAMBLO_TEST_MAIN(TestImagesBadInput)
#include "tst_images_bad_input.moc"
