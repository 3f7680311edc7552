// Times a data disc of about 1 GB in 3 folders burned by Tamblo into a
// pseudo-drive, and an ISO image of the same data, each against xorriso
// doing the same by hand (with Tamblo's own command line, and once more with
// xorriso's default once-a-second pacing), in turns in the same run.
//
//   bench_images [work folder] [rounds] [megabytes]
//
// The work folder (default: a new temporary one) needs about 3 times the
// data size free; what the run makes there is removed at the end. Figures are
// medians (and the fastest runs) over the rounds; runs alternate in order.
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <cstdio>

#include "platform/Alerts.h"
#include "platform/FilePicker.h"
#include "drives/DriveBackend.h"
#include "drives/MediaQuestions.h"
#include "images/DataBurnFlow.h"
#include "images/IsoCreationFlow.h"
#include "images/XorrisoImageTool.h"
#include "toolrun/XorrisoPacing.h"

namespace {

class SilentAlerts : public Alerts {
public:
    AlertAnswer show(const AlertRequest &r) override
    {
        std::fprintf(stderr, "unexpected alert: %s / %s\n", qPrintable(r.messageText), qPrintable(r.informativeText));
        AlertAnswer a;
        a.button = 0;
        return a;
    }
};

class QueuePicker : public FilePicker {
public:
    QList<QStringList> answers;
    QStringList pick(const PickRequest &) override { return answers.isEmpty() ? QStringList() : answers.takeFirst(); }
};

// A blank DVD in a drive that answers at once.
class BlankDvdDrive : public DriveBackend {
public:
    void listDrives(ListCallback done) override
    {
        QTimer::singleShot(0, this, [done] { done({}); });
    }
    void queryStatus(const Object_Optical_Drive &, StatusCallback done) override
    {
        QTimer::singleShot(0, this, [done] {
            MediaStatus s;
            s.answers.driveEmpty = false;
            s.answers.oneTimeWritable = true;
            s.answers.family = QStringLiteral("DVD");
            done(s);
        });
    }
    void ejectTray(const Object_Optical_Drive &) override {}
    void closeTray(const Object_Optical_Drive &) override {}
    ToolCommand eraseCommand(const Object_Optical_Drive &, bool) const override { return {}; }
    ToolCommand discInfoCommand(const Object_Optical_Drive &) const override { return {}; }
};

void fill(const QString &path, qint64 bytes, quint32 salt)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(path));
    QByteArray block(1 << 20, Qt::Uninitialized);
    quint64 x = salt * 0x9E3779B97F4A7C15ull + 1;
    for (qint64 done = 0; done < bytes; done += block.size()) {
        auto *w = reinterpret_cast<quint64 *>(block.data());
        for (int i = 0; i < block.size() / 8; ++i) {
            x ^= x << 13;
            x ^= x >> 7;
            x ^= x << 17;
            w[i] = x;
        }
        f.write(block.constData(), qMin<qint64>(block.size(), bytes - done));
    }
}

void settle()
{
    QProcess::execute(QStringLiteral("sync"), {});
}

double median(QList<double> v)
{
    std::sort(v.begin(), v.end());
    const int n = int(v.size());
    return n % 2 ? v.at(n / 2) : (v.at(n / 2 - 1) + v.at(n / 2)) / 2.0;
}

// Runs a command to its end; returns seconds.
double byHand(const QString &program, const QStringList &args)
{
    QElapsedTimer t;
    t.start();
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.setStandardInputFile(QProcess::nullDevice());
    p.start(program, args);
    p.waitForFinished(-1);
    const double s = t.nsecsElapsed() / 1e9;
    if (p.exitCode() != 0)
        std::fprintf(stderr, "by hand: exit %d\n%s\n", p.exitCode(), p.readAll().constData());
    return s;
}

struct FlowTimes {
    double total = 0;   // from the action to the completion
    double tool = 0;    // from the tool's launch to the completion
};

