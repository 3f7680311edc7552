#pragma once
// Reading images and pseudo-drives back with the real xorriso tools.
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QString>

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
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(QStandardPaths::findExecutable(QStringLiteral("osirrox")),
            {QStringLiteral("-indev"), stdioDevice(imageOrDrive), QStringLiteral("-extract"), QStringLiteral("/"), out});
    if (!p.waitForFinished(120000))
        return false;
    if (log)
        *log = QString::fromUtf8(p.readAll());
    return p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
}

// The volume id of an image or pseudo-drive, as xorriso reports it.
inline QString volumeId(const QString &imageOrDrive)
{
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(xorrisoPath(), {QStringLiteral("-indev"), stdioDevice(imageOrDrive), QStringLiteral("-pvd_info")});
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
