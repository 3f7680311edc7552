// Adding to the compilation, as the application does it:
//  - 200 generated MP3 files (1.0 to 2.0 s of sine each) added to the Audio
//    list through CompilationActions::addMediaFiles (MediaProbeJob: batches
//    of "ffmpeg -i A -i B ...", side by side), against "ffmpeg -i FILE" for
//    each file, one after the other, from /bin/sh. Runs alternate which side
//    goes first; medians are reported. Target: at least 10 times as fast
//    (aim: 20 times).
//  - the longest stall of the UI thread meanwhile, and while a folder of
//    20 000 small files, four levels deep, is measured through
//    CompilationActions::addDataFolder. Target: none over 50 ms.
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include "Sections.h"
#include "compilation/CompilationActions.h"
#include "compilation/DataFolderModel.h"
#include "compilation/MediaListModel.h"

namespace Bench {

namespace {

constexpr int MediaFileCount = 200;
constexpr double SpeedUpTarget = 10.0;
constexpr double StallTargetMs = 50.0;

// 200 MP3 files of 1.0 to 2.0 s, each a sine of its own pitch.
QStringList makeMedia(const QString &ffmpeg, const QString &folder)
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
    return runJobs(jobs, QThread::idealThreadCount()) ? files : QStringList();
}

// 10 x 10 x 10 folders, 20 files of 40 to 400 bytes in each of the deepest.
qint64 makeTree(const QString &root)
{
    qint64 bytes = 0;
    int n = 0;
    for (int a = 0; a < 10; ++a)
        for (int b = 0; b < 10; ++b)
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
    return bytes;
}

struct Added {
    Watched watched;
    QString problem;  // empty when every record came back in order with its duration
};

Added addThroughTheApplication(const QStringList &files, const QString &ffmpeg, StallMonitor &monitor, int parallel)
{
    MediaListModel media;
    DataFolderModel data;
    CompilationActions actions(&media, &data, nullptr);
    actions.setFfmpegPath(ffmpeg);
    if (parallel > 0)
        actions.probeJob()->setMaxParallel(parallel);
    Added added;
    added.watched = watch(monitor, [&](std::function<void()> done) {
        QObject::connect(&actions, &CompilationActions::refreshTable, &actions, done);
        if (!actions.addMediaFiles(CompilationActions::AudioTab, files)) {
            added.problem = QStringLiteral("addMediaFiles started nothing");
            done();
        }
    });
    if (added.watched.timedOut)
        added.problem = QStringLiteral("timed out");
    if (!added.problem.isEmpty())
        return added;
    if (media.count() != files.size())
        added.problem = QStringLiteral("%1 records for %2 files").arg(media.count()).arg(files.size());
    for (int i = 0; added.problem.isEmpty() && i < files.size(); ++i) {
        const NodeMediaFile &r = media.at(i);
        if (r.s_File_Path != files.at(i))
            added.problem = QStringLiteral("record %1 out of order").arg(i);
        else if (r.i_Duration_in_Seconds < 1 || r.i_Duration_in_Seconds > 2)
            added.problem = QStringLiteral("record %1: duration \"%2\"").arg(i).arg(r.s_Duration);
    }
    return added;
}

QList<Job> probeJobs(const QString &ffmpeg, const QStringList &files)
{
    QList<Job> jobs;
    for (const QString &f : files)
        jobs << Job{ffmpeg, {QStringLiteral("-i"), f}};
    return jobs;
}

} // namespace

