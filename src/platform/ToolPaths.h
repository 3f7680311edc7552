#pragma once
#include <QString>

// Where every helper program lives, decided once per platform. Tests build
// their own ToolPaths pointing at fake tools.
struct ToolPaths {
    enum class Backend { MacOS, Linux };

    Backend backend = Backend::Linux;
    QString ffmpeg;    // the transcoder
    QString drutil;    // macOS optical drive tool
    QString hdiutil;   // macOS disk image tool
    QString xorriso;   // Linux: drives, data sessions, images
    QString cdrskin;   // Linux: audio CDs
    QString eject;     // Linux: tray

    // The paths the shipped program uses on this platform. applicationDir is
    // the folder of the running executable.
    static ToolPaths forThisPlatform(const QString &applicationDir);

    // ffmpeg: on macOS the bundle's Resources/ffmpeg; elsewhere an ffmpeg
    // beside the executable, else the one found on PATH (empty if none).
    static QString locateFfmpeg(const QString &applicationDir, Backend backend);
};