FlowTimes waitFlow(SheetFlow &flow, const std::function<void()> &startAction)
{
    QElapsedTimer t;
    qint64 launched = -1, complete = -1;
    bool ended = false;
    QObject guard;
    QObject::connect(&flow, &SheetFlow::toolStarted, &guard, [&] { launched = t.nsecsElapsed(); });
    QObject::connect(&flow, &SheetFlow::lastSheet, &guard, [&](const OperationEnd &end) {
        if (end.kind != OperationEnd::Failed)
            complete = t.nsecsElapsed();
    });
    // A blocking event loop, as the application's own: a loop of timed
    // processEvents() calls would spin a core and slow the tool down.
    QEventLoop loop;
    QObject::connect(&flow, &SheetFlow::ended, &guard, [&] {
        ended = true;
        loop.quit();
    });
    t.start();
    startAction();
    if (!ended)
        loop.exec();
    FlowTimes out;
    out.total = complete / 1e9;
    out.tool = (complete - launched) / 1e9;
    return out;
}

double lowest(const QList<double> &v)
{
    return *std::min_element(v.begin(), v.end());
}

void printRuns(const char *label, const QList<double> &v, double against)
{
    std::printf("  %-34s median %7.3f s", label, median(v));
    if (against > 0)
        std::printf("   (%+.1f %%)", (median(v) / against - 1) * 100);
    std::printf("   runs:");
    for (double x : v)
        std::printf(" %.3f", x);
    std::printf("\n");
}

void report(const char *what, const QList<double> &total, const QList<double> &tool, const QList<double> &hand,
            const QList<double> &handDefault)
{
    const double mh = median(hand);
    std::printf("%s\n", what);
    printRuns("by hand, Tamblo's command line", hand, 0);
    printRuns("by hand, xorriso's default pacing", handDefault, mh);
    printRuns("Tamblo, tool launch -> complete", tool, mh);
    printRuns("Tamblo, action -> complete", total, mh);
    std::printf("  Tamblo action against xorriso's default pacing: %+.1f %%\n",
                (median(total) / median(handDefault) - 1) * 100);
    std::fflush(stdout);
}

