// ISO creation: the two panels, the chained steps, the replaced image, the
// exact hdiutil command (stand-in tool) and real xorriso images read back.
#include "support/FakeAlerts.h"
#include "support/FakeFilePicker.h"
#include "support/FlowRig.h"
#include "support/TestMain.h"

#include <QTemporaryDir>

#include "support/SheetLog.h"
#include "support/LogCatcher.h"
#include "support/DiscImages.h"
#include "support/Files.h"
#include "images/IsoCreationFlow.h"

namespace {

// No working folder made, and the destination panel starts in the
// Documents of a home of its own.
struct Rig : FlowRig {
    explicit Rig(ToolPaths::Backend backend) : FlowRig(backend, WorkingFolder::NotMade)
    {
        ctx.homeFolder = tmp.path() + "/home";
    }
};

} // namespace

class TestImagesIsoCreation : public QObject {
    Q_OBJECT
private slots:
    void cancellingTheSourcePanelDoesNothing()
    {
        Rig rig(ToolPaths::Backend::Linux);
        IsoCreationFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded());
        QCOMPARE(rig.picker.requests.size(), 1);
        QCOMPARE(rig.picker.requests.first().message, QStringLiteral("Select a folder to export to ISO format."));
        QCOMPARE(rig.picker.requests.first().kind, PickRequest::Kind::Folder);
        QVERIFY(rig.picker.requests.first().startFolder.isEmpty());
        QCOMPARE(log.sheets(), QStringList{"ended"});
        QVERIFY(rig.alerts.shown.isEmpty());
        QVERIFY(flow.sourcePath().isEmpty());
    }

    void cancellingTheDestinationPanelWritesNothing()
    {
        Rig rig(ToolPaths::Backend::Linux);
        const QString src = rig.tmp.path() + "/src";
        writeFile(src + "/f", "f");
        rig.picker.answers.enqueue({src});
        IsoCreationFlow flow(rig.ctx);
        SheetLog log(&flow);
        QElapsedTimer clock;
        qint64 secondPanelAt = -1;
        clock.start();
        connect(&flow, &SheetFlow::ended, this, [&] { secondPanelAt = clock.elapsed(); });
        flow.start();
        QVERIFY(log.waitEnded());
        QCOMPARE(rig.picker.requests.size(), 2);
        const PickRequest dest = rig.picker.requests.at(1);
        QCOMPARE(dest.message, QStringLiteral("Select a folder to save the Image.iso file."));
        QCOMPARE(dest.kind, PickRequest::Kind::Folder);
        QVERIFY(!dest.multiple);
        QCOMPARE(dest.startFolder, rig.tmp.path() + "/home/Documents");
        QVERIFY(secondPanelAt >= 90);  // a step after the first panel (a coarse timer may be 5 % early)
        QCOMPARE(log.sheets(), QStringList{"ended"});
        QVERIFY(rig.alerts.shown.isEmpty());
        QCOMPARE(QDir(rig.tmp.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{"src"});
        QCOMPARE(flow.sourcePath(), src);
        QVERIFY(flow.imagePath().isEmpty());
    }

    void macCommandStepsAndSilentReplacement()
    {
        Rig rig(ToolPaths::Backend::MacOS);
        const QString argsLog = rig.tmp.path() + "/hdiutil.log";
        qputenv("TAMBLO_FAKE_HDIUTIL_LOG", argsLog.toLocal8Bit());
        qputenv("TAMBLO_FAKE_HDIUTIL_MAKEHYBRID", fixture("hdiutil-makehybrid-iso-joliet-2013.txt").toLocal8Bit());
        const QString src = rig.tmp.path() + "/My Source Folder";
        const QString dst = rig.tmp.path() + "/Image Dest";
        writeFile(src + "/a file.txt", "a");
        writeFile(dst + "/image.iso", "an earlier image");
        rig.picker.answers.enqueue({src});
        rig.picker.answers.enqueue({dst});
        IsoCreationFlow flow(rig.ctx);
        SheetLog log(&flow);
        LogCatcher logs;
        flow.start();
        QVERIFY(log.waitEnded());
        qunsetenv("TAMBLO_FAKE_HDIUTIL_LOG");
        qunsetenv("TAMBLO_FAKE_HDIUTIL_MAKEHYBRID");
        QCOMPARE(readLines(argsLog), QStringList{"makehybrid|-o|" + dst + "/image.iso|" + src + "|-iso|-joliet"});
        QCOMPARE(log.commands.first(), (QStringList{fake("hdiutil"), "makehybrid", "-o", dst + "/image.iso", src,
                                                    "-iso", "-joliet"}));
        QCOMPARE(flow.destinationFolder(), dst);
        QCOMPARE(flow.imagePath(), dst + "/image.iso");
        QVERIFY(rig.alerts.shown.isEmpty());
        // The stand-in finishes long before the working sheet's step: the
        // sheet still comes, and closes before the completion.
        QCOMPARE(log.sheets(), (QStringList{"toolStarted", "toolFinished", "showPerformingOperation",
                                            "closePerformingOperation", "operationComplete", "ended"}));
        QVERIFY(log.timeOf("toolStarted") >= 190);
        QVERIFY(log.timeOf("showPerformingOperation") - log.timeOf("toolStarted") >= 90);  // a coarse timer may be 5 % early
        const QStringList image = readLines(dst + "/image.iso");
        QCOMPARE(image.value(0), "fake image of " + src);
        QVERIFY(logs.contains(QStringLiteral("Creating hybrid image...")));
    }

    void realImageReadsBackTheSameTree()
    {
        QVERIFY2(!xorrisoPath().isEmpty(), "xorriso must be installed");
        Rig rig(ToolPaths::Backend::Linux);
        const QString src = rig.tmp.path() + "/Holiday Ünïcødé";
        writeFile(src + "/top.txt", "top\n");
        writeFile(src + "/a/b/c/d/deep.bin", pseudoRandom(123457, 21));
        writeFile(src + "/写真/ñandú é.jpg", pseudoRandom(64000, 22));
        writeFile(src + "/with space/and'quote\".txt", "q\n");
        writeFile(src + "/a=b/c=d", "equals\n");
        QDir().mkpath(src + "/empty folder");
        QDir().mkpath(src + "/a/empty too");
        const QString dst = rig.tmp.path() + "/out";
        QDir().mkpath(dst);
        rig.picker.answers.enqueue({src});
        rig.picker.answers.enqueue({dst});
        IsoCreationFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded(1, 120000));
        QCOMPARE(log.sheets().last(3), (QStringList{"closePerformingOperation", "operationComplete", "ended"}));
        const QString readback = rig.tmp.path() + "/readback";
        QString xlog;
        QVERIFY2(extract(dst + "/image.iso", readback, &xlog), qPrintable(xlog));
        QCOMPARE(tree(readback), tree(src));
        QCOMPARE(volumeId(dst + "/image.iso"), QStringLiteral("Holiday Ünïcødé"));
        // The Joliet tree (what Windows reads) keeps the letters too.
        QVERIFY(jolietHolds(dst + "/image.iso", QStringLiteral("ñandú é.jpg")));
        QVERIFY(jolietHolds(dst + "/image.iso", QStringLiteral("写真")));
    }

    void aSecondRunReplacesTheEarlierImage()
    {
        QVERIFY(!xorrisoPath().isEmpty());
        Rig rig(ToolPaths::Backend::Linux);
        const QString one = rig.tmp.path() + "/one";
        const QString two = rig.tmp.path() + "/two";
        writeFile(one + "/first.bin", pseudoRandom(900000, 31));
        writeFile(two + "/second.txt", "second\n");
        const QString dst = rig.tmp.path() + "/dest";
        QDir().mkpath(dst);
        IsoCreationFlow flow(rig.ctx);
        SheetLog log(&flow);
        rig.picker.answers.enqueue({one});
        rig.picker.answers.enqueue({dst});
        flow.start();
        QVERIFY(log.waitEnded(1, 120000));
        const qint64 firstSize = QFileInfo(dst + "/image.iso").size();
        rig.picker.answers.enqueue({two});
        rig.picker.answers.enqueue({dst});
        flow.start();
        QVERIFY(log.waitEnded(2, 120000));
        QVERIFY(rig.alerts.shown.isEmpty());
        QVERIFY(QFileInfo(dst + "/image.iso").size() < firstSize);
        QString xlog;
        QVERIFY2(extract(dst + "/image.iso", rig.tmp.path() + "/rb", &xlog), qPrintable(xlog));
        QCOMPARE(tree(rig.tmp.path() + "/rb"), tree(two));
        QCOMPARE(QDir(dst).entryList(QDir::Files), QStringList{"image.iso"});
    }

    void theSameFolderAsSourceAndDestination()
    {
        QVERIFY(!xorrisoPath().isEmpty());
        Rig rig(ToolPaths::Backend::Linux);
        const QString both = rig.tmp.path() + "/Both";
        writeFile(both + "/keep.txt", "keep\n");
        writeFile(both + "/image.iso", "an old image inside the folder");
        rig.picker.answers.enqueue({both});
        rig.picker.answers.enqueue({both});
        IsoCreationFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded(1, 120000));
        QCOMPARE(log.sheets().last(2), (QStringList{"operationComplete", "ended"}));
        QVERIFY(QFileInfo(both + "/image.iso").size() > 30000);
        QCOMPARE(readLines(both + "/keep.txt"), QStringList{"keep"});
        QString xlog;
        QVERIFY2(extract(both + "/image.iso", rig.tmp.path() + "/rb", &xlog), qPrintable(xlog));
        QCOMPARE(tree(rig.tmp.path() + "/rb").value("keep.txt"), tree(both).value("keep.txt"));
    }

    void aMissingToolIsNamedWithItsInstallHint()
    {
        Rig rig(ToolPaths::Backend::Linux);
        rig.ctx.tools.xorriso = rig.tmp.path() + "/no-such-xorriso";
        const QString src = rig.tmp.path() + "/s";
        writeFile(src + "/f", "f");
        rig.picker.answers.enqueue({src});
        rig.picker.answers.enqueue({rig.tmp.path()});
        IsoCreationFlow flow(rig.ctx);
        SheetLog log(&flow);
        LogCatcher logs;
        flow.start();
        QVERIFY(log.waitEnded());
        QVERIFY(logs.warned(QStringLiteral("could not start ") + rig.ctx.tools.xorriso));
        // No completion, and no sheet left open: an alert names the tool.
        QCOMPARE(log.sheets(), (QStringList{"toolStarted", "toolFinished", "showPerformingOperation",
                                            "closePerformingOperation", "ended"}));
        QCOMPARE(rig.alerts.shown.size(), 1);
        QCOMPARE(rig.alerts.shown.first().messageText, QStringLiteral("no-such-xorriso could not be started."));
        QVERIFY(rig.alerts.shown.first().informativeText.contains("Install it with"));
        QVERIFY(QFileInfo::exists(src + "/f"));
    }
};

TAMBLO_TEST_MAIN(TestImagesIsoCreation)
#include "tst_images_iso_creation.moc"