QList<Row> addingSection(const Options &options)
{
    QList<Row> rows;
    const QString ffmpeg = ffmpegPath();
    if (ffmpeg.isEmpty())
        return {measured(QStringLiteral("adding 200 files"), QStringLiteral("no ffmpeg"))};
    QTemporaryDir dir;
    say(QStringLiteral("Adding: preparing %1 MP3 files and a folder of 20 000 files in %2 ...")
            .arg(MediaFileCount)
            .arg(dir.path()));
    const QStringList files = makeMedia(ffmpeg, dir.filePath(QStringLiteral("media")));
    const QString tree = dir.filePath(QStringLiteral("tree"));
    const qint64 treeBytes = makeTree(tree);
    if (files.isEmpty() || treeBytes < 0)
        return {measured(QStringLiteral("adding 200 files"), QStringLiteral("no material"))};

    // The loop must really probe: its report has the duration line.
    QByteArray report;
    timeShell(probeJobs(ffmpeg, files.mid(0, 1)), &report);
    if (!report.contains("Duration:"))
        return {measured(QStringLiteral("adding 200 files"), QStringLiteral("shell probe printed no duration"))};

    StallMonitor monitor(options.tickMs);
    const double idle = idleStall(monitor, 300);
    timeShell(probeJobs(ffmpeg, files.mid(0, 20)));  // warm the caches, not counted

    say(QStringLiteral("Adding %1 files, %2 runs per side ...").arg(files.size()).arg(options.runs));
    QList<qint64> appTimes, shellTimes, shellsTimes;
    double addStall = 0;
    QStringList problems;
    for (int r = 0; r < options.runs; ++r) {
        auto appSide = [&] {
            const Added a = addThroughTheApplication(files, ffmpeg, monitor, 0);
            appTimes << a.watched.ms;
            addStall = std::max(addStall, a.watched.stallMs);
            if (!a.problem.isEmpty())
                problems << QStringLiteral("adding, run %1: %2").arg(r + 1).arg(a.problem);
        };
        if (r % 2 == 0) {
            appSide();
            shellTimes << timeShell(probeJobs(ffmpeg, files));
        } else {
            shellTimes << timeShell(probeJobs(ffmpeg, files));
            appSide();
        }
        shellsTimes << timeShellsSideBySide(probeJobs(ffmpeg, files), QThread::idealThreadCount());
    }
    const Added oneAtATime = addThroughTheApplication(files, ffmpeg, monitor, 1);
    if (!oneAtATime.problem.isEmpty())
        problems << QStringLiteral("adding one batch at a time: %1").arg(oneAtATime.problem);

    say(QStringLiteral("Measuring the 20 000-file folder, %1 runs ...").arg(options.runs));
    QList<qint64> folderTimes;
    double folderStall = 0;
    for (int r = 0; r < options.runs; ++r) {
        MediaListModel media;
        DataFolderModel data;
        CompilationActions actions(&media, &data, nullptr);
        const Watched w = watch(monitor, [&](std::function<void()> done) {
            QObject::connect(&actions, &CompilationActions::refreshTable, &actions, done);
            actions.addDataFolder(tree);
        });
        folderTimes << w.ms;
        folderStall = std::max(folderStall, w.stallMs);
        if (data.count() != 1 || qint64(data.at(0).i_Size_in_KBytes) < (treeBytes >> 10))
            problems << QStringLiteral("measuring the folder, run %1: wrong record").arg(r + 1);
    }

    const qint64 appMs = median(appTimes);
    const qint64 shellMs = median(shellTimes);
    const double speedUp = appMs > 0 ? double(shellMs) / double(appMs) : 0.0;
    const qint64 shellsMs = median(shellsTimes);
    say(QStringLiteral("  application ms: %1\n  shell loop  ms: %2\n  %3 shell loops side by side ms: %4\n"
                       "  folder ms: %5")
            .arg(joined(appTimes), joined(shellTimes))
            .arg(QThread::idealThreadCount())
            .arg(joined(shellsTimes), joined(folderTimes)));
    for (const QString &p : std::as_const(problems))
        say(QStringLiteral("  PROBLEM: ") + p);

    rows << measured(QStringLiteral("adding 200 MP3: application (median)"), msText(double(appMs)))
         << measured(QStringLiteral("adding 200 MP3: shell loop of ffmpeg -i (median)"), msText(double(shellMs)))
         << against(QStringLiteral("adding 200 MP3: shell time / application time"), timesText(speedUp),
                    QStringLiteral(">= 10 x (aim 20)"), speedUp >= SpeedUpTarget && problems.isEmpty())
         << measured(QStringLiteral("adding 200 MP3: one batch at a time"), msText(double(oneAtATime.watched.ms)))
         << measured(QStringLiteral("adding 200 MP3: shell loop / %1 loops side by side").arg(QThread::idealThreadCount()),
                     timesText(shellsMs > 0 ? double(shellMs) / double(shellsMs) : 0.0))
         << against(QStringLiteral("adding 200 MP3: longest UI stall"), msText(addStall), QStringLiteral("<= 50 ms"),
                    addStall <= StallTargetMs)
         << measured(QStringLiteral("20 000-file folder: measuring (median)"),
                     msText(double(median(folderTimes))))
         << against(QStringLiteral("20 000-file folder: longest UI stall"), msText(folderStall),
                    QStringLiteral("<= 50 ms"), folderStall <= StallTargetMs)
         << measured(QStringLiteral("idle event loop: longest tick gap"), msText(idle));
    return rows;
}

} // namespace Bench
