#pragma once
#include <QString>
#include <optional>

#include "drives/MediaAnswers.h"
#include "drives/Object_Optical_Drive.h"

// Reading what macOS's drutil prints.
namespace DrutilParsing {

// `drutil list`: a header line, then one fixed-width line per drive:
//   "1  HL-DT-ST DVDRW  GX50N      RR06  USB       Unsupported"
// The number is the one character at column 0, the vendor the 9 characters
// from column 3, the product the 18 characters from column 12, both trimmed
// at the ends (inner blanks kept). The walk stops at the first empty line.
// Lines that the columns cannot cut are skipped: shorter than 30 characters,
// a number column that is not a digit, or a number of two digits or more
// (the tenth drive on would shift every column).
DriveList parseList(const QString &text);

// The part of a `drutil status` text the medium questions look at: from the
// first line containing "Type:" to the end, so that the drive's own vendor
// and product line (e.g. "DVDRW  GX50N") above it is not mistaken for the
// medium. Without such a line, the whole text.
QString statusSearchText(const QString &text);

// The four answers, by case-sensitive substring searches of
// statusSearchText(text):
//   empty       "No Media Inserted"
//   writable    "overwritable"
//   rewritable  "erasable"
//   family      "DVD", else "CD", else "BD", else "Other" (in that order).
// An empty or unreadable text answers: not empty, neither writable nor
// rewritable, "Other".
MediaAnswers answers(const QString &text);

// The room left on the medium, from the "Space Free:" line of
// statusSearchText(text):
//   "     Space Free:  510:38:38         blocks:  2297888 /   4.71GB /   4.38GiB"
// The figure after "blocks:" is the count of sectors (2048 bytes of data, or
// 1/75 s of CD audio each); the time before it is the same count as
// minutes:seconds:frames at 75 frames a second, read when the blocks are
// missing. Nothing when there is no such line.
std::optional<qint64> spaceFreeSectors(const QString &text);

} // namespace DrutilParsing
