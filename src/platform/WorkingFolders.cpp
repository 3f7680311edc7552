#include "platform/WorkingFolders.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QtConcurrent/QtConcurrentRun>
#include <QtDebug>

WorkingFolders WorkingFolders::inside(const QString &documents)
{
    const QDir docs(documents);
    WorkingFolders f;
    f.s_Output_Folder = QDir::cleanPath(docs.filePath(QStringLiteral("Tamblo")));
    f.s_Audio_Folder = QDir::cleanPath(docs.filePath(QStringLiteral("TambloAudio")));
    f.s_Video_Folder = QDir::cleanPath(docs.filePath(QStringLiteral("TambloVideo")));
    f.s_Data_Folder = QDir::cleanPath(docs.filePath(QStringLiteral("TambloData")));
    return f;
}

namespace FolderOps {

Presence ensureFolder(const QString &path)
{
    // Only existence matters: a plain file of that name counts as present.
    // A link that leads nowhere does not, and then cannot be made a folder.
    if (QFileInfo::exists(path))
        return Presence::Existed;
    return QDir().mkpath(path) ? Presence::Created : Presence::Failed;
}

void RemoveAllContentInFolder(const QString &path)
{
    // Walk every entry at every depth (a folder comes before its contents),
    // then remove them in that order. Entries inside a folder already removed
    // are gone by the time their turn comes.
    QStringList entries;
    QDirIterator it(path, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext())
        entries << it.next();

    for (const QString &entry : std::as_const(entries)) {
        const QFileInfo fi(entry);
        if (!fi.exists() && !fi.isSymLink())
            continue;
        bool ok;
        QString reason;
        if (fi.isDir() && !fi.isSymLink()) {
            ok = QDir(entry).removeRecursively();
            if (!ok)
                reason = QStringLiteral("could not remove the folder %1").arg(entry);
        } else {
            QFile f(entry);
            ok = f.remove();
            if (!ok)
                reason = QStringLiteral("%1: %2").arg(entry, f.errorString());
        }
        if (!ok)
            qWarning().noquote() << QStringLiteral("oops: %1").arg(reason);
    }
}

void emptyFolderThen(const QString &path, QObject *receiver, std::function<void()> then)
{
    auto *watcher = new QFutureWatcher<void>(receiver);
    QObject::connect(watcher, &QFutureWatcher<void>::finished, receiver, [watcher, then] {
        watcher->deleteLater();
        then();
    });
    watcher->setFuture(QtConcurrent::run([path] { RemoveAllContentInFolder(path); }));
}

} // namespace FolderOps
