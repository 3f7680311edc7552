// Reading discs back after writing them: the byte comparison of an image
// with a disc, xorriso's checksum check read from its recorded words, and
// every burn that verifies (data, MP3 and video discs, images, copies) on a
// pseudo-drive written by the real xorriso, once as written and once
// damaged between the writing and the reading back (the stand-in xorriso
// overwrites a few bytes of the disc when its write has ended). Audio CDs
// are not read back; with the setting off the last sheet is the plain one;
// on macOS the recorders' own verification is their verdict.
#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "burn/DrutilRecorder.h"
#include "burn/MediaBurn.h"
#include "burn/XorrisoRecorder.h"
#include "compilation/Measurements.h"
#include "drives/DiscVerify.h"
#include "drives/ImageReadBack.h"
#include "drives/MediaQuestions.h"
#include "images/DataBurnFlow.h"
#include "images/DuplicationFlow.h"
#include "images/ImageBurnFlow.h"
#include "support/DiscImages.h"
#include "support/Files.h"
#include "support/LogCatcher.h"
#include "support/SheetLog.h"
#include "support/FakeAlerts.h"
#include "support/FakeDriveBackend.h"
#include "support/FakeFilePicker.h"
#include "support/FlowRig.h"
#include "support/ScopedEnv.h"
#include "support/ListRecords.h"
#include "support/TestMain.h"
#include "support/Tools.h"

namespace {

const QString Verified = QStringLiteral("The disc was written and verified.");
const QString Differences = QStringLiteral("The disc was written, but verifying it found differences.");


// A media burn's context in `tmp`, its working folders made, verifying.
MediaBurnContext verifyingIn(const QTemporaryDir &tmp)
{
    MediaBurnContext ctx;
    ctx.ffmpeg = ffmpegPath();
    ctx.audioFolder = tmp.filePath(QStringLiteral("TambloAudio"));
    ctx.videoFolder = tmp.filePath(QStringLiteral("TambloVideo"));
    QDir().mkpath(ctx.audioFolder);
    QDir().mkpath(ctx.videoFolder);
    ctx.verifyAfterWriting = true;
    return ctx;
}

ToolVerdict recorded(const QString &program, const char *fixtureName, int exitCode)
{
    ToolVerdict v;
    v.command.program = program;
    QFile f(fixture(fixtureName));
    if (f.open(QIODevice::ReadOnly))
        v.output = QString::fromUtf8(f.readAll());
    v.exitCode = exitCode;
    ToolVerdicts::judge(v);
    return v;
}

// The flows' context on a pseudo-drive file, verifying unless told not to,
// with a blank DVD in the drive; the stand-in xorriso damages the disc when
// told to.
struct Rig : FlowRig {
    explicit Rig(ToolPaths::Backend backend) : FlowRig(backend)
    {
        verify = true;
        drive.status = FakeDriveBackend::blank(QStringLiteral("DVD"));
        ctx.tools.xorriso = fake("xorriso-damaging");
        ctx.tools.drutil = fake("burn-drutil");
    }
};

} // namespace

class TestImagesVerify : public QObject {
    Q_OBJECT

    QTemporaryDir m_media;
    QString m_tone;

    static QByteArray bytes(int size, quint32 salt) { return pseudoRandom(size, salt); }

    static VerifyResult compareBuffers(const QByteArray &image, const QByteArray &disc)
    {
        QBuffer a;
        a.setData(image);
        a.open(QIODevice::ReadOnly);
        QBuffer b;
        b.setData(disc);
        b.open(QIODevice::ReadOnly);
        const ImageReadBack::Comparison c = ImageReadBack::compare(a, b, image.size());
        return ImageReadBack::result(c, QStringLiteral("/x/image.iso"), QStringLiteral("stdio:/x/disc.iso"));
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(!xorrisoPath().isEmpty(), "xorriso must be installed");
        const QString ffmpeg = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
        QVERIFY2(!ffmpeg.isEmpty(), "ffmpeg must be installed");
        m_tone = m_media.filePath(QStringLiteral("tone.mp3"));
        QProcess p;
        p.setStandardInputFile(QProcess::nullDevice());
        p.start(ffmpeg, {"-v", "error", "-y", "-f", "lavfi", "-i", "sine=frequency=440:duration=1", m_tone});
        QVERIFY(p.waitForFinished(60000));
        QCOMPARE(p.exitCode(), 0);
    }

