#include "images/IsoCreation.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtDebug>

namespace IsoCreation {

static PickRequest folderRequest(const QString &message, const QString &start = QString())
{
    PickRequest r;
    r.kind = PickRequest::Kind::Folder;
    r.multiple = false;
    r.message = message;
    r.startFolder = start;
    return r;
}

PickRequest sourceRequest()
{
    return folderRequest(QStringLiteral("Select a folder to export to ISO format."));
}

PickRequest destinationRequest(const QString &homeFolder)
{
    return folderRequest(QStringLiteral("Select a folder to save the Image.iso file."),
                         homeFolder + QStringLiteral("/Documents"));
}

PickRequest imageRequest()
{
    PickRequest r;
    r.kind = PickRequest::Kind::Files;
    r.multiple = false;
    r.allowedExtensions = QStringList{QStringLiteral("iso"), QStringLiteral("img"), QStringLiteral("dmg")};
    r.filterName = QStringLiteral("Disc images");
    r.message = QStringLiteral("Select a ISO image to burn to media.");
    return r;
}

PickRequest volumeRequest()
{
    return folderRequest(QStringLiteral("Select a volume to duplicate."));
}

QString destPathISO(const QString &destPath)
{
    return destPath + QStringLiteral("/image.iso");
}

bool removeOldImage(const QString &path)
{
    const QFileInfo fi(path);
    if (!fi.exists() && !fi.isSymLink())
        return false;
    bool ok;
    if (fi.isDir() && !fi.isSymLink())
        ok = QDir(path).removeRecursively();
    else
        ok = QFile::remove(path);
    if (!ok)
        qWarning().noquote() << QStringLiteral("Could not remove the earlier image \"%1\"").arg(path);
    return ok;
}

} // namespace IsoCreation
