// Adding to the compilation, as the application does it, in one process run:
//
//  (a) 200 generated MP3 files (1-2 s of sine each) added to the Audio list
//      through CompilationActions::addMediaFiles (MediaProbeJob: one
//      "ffmpeg -i FILE" per file, as many at once as the machine has cores,
//      records delivered in the list's order) against the very same probes
//      run one after the other by a /bin/sh loop. Runs alternate which side
//      goes first; medians are reported. Target: the application at least
//      1.7 times as fast as the loop.
//  (b) the longest pause of the main thread's event loop, seen by a precise
//      1 ms (or 5 ms) timer on that thread, while those files are added and
//      while a generated folder of 20 000 small files, nested four levels
//      deep, is measured through CompilationActions::addDataFolder.
//      Target: no pause over 50 ms.
//
// For reference, in the same run: the probes split over as many shell loops
// as there are cores, side by side (what the machine itself gives for running
// two "ffmpeg -i" at a time), and the application held to one probe at a
// time (what it adds around each probe).
//
// The lists are the application's own models (QtCore only); no view is
// attached. Prints one table with PASS or MISS against each target and exits
// 0 either way (2 when ffmpeg is missing or the material cannot be made).
//
// Usage: QT_QPA_PLATFORM=offscreen bench_compilation_adding [--runs N] [--tick-ms 1|5]
//        (defaults: 3 runs per side, 1 ms tick)

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextStream>
#include <QThread>
#include <QTimer>
#include <algorithm>

#include "compilation/CompilationActions.h"
#include "compilation/DataFolderModel.h"
#include "compilation/MediaListModel.h"

namespace {

QTextStream out(stdout);

constexpr int MediaFileCount = 200;
constexpr double SpeedUpTarget = 1.7;
constexpr double StallTargetMs = 50.0;
constexpr int RunTimeoutMs = 600000;

// The largest gap between two ticks of a precise timer on the main thread.
class StallMonitor : public QObject {
public:
    explicit StallMonitor(int intervalMs)
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(intervalMs);
        connect(&m_timer, &QTimer::timeout, this, &StallMonitor::tick);
    }

    void start()
    {
        m_maxGapNs = 0;
        m_ticks = 0;
        m_clock.start();
        m_last = 0;
        m_timer.start();
    }

    // The time since the last tick counts as a gap too.
    void stop()
    {
        tick();
        m_timer.stop();
    }

    double maxGapMs() const { return double(m_maxGapNs) / 1e6; }
    qint64 ticks() const { return m_ticks; }

private:
    void tick()
    {
        const qint64 now = m_clock.nsecsElapsed();
        m_maxGapNs = std::max(m_maxGapNs, now - m_last);
        m_last = now;
        ++m_ticks;
    }

    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_last = 0;
    qint64 m_maxGapNs = 0;
    qint64 m_ticks = 0;
};

struct Job {
    QString program;
    QStringList arguments;
};

// Runs the jobs, `parallel` at a time; false at the first one that fails.
bool runJobs(const QList<Job> &jobs, int parallel)
{
    for (int first = 0; first < jobs.size(); first += parallel) {
        QList<QProcess *> running;
        for (int i = first; i < std::min<int>(first + parallel, int(jobs.size())); ++i) {
            auto *p = new QProcess;
            p->setStandardInputFile(QProcess::nullDevice());
            p->setProcessChannelMode(QProcess::MergedChannels);
            p->start(jobs.at(i).program, jobs.at(i).arguments);
            running << p;
        }
        bool ok = true;
        for (int k = 0; k < running.size(); ++k) {
            QProcess *p = running.at(k);
            if (!p->waitForFinished(RunTimeoutMs) || p->exitStatus() != QProcess::NormalExit || p->exitCode() != 0) {
                const Job &j = jobs.at(first + k);
                out << "failed: " << j.program << ' ' << j.arguments.join(' ') << '\n'
                    << p->readAll() << Qt::endl;
                ok = false;
            }
        }
        qDeleteAll(running);
        if (!ok)
            return false;
    }
    return true;
}

