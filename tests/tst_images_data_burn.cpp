// Data disc burning: the checks and their messages, the order of the steps
// and sheets, the macOS staging with a stand-in drutil, and a real xorriso
// burn into a pseudo-drive read back file by file.
#include "compilation/Measurements.h"
#include "support/FakeAlerts.h"
#include "support/FakeFilePicker.h"
#include "support/FlowRig.h"
#include "support/TestMain.h"

#include <QTemporaryDir>

#include "drives/MediaQuestions.h"
#include "support/SheetLog.h"
#include "support/LogCatcher.h"
#include "support/DiscImages.h"
#include "support/FakeDriveBackend.h"
#include "support/Files.h"
#include "images/DataBurnFlow.h"
#include "images/StagingCopy.h"

namespace {

// The current drive is the second; the staging copy is measured often.
struct Rig : FlowRig {
    explicit Rig(ToolPaths::Backend backend) : FlowRig(backend)
    {
        current.s_Drive_Number = QStringLiteral("2");
        ctx.stagingPollMs = 50;
    }
};

} // namespace

class TestImagesDataBurn : public QObject {
    Q_OBJECT
private slots:
    void anEmptyListIsRefusedBeforeTheDriveIsAsked()
    {
        Rig rig(ToolPaths::Backend::Linux);
        rig.drive.status = FakeDriveBackend::blank(QStringLiteral("CD"));
        DataBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.burn(ImageMessages::DataDisc::CD, {});
        QVERIFY(log.waitEnded());
        QCOMPARE(rig.alerts.texts(), QStringList{"No folders on the list / There are no folders on the list. Add folders to the list and try again."});
        QCOMPARE(rig.alerts.shown.first().buttons, QStringList{"Close"});
        QCOMPARE(rig.drive.count("status"), 0);
        QVERIFY(log.commands.isEmpty());
        QVERIFY(!flow.isBusy());
    }

