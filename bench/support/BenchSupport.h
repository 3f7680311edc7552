#pragma once
// What the benchmarks share: the table of figures against their targets,
// the stall monitor of the UI thread, medians, memory, the shell side of
// each comparison and the making of material.
#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <algorithm>
#include <functional>

namespace Bench {

// One line of the figures table; an empty target marks a reference figure.
struct Row {
    QString figure;
    QString measured;
    QString target;
    QString result;  // "PASS", "MISS" or empty
};

struct Options {
    int runs = 3;       // runs per side of each timed comparison
    int tickMs = 1;     // the stall monitor's tick
    QStringList only;   // the sections to run (empty: all)
    bool wants(const QString &section) const { return only.isEmpty() || only.contains(section); }
};

// --runs N, --tick-ms 1..5, --only SECTION[,SECTION...].
Options parseOptions(const QStringList &arguments);

QString verdict(bool pass);
QString msText(double ms);
QString timesText(double factor);
QString mbText(double megabytes);
Row measured(const QString &figure, const QString &value);
Row against(const QString &figure, const QString &value, const QString &target, bool pass);

// Progress lines as the run goes; the table at the end.
void say(const QString &line);
void printTable(const QString &title, const QList<Row> &rows);

// The largest gap between two ticks of a precise timer on the thread that
// owns it: how long that thread's event loop was held up.
class StallMonitor : public QObject {
public:
    explicit StallMonitor(int intervalMs);
    void start();
    void stop();  // the time since the last tick counts as a gap too
    double maxGapMs() const { return double(m_maxGapNs) / 1e6; }

private:
    void tick();
    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_last = 0;
    qint64 m_maxGapNs = 0;
};

struct Watched {
    qint64 ms = -1;         // from the start of the action to its end
    double stallMs = 0;     // the longest stall from the start to `settleMs` after the end
    bool timedOut = false;
};

// Runs `action` from the watched event loop; the action calls the function
// it is given when the work is over (at once for a plain call). The loop
// goes on for `settleMs` afterwards, so that work left for later (a view
// laying itself out, painting) counts too.
Watched watch(StallMonitor &monitor, const std::function<void(std::function<void()> done)> &action,
              int settleMs = 300, int timeoutMs = 900000);

// The longest stall of an idle loop for `ms`: what a gap looks like with
// nothing to do.
double idleStall(StallMonitor &monitor, int ms);

// Resident memory of this process now, and its peak, in kilobytes (-1 when
// the system does not say).
qint64 residentKb();
qint64 peakResidentKb();

template <typename T>
T median(QList<T> v)
{
    if (v.isEmpty())
        return T();
    std::sort(v.begin(), v.end());
    return v.at(v.size() / 2);
}
QString joined(const QList<qint64> &values);

QString ffmpegPath();
QString shellQuote(const QString &s);
void emptyFolder(const QString &folder);

// One command line of a tool (the material, or the shell side).
struct Job {
    QString program;
    QStringList arguments;
};
// Runs the jobs, `parallel` at a time; false at the first that fails.
bool runJobs(const QList<Job> &jobs, int parallel);
// The jobs one after the other in one /bin/sh, each with standard input and
// output on the null device (standard error too unless `capture`, which
// then gets everything printed). Answers the wall time in milliseconds.
qint64 timeShell(const QList<Job> &jobs, QByteArray *capture = nullptr);
// The same jobs dealt round to `shells` shells that run side by side (job i
// to shell i mod shells): what the machine itself gives for running them
// that many at a time, with no application in between.
qint64 timeShellsSideBySide(const QList<Job> &jobs, int shells);

} // namespace Bench
