#pragma once
#include <QString>
#include <QStringList>
#include <QtGlobal>

#include "compilation/NodeDataFolder.h"
#include "compilation/NodeMediaFile.h"
#include "toolrun/StopToken.h"

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

// Whole seconds from a duration text: characters 1-2 hours, 4-5 minutes,
// 7-8 seconds, each read like a number (leading blanks, a sign, digits; no
// number reads 0). The fraction is dropped. " N/A, bitra" gives 0, and so
// does a time below zero (" 00:00:-1.-"): never negative, at most 99:99:99.
qint64 Return_Seconds_From_Duration_Str(const QString &durationText);

// The name as ffmpeg prints it on its "Input #N" line: the path's bytes,
// with the control characters its log replaces by '?' (all below 0x20 but
// backspace, tab, line feed, vertical tab, form feed and carriage return).
QString nameAsPrinted(const QString &filePath);

// The duration texts of a report of "ffmpeg -i A -i B ...", input by input,
// for as many inputs as the report describes: element i belongs to
// inputs[i]. ffmpeg describes each input as it opens it, in order, and ends
// at the first one it cannot open, so the list stops there (empty when even
// the first failed).
//
// Input N is described by a line "Input #N, FORMAT, from 'NAME':" that
// starts a line, NAME being exactly inputs[N] as printed, found after the
// description of input N - 1; then an optional "  Metadata:" line with its
// lines indented by four blanks or more; then, on the very next line, the
// "  Duration: " line, whose 11 characters after "Duration:" (fewer when the
// line is shorter) are the duration text. A name is printed as it is, so a
// name may hold quotes, line breaks and whole fake lines: only this
// structure, with the numbers in order and the names matched whole, is
// believed.
QStringList durationTextsFromBatchReport(const QString &report, const QStringList &inputs);

// One ffmpeg run over several inputs.
struct BatchProbe {
    QStringList durations;    // one per described input, in order (see above)
    bool toolStarted = true;  // false: no ffmpeg ran, nothing is known of any input
};

// Runs "ffmpeg -hide_banner -i A -i B ..." with both output streams read as
// one and reads its report. Blocks: worker threads only. A run still going
// after timeoutMs is killed and what it described so far is used.
// A stop asked through `stop` kills the run; what it described by then counts.
BatchProbe probeBatch(const QString &ffmpegPath, const QStringList &filePaths, int timeoutMs = 30000,
                      const StopToken &stop = StopToken());

// a + b, or the largest value when the sum does not fit: totals of sizes
// stop at the top instead of wrapping round to small numbers.
quint64 saturatingAdd(quint64 a, quint64 b);
qint64 saturatingAdd(qint64 a, qint64 b);  // both >= 0

// Byte total of every entry below the folder, at every depth, hidden ones
// included. Sizes follow symbolic links (a link counts as what it points to)
// but the walk does not descend through a linked folder, so link loops end.
// Folders count with the size of their own entry. The top folder itself is
// not counted. A path that is not a readable folder gives 0, and a tree that
// vanishes during the walk gives what was seen of it.
// A stop asked through `stop` ends the walk early (the total then counts
// what was seen so far).
quint64 folderSize(const QString &folderPath, const StopToken &stop = StopToken());

// Size of one file (following links); 0 when it cannot be read.
quint64 fileSize(const QString &filePath);

// The duration text of one file: probeBatch over that file alone. Blocks:
// call it from a worker thread only. A tool that cannot start, a file it
// cannot open and a probe still running after timeoutMs give an empty text.
QString GetMediaFileDuration(const QString &ffmpegPath, const QString &filePath,
                             int timeoutMs = 30000);

// Path pieces as the lists show them.
QString lastPathComponent(const QString &path);           // "track 01.mp3"
QString pathExtension(const QString &path);              // "mp3", case kept; "" when none
QString deletingLastPathComponent(const QString &path);  // folder, no trailing slash ("/" for the root; "a//b" gives "a")

// A media record filled in order: URL, path, extension, name, folder,
// duration text, seconds, size text. Probes with ffmpeg: worker threads only.
NodeMediaFile makeMediaRecord(const QString &ffmpegPath, const QString &filePath);
// The same with the duration text already known (reads the file's size
// only). When `folderOfPrevious` is this file's folder too, the record keeps
// that very string, so the records of one folder share one copy of it.
NodeMediaFile mediaRecordFor(const QString &filePath, const QString &durationText,
                             const QString &folderOfPrevious = QString());

// A data-folder record: the path, kilobytes (byte total >> 10) and size text.
// Walks the tree: worker threads only for large folders.
NodeDataFolder makeDataFolderRecord(const QString &folderPath, const StopToken &stop = StopToken());

// One single-character string per UTF-16 unit, in order.
QStringList splitStringIntoChars(const QString &text);

} // namespace Measurements