    void refusalsLeaveEverythingAsItWas_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("medium");
        QTest::addColumn<bool>("debug");
        QTest::addColumn<QStringList>("expected");
        const QString noDisc = "No disc / There is no disc on the drive. insert a writable media on the drive and try again.";
        const QString notWritable = "Media not writable / The media on the drive is not writable. insert a writable media on the drive and try again.";
        QTest::newRow("empty drive") << 0 << "empty" << false << QStringList{noDisc};
        QTest::newRow("finished disc") << 0 << "finished CD" << false << QStringList{notWritable};
        QTest::newRow("DVD refuses CD") << 0 << "blank DVD" << false
            << QStringList{"Media not CD / The media on the drive is not a CD. insert a writable CD on the drive and try again."};
        QTest::newRow("DVD refuses CD, debug") << 0 << "blank DVD" << true
            << QStringList{"Media not CD / The media on the drive is not a CD. insert a writable CD on the drive and try again.",
                           "DVD / Warning 0070."};
        QTest::newRow("CD refuses DVD, debug") << 1 << "blank CD" << true
            << QStringList{"Media not DVD / The media on the drive is not a DVD. insert a writable DVD on the drive and try again.",
                           "CD / Warning 0020."};
        QTest::newRow("DVD refuses Blu-ray, debug") << 2 << "blank DVD" << true
            << QStringList{"Media not Blu-ray / The media on the drive is not a Blu-ray. insert a writable Blu-ray on the drive and try again.",
                           "DVD / Warning 0090."};
        QTest::newRow("Other refuses Blu-ray") << 2 << "blank Other" << false
            << QStringList{"Media not Blu-ray / The media on the drive is not a Blu-ray. insert a writable Blu-ray on the drive and try again."};
    }
    void refusalsLeaveEverythingAsItWas()
    {
        QFETCH(int, kind);
        QFETCH(QString, medium);
        QFETCH(bool, debug);
        QFETCH(QStringList, expected);
        Rig rig(ToolPaths::Backend::Linux);
        rig.debug = debug;
        if (medium == QLatin1String("empty"))
            rig.drive.status = FakeDriveBackend::noDisc();
        else if (medium.startsWith(QLatin1String("finished ")))
            rig.drive.status = FakeDriveBackend::finished(medium.mid(9));
        else
            rig.drive.status = FakeDriveBackend::blank(medium.mid(6));
        writeFile(rig.data + "/left-over.txt", "mine\n");
        writeFile(rig.tmp.path() + "/src/Photos/p.jpg", "p");
        DataBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.burn(ImageMessages::DataDisc(kind), {measuredFolder(rig.tmp.path() + "/src/Photos")});
        QVERIFY(log.waitEnded());
        // In debug mode the medium questions explain their own "no" first.
        QStringList shown = rig.alerts.texts();
        shown.erase(std::remove_if(shown.begin(), shown.end(),
                                   [](const QString &t) { return t.startsWith(QLatin1String("Type: fake\n / Warning 00")); }),
                    shown.end());
        QCOMPARE(shown, expected);
        for (const AlertRequest &r : rig.alerts.shown)
            QVERIFY(r.buttons == QStringList{"Close"} || r.buttons == QStringList{"OK"});
        QVERIFY(log.commands.isEmpty());
        QCOMPARE(log.sheets(), QStringList{"ended"});
        QVERIFY(QFileInfo::exists(rig.data + "/left-over.txt"));
    }

    void aRewritableDiscPassesTheWritableCheck()
    {
        Rig rig(ToolPaths::Backend::Linux);
        rig.ctx.tools.xorriso = fake("args-logger");
        rig.drive.status = FakeDriveBackend::rewritable(QStringLiteral("DVD"));
        writeFile(rig.tmp.path() + "/src/Photos/p.jpg", "p");
        DataBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.burn(ImageMessages::DataDisc::DVD, {measuredFolder(rig.tmp.path() + "/src/Photos")});
        QVERIFY(log.waitEnded());
        QVERIFY(rig.alerts.shown.isEmpty());
        QCOMPARE(log.commands.size(), 1);
        // empty?, write-once? (no), rewritable? (yes), kind?
        QCOMPARE(rig.drive.count("status"), 4);
    }

    void linuxStepsSheetsAndWorkingFolder()
    {
        Rig rig(ToolPaths::Backend::Linux);
        const QString argsLog = rig.tmp.path() + "/args.log";
        qputenv("TAMBLO_FAKE_ARGS_LOG", argsLog.toLocal8Bit());
        rig.ctx.tools.xorriso = fake("args-logger");
        rig.drive.status = FakeDriveBackend::blank(QStringLiteral("BD"));
        writeFile(rig.data + "/stale/old.bin", "old");
        writeFile(rig.tmp.path() + "/a/Photos/1.jpg", "1");
        writeFile(rig.tmp.path() + "/b/Photos/2.jpg", "2");
        DataBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        QStringList dataAtLaunch{"unset"};
        connect(&flow, &SheetFlow::toolStarted, this, [&] {
            dataAtLaunch = QDir(rig.data).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        });
        flow.burn(ImageMessages::DataDisc::Bluray, {measuredFolder(rig.tmp.path() + "/a/Photos"), measuredFolder(rig.tmp.path() + "/b/Photos")});
        QVERIFY(log.waitEnded());
        qunsetenv("TAMBLO_FAKE_ARGS_LOG");
        QCOMPARE(log.sheets(), (QStringList{"toolStarted", "showPerformingOperation", "toolFinished",
                                            "closePerformingOperation", "operationComplete", "ended"}));
        QVERIFY(rig.alerts.shown.isEmpty());
        // Emptied before (nothing is copied on Linux) and after.
        QCOMPARE(dataAtLaunch, QStringList());
        QVERIFY(QDir(rig.data).isEmpty());
        QVERIFY(QDir(rig.data).exists());
        // The burn is a step after the checks.
        QVERIFY(log.timeOf("toolStarted") >= 90);  // one 0.1 s step (a coarse timer may be 5 % early)
        const QStringList expected{"-pacifier", "interval=0.2", "-outdev", rig.current.s_Device_Path, "-joliet", "on", "-volid", "TambloData",
                                   "-map", rig.tmp.path() + "/a/Photos", "/Photos",
                                   "-map", rig.tmp.path() + "/b/Photos", "/Photos 1/Photos", "-commit"};
        QCOMPARE(readLines(argsLog), QStringList{expected.join(QLatin1Char('|'))});
        QCOMPARE(log.commands.first().mid(1), expected);
        // The sources are untouched.
        QVERIFY(QFileInfo::exists(rig.tmp.path() + "/a/Photos/1.jpg"));
        QVERIFY(QFileInfo::exists(rig.tmp.path() + "/b/Photos/2.jpg"));
    }

    void macStagesThenBurnsTheWorkingFolder()
    {
        Rig rig(ToolPaths::Backend::MacOS);
        const QString drutilLog = rig.tmp.path() + "/drutil.log";
        qputenv("TAMBLO_FAKE_DRUTIL_LOG", drutilLog.toLocal8Bit());
        rig.drive.status = FakeDriveBackend::blank(QStringLiteral("DVD"));
        writeFile(rig.data + "/stale.bin", "old");
        const QString a = rig.tmp.path() + "/a/Photos";
        const QString b = rig.tmp.path() + "/b/Photos";
        const QString c = rig.tmp.path() + "/c/Photos";
        writeFile(a + "/x/1.jpg", pseudoRandom(30000, 1));
        writeFile(b + "/2.jpg", pseudoRandom(20000, 2));
        writeFile(c + "/3 three.jpg", pseudoRandom(10000, 3));
        DataBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        QMap<QString, QString> staged;
        bool staleGoneBeforeStaging = false;
        connect(&flow, &Operation::sheetShown, this, [&](OperationSheet sheet) {
            if (sheet == OperationSheet::Staging)
                staleGoneBeforeStaging = !QFileInfo::exists(rig.data + "/stale.bin");
        });
        connect(&flow, &SheetFlow::toolStarted, this, [&] { staged = tree(rig.data); });
        flow.burn(ImageMessages::DataDisc::DVD, {measuredFolder(a), measuredFolder(b), measuredFolder(c)});
        QVERIFY(log.waitEnded());
        qunsetenv("TAMBLO_FAKE_DRUTIL_LOG");
        QVERIFY(rig.alerts.shown.isEmpty());
        QCOMPARE(log.sheets(), (QStringList{"showStagingSheet", "toolStarted", "closeStagingSheet",
                                            "showPerformingOperation", "toolFinished", "closePerformingOperation",
                                            "operationComplete", "ended"}));
        QVERIFY(staleGoneBeforeStaging);
        QMap<QString, QString> expected = under("Photos", tree(a));
        expected.insert(under("Photos 1/Photos", tree(b)));
        expected.insert("Photos 1", "dir");
        expected.insert(under("Photos 2/Photos", tree(c)));
        expected.insert("Photos 2", "dir");
        QCOMPARE(staged, expected);
        QCOMPARE(readLines(drutilLog), QStringList{"burn|-noverify|" + rig.data + "|-drive|2"});
        QCOMPARE(log.commands.first().first(), fake("drutil"));
        // Three folders, each at least one poll interval.
        QVERIFY(log.timeOf("toolStarted") >= 100 + 3 * 50);
        QVERIFY(QDir(rig.data).isEmpty());
        QCOMPARE(tree(a + "/.."), tree(rig.tmp.path() + "/a"));
        QVERIFY(QFileInfo::exists(c + "/3 three.jpg"));
    }

    void realXorrisoBurnReadsBackTheSameTree()
    {
        QVERIFY2(!xorrisoPath().isEmpty(), "xorriso must be installed");
        Rig rig(ToolPaths::Backend::Linux);
        rig.drive.status = FakeDriveBackend::blank(QStringLiteral("CD"));
        const QString a = rig.tmp.path() + "/first place/Photos";
        const QString b = rig.tmp.path() + "/second/Photos";
        const QString c = rig.tmp.path() + "/third/Misc *[odd] names?";
        writeFile(a + "/2024/summer/beach.jpg", pseudoRandom(300000, 11));
        writeFile(a + "/Ünïcødé 写真 ñ.txt", "unicode name\n");
        writeFile(a + "/.hidden", "dot\n");
        QDir().mkpath(a + "/empty");
        writeFile(b + "/beach.jpg", pseudoRandom(250000, 12));  // same name, other bytes
        writeFile(b + "/notes/a'b\"c.txt", "quotes\n");
        writeFile(c + "/x", pseudoRandom(5000, 13));
        DataBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        bool dataEmptyDuringBurn = false;
        connect(&flow, &Operation::sheetShown, this, [&](OperationSheet sheet) {
            if (sheet == OperationSheet::Working)
                dataEmptyDuringBurn = QDir(rig.data).isEmpty();
        });
        LogCatcher logs;
        flow.burn(ImageMessages::DataDisc::CD, {measuredFolder(a), measuredFolder(b), measuredFolder(c)});
        QVERIFY(log.waitEnded(1, 120000));
        QCOMPARE(log.sheets().last(2), (QStringList{"operationComplete", "ended"}));
        QVERIFY(dataEmptyDuringBurn);
        QVERIFY(logs.contains(QStringLiteral("ended with exit code 0")));

        const QString disc = rig.tmp.path() + "/disc.iso";
        QVERIFY(QFileInfo(disc).size() > 550000);
        const QString out = rig.tmp.path() + "/readback";
        QString xlog;
        QVERIFY2(extract(disc, out, &xlog), qPrintable(xlog));
        QMap<QString, QString> expected = under("Photos", tree(a));
        expected.insert(under("Photos 1/Photos", tree(b)));
        expected.insert("Photos 1", "dir");
        expected.insert(under("Misc *[odd] names?", tree(c)));
        QCOMPARE(tree(out), expected);
        QCOMPARE(volumeId(disc), QStringLiteral("TambloData"));
    }
};

TAMBLO_TEST_MAIN(TestImagesDataBurn)
#include "tst_images_data_burn.moc"
