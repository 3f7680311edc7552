// Image burning: the panel, the two medium checks, the single bar from 0 of
// 100 fed by the recorder, with a stand-in hdiutil and with real xorriso
// writing into a pseudo-drive.
#include "support/FakeAlerts.h"
#include "support/FakeFilePicker.h"
#include "support/FlowRig.h"
#include "support/TestMain.h"

#include <QRegularExpression>
#include <cmath>
#include <QTemporaryDir>

#include "drives/MediaQuestions.h"
#include "support/SheetLog.h"
#include "support/DiscImages.h"
#include "support/FakeDriveBackend.h"
#include "support/Files.h"
#include "images/ImageBurnFlow.h"
#include "images/XorrisoImageTool.h"

namespace {

using Rig = FlowRig;

bool isSubsequence(const QList<double> &part, const QList<double> &whole)
{
    int j = 0;
    for (double v : part) {
        while (j < whole.size() && qAbs(whole.at(j) - v) > 1e-3)
            ++j;
        if (j == whole.size())
            return false;
        ++j;
    }
    return true;
}

// A flow that runs one command with the single bar, as the image burn and the
// copy step do.
class OneRunFlow : public SheetFlow {
public:
    using SheetFlow::SheetFlow;
    void run(const ToolCommand &command, ImageProgress::Kind kind)
    {
        begin();
        startToolRun(command, ToolRun::Channels::Separate, [this](const ToolVerdict &) { finish(); }, kind);
    }
};

} // namespace