    // ---- the byte comparison ----------------------------------------------------
    void anImageComparedWithADisc()
    {
        const QByteArray image = bytes(3 * 1024 * 1024 + 5, 1);
        // The disc may hold more than the image: zeros of the last write unit.
        const VerifyResult same = compareBuffers(image, image + QByteArray(30000, '\0'));
        QVERIFY(same.verified());
        QVERIFY(same.details.contains(QStringLiteral("Bytes compared: %1").arg(image.size())));

        QByteArray one = image;
        one[40960] = char(one[40960] ^ 0x5a);
        const VerifyResult byte = compareBuffers(image, one);
        QCOMPARE(byte.outcome, VerifyResult::Outcome::Mismatch);
        QCOMPARE(byte.what, QStringLiteral("Byte 40960 of the disc differs from the image."));

        // A run across the edge of two read chunks is one run.
        QByteArray run = image;
        for (qint64 i = ImageReadBack::ChunkBytes - 3; i <= ImageReadBack::ChunkBytes + 4; ++i)
            run[int(i)] = char(run[int(i)] ^ 0xff);
        const VerifyResult across = compareBuffers(image, run);
        QCOMPARE(across.what, QStringLiteral("Bytes %1 to %2 of the disc differ from the image.")
                                  .arg(ImageReadBack::ChunkBytes - 3)
                                  .arg(ImageReadBack::ChunkBytes + 4));

        QByteArray three = image;
        for (int at : {100, 101, 5000, 3 * 1024 * 1024})
            three[at] = char(three[at] ^ 1);
        const VerifyResult places = compareBuffers(image, three);
        QCOMPARE(places.what, QStringLiteral("The disc differs from the image in 3 places, first in bytes 100 to 101."));
        QVERIFY2(places.details.contains(QStringLiteral("Differing bytes (offsets from 0): 100 to 101, 5000, 3145728")),
                 qPrintable(places.details));

        const VerifyResult shorter = compareBuffers(image, image.left(2000000));
        QCOMPARE(shorter.outcome, VerifyResult::Outcome::Mismatch);
        QCOMPARE(shorter.what, QStringLiteral("The disc ends after 2000000 bytes, before the end of the image (%1 bytes).")
                                   .arg(image.size()));
    }

    void manyDifferencesAreCountedAndTheFirstListed()
    {
        const QByteArray image = bytes(100000, 2);
        QByteArray disc = image;
        for (int i = 0; i < 30; ++i)
            disc[i * 1000] = char(disc[i * 1000] ^ 1);
        const VerifyResult r = compareBuffers(image, disc);
        QCOMPARE(r.what, QStringLiteral("The disc differs from the image in 30 places, first in bytes 0."));
        QVERIFY(r.details.contains(QStringLiteral("19000, and 10 more runs")));
        QVERIFY(!r.details.contains(QStringLiteral("20000")));
    }

    void aStoppedOrUnreadableComparisonChecksNothing()
    {
        QTemporaryDir tmp;
        const QString image = tmp.filePath(QStringLiteral("i.img"));
        writeFile(image, bytes(4 * 1024 * 1024, 3));
        std::atomic_bool stop{true};
        const ImageReadBack::Comparison stopped = ImageReadBack::compareFiles(image, "stdio:" + image, {}, &stop);
        QCOMPARE(ImageReadBack::result(stopped, image, "stdio:" + image).what, QStringLiteral("The check was stopped."));
        const ImageReadBack::Comparison missing =
            ImageReadBack::compareFiles(image, QStringLiteral("stdio:") + tmp.filePath(QStringLiteral("none")));
        const VerifyResult r = ImageReadBack::result(missing, image, QStringLiteral("stdio:/none"));
        QCOMPARE(r.outcome, VerifyResult::Outcome::NotChecked);
        QVERIFY(r.what.startsWith(QStringLiteral("The disc could not be read: ")));
        QCOMPARE(ImageReadBack::discPath(QStringLiteral("stdio:/tmp/a b.iso")), QStringLiteral("/tmp/a b.iso"));
        QCOMPARE(ImageReadBack::discPath(QStringLiteral("/dev/sr0")), QStringLiteral("/dev/sr0"));
    }

