#pragma once
#include "support/SheetLog.h"
// Shared helpers of the tst_images_* tests: a drive backend that answers
// from a settable medium, a log catcher, a recorder of the sheet signals and
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
#include "support/Files.h"

namespace ImagesTestKit {

// A drive whose medium the test sets; every status query answers from it
// later, from the event loop, as the real backends do. The room on the
// medium is not known unless the test says it (`freeSectors`) or lends the
// question to a real backend (`spaceFrom`, e.g. xorriso on a pseudo-drive).
class FakeDrive : public DriveBackend {
public:
    MediaAnswers medium;
    int queries = 0;
    int spaceQueries = 0;
    int ejects = 0;
    std::function<void()> onEject;
    std::optional<qint64> freeSectors;
    DriveBackend *spaceFrom = nullptr;

    static MediaAnswers blank(const QString &family)
    {
        MediaAnswers a;
        a.driveEmpty = false;
        a.oneTimeWritable = true;
        a.reWritable = false;
        a.family = family;
        return a;
    }
    static MediaAnswers empty()
    {
        MediaAnswers a;
        a.driveEmpty = true;
        a.oneTimeWritable = false;
        a.reWritable = false;
        a.family = QStringLiteral("Other");
        return a;
    }
    static MediaAnswers finished(const QString &family)
    {
        MediaAnswers a;
        a.driveEmpty = false;
        a.oneTimeWritable = false;
        a.reWritable = false;
        a.family = family;
        return a;
    }
    static MediaAnswers rewritable(const QString &family)
    {
        MediaAnswers a = finished(family);
        a.reWritable = true;
        return a;
    }

    void listDrives(ListCallback done) override
    {
        QTimer::singleShot(0, this, [done] { done(DriveList{}); });
    }
    void queryStatus(const Object_Optical_Drive &, StatusCallback done) override
    {
        ++queries;
        const MediaAnswers now = medium;
        QTimer::singleShot(0, this, [done, now] {
            MediaStatus s;
            s.text = QStringLiteral("status");
            s.answers = now;
            done(s);
        });
    }
    void queryFreeSpace(const Object_Optical_Drive &drive, SpaceCallback done) override
    {
        ++spaceQueries;
        if (spaceFrom) {
            spaceFrom->queryFreeSpace(drive, std::move(done));
            return;
        }
        const std::optional<qint64> now = freeSectors;
        QTimer::singleShot(0, this, [done, now] {
            MediaSpace s;
            s.known = now.has_value();
            s.freeSectors = now.value_or(0);
            done(s);
        });
    }
    void ejectTray(const Object_Optical_Drive &) override
    {
        ++ejects;
        if (onEject)
            onEject();
    }
    void closeTray(const Object_Optical_Drive &) override {}
    ToolCommand eraseCommand(const Object_Optical_Drive &, bool) const override { return {}; }
    ToolCommand discInfoCommand(const Object_Optical_Drive &) const override { return {}; }
};

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
