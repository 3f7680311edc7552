#pragma once
// The four files the preview player is tried on, made with ffmpeg's lavfi
// sources in a folder of the caller's: a 3 s mp3, a 3 s mp4 with picture and
// sound, a 2 s mp4 with a picture only, and a text file named .mp4.
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QString>
#include <QStringList>
#include <QtDebug>

struct PreviewMedia {
    QString mp3, mp4, silent, text;

    static bool ffmpeg(const QStringList &args)
    {
        QProcess p;
        p.setStandardInputFile(QProcess::nullDevice());
        p.start(QStandardPaths::findExecutable(QStringLiteral("ffmpeg")), QStringList{"-v", "error", "-y"} + args);
        if (!p.waitForFinished(60000))
            return false;
        if (p.exitCode() != 0)
            qWarning() << p.readAllStandardError();
        return p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
    }

    // Names may carry a prefix (to sort them in a list). False when a file could not be made.
    bool make(const QString &folder, const QString &prefix = QString())
    {
        mp3 = folder + QStringLiteral("/") + prefix + QStringLiteral("tone.mp3");
        mp4 = folder + QStringLiteral("/") + prefix + QStringLiteral("bars with sound.mp4");
        silent = folder + QStringLiteral("/") + prefix + QStringLiteral("silent.mp4");
        text = folder + QStringLiteral("/") + prefix + QStringLiteral("not a film.mp4");
        if (!ffmpeg({"-f", "lavfi", "-i", "sine=frequency=440:duration=3", mp3}))
            return false;
        if (!ffmpeg({"-f", "lavfi", "-i", "testsrc=duration=3:size=320x240:rate=25", "-f", "lavfi", "-i",
                     "sine=frequency=440:duration=3", "-pix_fmt", "yuv420p", "-shortest", mp4}))
            return false;
        if (!ffmpeg({"-f", "lavfi", "-i", "testsrc=duration=2:size=320x240:rate=25", "-pix_fmt", "yuv420p", silent}))
            return false;
        QFile f(text);
        return f.open(QIODevice::WriteOnly)
            && f.write("This is a plain text file, whatever its name says.\n") > 0;
    }
};