// Runs the three sides of a round in an order that turns with the round.
void runRound(int round, const QList<std::function<void()>> &sides)
{
    for (int i = 0; i < sides.size(); ++i)
        sides.at((i + round) % sides.size())();
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    std::unique_ptr<QTemporaryDir> tmp;
    QString work;
    if (args.size() > 1) {
        work = args.at(1);
        QDir().mkpath(work);
    } else {
        tmp = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/tamblo-bench-XXXXXX"));
        work = tmp->path();
    }
    const int rounds = args.size() > 2 ? args.at(2).toInt() : 3;
    const qint64 totalMB = args.size() > 3 ? args.at(3).toLongLong() : 1024;
    const QString xorriso = QStandardPaths::findExecutable(QStringLiteral("xorriso"));
    if (xorriso.isEmpty())
        qFatal("xorriso not found");

    // 3 folders, two of them named alike: Photos, Photos, Music.
    const QStringList folders{work + "/src/a/Photos", work + "/src/b/Photos", work + "/src/c/Music"};
    const qint64 perFolder = totalMB * 1024 * 1024 / 3;
    const qint64 fileSize = 32ll * 1024 * 1024;
    std::printf("making %lld MB in 3 folders under %s\n", totalMB, qPrintable(work));
    std::fflush(stdout);
    for (int i = 0; i < folders.size(); ++i) {
        qint64 left = perFolder;
        for (int n = 0; left > 0; ++n) {
            const qint64 size = qMin(fileSize, left);
            fill(folders.at(i) + QStringLiteral("/sub%1/file%2.bin").arg(n % 3).arg(n), size, quint32(i * 1000 + n));
            left -= size;
        }
    }
    const QString dataFolder = work + "/Documents/TambloData";
    QDir().mkpath(dataFolder);
    settle();

    BlankDvdDrive drive;
    SilentAlerts alerts;
    QueuePicker picker;
    Object_Optical_Drive current;
    MediaQuestions media(drive, alerts, [] { return false; }, [&] { return current; });
    ImageFlowContext ctx;
    ctx.tools.backend = ToolPaths::Backend::Linux;
    ctx.tools.xorriso = xorriso;
    ctx.dataFolder = dataFolder;
    ctx.homeFolder = work;
    ctx.alerts = &alerts;
    ctx.picker = &picker;
    ctx.media = &media;
    ctx.currentDrive = [&] { return current; };

    QList<NodeDataFolder> list;
    for (const QString &f : folders) {
        NodeDataFolder n;
        n.s_Path = f;
        n.i_Size_in_KBytes = quint64(perFolder) >> 10;
        list << n;
    }
    const QString productDisc = work + "/disc-tamblo.iso";
    const QString handDisc = work + "/disc-hand.iso";
    current.s_Device_Path = QStringLiteral("stdio:") + productDisc;
    // By hand: the very command line Tamblo starts, into another file; and
    // the same without the pacing setting, as a person would type it.
    const QStringList handArgsDefault{"-outdev", "stdio:" + handDisc, "-joliet", "on", "-volid", "TambloData",
                                      "-map", folders.at(0), "/Photos",
                                      "-map", folders.at(1), "/Photos 1/Photos",
                                      "-map", folders.at(2), "/Music", "-commit"};
    const QStringList handArgs = xorrisoPacing() + handArgsDefault;

    // Warm the page cache the same way for all.
    byHand(xorriso, handArgs);
    QFile::remove(handDisc);
    settle();

    QList<double> dTotal, dTool, dHand, dHandDefault;
    for (int r = 0; r < rounds; ++r) {
        auto product = [&] {
            DataBurnFlow flow(ctx);
            const FlowTimes t = waitFlow(flow, [&] { flow.burn(ImageMessages::DataDisc::DVD, list); });
            dTotal << t.total;
            dTool << t.tool;
            QFile::remove(productDisc);
            settle();
        };
        auto hand = [&] {
            dHand << byHand(xorriso, handArgs);
            QFile::remove(handDisc);
            settle();
        };
        auto handDefault = [&] {
            dHandDefault << byHand(xorriso, handArgsDefault);
            QFile::remove(handDisc);
            settle();
        };
        runRound(r, {product, hand, handDefault});
        std::printf("data round %d: tamblo %.3f s (tool %.3f s), by hand %.3f s, default pacing %.3f s\n", r + 1,
                    dTotal.last(), dTool.last(), dHand.last(), dHandDefault.last());
        std::fflush(stdout);
    }
    report("Data disc, 3 folders -> pseudo-drive", dTotal, dTool, dHand, dHandDefault);

    // ISO creation of the folder holding the three.
    const QString isoSource = work + "/src";
    const QString productDest = work + "/iso-tamblo";
    const QString handDest = work + "/iso-hand";
    QDir().mkpath(productDest);
    QDir().mkpath(handDest);
    const ToolCommand handIso = XorrisoImageTool(xorriso).makeImageCommand(handDest + "/image.iso", isoSource);
    QStringList handIsoDefault = handIso.arguments;
    handIsoDefault.erase(handIsoDefault.begin(), handIsoDefault.begin() + xorrisoPacing().size());
    QList<double> iTotal, iTool, iHand, iHandDefault;
    for (int r = 0; r < rounds; ++r) {
        auto product = [&] {
            IsoCreationFlow flow(ctx);
            picker.answers = {{isoSource}, {productDest}};
            const FlowTimes t = waitFlow(flow, [&] { flow.start(); });
            iTotal << t.total;
            iTool << t.tool;
            QFile::remove(productDest + "/image.iso");
            settle();
        };
        auto hand = [&] {
            iHand << byHand(handIso.program, handIso.arguments);
            QFile::remove(handDest + "/image.iso");
            settle();
        };
        auto handDefault = [&] {
            iHandDefault << byHand(handIso.program, handIsoDefault);
            QFile::remove(handDest + "/image.iso");
            settle();
        };
        runRound(r, {product, hand, handDefault});
        std::printf("iso round %d: tamblo %.3f s (tool %.3f s), by hand %.3f s, default pacing %.3f s\n", r + 1,
                    iTotal.last(), iTool.last(), iHand.last(), iHandDefault.last());
        std::fflush(stdout);
    }
    report("ISO creation of the same data", iTotal, iTool, iHand, iHandDefault);

    // Leave a given work folder as it was found.
    for (const char *made : {"/src", "/Documents", "/iso-tamblo", "/iso-hand"})
        QDir(work + QLatin1String(made)).removeRecursively();
    QFile::remove(productDisc);
    QFile::remove(handDisc);
    return 0;
}
