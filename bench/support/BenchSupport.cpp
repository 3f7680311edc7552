#include "BenchSupport.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QTextStream>

namespace Bench {

namespace {

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

qint64 statusField(const char *name)
{
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray key = QByteArray(name) + ':';
    for (const QByteArray &line : f.readAll().split('\n')) {
        if (line.startsWith(key))
            return line.mid(key.size()).trimmed().split(' ').value(0).toLongLong();
    }
    return -1;
}

} // namespace

Options parseOptions(const QStringList &arguments)
{
    Options o;
    const int runs = int(arguments.indexOf(QStringLiteral("--runs")));
    if (runs > 0 && runs + 1 < arguments.size())
        o.runs = std::max(1, arguments.at(runs + 1).toInt());
    const int tick = int(arguments.indexOf(QStringLiteral("--tick-ms")));
    if (tick > 0 && tick + 1 < arguments.size())
        o.tickMs = std::clamp(arguments.at(tick + 1).toInt(), 1, 5);
    const int only = int(arguments.indexOf(QStringLiteral("--only")));
    if (only > 0 && only + 1 < arguments.size())
        o.only = arguments.at(only + 1).split(QLatin1Char(','), Qt::SkipEmptyParts);
    return o;
}

QString verdict(bool pass)
{
    return pass ? QStringLiteral("PASS") : QStringLiteral("MISS");
}

QString msText(double ms)
{
    return QString::number(ms, 'f', ms < 100 ? 1 : 0) + QStringLiteral(" ms");
}

QString timesText(double factor)
{
    return QString::number(factor, 'f', 2) + QStringLiteral(" x");
}

QString mbText(double megabytes)
{
    return QString::number(megabytes, 'f', 1) + QStringLiteral(" MB");
}

Row measured(const QString &figure, const QString &value)
{
    return Row{figure, value, QString(), QString()};
}

Row against(const QString &figure, const QString &value, const QString &target, bool pass)
{
    return Row{figure, value, target, verdict(pass)};
}

void say(const QString &line)
{
    out() << line << Qt::endl;
}

void printTable(const QString &title, const QList<Row> &rows)
{
    int width = 6;
    for (const Row &r : rows)
        width = std::max(width, int(r.figure.size()));
    auto line = [&](const QString &a, const QString &b, const QString &c, const QString &d) {
        out() << QStringLiteral("| %1 | %2 | %3 | %4 |").arg(a, -width).arg(b, 14).arg(c, -16).arg(d, -6) << '\n';
    };
    out() << '\n' << title << "\n\n";
    line(QStringLiteral("figure"), QStringLiteral("measured"), QStringLiteral("target"), QStringLiteral("result"));
    out() << QStringLiteral("|%1|%2|%3|%4|")
                 .arg(QString(width + 2, QLatin1Char('-')), QString(16, QLatin1Char('-')),
                      QString(18, QLatin1Char('-')), QString(8, QLatin1Char('-')))
          << '\n';
    for (const Row &r : rows)
        line(r.figure, r.measured, r.target.isEmpty() ? QStringLiteral("(reference)") : r.target, r.result);
    out() << Qt::endl;
}

StallMonitor::StallMonitor(int intervalMs)
{
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(intervalMs);
    connect(&m_timer, &QTimer::timeout, this, &StallMonitor::tick);
}

void StallMonitor::start()
{
    m_maxGapNs = 0;
    m_clock.start();
    m_last = 0;
    m_timer.start();
}

void StallMonitor::stop()
{
    tick();
    m_timer.stop();
}

void StallMonitor::tick()
{
    const qint64 now = m_clock.nsecsElapsed();
    m_maxGapNs = std::max(m_maxGapNs, now - m_last);
    m_last = now;
}

Watched watch(StallMonitor &monitor, const std::function<void(std::function<void()> done)> &action, int settleMs,
              int timeoutMs)
{
    Watched w;
    QEventLoop loop;
    QElapsedTimer clock;
    bool over = false;
    auto done = [&] {
        if (over)
            return;
        over = true;
        w.ms = clock.elapsed();
        QTimer::singleShot(settleMs, &loop, &QEventLoop::quit);
    };
    monitor.start();
    // The call itself runs inside the watched loop, so its own time counts.
    QTimer::singleShot(0, &loop, [&] {
        clock.start();
        action(done);
    });
    QTimer::singleShot(timeoutMs, &loop, [&] {
        w.timedOut = true;
        loop.quit();
    });
    loop.exec();
    monitor.stop();
    w.stallMs = monitor.maxGapMs();
    return w;
}

double idleStall(StallMonitor &monitor, int ms)
{
    return watch(monitor, [](std::function<void()> done) { done(); }, ms).stallMs;
}

qint64 residentKb()
{
    return statusField("VmRSS");
}

qint64 peakResidentKb()
{
    return statusField("VmHWM");
}

QString joined(const QList<qint64> &values)
{
    QStringList s;
    for (qint64 v : values)
        s << QString::number(v);
    return s.join(QStringLiteral(", "));
}

QString ffmpegPath()
{
    return QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
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

bool runJobs(const QList<Job> &jobs, int parallel)
{
    parallel = std::max(1, parallel);
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
            if (!p->waitForFinished(600000) || p->exitStatus() != QProcess::NormalExit || p->exitCode() != 0) {
                const Job &j = jobs.at(first + k);
                say(QStringLiteral("failed: %1 %2\n%3")
                        .arg(j.program, j.arguments.join(QLatin1Char(' ')), QString::fromLocal8Bit(p->readAll())));
                ok = false;
            }
        }
        qDeleteAll(running);
        if (!ok)
            return false;
    }
    return true;
}

