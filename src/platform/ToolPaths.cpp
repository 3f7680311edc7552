#include "platform/ToolPaths.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

QString ToolPaths::locateFfmpeg(const QString &applicationDir, Backend backend)
{
    if (backend == Backend::MacOS) {
        // Tamblo.app/Contents/MacOS/<exe> -> Tamblo.app/Contents/Resources/ffmpeg
        return QDir::cleanPath(applicationDir + QStringLiteral("/../Resources/ffmpeg"));
    }
    const QString beside = QDir(applicationDir).filePath(QStringLiteral("ffmpeg"));
    const QFileInfo fi(beside);
    if (fi.isFile() && fi.isExecutable())
        return beside;
    return QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
}

static QString onPath(const char *name)
{
    const QString found = QStandardPaths::findExecutable(QString::fromLatin1(name));
    return found.isEmpty() ? QString::fromLatin1(name) : found;
}

ToolPaths ToolPaths::forThisPlatform(const QString &applicationDir)
{
    ToolPaths p;
#ifdef Q_OS_MACOS
    p.backend = Backend::MacOS;
    p.drutil = QStringLiteral("/usr/bin/drutil");
    p.hdiutil = QStringLiteral("/usr/bin/hdiutil");
#else
    p.backend = Backend::Linux;
    p.xorriso = onPath("xorriso");
    p.cdrskin = onPath("cdrskin");
    p.eject = onPath("eject");
#endif
    p.ffmpeg = locateFfmpeg(applicationDir, p.backend);
    return p;
}
