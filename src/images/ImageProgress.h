#pragma once
#include <QByteArray>
#include <QList>
#include <QString>
#include <optional>

#include "toolrun/ProgressParsers.h"
#include "toolrun/WriteProgress.h"

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
    // xorriso (and cdrskin), one line a report, each read by its parser in
    // WriteProgress: "xorriso : UPDATE :   11 of   50 MB written ..." of
    // -as cdrecord, "Writing: 8192s 31.8% ..." of a session write, " 12.34%
    // done" of -as mkisofs, and "Writing to '...' completed successfully."
    // (100). The last such report of a chunk counts, a finite number from 0
    // to 100. A report with a total of 0 MB, above 100 % or with a figure too
    // long to be a number is skipped.
    XorrisoRecordPercent,
};

std::optional<double> parse(Kind kind, const QString &chunk);
std::optional<double> parse(Kind kind, const QByteArray &chunk);  // decoded as UTF-8

// Every report of a text of whole lines with all its figures (MB written,
// speed, the tool's finish estimate): what the writing sheet shows. For
// DiscRecordingPercent each line with the key counts, "-1" (no estimate yet)
// does not.
QList<WriteReport> reports(Kind kind, const QString &text);

// The leading number of a short text the way the recorder's value is read.
using ProgressParsers::leadingFloat;

} // namespace ImageProgress
