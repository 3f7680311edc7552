// The transcode phase of two media burns as the application runs it
// (TranscodeSequence: the runs side by side, progress parsed on the event
// loop) against the very same ffmpeg command lines one after the other from
// /bin/sh, alternating which goes first; medians are reported.
//
//   MP3 CD:    10 files of 60 s (MP3, 44.1 kHz stereo) -> MP3 192 kbit/s
//   video DVD:  3 files of 10 s (H.264 640x360 + AAC)  -> NTSC DVD MPEG-2 / AC-3
//
// Target: at least 1.8 times as fast as the shell. For reference, the same
// sequence held to one file at a time (what running side by side brings on
// this machine, video transcodes being multi-threaded themselves).
#include <QDir>
#include <QTemporaryDir>
#include <QThread>

#include "Sections.h"
#include "burn/TranscodeArguments.h"
#include "burn/TranscodeSequence.h"

namespace Bench {

namespace {

constexpr double SpeedUpTarget = 1.8;
constexpr double StallTargetMs = 50.0;

struct Workload {
    QString name;
    BurnOperation operation;
    QStringList sources;
    qint64 seconds = 0;
};

struct Timed {
    qint64 ms = -1;
    double stallMs = 0;
    QString problem;
};

QList<TranscodeSequence::Step> stepsOf(const Workload &w, const QString &ffmpeg, const QString &folder)
{
    const QStringList outputs = TranscodeArguments::outputPaths(w.operation, folder, w.sources);
    QList<TranscodeSequence::Step> steps;
    for (int i = 0; i < w.sources.size(); ++i)
        steps << TranscodeSequence::Step{
            TranscodeArguments::commandTo(w.operation, ffmpeg, w.sources.at(i), outputs.at(i)), w.seconds,
            outputs.at(i)};
    return steps;
}

Timed timeApplication(const Workload &w, const QString &ffmpeg, const QString &folder, StallMonitor &monitor,
                      int parallel)
{
    emptyFolder(folder);
    TranscodeSequence sequence;
    if (parallel > 0)
        sequence.setMaxParallel(parallel);
    int reports = 0;
    QObject::connect(&sequence, &TranscodeSequence::upperBar, &sequence, [&](float) { ++reports; });
    Timed t;
    const Watched watched = watch(monitor, [&](std::function<void()> done) {
        QObject::connect(&sequence, &TranscodeSequence::finished, &sequence, done);
        QObject::connect(&sequence, &TranscodeSequence::failed, &sequence, [&, done](int index, const ToolVerdict &v) {
            t.problem = QStringLiteral("file %1 failed: %2").arg(index).arg(v.summary());
            done();
        });
        sequence.start(stepsOf(w, ffmpeg, folder));
    }, 100);
    t.ms = watched.ms;
    t.stallMs = watched.stallMs;
    if (t.problem.isEmpty() && reports == 0)
        t.problem = QStringLiteral("no progress was parsed");
    if (t.problem.isEmpty() && QDir(folder).entryList(QDir::Files).size() != w.sources.size())
        t.problem = QStringLiteral("not every output was made");
    return t;
}

// The same command lines from the shell: one after the other, or dealt to
// `shells` shells side by side.
qint64 timeShellSide(const Workload &w, const QString &ffmpeg, const QString &folder, int shells = 1)
{
    emptyFolder(folder);
    QList<Job> jobs;
    for (const TranscodeSequence::Step &s : stepsOf(w, ffmpeg, folder))
        jobs << Job{s.command.program, s.command.arguments};
    return shells > 1 ? timeShellsSideBySide(jobs, shells) : timeShell(jobs);
}

} // namespace

QList<Row> transcodeSection(const Options &options)
{
    const QString ffmpeg = ffmpegPath();
    if (ffmpeg.isEmpty())
        return {measured(QStringLiteral("transcoding"), QStringLiteral("no ffmpeg"))};
    QTemporaryDir dir;
    const QString media = dir.filePath(QStringLiteral("media"));
    const QString folder = dir.filePath(QStringLiteral("out"));
    QDir().mkpath(media);
    say(QStringLiteral("Transcoding: preparing 10 x 60 s MP3 and 3 x 10 s H.264 in %1 ...").arg(dir.path()));
    Workload audio{QStringLiteral("MP3 CD, 10 x 60 s"), BurnOperation::MP3CD, {}, 60};
    Workload video{QStringLiteral("video DVD, 3 x 10 s"), BurnOperation::VideoDVD, {}, 10};
    QList<Job> jobs;
    for (int i = 0; i < 10; ++i) {
        audio.sources << QStringLiteral("%1/track%2.mp3").arg(media).arg(i, 2, 10, QLatin1Char('0'));
        jobs << Job{ffmpeg,
                    {"-v", "error", "-y", "-f", "lavfi", "-i",
                     QStringLiteral("sine=frequency=%1:duration=60").arg(220 + 40 * i), "-ac", "2", "-b:a", "128k",
                     audio.sources.last()}};
    }
    for (int i = 0; i < 3; ++i) {
        video.sources << QStringLiteral("%1/clip%2.mp4").arg(media).arg(i);
        jobs << Job{ffmpeg,
                    {"-v", "error", "-y", "-f", "lavfi", "-i", "testsrc=duration=10:size=640x360:rate=25", "-f",
                     "lavfi", "-i", "sine=duration=10", "-c:v", "libx264", "-preset", "ultrafast", "-c:a", "aac",
                     "-shortest", video.sources.last()}};
    }
    if (!runJobs(jobs, QThread::idealThreadCount()))
        return {measured(QStringLiteral("transcoding"), QStringLiteral("no material"))};

    StallMonitor monitor(options.tickMs);
    QList<Row> rows;
    for (const Workload &w : {audio, video}) {
        say(QStringLiteral("%1: %2 runs per side ...").arg(w.name).arg(options.runs));
        timeShellSide(w, ffmpeg, folder);  // warm the caches once, not counted
        QList<qint64> appTimes, shellTimes, serialTimes, shellsTimes;
        double stall = 0;
        QStringList problems;
        for (int r = 0; r < options.runs; ++r) {
            auto appSide = [&] {
                const Timed t = timeApplication(w, ffmpeg, folder, monitor, 0);
                appTimes << t.ms;
                stall = std::max(stall, t.stallMs);
                if (!t.problem.isEmpty())
                    problems << t.problem;
            };
            if (r % 2 == 0) {
                appSide();
                shellTimes << timeShellSide(w, ffmpeg, folder);
            } else {
                shellTimes << timeShellSide(w, ffmpeg, folder);
                appSide();
            }
            serialTimes << timeApplication(w, ffmpeg, folder, monitor, 1).ms;
            shellsTimes << timeShellSide(w, ffmpeg, folder, QThread::idealThreadCount());
        }
        const qint64 a = median(appTimes);
        const qint64 s = median(shellTimes);
        const qint64 one = median(serialTimes);
        const qint64 machine = median(shellsTimes);
        const double speedUp = a > 0 ? double(s) / double(a) : 0.0;
        const double ceiling = machine > 0 ? double(s) / double(machine) : 0.0;
        say(QStringLiteral("  application ms: %1\n  shell ms: %2\n  one at a time ms: %3\n  %4 shells side by side ms: %5")
                .arg(joined(appTimes), joined(shellTimes), joined(serialTimes))
                .arg(QThread::idealThreadCount())
                .arg(joined(shellsTimes)));
        for (const QString &p : std::as_const(problems))
            say(QStringLiteral("  PROBLEM: ") + p);
        rows << measured(w.name + QStringLiteral(": application, side by side (median)"), msText(double(a)))
             << measured(w.name + QStringLiteral(": shell, one after the other (median)"), msText(double(s)))
             << against(w.name + QStringLiteral(": shell time / application time"), timesText(speedUp),
                        QStringLiteral(">= 1.8 x"), speedUp >= SpeedUpTarget && problems.isEmpty())
             << measured(w.name + QStringLiteral(": application, one at a time (median)"), msText(double(one)))
             << measured(w.name + QStringLiteral(": shell time / %1 shells side by side").arg(QThread::idealThreadCount()),
                         timesText(ceiling))
             << against(w.name + QStringLiteral(": longest UI stall"), msText(stall), QStringLiteral("<= 50 ms"),
                        stall <= StallTargetMs);
    }
    return rows;
}

} // namespace Bench