class TestImagesImageBurn : public QObject {
    Q_OBJECT
private slots:
    void cancellingThePanelDoesNothing()
    {
        Rig rig(ToolPaths::Backend::MacOS);
        ImageBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded());
        QCOMPARE(rig.picker.requests.size(), 1);
        const PickRequest r = rig.picker.requests.first();
        QCOMPARE(r.kind, PickRequest::Kind::Files);
        QVERIFY(!r.multiple);
        QCOMPARE(r.allowedExtensions, (QStringList{"iso", "img", "dmg"}));
        QCOMPARE(r.message, QStringLiteral("Select a ISO image to burn to media."));
        QCOMPARE(rig.drive.count("status"), 0);
        QVERIFY(rig.alerts.shown.isEmpty());
        QCOMPARE(log.sheets(), QStringList{"ended"});
    }

    void anEmptyDriveSaysNoDiscAndRunsNothing()
    {
        Rig rig(ToolPaths::Backend::MacOS);
        const QString argsLog = rig.tmp.path() + "/h.log";
        qputenv("TAMBLO_FAKE_HDIUTIL_LOG", argsLog.toLocal8Bit());
        rig.drive.status = FakeDriveBackend::noDisc();
        rig.picker.answers.enqueue({rig.tmp.path() + "/x.iso"});
        ImageBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded());
        qunsetenv("TAMBLO_FAKE_HDIUTIL_LOG");
        QCOMPARE(rig.alerts.texts(), QStringList{"No disc / There is no disc on the drive. insert a writable media on the drive and try again."});
        QCOMPARE(rig.alerts.shown.first().buttons, QStringList{"Close"});
        QVERIFY(log.commands.isEmpty());
        QVERIFY(!QFileInfo::exists(argsLog));
        QCOMPARE(log.sheets(), QStringList{"ended"});
    }

    void aFinishedDiscIsNotWritable()
    {
        Rig rig(ToolPaths::Backend::Linux);
        rig.drive.status = FakeDriveBackend::finished(QStringLiteral("DVD"));
        rig.picker.answers.enqueue({rig.tmp.path() + "/x.iso"});
        ImageBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded());
        QCOMPARE(rig.alerts.texts(), QStringList{"Media not writable / The media on the drive is not writable. insert a writable media on the drive and try again."});
        QVERIFY(log.commands.isEmpty());
        // No kind check: write-once, rewritable asked; nothing more.
        QCOMPARE(rig.drive.count("status"), 3);
    }

    void macProgressFromTheRecorderReachesTheWorkingSheet()
    {
        Rig rig(ToolPaths::Backend::MacOS);
        const QString argsLog = rig.tmp.path() + "/h.log";
        qputenv("TAMBLO_FAKE_HDIUTIL_LOG", argsLog.toLocal8Bit());
        qputenv("TAMBLO_FAKE_HDIUTIL_BURN", fixture("synthetic-hdiutil-burn-verbose-progress.txt").toLocal8Bit());
        qputenv("TAMBLO_FAKE_HDIUTIL_DELAY", "0.05");
        rig.drive.status = FakeDriveBackend::blank(QStringLiteral("CD"));
        const QString image = rig.tmp.path() + "/My Image.dmg";
        writeFile(image, "dmg");
        rig.picker.answers.enqueue({image});
        ImageBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        double valueWhenStarted = -1;
        connect(&flow, &SheetFlow::toolStarted, this, [&] { valueWhenStarted = log.progress.isEmpty() ? -1 : log.progress.last(); });
        flow.start();
        QVERIFY(log.waitEnded(1, 30000));
        qunsetenv("TAMBLO_FAKE_HDIUTIL_LOG");
        qunsetenv("TAMBLO_FAKE_HDIUTIL_BURN");
        qunsetenv("TAMBLO_FAKE_HDIUTIL_DELAY");
        QCOMPARE(readLines(argsLog), QStringList{"burn|" + image + "|-verbose|-noverifyburn"});
        QVERIFY(rig.alerts.shown.isEmpty());
        QCOMPARE(log.sheets(), (QStringList{"showPerformingOperation", "toolStarted", "toolFinished",
                                            "closePerformingOperation", "operationComplete", "ended"}));
        // The working sheet spins until the first report: no value before any output.
        QCOMPARE(valueWhenStarted, -1.0);
        // Then the values of the lines long enough to be read, in order.
        const QList<double> fed = log.progress;
        QVERIFY2(!fed.isEmpty(), "no progress reached the bar");
        QList<double> shown;
        for (double v : fed)
            shown << std::round(v * 100.0) / 100.0;
        QCOMPARE(shown, (QList<double>{0, 5, 12.35, 50, 99.99, 100, 25, 100}));
        for (double v : fed)
            QVERIFY(v >= 0 && v <= 100);
        // Every report line reaches the working sheet; "-1" (no estimate yet) does not.
        QList<double> reported;
        for (const WriteReport &r : log.reports)
            reported << std::round(*r.percent * 100.0) / 100.0;
        QCOMPARE(reported, (QList<double>{0, 5, 12.35, 50, 99.99, 100, 25, 100}));
    }

    // hdiutil fails (a real recorded failure, here with exit status 1): the
    // last sheet says the disc could not be written, in hdiutil's words.
    void macRecorderFailureEndsInTheFailureSheet()
    {
        Rig rig(ToolPaths::Backend::MacOS);
        qputenv("TAMBLO_FAKE_HDIUTIL_BURN", fixture("hdiutil-burn-verbose-failure-2005.txt").toLocal8Bit());
        qputenv("TAMBLO_FAKE_HDIUTIL_EXIT", "1");
        rig.drive.status = FakeDriveBackend::blank(QStringLiteral("CD"));
        const QString image = rig.tmp.path() + "/Live.iso";
        writeFile(image, "iso");
        rig.picker.answers.enqueue({image});
        ImageBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded(1, 30000));
        qunsetenv("TAMBLO_FAKE_HDIUTIL_BURN");
        qunsetenv("TAMBLO_FAKE_HDIUTIL_EXIT");
        QVERIFY(rig.alerts.shown.isEmpty());
        QCOMPARE(log.sheets().last(2), (QStringList{"operationFailed", "ended"}));
        QVERIFY(!log.sheets().contains(QStringLiteral("operationComplete")));
        QCOMPARE(log.failures.first().message, QStringLiteral("The disc could not be written."));
        QVERIFY2(log.failures.first().informative.contains("*** malloc"), qPrintable(log.failures.first().informative));
        QVERIFY(log.failures.first().details.contains("DIDiskImageNewWithBackingStore"));
    }

    void reportsCutByTheReadsReachTheBarWhole()
    {
        // The recorder's output arrives 7 bytes a read: "  11 of   50 MB
        // written" may come as "  1" and "1 of   50 MB written", which alone
        // would read 2 %. The bar sees whole reports only.
        Rig rig(ToolPaths::Backend::Linux);
        const QString recorded = fixture("xorriso-as-cdrecord-v-stdio-50mb-throttled.txt");
        QList<double> perLine;
        for (const QString &line : readText(recorded).split(QRegularExpression("[\r\n]")))
            if (const auto v = ImageProgress::parse(ImageProgress::Kind::XorrisoRecordPercent, line))
                perLine << *v;
        QVERIFY(perLine.size() > 5);
        qputenv("TAMBLO_FAKE_PAUSE", "0.005");
        OneRunFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.run({fake("burn-chunked-tool"), {recorded, QStringLiteral("7"), QStringLiteral("err")}},
                 ImageProgress::Kind::XorrisoRecordPercent);
        QVERIFY(log.waitEnded(1, 60000));
        qunsetenv("TAMBLO_FAKE_PAUSE");
        QVERIFY2(log.progress.size() > 1, "the reports did not reach the bar");
        QVERIFY(isSubsequence(log.progress, perLine));
        QCOMPARE(log.progress.last(), perLine.last());
        QCOMPARE(log.sheets(), (QStringList{"toolStarted", "toolFinished", "ended"}));
    }

    void aReportWithoutLineEndIsReadAtTheEnd()
    {
        Rig rig(ToolPaths::Backend::Linux);
        const QString recorded = rig.tmp.path() + "/last.txt";
        writeFile(recorded, "xorriso : UPDATE :   25 of   50 MB written\rxorriso : UPDATE :   50 of   50 MB written");
        OneRunFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.run({fake("burn-chunked-tool"), {recorded, QStringLiteral("1000"), QStringLiteral("err")}},
                 ImageProgress::Kind::XorrisoRecordPercent);
        QVERIFY(log.waitEnded(1, 60000));
        QCOMPARE(log.progress, (QList<double>{50.0, 100.0}));
        // The last value comes before the end is told.
        QCOMPARE(log.events, (QStringList{"toolStarted", "progress", "progress", "toolFinished", "ended"}));
    }

    void anyChosenFileGoesToTheToolAsItIs()
    {
        Rig rig(ToolPaths::Backend::Linux);
        rig.ctx.tools.xorriso = fake("args-logger");
        const QString argsLog = rig.tmp.path() + "/args.log";
        qputenv("TAMBLO_FAKE_ARGS_LOG", argsLog.toLocal8Bit());
        rig.drive.status = FakeDriveBackend::rewritable(QStringLiteral("BD"));
        const QString odd = rig.tmp.path() + "/not an image.TXT";
        rig.picker.answers.enqueue({odd});
        ImageBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded());
        qunsetenv("TAMBLO_FAKE_ARGS_LOG");
        QCOMPARE(readLines(argsLog),
                 QStringList{"-pacifier|interval=0.2|-as|cdrecord|-v|-nopad|dev=" + rig.current.s_Device_Path + "|" + odd});
        QCOMPARE(flow.imagePath(), odd);
    }

    void realBurnOfAnIsoImageReadsBack()
    {
        QVERIFY2(!xorrisoPath().isEmpty(), "xorriso must be installed");
        Rig rig(ToolPaths::Backend::Linux);
        rig.drive.status = FakeDriveBackend::blank(QStringLiteral("DVD"));
        const QString src = rig.tmp.path() + "/Source";
        writeFile(src + "/a.bin", pseudoRandom(777777, 41));
        writeFile(src + "/sub/ü.txt", "u\n");
        const QString image = rig.tmp.path() + "/made.iso";
        {
            QProcess p;
            const ToolCommand c = XorrisoImageTool(xorrisoPath()).makeImageCommand(image, src);
            p.start(c.program, c.arguments);
            QVERIFY(p.waitForFinished(60000));
            QCOMPARE(p.exitCode(), 0);
        }
        rig.picker.answers.enqueue({image});
        ImageBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded(1, 120000));
        QCOMPARE(log.sheets().last(2), (QStringList{"operationComplete", "ended"}));
        const QByteArray img = readBytes(image);
        const QByteArray disc = readBytes(rig.disc);
        QVERIFY(img.size() > 700000);
        // The image's bytes, then at most the rest of one 32 KiB write unit of zeros.
        QCOMPARE(disc.left(img.size()), img);
        const QByteArray tail = disc.mid(img.size());
        QVERIFY(tail.size() < 32 * 1024);
        QCOMPARE(tail, QByteArray(tail.size(), '\0'));
        QCOMPARE(disc.size() % (32 * 1024), 0);
        QString xlog;
        QVERIFY2(extract(rig.disc, rig.tmp.path() + "/rb", &xlog), qPrintable(xlog));
        QCOMPARE(tree(rig.tmp.path() + "/rb"), tree(src));
    }

    void realBurnIsTheImageByteForByte()
    {
        QVERIFY(!xorrisoPath().isEmpty());
        Rig rig(ToolPaths::Backend::Linux);
        rig.drive.status = FakeDriveBackend::blank(QStringLiteral("CD"));
        // A raw image of whole write units leaves nothing to round up.
        const QString image = rig.tmp.path() + "/raw disk.img";
        writeFile(image, pseudoRandom(3 * 1024 * 1024, 42));
        rig.picker.answers.enqueue({image});
        ImageBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded(1, 120000));
        const QByteArray img = readBytes(image);
        const QByteArray disc = readBytes(rig.disc);
        QCOMPARE(disc.size(), img.size());
        QVERIFY(disc == img);
    }

    void realRecorderProgressReachesTheBar()
    {
        QVERIFY(!xorrisoPath().isEmpty());
        Rig rig(ToolPaths::Backend::Linux);
        rig.ctx.tools.xorriso = fake("xorriso-slow");
        rig.drive.status = FakeDriveBackend::blank(QStringLiteral("DVD"));
        const QString image = rig.tmp.path() + "/slow.img";
        writeFile(image, pseudoRandom(12 * 1024 * 1024, 43));
        rig.picker.answers.enqueue({image});
        ImageBurnFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded(1, 120000));
        const QList<double> fed = log.progress;
        qInfo() << "progress reported:" << fed;
        QVERIFY2(!fed.isEmpty(), "the recorder's reports did not reach the bar");
        QVERIFY(fed.first() < 100.0);
        QCOMPARE(fed.last(), 100.0);  // "completed successfully"
        for (int i = 0; i < fed.size(); ++i) {
            QVERIFY(fed.at(i) >= 0.0 && fed.at(i) <= 100.0);
            if (i > 0)
                QVERIFY(fed.at(i) >= fed.at(i - 1));
        }
        // The working sheet is given the MB figures: "N of 12 MB written".
        int withFigures = 0;
        for (const WriteReport &r : log.reports)
            if (r.writtenMB && r.totalMB && *r.totalMB == 12.0)
                ++withFigures;
        QVERIFY2(withFigures > 0, "no report with MB figures");
        QVERIFY(readBytes(rig.disc) == readBytes(image));
    }
};

TAMBLO_TEST_MAIN(TestImagesImageBurn)
#include "tst_images_image_burn.moc"
