// Times the transcode phase of two media burns as the application runs it
// (ToolRunner + TranscodeSequence, progress parsed on the event loop) against
// the very same ffmpeg command lines run one after the other by /bin/sh, in
// the same process run, alternating which goes first.
//
//   audio CD:  10 files of 60 s (MP3, 44.1 kHz stereo) -> WAV
//   video DVD:  3 files of 10 s (H.264 640x360 + AAC)  -> NTSC DVD MPEG-2 / AC-3
//
// Usage: bench_burn_transcode [--runs N]   (default 3; medians are reported)

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextStream>
#include <algorithm>
#include <cstdio>

#include "burn/TranscodeArguments.h"
#include "burn/TranscodeSequence.h"
#include "toolrun/ToolRunner.h"

namespace {

QTextStream out(stdout);

bool runTool(const QString &program, const QStringList &args)
{
    QProcess p;
    p.setStandardInputFile(QProcess::nullDevice());
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(program, args);
    if (!p.waitForFinished(600000) || p.exitCode() != 0) {
        out << "failed: " << program << ' ' << args.join(' ') << '\n' << p.readAll() << Qt::endl;
        return false;
    }
    return true;
}

QString shellQuote(const QString &s)
{
    QString q = s;
    q.replace(QLatin1String("'"), QLatin1String("'\\''"));
    return QLatin1Char('\'') + q + QLatin1Char('\'');
}

void emptyFolder(const QString &folder)
{
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
}

struct Workload {
    QString name;
    QList<TranscodeSequence::Step> steps;
    unsigned kind;
};

qint64 timeApp(const Workload &w, const QString &folder)
{
    emptyFolder(folder);
    ToolRunner runner;
    TranscodeSequence sequence(runner);
    QEventLoop loop;
    int reports = 0;
    QObject::connect(&sequence, &TranscodeSequence::upperBar, [&](float) { ++reports; });
    QObject::connect(&sequence, &TranscodeSequence::finished, &loop, &QEventLoop::quit);
    QElapsedTimer clock;
    clock.start();
    sequence.start(w.steps, w.kind);
    loop.exec();
    const qint64 ms = clock.elapsed();
    if (reports == 0)
        out << "  (no progress report was parsed)" << Qt::endl;
    return ms;
}

qint64 timeShell(const Workload &w, const QString &folder)
{
    emptyFolder(folder);
    QStringList lines;
    for (const auto &step : w.steps) {
        QStringList words{shellQuote(step.command.program)};
        for (const QString &a : step.command.arguments)
            words << shellQuote(a);
        lines << words.join(QLatin1Char(' ')) + QStringLiteral(" </dev/null 2>/dev/null");
    }
    QProcess p;
    p.setStandardInputFile(QProcess::nullDevice());
    QElapsedTimer clock;
    clock.start();
    p.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), lines.join(QLatin1Char('\n'))});
    p.waitForFinished(600000);
    return clock.elapsed();
}

qint64 median(QList<qint64> v)
{
    std::sort(v.begin(), v.end());
    return v.at(v.size() / 2);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    int runs = 3;
    const QStringList args = app.arguments();
    const int at = args.indexOf(QStringLiteral("--runs"));
    if (at > 0 && at + 1 < args.size())
        runs = std::max(1, args.at(at + 1).toInt());

    const QString ffmpeg = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
    if (ffmpeg.isEmpty()) {
        out << "ffmpeg not found" << Qt::endl;
        return 2;
    }
    QTemporaryDir dir;
    const QString media = dir.filePath(QStringLiteral("media"));
    const QString audioFolder = dir.filePath(QStringLiteral("TambloAudio"));
    const QString videoFolder = dir.filePath(QStringLiteral("TambloVideo"));
    QDir().mkpath(media);

    out << "Preparing media..." << Qt::endl;
    Workload audio{QStringLiteral("Audio CD, 10 x 60 s MP3 -> WAV"), {}, ToolRunner::AudioTranscode};
    for (int i = 0; i < 10; ++i) {
        const QString src = QStringLiteral("%1/track%2.mp3").arg(media).arg(i, 2, 10, QLatin1Char('0'));
        if (!runTool(ffmpeg, {"-v", "error", "-y", "-f", "lavfi", "-i",
                              QStringLiteral("sine=frequency=%1:duration=60").arg(220 + 40 * i), "-ac", "2", "-b:a",
                              "192k", src}))
            return 1;
        audio.steps << TranscodeSequence::Step{
            TranscodeArguments::command(BurnOperation::AudioCD, ffmpeg, src, audioFolder), 60};
    }
    Workload video{QStringLiteral("Video DVD, 3 x 10 s H.264 -> NTSC MPEG-2/AC-3"), {}, ToolRunner::VideoTranscode};
    for (int i = 0; i < 3; ++i) {
        const QString src = QStringLiteral("%1/clip%2.mp4").arg(media).arg(i);
        if (!runTool(ffmpeg, {"-v", "error", "-y", "-f", "lavfi", "-i", "testsrc=duration=10:size=640x360:rate=25",
                              "-f", "lavfi", "-i", "sine=duration=10", "-c:v", "libx264", "-preset", "ultrafast",
                              "-c:a", "aac", "-shortest", src}))
            return 1;
        video.steps << TranscodeSequence::Step{
            TranscodeArguments::command(BurnOperation::VideoDVD, ffmpeg, src, videoFolder), 10};
    }

    out << "Runs per side: " << runs << Qt::endl;
    bool allWithin = true;
    for (const Workload &w : {audio, video}) {
        const QString folder = w.kind == ToolRunner::AudioTranscode ? audioFolder : videoFolder;
        QList<qint64> appTimes, shellTimes;
        timeShell(w, folder);  // warm the caches once, not counted
        for (int r = 0; r < runs; ++r) {
            if (r % 2 == 0) {
                appTimes << timeApp(w, folder);
                shellTimes << timeShell(w, folder);
            } else {
                shellTimes << timeShell(w, folder);
                appTimes << timeApp(w, folder);
            }
        }
        const qint64 a = median(appTimes);
        const qint64 s = median(shellTimes);
        const double overhead = s > 0 ? (double(a) - double(s)) * 100.0 / double(s) : 0.0;
        if (overhead > 5.0)
            allWithin = false;
        QStringList appList, shellList;
        for (qint64 v : appTimes)
            appList << QString::number(v);
        for (qint64 v : shellTimes)
            shellList << QString::number(v);
        out << w.name << '\n'
            << "  app   ms: " << appList.join(QStringLiteral(", ")) << "  (median " << a << ")\n"
            << "  shell ms: " << shellList.join(QStringLiteral(", ")) << "  (median " << s << ")\n"
            << "  overhead: " << QString::number(overhead, 'f', 2) << " %" << Qt::endl;
    }
    out << (allWithin ? "Within the 5 % target." : "Above the 5 % target.") << Qt::endl;
    return 0;
}
