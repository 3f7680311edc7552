#pragma once
#include <QByteArray>
#include <QString>
#include <optional>

#include "toolrun/ProgressParsers.h"

// Turns a piece of a recorder's error output into a value for the single
// progress bar (0 to 100). Each call sees one chunk as it was read; nothing
// is carried over from one chunk to the next.
namespace ImageProgress {

enum class Kind {
    // hdiutil burn -verbose: "DRStatusPercentCompleteKey: <fraction>", read
    // by the tool runner's own parser (ProgressParsers::recorderPercent).
    DiscRecordingPercent,
    // xorriso -as cdrecord: "xorriso : UPDATE :   11 of   50 MB written ...".
    // The last such report of a chunk counts: written * 100 / total. A report
    // with a total of 0 MB or above 100 % is dropped.
    XorrisoRecordPercent,
};

std::optional<double> parse(Kind kind, const QString &chunk);
std::optional<double> parse(Kind kind, const QByteArray &chunk);  // decoded as UTF-8

// The leading number of a short text the way the recorder's value is read.
using ProgressParsers::leadingFloat;

} // namespace ImageProgress
