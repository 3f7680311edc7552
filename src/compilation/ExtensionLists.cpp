#include "compilation/ExtensionLists.h"

#include <QDirIterator>
#include <QFileInfo>

#include "compilation/Measurements.h"

namespace ExtensionLists {

const QStringList &audio()
{
    static const QStringList list{
        QStringLiteral("wma"), QStringLiteral("wav"), QStringLiteral("cda"), QStringLiteral("mp3"),
        QStringLiteral("mp2"), QStringLiteral("mpga"), QStringLiteral("m4a")};
    return list;
}

const QStringList &video()
{
    static const QStringList list{
        QStringLiteral("wmv"), QStringLiteral("mov"), QStringLiteral("mpg"), QStringLiteral("mpeg"),
        QStringLiteral("mpe"), QStringLiteral("avi"), QStringLiteral("asf"), QStringLiteral("asx"),
        QStringLiteral("qt"), QStringLiteral("mp4"), QStringLiteral("mpeg-4"), QStringLiteral("flv"),
        QStringLiteral("ts"), QStringLiteral("3gp"), QStringLiteral("fli"), QStringLiteral("m1v"),
        QStringLiteral("m2v"), QStringLiteral("mjpg")};
    return list;
}

QStringList filterFolder(const QString &folderPath, const QStringList &extensions)
{
    QStringList kept;
    if (folderPath.isEmpty() || !QFileInfo(folderPath).isDir())
        return kept;
    // Unsorted: the order in which the file system hands the names out.
    QDirIterator it(folderPath, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    while (it.hasNext()) {
        it.next();
        const QFileInfo info = it.fileInfo();
        if (info.isDir())
            continue;
        const QString name = info.fileName();
        if (extensions.contains(Measurements::pathExtension(name), Qt::CaseSensitive))
            kept.append(name);
    }
    return kept;
}

QString childPath(const QString &folderPath, const QString &name)
{
    if (folderPath.endsWith(QLatin1Char('/')))
        return folderPath + name;
    return folderPath + QLatin1Char('/') + name;
}

PickRequest addFilesRequest(const QStringList &extensions)
{
    PickRequest r;
    r.kind = PickRequest::Kind::Files;
    r.multiple = true;
    r.allowedExtensions = extensions;
    return r;
}

PickRequest audioAddFilesRequest()
{
    PickRequest r = addFilesRequest(audio());
    r.filterName = QStringLiteral("Audio files");
    r.title = QStringLiteral("Add Audio Files");
    return r;
}

PickRequest videoAddFilesRequest()
{
    PickRequest r = addFilesRequest(video());
    r.filterName = QStringLiteral("Video files");
    r.title = QStringLiteral("Add Video Files");
    return r;
}

PickRequest addFolderRequest()
{
    PickRequest r;
    r.kind = PickRequest::Kind::Folder;
    r.multiple = false;
    return r;
}

static PickRequest titledFolderRequest(const QString &title)
{
    PickRequest r = addFolderRequest();
    r.title = title;
    return r;
}

PickRequest audioAddFolderRequest()
{
    return titledFolderRequest(QStringLiteral("Add a Folder of Audio Files"));
}

PickRequest videoAddFolderRequest()
{
    return titledFolderRequest(QStringLiteral("Add a Folder of Video Files"));
}

PickRequest dataAddFolderRequest()
{
    return titledFolderRequest(QStringLiteral("Add a Data Folder"));
}

} // namespace ExtensionLists