    // ---- xorriso's checksum check, from its recorded words -----------------------
    void theChecksumCheckReadFromItsWords()
    {
        const QString x = QStringLiteral("/usr/bin/xorriso");
        const VerifyResult match = DiscVerify::readMd5Check(recorded(x, "xorriso-check-md5-r-stdio-match.txt", 0));
        QVERIFY(match.verified());
        const VerifyResult older =
            DiscVerify::readMd5Check(recorded(x, "xorriso-check-md5-r-stdio-older-session-without-md5.txt", 0));
        QVERIFY(older.verified());

        const VerifyResult file = DiscVerify::readMd5Check(recorded(x, "xorriso-check-md5-r-stdio-file-mismatch.txt", 32));
        QCOMPARE(file.outcome, VerifyResult::Outcome::Mismatch);
        QCOMPARE(file.what, QStringLiteral("This file on the disc does not match what was written:\n/Photos/a.bin"));
        QVERIFY(file.details.contains(QStringLiteral("MD5 MISMATCH: '/Photos/a.bin'")));
        QVERIFY(file.details.contains(QStringLiteral("exit code 32")));

        const VerifyResult tree = DiscVerify::readMd5Check(recorded(x, "xorriso-check-md5-r-stdio-tree-mismatch.txt", 5));
        QCOMPARE(tree.outcome, VerifyResult::Outcome::Mismatch);
        QCOMPARE(tree.what, QStringLiteral("The disc's folders and file names do not match what was written."));

        const VerifyResult blank = DiscVerify::readMd5Check(recorded(x, "xorriso-check-md5-r-stdio-blank.txt", 0));
        QCOMPARE(blank.outcome, VerifyResult::Outcome::NotChecked);
        QCOMPARE(blank.what, QStringLiteral("The disc holds no checksums to compare with."));

        QCOMPARE(DiscVerify::mismatchedFiles(QStringLiteral("MD5 MISMATCH: '/a b/c.txt'\nMD5 MISMATCH: '/d'\n")),
                 (QStringList{"/a b/c.txt", "/d"}));
        QCOMPARE(DiscVerify::md5CheckCommand(x, QStringLiteral("/dev/sr0"), {"/Photos", "/Photos 1/Photos"}).arguments,
                 (QStringList{"-drive_access", "shared:readonly", "-md5", "on", "-indev", "/dev/sr0", "-check_md5_r",
                              "SORRY", "/Photos", "/Photos 1/Photos", "--"}));
    }

    void theMacRecordersOwnCheck()
    {
        const QString h = QStringLiteral("/usr/bin/hdiutil");
        QVERIFY(DiscVerify::saysVerifying(QStringLiteral("Verifying burn…")));
        QVERIFY(DiscVerify::saysVerifying(QStringLiteral("DRStatusStateKey: DRStatusStateVerifying")));
        QVERIFY(!DiscVerify::saysVerifying(QStringLiteral("Writing track")));
        QVERIFY(!DiscVerify::failedWhileVerifying(recorded(h, "hdiutil-burn-iso-success-2023.txt", 0)));
        QVERIFY(DiscVerify::failedWhileVerifying(recorded(h, "synthetic-hdiutil-burn-verify-failure.txt", 1)));
        // A failure before the check began is a failed write.
        QVERIFY(!DiscVerify::failedWhileVerifying(recorded(h, "hdiutil-burn-verbose-failure-2005.txt", 1)));
    }

    // ---- data discs -------------------------------------------------------------
    void dataDiscWrittenAndVerified()
    {
        Rig rig(ToolPaths::Backend::Linux);
        const QString a = rig.tmp.path() + "/src/Photos";
        writeFile(a + "/a.bin", bytes(300000, 4));
        writeFile(a + "/sub/b.bin", bytes(5000, 5));
        DataBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        bool busyWhileVerifying = false;
        connect(&flow, &Operation::sheetShown, this, [&](OperationSheet sheet) {
            if (sheet == OperationSheet::Verifying)
                busyWhileVerifying = flow.isBusy();
        });
        flow.burn(ImageMessages::DataDisc::DVD, {measuredFolder(a)});
        QVERIFY(log.waitEnded(1, 120000));
        QVERIFY2(rig.alerts.shown.isEmpty(), qPrintable(rig.alerts.texts().join('\n')));
        QVERIFY2(log.failures.isEmpty(), qPrintable(log.failures.value(0).informative + log.failures.value(0).details));
        QCOMPARE(log.sheets(), (QStringList{"toolStarted", "showPerformingOperation", "toolFinished", "verifying",
                                            "closePerformingOperation", "operationVerified", "ended"}));
        QVERIFY(busyWhileVerifying);
        QCOMPARE(log.commands.size(), 1);
        QCOMPARE(log.commands.first().mid(3, 2), (QStringList{"-md5", "on"}));
        QVERIFY(QDir(rig.ctx.dataFolder).isEmpty());
    }

