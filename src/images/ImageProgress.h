#pragma once
#include <QByteArray>
#include <QString>
#include <optional>

// Turns a piece of a recorder's error output into a value for the single
// progress bar (0 to 100). Each call sees one chunk as it was read; nothing
// is carried over from one chunk to the next.
namespace ImageProgress {

enum class Kind {
    // hdiutil burn -verbose: "DRStatusPercentCompleteKey: <fraction>". Only
    // the first key of a chunk counts, and only when at least five more
    // characters follow it; the four characters after the blank are read as
    // a fraction and multiplied by 100. A result above 100 is dropped.
    DiscRecordingPercent,
    // xorriso -as cdrecord: "xorriso : UPDATE :   11 of   50 MB written ...".
    // The last such report of a chunk counts: written * 100 / total. A report
    // with a total of 0 MB or above 100 % is dropped.
    XorrisoRecordPercent,
};

std::optional<double> parse(Kind kind, const QString &chunk);
std::optional<double> parse(Kind kind, const QByteArray &chunk);  // decoded as UTF-8

// The leading number of a short text the way the recorder's value is read:
// blanks skipped, an optional sign, digits with an optional fraction and
// exponent; 0 when no number starts the text.
float leadingFloat(const QString &text);

} // namespace ImageProgress
