#pragma once
#include <QString>
#include <QStringList>

#include "burn/BurnMessages.h"
#include "toolrun/ToolCommand.h"

// The transcoder's command lines of the media burns and where their files go.
namespace TranscodeArguments {

// Last path component without its last extension ("a.b.mp3" -> "a.b"); a
// name whose only dot is its first character keeps it (".hidden").
QString nameWithoutExtension(const QString &sourcePath);

// "wav" (audio CD), "mp3" (MP3 CD and DVD), "mpg" (video DVD and Blu-ray).
QString outputExtension(BurnOperation operation);

// Folder + "/" + name without extension + "." + the operation's extension.
QString outputPath(BurnOperation operation, const QString &folder, const QString &sourcePath);

// "-i" source "-acodec" "pcm_s16le" "-ar" "44100" "-ac" "2" output
QStringList wavArguments(const QString &sourcePath, const QString &outputPath);
// "-i" source "-vn" "-ar" "44100" "-ac" "2" "-ab" "192k" "-f" "mp3" output
QStringList mp3Arguments(const QString &sourcePath, const QString &outputPath);
// "-i" source "-target" ntsc-dvd|pal-dvd "-s" 720x480|720x576 "-r" 29.97|25
// "-acodec" ac3|mp2 "-ar" "48000" "-ac" "2" [MP2 only: "-ab" "384k"] output.
// NTSC when videoFormat is "0", AC-3 when audioFormat is "0"; any other value
// means PAL / MP2. (The presets' 448 kbit/s is beyond what the MP2 encoder
// accepts, hence its own rate.)
QStringList mpgArguments(const QString &sourcePath, const QString &outputPath, const QString &videoFormat,
                         const QString &audioFormat);

// The output file of each source, in list order, each one different: a name
// already taken gets " 1", " 2", ... ("a.wav", then "a 1.wav"), so that two
// sources differing only in extension both land on the disc.
QStringList outputPaths(BurnOperation operation, const QString &folder, const QStringList &sourcePaths);

// The whole command of one file of a media burn, into `output`.
ToolCommand commandTo(BurnOperation operation, const QString &ffmpeg, const QString &sourcePath,
                      const QString &output, const QString &videoFormat = QStringLiteral("0"),
                      const QString &audioFormat = QStringLiteral("0"));

// The same into outputPath().
ToolCommand command(BurnOperation operation, const QString &ffmpeg, const QString &sourcePath,
                    const QString &folder, const QString &videoFormat = QStringLiteral("0"),
                    const QString &audioFormat = QStringLiteral("0"));

// The audio CD's tracks: the WAV file of each source in compilation order
// (outputPaths()). With `existingOnly`, files the
// transcoder did not produce are left out.
QStringList audioTracks(const QString &folder, const QStringList &sourcePaths, bool existingOnly);

} // namespace TranscodeArguments
