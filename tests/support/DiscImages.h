#pragma once
// Reading images and pseudo-drives back with the real xorriso tools.
#include <QFile>
#include <QStandardPaths>
#include <QString>
#include <QStringList>

#include "support/Tools.h"

inline QString xorrisoPath()
{
    return QStandardPaths::findExecutable(QStringLiteral("xorriso"));
}

// "stdio:" + the path, unless it is a drive address already.
inline QString stdioDevice(const QString &imageOrDrive)
{
    return imageOrDrive.startsWith(QLatin1String("stdio:")) ? imageOrDrive : QStringLiteral("stdio:") + imageOrDrive;
}

// Reads a pseudo-drive (or image file) back into `out` with osirrox.
inline bool extract(const QString &imageOrDrive, const QString &out, QString *log = nullptr)
{
    const ToolEnd end = runTool(QStandardPaths::findExecutable(QStringLiteral("osirrox")),
                                {QStringLiteral("-indev"), stdioDevice(imageOrDrive), QStringLiteral("-extract"),
                                 QStringLiteral("/"), out});
    if (log)
        *log = end.output;
    return end.ok();
}

// The volume id of an image or pseudo-drive, as xorriso reports it.
inline QString volumeId(const QString &imageOrDrive)
{
    const QString text =
        runTool(xorrisoPath(), {QStringLiteral("-indev"), stdioDevice(imageOrDrive), QStringLiteral("-pvd_info")})
            .output;
    for (const QString &line : text.split(QLatin1Char('\n')))
        if (line.startsWith(QLatin1String("Volume Id    : ")))
            return line.mid(15).trimmed();
    return QString();
}

// The plain files on an image or pseudo-drive, sorted, as xorriso lists
// them ("'/a b.mp3'").
inline QStringList filesOn(const QString &imageOrDrive)
{
    QStringList files = runTool(xorrisoPath(),
                                {QStringLiteral("-indev"), stdioDevice(imageOrDrive), QStringLiteral("-find"),
                                 QStringLiteral("/"), QStringLiteral("-type"), QStringLiteral("f")},
                                true)
                            .output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    files.sort();
    return files;
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
