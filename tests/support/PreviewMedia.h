#pragma once
// The four files the preview player is tried on, made with ffmpeg's lavfi
// sources in a folder of the caller's: a 3 s mp3, a 3 s mp4 with picture and
// sound, a 2 s mp4 with a picture only, and a text file named .mp4.
#include <QString>
#include <QStringList>

#include "support/Files.h"
#include "support/Tools.h"

struct PreviewMedia {
    QString mp3, mp4, silent, text;

    // Names may carry a prefix (to sort them in a list). False when a file could not be made.
    bool make(const QString &folder, const QString &prefix = QString())
    {
        mp3 = folder + QStringLiteral("/") + prefix + QStringLiteral("tone.mp3");
        mp4 = folder + QStringLiteral("/") + prefix + QStringLiteral("bars with sound.mp4");
        silent = folder + QStringLiteral("/") + prefix + QStringLiteral("silent.mp4");
        text = folder + QStringLiteral("/") + prefix + QStringLiteral("not a film.mp4");
        if (!makeMedia({"-f", "lavfi", "-i", "sine=frequency=440:duration=3", mp3}))
            return false;
        if (!makeMedia({"-f", "lavfi", "-i", "testsrc=duration=3:size=320x240:rate=25", "-f", "lavfi", "-i",
                        "sine=frequency=440:duration=3", "-pix_fmt", "yuv420p", "-shortest", mp4}))
            return false;
        if (!makeMedia({"-f", "lavfi", "-i", "testsrc=duration=2:size=320x240:rate=25", "-pix_fmt", "yuv420p", silent}))
            return false;
        return writeFile(text, "This is a plain text file, whatever its name says.\n");
    }
};