    void dataDiscDamagedBeforeItIsReadBack()
    {
        Rig rig(ToolPaths::Backend::Linux);
        ScopedEnv env;
        env.set("TAMBLO_DAMAGE_FILE", QStringLiteral("/Photos/a.bin"));
        const QString damageLog = rig.tmp.path() + "/damage.log";
        env.set("TAMBLO_DAMAGE_LOG", damageLog);
        const QString a = rig.tmp.path() + "/src/Photos";
        writeFile(a + "/a.bin", bytes(300000, 4));
        writeFile(a + "/c.txt", "c\n");
        DataBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.burn(ImageMessages::DataDisc::DVD, {measuredFolder(a)});
        QVERIFY(log.waitEnded(1, 120000));
        QCOMPARE(readLines(damageLog).size(), 1);
        QCOMPARE(log.sheets().last(3), (QStringList{"closePerformingOperation", "operationFailed", "ended"}));
        QVERIFY(!log.sheets().contains(QStringLiteral("operationVerified")));
        const OperationFailure f = log.failures.first();
        QCOMPARE(f.message, Differences);
        QCOMPARE(f.informative, QStringLiteral("This file on the disc does not match what was written:\n/Photos/a.bin"));
        QVERIFY2(f.details.contains(QStringLiteral("MD5 MISMATCH: '/Photos/a.bin'")), qPrintable(f.details));
        QVERIFY(f.details.contains(QStringLiteral("-check_md5_r")));
        QVERIFY(QDir(rig.ctx.dataFolder).isEmpty());
    }

    void dataDiscWithTheSettingOff()
    {
        Rig rig(ToolPaths::Backend::Linux);
        rig.verify = false;
        const QString a = rig.tmp.path() + "/src/Photos";
        writeFile(a + "/a.bin", bytes(3000, 6));
        DataBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        LogCatcher runs;
        flow.burn(ImageMessages::DataDisc::DVD, {measuredFolder(a)});
        QVERIFY(log.waitEnded(1, 120000));
        QCOMPARE(log.sheets(), (QStringList{"toolStarted", "showPerformingOperation", "toolFinished",
                                            "closePerformingOperation", "operationComplete", "ended"}));
        QVERIFY(!log.commands.first().contains(QStringLiteral("-md5")));
        QCOMPARE(runs.verdicts().size(), 1);  // the recording, nothing read back
    }

    void macDataDiscIsCheckedByDrutil()
    {
        Rig rig(ToolPaths::Backend::MacOS);
        rig.ctx.stagingPollMs = 50;
        const QString burnLog = rig.tmp.path() + "/burn.log";
        ScopedEnv env;
        env.set("TAMBLO_FAKE_BURN_LOG", burnLog);
        env.set("TAMBLO_FAKE_BURN_SAY", QStringLiteral("Verifying burn… Burn completed."));
        const QString a = rig.tmp.path() + "/src/Photos";
        writeFile(a + "/a.bin", bytes(3000, 7));
        DataBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.burn(ImageMessages::DataDisc::DVD, {measuredFolder(a)});
        QVERIFY(log.waitEnded(1, 120000));
        // Verifying: drutil is left to read the disc back (no -noverify).
        QCOMPARE(readLines(burnLog).first(), QStringLiteral("burn|") + rig.ctx.dataFolder + "|-drive|1");
        QVERIFY(log.sheets().contains(QStringLiteral("verifying")));
        QCOMPARE(log.sheets().last(2), (QStringList{"operationVerified", "ended"}));

        // drutil failing in its read-back: the differences, in its words.
        Rig again(ToolPaths::Backend::MacOS);
        again.ctx.stagingPollMs = 50;
        env.set("TAMBLO_FAKE_BURN_SAY", QStringLiteral("Verifying burn… Verify failed: data mismatch."));
        env.set("TAMBLO_FAKE_BURN_EXIT", QStringLiteral("1"));
        DataBurnFlow failing(again.ctx);
        SheetLog failLog(&failing);
        failing.burn(ImageMessages::DataDisc::DVD, {measuredFolder(a)});
        QVERIFY(failLog.waitEnded(1, 120000));
        QCOMPARE(failLog.failures.size(), 1);
        QCOMPARE(failLog.failures.first().message, Differences);
        QCOMPARE(failLog.failures.first().informative, QStringLiteral("Verifying burn… Verify failed: data mismatch."));
    }

