#pragma once
// Shared helpers of the tst_images_* tests: a log catcher, a recorder of the sheet signals and
// folder-tree comparison.
#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QMutex>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>
#include <QtTest>
#include <csignal>
#include <optional>
#include <sys/resource.h>
#include <unistd.h>

#include "drives/DriveBackend.h"
#include "images/SheetFlow.h"
#include "toolrun/ToolRun.h"
#include "support/FakeDriveBackend.h"
#include "support/Files.h"

namespace ImagesTestKit {

// Catches every log line (any thread) while it lives, and the end of every
// tool run: its output as lines, then "<program> ended with exit code N"
// (a warning unless N is 0), or a warning "could not start <program>".
class LogCatcher {
public:
    LogCatcher()
    {
        s_self = this;
        m_previous = qInstallMessageHandler(&LogCatcher::handler);
        ToolRun::setObserver([this](const ToolVerdict &v) { told(v); });
    }
    ~LogCatcher()
    {
        ToolRun::setObserver({});
        qInstallMessageHandler(m_previous);
        s_self = nullptr;
    }
    QList<ToolVerdict> verdicts() const
    {
        QMutexLocker lock(&m_mutex);
        return m_verdicts;
    }
    QStringList lines() const
    {
        QMutexLocker lock(&m_mutex);
        return m_lines;
    }
    QStringList warnings() const
    {
        QMutexLocker lock(&m_mutex);
        return m_warnings;
    }
    bool contains(const QString &part) const
    {
        for (const QString &l : lines())
            if (l.contains(part))
                return true;
        return false;
    }
    bool warned(const QString &part) const
    {
        for (const QString &l : warnings())
            if (l.contains(part))
                return true;
        return false;
    }

private:
    void told(const ToolVerdict &v)
    {
        QMutexLocker lock(&m_mutex);
        m_verdicts << v;
        for (const QString &l : v.output.split(QRegularExpression(QStringLiteral("[\r\n]+")), Qt::SkipEmptyParts))
            m_lines << l;
        if (v.outcome == ToolVerdict::Outcome::FailedToStart) {
            m_warnings << QStringLiteral("could not start %1").arg(v.command.program);
        } else if (v.outcome == ToolVerdict::Outcome::Crashed) {
            m_warnings << QStringLiteral("%1 ended abnormally").arg(v.command.program);
        } else {
            const QString end = QStringLiteral("%1 ended with exit code %2").arg(v.command.program).arg(v.exitCode);
            m_lines << end;
            if (v.exitCode != 0)
                m_warnings << end;
        }
    }

    static void handler(QtMsgType type, const QMessageLogContext &, const QString &msg)
    {
        if (LogCatcher *self = s_self) {
            QMutexLocker lock(&self->m_mutex);
            self->m_lines << msg;
            if (type == QtWarningMsg || type == QtCriticalMsg)
                self->m_warnings << msg;
        }
        fprintf(stderr, "%s\n", qPrintable(msg));
    }
    static inline LogCatcher *s_self = nullptr;
    mutable QMutex m_mutex;
    QStringList m_lines;
    QStringList m_warnings;
    QList<ToolVerdict> m_verdicts;
    QtMessageHandler m_previous = nullptr;
};

// Records the sheet signals of a flow in order ("showPerformingOperation",
// "progress 12.5", "tool /usr/bin/xorriso|-outdev|...", ...).
class SheetLog : public QObject {
public:
    explicit SheetLog(SheetFlow *flow)
    {
        auto add = [this](const QString &what) {
            events << what;
            times << clock.elapsed();
        };
        clock.start();
        connect(flow, &SheetFlow::showPerformingOperation, this, [add] { add(QStringLiteral("showPerformingOperation")); });
        connect(flow, &SheetFlow::closePerformingOperation, this, [add] { add(QStringLiteral("closePerformingOperation")); });
        connect(flow, &SheetFlow::showStagingSheet, this, [add] { add(QStringLiteral("showStagingSheet")); });
        connect(flow, &SheetFlow::closeStagingSheet, this, [add] { add(QStringLiteral("closeStagingSheet")); });
        connect(flow, &SheetFlow::operationComplete, this, [add] { add(QStringLiteral("operationComplete")); });
        connect(flow, &SheetFlow::verifying, this, [add] { add(QStringLiteral("verifying")); });
        connect(flow, &SheetFlow::operationVerified, this, [add] { add(QStringLiteral("operationVerified")); });
        connect(flow, &SheetFlow::operationFailed, this, [this, add](const OperationFailure &f) {
            failures << f;
            add(QStringLiteral("operationFailed"));
        });
        connect(flow, &SheetFlow::ended, this, [this, add] {
            add(QStringLiteral("ended"));
            ++endedCount;
        });
        connect(flow, &SheetFlow::checkProgress, this, [this, add](double v) {  // reading back
            progress << v;
            add(QStringLiteral("progress"));
        });
        connect(flow, &SheetFlow::writeProgress, this, [this, add](const WriteReport &r) {
            reports << r;
            if (r.percent) {  // what the bar shows
                progress << *r.percent;
                add(QStringLiteral("progress"));
            }
        });
        connect(flow, &SheetFlow::toolStarted, this, [this, add](const QString &program, const QStringList &args) {
            commands << (QStringList{program} + args);
            add(QStringLiteral("toolStarted"));
        });
        connect(flow, &SheetFlow::toolFinished, this, [add](int) { add(QStringLiteral("toolFinished")); });
    }