// 200 MP3 files of 1.0 to 2.0 s, each a sine of its own pitch.
QStringList makeMedia(const QString &ffmpeg, const QString &folder, int parallel)
{
    QDir().mkpath(folder);
    QStringList files;
    QList<Job> jobs;
    for (int i = 0; i < MediaFileCount; ++i) {
        const QString path = QStringLiteral("%1/track %2.mp3").arg(folder).arg(i + 1, 3, 10, QLatin1Char('0'));
        const QString duration = QString::number(1.0 + double(i % 11) / 10.0, 'f', 1);
        files << path;
        jobs << Job{ffmpeg,
                    {"-v", "error", "-y", "-f", "lavfi", "-i",
                     QStringLiteral("sine=frequency=%1:duration=%2").arg(200 + 7 * i).arg(duration), "-ac", "2",
                     "-b:a", "128k", path}};
    }
    return runJobs(jobs, parallel) ? files : QStringList();
}

// 10 x 10 x 10 folders, 20 files of 40 to 400 bytes in each of the deepest:
// 20 000 files. Returns the bytes written into files.
qint64 makeTree(const QString &root)
{
    qint64 bytes = 0;
    int n = 0;
    for (int a = 0; a < 10; ++a) {
        for (int b = 0; b < 10; ++b) {
            for (int c = 0; c < 10; ++c) {
                const QString dir = QStringLiteral("%1/a%2/b%3/c%4").arg(root).arg(a).arg(b).arg(c);
                if (!QDir().mkpath(dir))
                    return -1;
                for (int f = 0; f < 20; ++f, ++n) {
                    QFile file(QStringLiteral("%1/file%2.txt").arg(dir).arg(f, 2, 10, QLatin1Char('0')));
                    if (!file.open(QIODevice::WriteOnly))
                        return -1;
                    const QByteArray content(40 + (n * 37) % 361, char('a' + n % 26));
                    file.write(content);
                    bytes += content.size();
                }
            }
        }
    }
    return bytes;
}

struct MediaRun {
    qint64 ms = -1;
    double maxGapMs = 0;
    QString problem;  // empty when every record came back in order with its duration
};

// `oneAtATime`: the same path with the probe job held to one probe at a time
// (a reference for what the application adds around each probe).
MediaRun timeApp(const QStringList &files, const QString &ffmpeg, StallMonitor &monitor, bool oneAtATime = false)
{
    MediaListModel media;
    DataFolderModel data;
    CompilationActions actions(&media, &data, nullptr);
    actions.setFfmpegPath(ffmpeg);
    if (oneAtATime)
        actions.probeJob()->setMaxParallel(1);

    MediaRun run;
    QEventLoop loop;
    QElapsedTimer clock;
    QObject::connect(&actions, &CompilationActions::refreshTable, &loop, [&] {
        run.ms = clock.elapsed();
        loop.quit();
    });
    monitor.start();
    // The call itself runs inside the watched loop, so its own cost counts.
    QTimer::singleShot(0, &loop, [&] {
        clock.start();
        if (!actions.addMediaFiles(CompilationActions::AudioTab, files)) {
            run.problem = QStringLiteral("addMediaFiles started nothing");
            loop.quit();
        }
    });
    QTimer::singleShot(RunTimeoutMs, &loop, [&] {
        run.problem = QStringLiteral("timed out");
        loop.quit();
    });
    loop.exec();
    monitor.stop();
    run.maxGapMs = monitor.maxGapMs();

    if (run.problem.isEmpty()) {
        if (media.count() != files.size()) {
            run.problem = QStringLiteral("%1 records for %2 files").arg(media.count()).arg(files.size());
        } else {
            for (int i = 0; i < files.size(); ++i) {
                const NodeMediaFile &r = media.at(i);
                if (r.s_File_Path != files.at(i)) {
                    run.problem = QStringLiteral("record %1 out of order").arg(i);
                    break;
                }
                if (r.i_Duration_in_Seconds < 1 || r.i_Duration_in_Seconds > 2) {
                    run.problem = QStringLiteral("record %1: duration \"%2\"").arg(i).arg(r.s_Duration);
                    break;
                }
            }
        }
    }
    return run;
}

QString shellQuote(const QString &s)
{
    QString q = s;
    q.replace(QLatin1String("'"), QLatin1String("'\\''"));
    return QLatin1Char('\'') + q + QLatin1Char('\'');
}

