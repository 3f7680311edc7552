#pragma once
#include <QByteArray>
#include <QString>
#include <optional>

#include "toolrun/ProgressParsers.h"

// Turns a piece of a recorder's error output into a value for the single
// progress bar (0 to 100; hdiutil's -1, "no estimate yet", reads -100 and
// leaves the bar empty). Each call sees one chunk; nothing is carried over
// from one chunk to the next. The flows hand it whole lines
// (SheetFlow::startToolRun cuts the output with a ChunkAssembler).
namespace ImageProgress {

enum class Kind {
    // hdiutil burn -verbose: "DRStatusPercentCompleteKey: <fraction>", read
    // by the progress parsers (ProgressParsers::recorderPercent).
    DiscRecordingPercent,
    // xorriso -as cdrecord: "xorriso : UPDATE :   11 of   50 MB written ...",
    // one line a report. The last such report of a chunk counts: written *
    // 100 / total, a finite number from 0 to 100. A report with a total of
    // 0 MB, above 100 % or with a figure too long to be a number is skipped.
    XorrisoRecordPercent,
};

std::optional<double> parse(Kind kind, const QString &chunk);
std::optional<double> parse(Kind kind, const QByteArray &chunk);  // decoded as UTF-8

// The leading number of a short text the way the recorder's value is read.
using ProgressParsers::leadingFloat;

} // namespace ImageProgress