    QList<OperationFailure> failures;
    QList<WriteReport> reports;  // what the working sheet was given, in order

    // The events without the progress values, for order checks.
    QStringList sheets() const
    {
        QStringList out;
        for (const QString &e : events)
            if (e != QLatin1String("progress"))
                out << e;
        return out;
    }
    qint64 timeOf(const QString &event, int nth = 0) const
    {
        int seen = 0;
        for (int i = 0; i < events.size(); ++i)
            if (events.at(i) == event && seen++ == nth)
                return times.at(i);
        return -1;
    }
    bool waitEnded(int count = 1, int timeoutMs = 60000)
    {
        QElapsedTimer t;
        t.start();
        while (endedCount < count && t.elapsed() < timeoutMs)
            QTest::qWait(5);
        return endedCount >= count;
    }

    QStringList events;
    QList<qint64> times;
    QList<double> progress;
    QList<QStringList> commands;
    int endedCount = 0;
    QElapsedTimer clock;
};

inline QString xorrisoPath()
{
    return QStandardPaths::findExecutable(QStringLiteral("xorriso"));
}

// Reads a pseudo-drive (or image file) back into `out` with osirrox.
inline bool extract(const QString &imageOrDrive, const QString &out, QString *log = nullptr)
{
    QString dev = imageOrDrive;
    if (!dev.startsWith(QLatin1String("stdio:")))
        dev = QStringLiteral("stdio:") + dev;
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(QStandardPaths::findExecutable(QStringLiteral("osirrox")),
            {QStringLiteral("-indev"), dev, QStringLiteral("-extract"), QStringLiteral("/"), out});
    if (!p.waitForFinished(120000))
        return false;
    if (log)
        *log = QString::fromUtf8(p.readAll());
    return p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
}

// The volume id of an image or pseudo-drive, as xorriso reports it.
inline QString volumeId(const QString &imageOrDrive)
{
    QString dev = imageOrDrive;
    if (!dev.startsWith(QLatin1String("stdio:")))
        dev = QStringLiteral("stdio:") + dev;
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(xorrisoPath(), {QStringLiteral("-indev"), dev, QStringLiteral("-pvd_info")});
    p.waitForFinished(60000);
    const QString text = QString::fromUtf8(p.readAll());
    for (const QString &line : text.split(QLatin1Char('\n')))
        if (line.startsWith(QLatin1String("Volume Id    : ")))
            return line.mid(15).trimmed();
    return QString();
}

// Whether an image (or pseudo-drive) holds `name` as a Joliet name: Joliet
// keeps names in UCS-2 big-endian, so a name mangled to "_" on the way in
// is not found.
inline bool jolietHolds(const QString &image, const QString &name)
{
    QFile f(image);
    if (!f.open(QIODevice::ReadOnly))
        return false;
    QByteArray ucs2;
    for (QChar c : name) {
        ucs2.append(char(c.unicode() >> 8));
        ucs2.append(char(c.unicode() & 0xff));
    }
    return f.readAll().contains(ucs2);
}

// While it lives, every file this process and its children write may hold
// `bytes` at most: a disk that fills up, made real for one scope.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        ::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_old);
        struct rlimit lim = m_old;
        lim.rlim_cur = bytes;
        ::setrlimit(RLIMIT_FSIZE, &lim);
    }
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &m_old); }

private:
    struct rlimit m_old;
};

} // namespace ImagesTestKit
