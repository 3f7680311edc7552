#include "images/StagingCopy.h"

#include "compilation/Measurements.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtConcurrent/QtConcurrentRun>
#include <QtDebug>

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QString errnoText(int err)
{
    return QString::fromLocal8Bit(std::strerror(err));
}

void logError(QStringList &errors, const QString &line)
{
    qWarning().noquote() << line;
    errors << line;
}

void copyTree(const QString &src, const QString &dst, const QString &skip, QStringList &errors,
              const StopToken &stop)
{
    if (!QDir().mkpath(dst)) {
        logError(errors, QStringLiteral("Staging copy: could not create the folder \"%1\"").arg(dst));
        return;
    }
    const QByteArray srcName = QFile::encodeName(src);
    DIR *dir = ::opendir(srcName.constData());
    if (!dir) {
        logError(errors, QStringLiteral("Staging copy: could not read the folder \"%1\": %2")
                             .arg(src, errnoText(errno)));
        return;
    }
    QList<QByteArray> names;
    while (dirent *ent = ::readdir(dir)) {
        const QByteArray name(ent->d_name);
        if (name == "." || name == "..")
            continue;
        names << name;
    }
    ::closedir(dir);

    for (const QByteArray &rawName : std::as_const(names)) {
        if (stop.stopped())
            return;
        const QString name = QFile::decodeName(rawName);
        const QString from = src + QLatin1Char('/') + name;
        const QString to = dst + QLatin1Char('/') + name;
        const QByteArray fromName = QFile::encodeName(from);
        struct stat st;
        if (::lstat(fromName.constData(), &st) != 0) {
            logError(errors, QStringLiteral("Staging copy: could not copy \"%1\": %2").arg(from, errnoText(errno)));
            continue;
        }
        if (S_ISLNK(st.st_mode)) {
            QByteArray target(4096, '\0');
            const ssize_t len = ::readlink(fromName.constData(), target.data(), size_t(target.size()));
            if (len < 0 || ::symlink(QByteArray(target.constData(), int(len)).constData(),
                                     QFile::encodeName(to).constData()) != 0) {
                logError(errors, QStringLiteral("Staging copy: could not copy the link \"%1\": %2")
                                     .arg(from, errnoText(errno)));
            }
        } else if (S_ISDIR(st.st_mode)) {
            if (!skip.isEmpty() && QFileInfo(from).canonicalFilePath() == skip) {
                qInfo().noquote() << QStringLiteral("Staging copy: \"%1\" is the working folder itself; left out").arg(from);
                continue;
            }
            copyTree(from, to, skip, errors, stop);
        } else if (S_ISREG(st.st_mode)) {
            QFile in(from);
            if (!in.copy(to)) {
                logError(errors, QStringLiteral("Staging copy: could not copy \"%1\" to \"%2\": %3")
                                     .arg(from, to, in.errorString()));
                continue;
            }
            QFile out(to);
            if (out.open(QIODevice::ReadWrite | QIODevice::ExistingOnly)) {
                out.setFileTime(QFileInfo(from).lastModified(), QFileDevice::FileModificationTime);
                out.close();
            }
        } else {
            qInfo().noquote() << QStringLiteral("Staging copy: \"%1\" is not a file or folder; left out").arg(from);
        }
    }
}

} // namespace

StagingCopy::StagingCopy(const QList<StagingEntry> &entries, int pollIntervalMs, QObject *parent)
    : QObject(parent), m_entries(entries), m_pollIntervalMs(pollIntervalMs)
{
    m_pollTimer.setSingleShot(true);
    m_pollTimer.setTimerType(Qt::PreciseTimer);  // never a poll before its full interval
    connect(&m_pollTimer, &QTimer::timeout, this, &StagingCopy::poll);
    connect(&m_copyWatcher, &QFutureWatcher<QStringList>::finished, this, &StagingCopy::copyReturned);
    connect(&m_sizeWatcher, &QFutureWatcher<quint64>::finished, this, &StagingCopy::measured);
}

StagingCopy::~StagingCopy()
{
    // Worker jobs only hold copies of their paths; they may finish on their own.
    m_copyWatcher.disconnect(this);
    m_sizeWatcher.disconnect(this);
}

QStringList StagingCopy::copyFolderInto(const QString &source, const QString &destinationFolder,
                                        const QString &skip, const StopToken &stop)
{
    QStringList errors;
    const QString cleanSource = QDir::cleanPath(source);
    const QFileInfo info(cleanSource);
    if (!info.isDir()) {
        logError(errors, QStringLiteral("Staging copy: the folder \"%1\" is no longer there").arg(source));
        return errors;
    }
    copyTree(cleanSource, QDir::cleanPath(destinationFolder) + QLatin1Char('/') + info.fileName(), skip, errors,
             stop);
    return errors;
}

void StagingCopy::start()
{
    if (m_running)
        return;
    m_running = true;
    m_index = -1;
    m_errors.clear();
    m_stop = StopToken();
    folderComplete();
}

void StagingCopy::stop()
{
    if (!m_running)
        return;
    m_stop.stop();
    m_pollTimer.stop();
    m_pollDone = true;  // no more polls; the copy's return ends the staging
    if (m_copyDone)     // it has returned already: end from the event loop
        QMetaObject::invokeMethod(this, &StagingCopy::folderComplete, Qt::QueuedConnection);
}

void StagingCopy::folderComplete()
{
    if (m_index >= 0 && !m_stop.stopped())
        emit folderDone(m_index);
    ++m_index;
    if (m_index >= m_entries.size() || m_stop.stopped()) {
        m_running = false;
        emit finished();
        return;
    }
    startFolder();
}

void StagingCopy::startFolder()
{
    const StagingEntry e = m_entries.at(m_index);
    i_Last_Size = 0.0;
    m_pollDone = false;
    m_copyDone = false;
    emit folderStarted(m_index, e.source);

    if (!QDir().mkpath(e.destinationFolder))
        logError(m_errors, QStringLiteral("Staging copy: could not create the folder \"%1\"").arg(e.destinationFolder));

    const QString working = QFileInfo(QFileInfo(e.base).absolutePath()).canonicalFilePath();
    const QString source = e.source;
    const QString dest = e.destinationFolder;
    const StopToken stop = m_stop;
    m_copyWatcher.setFuture(QtConcurrent::run([source, dest, working, stop] {
        return StagingCopy::copyFolderInto(source, dest, working, stop);
    }));
    m_pollTimer.start(m_pollIntervalMs);
}

void StagingCopy::poll()
{
    const QString base = m_entries.at(m_index).base;
    m_sizeWatcher.setFuture(QtConcurrent::run([base] { return Measurements::folderSize(base); }));
}

void StagingCopy::measured()
{
    if (m_stop.stopped())
        return;
    const double size = double(m_sizeWatcher.result() >> 10);
    emit folderPolled(m_index, size);
    const StagingEntry &e = m_entries.at(m_index);
    if (size >= double(e.recordedKiB) || size == i_Last_Size) {
        pollStopped();
        return;
    }
    i_Last_Size = size;
    m_pollTimer.start(m_pollIntervalMs);
}

void StagingCopy::pollStopped()
{
    m_pollDone = true;
    if (m_copyDone) {
        folderComplete();
        return;
    }
    qInfo().noquote() << QStringLiteral("Staging copy: \"%1\" looks complete; waiting for the copy to return")
                             .arg(m_entries.at(m_index).source);
}

void StagingCopy::copyReturned()
{
    m_errors << m_copyWatcher.result();
    m_copyDone = true;
    if (m_pollDone)
        folderComplete();
}
