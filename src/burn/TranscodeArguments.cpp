#include "burn/TranscodeArguments.h"

#include <QSet>

#include <QFileInfo>

namespace TranscodeArguments {

QString nameWithoutExtension(const QString &sourcePath)
{
    QString path = sourcePath;
    while (path.size() > 1 && path.endsWith(QLatin1Char('/')))
        path.chop(1);
    const QString name = path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot <= 0)
        return name;
    return name.left(dot);
}

QString outputExtension(BurnOperation operation)
{
    switch (operation) {
    case BurnOperation::AudioCD:
        return QStringLiteral("wav");
    case BurnOperation::MP3CD:
    case BurnOperation::MP3DVD:
        return QStringLiteral("mp3");
    case BurnOperation::VideoDVD:
    case BurnOperation::VideoBluray:
        return QStringLiteral("mpg");
    default:
        return QString();
    }
}

QString outputPath(BurnOperation operation, const QString &folder, const QString &sourcePath)
{
    return QStringLiteral("%1/%2.%3").arg(folder, nameWithoutExtension(sourcePath), outputExtension(operation));
}

QStringList wavArguments(const QString &sourcePath, const QString &outputPath)
{
    return {QStringLiteral("-i"), sourcePath,         QStringLiteral("-acodec"), QStringLiteral("pcm_s16le"),
            QStringLiteral("-ar"), QStringLiteral("44100"), QStringLiteral("-ac"), QStringLiteral("2"),
            outputPath};
}

QStringList mp3Arguments(const QString &sourcePath, const QString &outputPath)
{
    return {QStringLiteral("-i"),  sourcePath,           QStringLiteral("-vn"),  QStringLiteral("-ar"),
            QStringLiteral("44100"), QStringLiteral("-ac"), QStringLiteral("2"),  QStringLiteral("-ab"),
            QStringLiteral("192k"), QStringLiteral("-f"),   QStringLiteral("mp3"), outputPath};
}

QStringList mpgArguments(const QString &sourcePath, const QString &outputPath, const QString &videoFormat,
                         const QString &audioFormat)
{
    const bool ntsc = videoFormat == QLatin1String("0");
    const bool ac3 = audioFormat == QLatin1String("0");
    QStringList args{QStringLiteral("-i"),
            sourcePath,
            QStringLiteral("-target"),
            ntsc ? QStringLiteral("ntsc-dvd") : QStringLiteral("pal-dvd"),
            QStringLiteral("-s"),
            ntsc ? QStringLiteral("720x480") : QStringLiteral("720x576"),
            QStringLiteral("-r"),
            ntsc ? QStringLiteral("29.97") : QStringLiteral("25"),
            QStringLiteral("-acodec"),
            ac3 ? QStringLiteral("ac3") : QStringLiteral("mp2"),
            QStringLiteral("-ar"),
            QStringLiteral("48000"),
            QStringLiteral("-ac"),
            QStringLiteral("2")};
    // The DVD presets ask for 448 kbit/s sound, more than MPEG audio layer II
    // allows: the MP2 encoder refuses to start and no file would come out.
    // 384 kbit/s is its ceiling, and the most a DVD takes for MP2 sound.
    if (!ac3)
        args << QStringLiteral("-ab") << QStringLiteral("384k");
    args << outputPath;
    return args;
}

QStringList outputPaths(BurnOperation operation, const QString &folder, const QStringList &sourcePaths)
{
    QStringList outputs;
    QSet<QString> taken;
    const QString extension = outputExtension(operation);
    for (const QString &source : sourcePaths) {
        const QString name = nameWithoutExtension(source);
        QString path = QStringLiteral("%1/%2.%3").arg(folder, name, extension);
        for (int n = 1; taken.contains(path); ++n)
            path = QStringLiteral("%1/%2 %3.%4").arg(folder, name).arg(n).arg(extension);
        taken.insert(path);
        outputs << path;
    }
    return outputs;
}

ToolCommand command(BurnOperation operation, const QString &ffmpeg, const QString &sourcePath,
                    const QString &folder, const QString &videoFormat, const QString &audioFormat)
{
    return commandTo(operation, ffmpeg, sourcePath, outputPath(operation, folder, sourcePath), videoFormat,
                     audioFormat);
}

ToolCommand commandTo(BurnOperation operation, const QString &ffmpeg, const QString &sourcePath,
                      const QString &output, const QString &videoFormat, const QString &audioFormat)
{
    switch (operation) {
    case BurnOperation::AudioCD:
        return {ffmpeg, wavArguments(sourcePath, output)};
    case BurnOperation::MP3CD:
    case BurnOperation::MP3DVD:
        return {ffmpeg, mp3Arguments(sourcePath, output)};
    case BurnOperation::VideoDVD:
    case BurnOperation::VideoBluray:
        return {ffmpeg, mpgArguments(sourcePath, output, videoFormat, audioFormat)};
    default:
        return {};
    }
}

QStringList audioTracks(const QString &folder, const QStringList &sourcePaths, bool existingOnly)
{
    QStringList tracks;
    for (const QString &wav : outputPaths(BurnOperation::AudioCD, folder, sourcePaths)) {
        if (existingOnly && !QFileInfo(wav).isFile())
            continue;
        tracks << wav;
    }
    return tracks;
}

} // namespace TranscodeArguments