// One /bin/sh running the jobs one after the other, ready to start.
static QProcess *shellFor(const QList<Job> &jobs, bool capture)
{
    const QString redirect = capture ? QStringLiteral(" </dev/null 2>&1") : QStringLiteral(" </dev/null >/dev/null 2>&1");
    QStringList lines;
    for (const Job &job : jobs) {
        QStringList words{shellQuote(job.program)};
        for (const QString &a : job.arguments)
            words << shellQuote(a);
        lines << words.join(QLatin1Char(' ')) + redirect;
    }
    auto *p = new QProcess;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));  // as the application's tools run
    p->setProcessEnvironment(env);
    p->setStandardInputFile(QProcess::nullDevice());
    if (capture)
        p->setProcessChannelMode(QProcess::MergedChannels);
    else
        p->setStandardOutputFile(QProcess::nullDevice());
    p->setProgram(QStringLiteral("/bin/sh"));
    p->setArguments({QStringLiteral("-c"), lines.join(QLatin1Char('\n'))});
    return p;
}

qint64 timeShell(const QList<Job> &jobs, QByteArray *capture)
{
    QProcess *p = shellFor(jobs, capture != nullptr);
    QElapsedTimer clock;
    clock.start();
    p->start();
    p->waitForFinished(-1);
    const qint64 ms = clock.elapsed();
    if (capture)
        *capture = p->readAll();
    delete p;
    return ms;
}

qint64 timeShellsSideBySide(const QList<Job> &jobs, int shells)
{
    shells = std::max(1, shells);
    QList<QList<Job>> dealt(shells);
    for (int i = 0; i < jobs.size(); ++i)
        dealt[i % shells] << jobs.at(i);
    QList<QProcess *> running;
    for (const QList<Job> &part : std::as_const(dealt))
        if (!part.isEmpty())
            running << shellFor(part, false);
    QElapsedTimer clock;
    clock.start();
    for (QProcess *p : std::as_const(running))
        p->start();
    for (QProcess *p : std::as_const(running))
        p->waitForFinished(-1);
    const qint64 ms = clock.elapsed();
    qDeleteAll(running);
    return ms;
}

} // namespace Bench