    // ---- image burns ------------------------------------------------------------
    void imageWrittenAndVerified()
    {
        Rig rig(ToolPaths::Backend::Linux);
        const QString image = rig.tmp.path() + "/raw.img";
        writeFile(image, bytes(3 * 1024 * 1024, 8));
        rig.picker.answers.enqueue({image});
        ImageBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded(1, 120000));
        QCOMPARE(log.sheets(), (QStringList{"showPerformingOperation", "toolStarted", "toolFinished", "verifying",
                                            "closePerformingOperation", "operationVerified", "ended"}));
        // The bar starts again from 0 for the reading back, and reaches 100.
        const int at = log.events.indexOf(QStringLiteral("verifying"));
        QVERIFY(log.events.mid(at).contains(QStringLiteral("progress")));
        QCOMPARE(log.progress.last(), 100.0);
    }

    void imageDamagedBeforeItIsReadBack()
    {
        Rig rig(ToolPaths::Backend::Linux);
        ScopedEnv env;
        env.set("TAMBLO_DAMAGE_OFFSET", QStringLiteral("40960"));
        const QString image = rig.tmp.path() + "/raw.img";
        writeFile(image, bytes(3 * 1024 * 1024, 8));
        rig.picker.answers.enqueue({image});
        ImageBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded(1, 120000));
        QCOMPARE(log.sheets().last(2), (QStringList{"operationFailed", "ended"}));
        const OperationFailure f = log.failures.first();
        QCOMPARE(f.message, Differences);
        // "DAMAGED!" over bytes that mostly differed from it.
        QVERIFY2(f.informative.contains(QStringLiteral("bytes 40960 to")) || f.informative.contains(QStringLiteral("Bytes 40960 to")),
                 qPrintable(f.informative));
        QVERIFY2(f.details.contains(QStringLiteral("Image: ") + image), qPrintable(f.details));
        QVERIFY(f.details.contains(QStringLiteral("Disc: ") + rig.disc));
    }

    void exactDamagedRange()
    {
        // Bytes of the image that all differ from "DAMAGED!": the whole
        // eight are named.
        Rig rig(ToolPaths::Backend::Linux);
        ScopedEnv env;
        env.set("TAMBLO_DAMAGE_OFFSET", QStringLiteral("40960"));
        const QString image = rig.tmp.path() + "/zeros.img";
        writeFile(image, QByteArray(1024 * 1024, '\0'));
        rig.picker.answers.enqueue({image});
        ImageBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded(1, 120000));
        QCOMPARE(log.failures.size(), 1);
        QCOMPARE(log.failures.first().informative, QStringLiteral("Bytes 40960 to 40967 of the disc differ from the image."));
    }

    void macImageIsCheckedByHdiutil()
    {
        Rig rig(ToolPaths::Backend::MacOS);
        const QString argsLog = rig.tmp.path() + "/h.log";
        ScopedEnv env;
        env.set("TAMBLO_FAKE_HDIUTIL_LOG", argsLog);
        env.set("TAMBLO_FAKE_HDIUTIL_BURN", fixture("synthetic-hdiutil-burn-verbose-progress.txt"));
        const QString image = rig.tmp.path() + "/My Image.dmg";
        writeFile(image, "dmg");
        rig.picker.answers.enqueue({image});
        ImageBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded(1, 30000));
        QCOMPARE(readLines(argsLog), QStringList{"burn|" + image + "|-verbose"});
        // The sheet says so when hdiutil begins its read-back, while it runs.
        QVERIFY(log.sheets().indexOf(QStringLiteral("verifying")) < log.sheets().indexOf(QStringLiteral("toolFinished")));
        QCOMPARE(log.sheets().last(2), (QStringList{"operationVerified", "ended"}));

        Rig again(ToolPaths::Backend::MacOS);
        env.set("TAMBLO_FAKE_HDIUTIL_BURN", fixture("synthetic-hdiutil-burn-verify-failure.txt"));
        env.set("TAMBLO_FAKE_HDIUTIL_EXIT", QStringLiteral("1"));
        again.picker.answers.enqueue({image});
        ImageBurnFlow failing(again.ctx);
        SheetLog failLog(&failing);
        failing.start();
        QVERIFY(failLog.waitEnded(1, 30000));
        QCOMPARE(failLog.failures.size(), 1);
        QCOMPARE(failLog.failures.first().message, Differences);
        QVERIFY2(failLog.failures.first().informative.contains(QStringLiteral("hdiutil: burn failed - The burned data did not verify.")),
                 qPrintable(failLog.failures.first().informative));
    }

    // ---- copies -----------------------------------------------------------------
    void copiesReadBackOneByOne()
    {
        Rig rig(ToolPaths::Backend::Linux);
        const QString volume = rig.tmp.path() + "/Volumes/MY DISC";
        writeFile(volume + "/data/blob.bin", bytes(200000, 9));
        rig.drive.status = FakeDriveBackend::finished(QStringLiteral("CD"));
        int copies = 0;
        QList<bool> readBackBeforeEject;
        bool verifiedSinceLastEject = false;
        rig.ctx.ejectDisc = [&] {
            if (QFileInfo::exists(rig.disc)) {
                readBackBeforeEject << verifiedSinceLastEject;
                QFile::rename(rig.disc, rig.tmp.path() + QStringLiteral("/copy%1.bin").arg(++copies));
            }
            verifiedSinceLastEject = false;
            rig.drive.status = FakeDriveBackend::blank(QStringLiteral("CD"));
        };
        rig.picker.answers.enqueue({volume});
        rig.alerts.answer(0, QStringLiteral("2"));
        DuplicationFlow flow(rig.ctx);
        SheetLog log(&flow);
        connect(&flow, &Operation::sheetShown, this, [&](OperationSheet sheet) {
            if (sheet == OperationSheet::Verifying)
                verifiedSinceLastEject = true;
        });
        flow.start();
        QVERIFY(log.waitEnded(1, 180000));
        QCOMPARE(copies, 2);
        QCOMPARE(readBackBeforeEject, (QList<bool>{true, true}));
        QCOMPARE(log.sheets().count(QStringLiteral("verifying")), 2);
        QCOMPARE(log.sheets().last(2), (QStringList{"operationVerified", "ended"}));
        QVERIFY(QDir(rig.ctx.dataFolder).isEmpty());
    }

    void aDamagedCopyEndsTheDuplication()
    {
        Rig rig(ToolPaths::Backend::Linux);
        ScopedEnv env;
        env.set("TAMBLO_DAMAGE_OFFSET", QStringLiteral("100000"));
        const QString volume = rig.tmp.path() + "/Volumes/MY DISC";
        writeFile(volume + "/data/blob.bin", bytes(200000, 9));
        rig.drive.status = FakeDriveBackend::finished(QStringLiteral("CD"));
        rig.ctx.ejectDisc = [&] { rig.drive.status = FakeDriveBackend::blank(QStringLiteral("CD")); };
        rig.picker.answers.enqueue({volume});
        rig.alerts.answer(0, QStringLiteral("2"));
        DuplicationFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded(1, 180000));
        QCOMPARE(log.sheets().last(3), (QStringList{"closePerformingOperation", "operationFailed", "ended"}));
        const OperationFailure f = log.failures.first();
        QCOMPARE(f.message, QStringLiteral("Copy 1 of 2 was written, but verifying it found differences."));
        QVERIFY2(f.informative.contains(QStringLiteral("of the disc differ")) || f.informative.contains(QStringLiteral("of the disc differs")),
                 qPrintable(f.informative));
        QCOMPARE(flow.copiesDone(), 0);
        QVERIFY(QDir(rig.ctx.dataFolder).isEmpty());  // the image is gone with the failure
    }

    // ---- media burns ------------------------------------------------------------
    void mp3DiscWrittenVerifiedAndDamaged()
    {
        for (const bool damaged : {false, true}) {
            QTemporaryDir tmp;
            ScopedEnv env;
            if (damaged)
                env.set("TAMBLO_DAMAGE_FILE", QStringLiteral("/tone.mp3"));
            const QString disc = tmp.filePath(QStringLiteral("disc.iso"));
            MediaBurnContext ctx = verifyingIn(tmp);
            ctx.currentDrive.s_Device_Path = QStringLiteral("stdio:") + disc;
            XorrisoRecorder recorder(fake("xorriso-damaging"), QStringLiteral("cdrskin"));
            FakeAlerts alerts;
            MediaBurn burn(recorder, alerts, FakeDriveBackend::checkOf(FakeDriveBackend::blank(QStringLiteral("CD"))));
            SheetLog sheets(&burn);
            QList<ToolCommand> recordings;
            connect(&burn, &Operation::toolStarted, this,
                    [&](const QString &program, const QStringList &arguments) { recordings << ToolCommand{program, arguments}; });
            burn.burn(BurnOperation::MP3CD, {mediaFile(m_tone, 1)}, ctx);
            QVERIFY(QTest::qWaitFor([&] { return !burn.isBusy(); }, 120000));
            QVERIFY2(alerts.shown.isEmpty(), qPrintable(alerts.texts().join('\n')));
            QCOMPARE(recordings.size(), 1);
            QVERIFY(recordings.first().arguments.join(' ').contains(QStringLiteral("-md5 on -dev")));
            if (!damaged) {
                QCOMPARE(sheets.steps().mid(sheets.steps().indexOf("showPerformingOperation")),
                         (QStringList{"showPerformingOperation", "verifying", "closePerformingOperation", "operationVerified"}));
            } else {
                QCOMPARE(sheets.steps().last(), QStringLiteral("operationFailed"));
                QCOMPARE(sheets.failure().message, Differences);
                QCOMPARE(sheets.failure().informative,
                         QStringLiteral("This file on the disc does not match what was written:\n/tone.mp3"));
            }
            QVERIFY(QDir(ctx.audioFolder).isEmpty());
        }
    }

    void audioCdsAreNotReadBack()
    {
        QTemporaryDir tmp;
        const QString burnLog = tmp.filePath(QStringLiteral("burn.log"));
        ScopedEnv env;
        env.set("TAMBLO_FAKE_BURN_LOG", burnLog);
        MediaBurnContext ctx = verifyingIn(tmp);
        ctx.currentDrive.s_Drive_Number = QStringLiteral("1");
        DrutilRecorder recorder(fake("burn-drutil"));
        FakeAlerts alerts;
        MediaBurn burn(recorder, alerts, FakeDriveBackend::checkOf(FakeDriveBackend::blank(QStringLiteral("CD"))));
        SheetLog sheets(&burn);
        LogCatcher runs;
        burn.burn(BurnOperation::AudioCD, {mediaFile(m_tone, 1)}, ctx);
        QVERIFY(QTest::qWaitFor([&] { return !burn.isBusy(); }, 120000));
        QVERIFY2(alerts.shown.isEmpty(), qPrintable(alerts.texts().join('\n')));
        QCOMPARE(sheets.steps().last(3), (QStringList{"showPerformingOperation", "closePerformingOperation", "operationComplete"}));
        QVERIFY(!sheets.steps().contains(QStringLiteral("verifying")));
        QCOMPARE(readLines(burnLog).first(), "burn|-audio|" + ctx.audioFolder + "|-drive|1");
        // The transcode and the recording; nothing read back.
        QCOMPARE(runs.verdicts().size(), 2);
    }

    void macMediaBurnIsCheckedByDrutil()
    {
        QTemporaryDir tmp;
        const QString burnLog = tmp.filePath(QStringLiteral("burn.log"));
        ScopedEnv env;
        env.set("TAMBLO_FAKE_BURN_LOG", burnLog);
        env.set("TAMBLO_FAKE_BURN_SAY", QStringLiteral("Verifying burn… Burn completed."));
        MediaBurnContext ctx = verifyingIn(tmp);
        ctx.currentDrive.s_Drive_Number = QStringLiteral("1");
        DrutilRecorder recorder(fake("burn-drutil"));
        FakeAlerts alerts;
        MediaBurn burn(recorder, alerts, FakeDriveBackend::checkOf(FakeDriveBackend::blank(QStringLiteral("DVD"))));
        SheetLog sheets(&burn);
        burn.burn(BurnOperation::MP3DVD, {mediaFile(m_tone, 1)}, ctx);
        QVERIFY(QTest::qWaitFor([&] { return !burn.isBusy(); }, 120000));
        QCOMPARE(readLines(burnLog).first(), "burn|" + ctx.audioFolder + "|-drive|1");
        QCOMPARE(sheets.steps().mid(sheets.steps().indexOf("showPerformingOperation")),
                 (QStringList{"showPerformingOperation", "verifying", "closePerformingOperation", "operationVerified"}));
    }
};

TAMBLO_TEST_MAIN(TestImagesVerify)
#include "tst_images_verify.moc"