// The same probes, one after the other, from a shell loop. With `capture`
// the report is returned instead of discarded.
qint64 timeShell(const QStringList &files, const QString &ffmpeg, QByteArray *capture = nullptr)
{
    const QString redirect = capture ? QStringLiteral("2>&1") : QStringLiteral(">/dev/null 2>&1");
    const QString script =
        QStringLiteral("for f in \"$@\"; do %1 -i \"$f\" </dev/null %2; done").arg(shellQuote(ffmpeg), redirect);
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));  // as the application's probes run
    p.setProcessEnvironment(env);
    p.setStandardInputFile(QProcess::nullDevice());
    if (capture)
        p.setProcessChannelMode(QProcess::MergedChannels);
    else
        p.setStandardOutputFile(QProcess::nullDevice());
    QElapsedTimer clock;
    clock.start();
    p.start(QStringLiteral("/bin/sh"), QStringList{QStringLiteral("-c"), script, QStringLiteral("sh")} + files);
    p.waitForFinished(RunTimeoutMs);
    const qint64 ms = clock.elapsed();
    if (capture)
        *capture = p.readAll();
    return ms;
}

// The same probes split over `loops` shell loops that run side by side (file
// i goes to loop i mod loops): what this machine gives for running probes two
// at a time with no application in between.
qint64 timeShellSideBySide(const QStringList &files, const QString &ffmpeg, int loops)
{
    const QString script =
        QStringLiteral("for f in \"$@\"; do %1 -i \"$f\" </dev/null >/dev/null 2>&1; done").arg(shellQuote(ffmpeg));
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    QList<QStringList> groups(loops);
    for (int i = 0; i < files.size(); ++i)
        groups[i % loops] << files.at(i);
    QList<QProcess *> running;
    QElapsedTimer clock;
    clock.start();
    for (const QStringList &group : groups) {
        auto *p = new QProcess;
        p->setProcessEnvironment(env);
        p->setStandardInputFile(QProcess::nullDevice());
        p->setStandardOutputFile(QProcess::nullDevice());
        p->start(QStringLiteral("/bin/sh"), QStringList{QStringLiteral("-c"), script, QStringLiteral("sh")} + group);
        running << p;
    }
    for (QProcess *p : running)
        p->waitForFinished(RunTimeoutMs);
    const qint64 ms = clock.elapsed();
    qDeleteAll(running);
    return ms;
}

struct FolderRun {
    qint64 ms = -1;
    double maxGapMs = 0;
    NodeDataFolder record;
    QString problem;
};

FolderRun timeFolder(const QString &folder, StallMonitor &monitor)
{
    MediaListModel media;
    DataFolderModel data;
    CompilationActions actions(&media, &data, nullptr);

    FolderRun run;
    QEventLoop loop;
    QElapsedTimer clock;
    QObject::connect(&actions, &CompilationActions::refreshTable, &loop, [&] {
        run.ms = clock.elapsed();
        loop.quit();
    });
    monitor.start();
    QTimer::singleShot(0, &loop, [&] {
        clock.start();
        if (!actions.addDataFolder(folder)) {
            run.problem = QStringLiteral("addDataFolder started nothing");
            loop.quit();
        }
    });
    QTimer::singleShot(RunTimeoutMs, &loop, [&] {
        run.problem = QStringLiteral("timed out");
        loop.quit();
    });
    loop.exec();
    monitor.stop();
    run.maxGapMs = monitor.maxGapMs();
    if (run.problem.isEmpty()) {
        if (data.count() != 1)
            run.problem = QStringLiteral("%1 folder records").arg(data.count());
        else
            run.record = data.at(0);
    }
    return run;
}

// The monitor over an idle loop: what a tick gap looks like with nothing to do.
double idleGapMs(StallMonitor &monitor, int ms)
{
    QEventLoop loop;
    monitor.start();
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
    monitor.stop();
    return monitor.maxGapMs();
}

template <typename T>
T median(QList<T> v)
{
    std::sort(v.begin(), v.end());
    return v.at(v.size() / 2);
}

QString list(const QList<qint64> &v)
{
    QStringList s;
    for (qint64 x : v)
        s << QString::number(x);
    return s.join(QStringLiteral(", "));
}

