#pragma once
#include <QString>
#include <QStringList>
#include <QtGlobal>

#include "compilation/NodeDataFolder.h"
#include "compilation/NodeMediaFile.h"

// The measurements that fill a compilation record: the playing time of a
// media file as ffmpeg reports it, that time in whole seconds, the byte total
// of a folder tree and the size text shown in the lists. None of them keeps
// state; all may run on any thread.
namespace Measurements {

// Size text "%4.2f %@": the value scaled by 1024 with "bytes", "KB", "MB",
// "GB" or "TB". Scaling starts only from 1025 bytes and goes on while the
// value is above 1024.0, so 1024 bytes reads "1024.00 bytes", 1025 bytes
// "1.00 KB" and 1 048 576 bytes "1024.00 KB". The unit stops at "TB".
QString sizeText(quint64 bytes);

// The duration text out of a probe's report: the 11 characters that follow
// the "Duration:" that starts a report line, as they stand (" 00:03:25.4").
// No such line gives an empty text; a shorter tail is kept as it is.
QString durationTextFromProbe(const QString &probeOutput);

// Whole seconds from a duration text: characters 1-2 hours, 4-5 minutes,
// 7-8 seconds, each read like a number (leading blanks, a sign, digits; no
// number reads 0). The fraction is dropped. " N/A, bitra" gives 0, and so
// does a time below zero (" 00:00:-1.-"): never negative, at most 99:99:99.
qint64 Return_Seconds_From_Duration_Str(const QString &durationText);

// Byte total of every entry below the folder, at every depth, hidden ones
// included. Sizes follow symbolic links (a link counts as what it points to)
// but the walk does not descend through a linked folder, so link loops end.
// Folders count with the size of their own entry. The top folder itself is
// not counted. A path that is not a readable folder gives 0, and a tree that
// vanishes during the walk gives what was seen of it.
quint64 folderSize(const QString &folderPath);

// Size of one file (following links); 0 when it cannot be read.
quint64 fileSize(const QString &filePath);

// Runs "ffmpeg -i PATH" with both output streams read as one, waits for the
// report and returns its duration text. Blocks: call it from a worker thread
// only. A tool that cannot start gives an empty text; one that is still
// running after timeoutMs is killed and its report so far is used.
QString GetMediaFileDuration(const QString &ffmpegPath, const QString &filePath,
                             int timeoutMs = 30000);

// Path pieces as the lists show them.
QString lastPathComponent(const QString &path);           // "track 01.mp3"
QString pathExtension(const QString &path);              // "mp3", case kept; "" when none
QString deletingLastPathComponent(const QString &path);  // folder, no trailing slash ("/" for the root; "a//b" gives "a")

// A media record filled in order: URL, path, extension, name, folder,
// duration text, seconds, size text. Probes with ffmpeg: worker threads only.
NodeMediaFile makeMediaRecord(const QString &ffmpegPath, const QString &filePath);

// A data-folder record: the path, kilobytes (byte total >> 10) and size text.
// Walks the tree: worker threads only for large folders.
NodeDataFolder makeDataFolderRecord(const QString &folderPath);

// One single-character string per UTF-16 unit, in order.
QStringList splitStringIntoChars(const QString &text);

} // namespace Measurements