QString verdict(bool pass)
{
    return pass ? QStringLiteral("PASS") : QStringLiteral("MISS");
}

void row(const QString &what, const QString &value, const QString &target = QString(),
         const QString &result = QString())
{
    out << QStringLiteral("| %1 | %2 | %3 | %4 |")
               .arg(what, -50)
               .arg(value, 18)
               .arg(target, -16)
               .arg(result, -6)
        << '\n';
}

void rule()
{
    out << QStringLiteral("|%1|%2|%3|%4|")
               .arg(QString(52, QLatin1Char('-')), QString(20, QLatin1Char('-')), QString(18, QLatin1Char('-')),
                    QString(8, QLatin1Char('-')))
        << '\n';
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);

    int runs = 3;
    int tickMs = 1;
    const QStringList args = app.arguments();
    const int at = args.indexOf(QStringLiteral("--runs"));
    if (at > 0 && at + 1 < args.size())
        runs = std::max(1, args.at(at + 1).toInt());
    const int tickAt = args.indexOf(QStringLiteral("--tick-ms"));
    if (tickAt > 0 && tickAt + 1 < args.size())
        tickMs = std::clamp(args.at(tickAt + 1).toInt(), 1, 5);

    const QString ffmpeg = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
    if (ffmpeg.isEmpty()) {
        out << "ffmpeg not found" << Qt::endl;
        return 2;
    }
    const int cores = QThread::idealThreadCount();
    QTemporaryDir dir;
    const QString mediaFolder = dir.filePath(QStringLiteral("media"));
    const QString treeFolder = dir.filePath(QStringLiteral("tree"));

    out << "Preparing " << MediaFileCount << " MP3 files and a folder of 20 000 files in " << dir.path() << " ..."
        << Qt::endl;
    QElapsedTimer prep;
    prep.start();
    const QStringList files = makeMedia(ffmpeg, mediaFolder, cores);
    if (files.isEmpty())
        return 2;
    const qint64 treeBytes = makeTree(treeFolder);
    if (treeBytes < 0) {
        out << "could not write the folder tree" << Qt::endl;
        return 2;
    }
    out << "  ready in " << prep.elapsed() << " ms" << Qt::endl;

    // The loop must really probe: its report has the duration line.
    QByteArray report;
    timeShell(files.mid(0, 1), ffmpeg, &report);
    if (!report.contains("Duration:")) {
        out << "the shell loop's ffmpeg printed no duration:\n" << report << Qt::endl;
        return 2;
    }

    StallMonitor monitor(tickMs);
    const double idle = idleGapMs(monitor, 300);

    out << "Warming up (20 probes from the shell, not counted) ..." << Qt::endl;
    timeShell(files.mid(0, 20), ffmpeg);

    out << "Adding " << files.size() << " files, " << runs << " runs per side ..." << Qt::endl;
    QList<qint64> appTimes, shellTimes, sideBySideTimes;
    QList<double> appGaps;
    QStringList problems;
    for (int r = 0; r < runs; ++r) {
        auto appSide = [&] {
            const MediaRun m = timeApp(files, ffmpeg, monitor);
            appTimes << m.ms;
            appGaps << m.maxGapMs;
            if (!m.problem.isEmpty())
                problems << QStringLiteral("adding files, run %1: %2").arg(r + 1).arg(m.problem);
        };
        if (r % 2 == 0) {
            appSide();
            shellTimes << timeShell(files, ffmpeg);
        } else {
            shellTimes << timeShell(files, ffmpeg);
            appSide();
        }
        sideBySideTimes << timeShellSideBySide(files, ffmpeg, cores);
    }
    out << "Reference: the application with one probe at a time (1 run) ..." << Qt::endl;
    const MediaRun serial = timeApp(files, ffmpeg, monitor, true);
    if (!serial.problem.isEmpty())
        problems << QStringLiteral("adding files one at a time: %1").arg(serial.problem);

    out << "Measuring the 20 000-file folder, " << runs << " runs ..." << Qt::endl;
    QList<qint64> folderTimes;
    QList<double> folderGaps;
    NodeDataFolder folderRecord;
    for (int r = 0; r < runs; ++r) {
        const FolderRun f = timeFolder(treeFolder, monitor);
        folderTimes << f.ms;
        folderGaps << f.maxGapMs;
        folderRecord = f.record;
        if (!f.problem.isEmpty())
            problems << QStringLiteral("measuring the folder, run %1: %2").arg(r + 1).arg(f.problem);
        else if (qint64(f.record.i_Size_in_KBytes) < (treeBytes >> 10))
            problems << QStringLiteral("measuring the folder, run %1: %2 KB for at least %3 KB of files")
                            .arg(r + 1)
                            .arg(f.record.i_Size_in_KBytes)
                            .arg(treeBytes >> 10);
    }

    const qint64 appMs = median(appTimes);
    const qint64 shellMs = median(shellTimes);
    const double speedUp = appMs > 0 ? double(shellMs) / double(appMs) : 0.0;
    const qint64 sideBySideMs = median(sideBySideTimes);
    const double ceiling = sideBySideMs > 0 ? double(shellMs) / double(sideBySideMs) : 0.0;
    const double addStall = *std::max_element(appGaps.begin(), appGaps.end());
    const double folderStall = *std::max_element(folderGaps.begin(), folderGaps.end());
    auto perSecond = [&](qint64 ms) {
        return ms > 0 ? QString::number(double(files.size()) * 1000.0 / double(ms), 'f', 1) : QStringLiteral("-");
    };
    auto msText = [](double ms) { return QString::number(ms, 'f', 1) + QStringLiteral(" ms"); };

    out << '\n'
        << "Adding to the compilation: " << cores << " cores, " << ffmpeg << ", " << runs
        << " runs per side, main-thread tick " << tickMs << " ms\n"
        << "  application ms: " << list(appTimes) << "\n"
        << "  shell loop  ms: " << list(shellTimes) << "\n"
        << "  " << cores << " shell loops side by side ms: " << list(sideBySideTimes) << "\n"
        << "  application, one probe at a time ms: " << serial.ms << "\n"
        << "  folder      ms: " << list(folderTimes) << "  (record: " << folderRecord.s_Size << ", "
        << folderRecord.i_Size_in_KBytes << " KB; files alone " << treeBytes << " bytes)\n\n";
    row(QStringLiteral("figure"), QStringLiteral("measured"), QStringLiteral("target"), QStringLiteral("result"));
    rule();
    row(QStringLiteral("200 MP3, application (median wall)"), QString::number(appMs) + QStringLiteral(" ms"));
    row(QStringLiteral("200 MP3, application files per second"), perSecond(appMs));
    row(QStringLiteral("200 MP3, shell loop of ffmpeg -i (median)"), QString::number(shellMs) + QStringLiteral(" ms"));
    row(QStringLiteral("200 MP3, shell loop files per second"), perSecond(shellMs));
    row(QStringLiteral("speed-up, shell time / application time"), QString::number(speedUp, 'f', 2) + QStringLiteral(" x"),
        QStringLiteral(">= 1.70 x"), verdict(speedUp >= SpeedUpTarget));
    row(QStringLiteral("longest UI stall, adding 200 files (worst run)"), msText(addStall), QStringLiteral("<= 50 ms"),
        verdict(addStall <= StallTargetMs));
    row(QStringLiteral("reference: %1 shell loops side by side").arg(cores), QString::number(sideBySideMs) + QStringLiteral(" ms"));
    row(QStringLiteral("reference: their speed-up over one loop"), QString::number(ceiling, 'f', 2) + QStringLiteral(" x"));
    row(QStringLiteral("reference: application, one probe at a time"), QString::number(serial.ms) + QStringLiteral(" ms"));
    row(QStringLiteral("20 000-file folder, measure (median wall)"),
        QString::number(median(folderTimes)) + QStringLiteral(" ms"));
    row(QStringLiteral("longest UI stall, 20 000-file folder (worst)"), msText(folderStall), QStringLiteral("<= 50 ms"),
        verdict(folderStall <= StallTargetMs));
    row(QStringLiteral("longest tick gap, idle loop (reference)"), msText(idle));
    out << Qt::endl;

    if (!problems.isEmpty()) {
        out << "Problems:\n";
        for (const QString &p : problems)
            out << "  " << p << '\n';
        out << Qt::endl;
    }
    return 0;
}
