#pragma once
#include <QString>
#include <QtGlobal>
#include <optional>

// Turning the tools' text output into progress figures. Each function reads
// one chunk of text as it came from the tool and never throws: text without
// the expected marker, cut short, or full of replacement characters simply
// yields no value.
namespace ProgressParsers {

// "HH:MM:SS" to seconds: the integer values of the two characters at 0, 3
// and 6 (leading blanks and a sign allowed, parsing stops at the first
// non-digit, nothing readable counts 0); the separators are not checked.
// "01:02:03" gives 3723.
qint64 Return_Seconds_From_VOB_Duration_Str(const QString &s);

// The transcoder's "time=HH:MM:SS.cc" reports. Takes the last "time=" of the
// chunk that still has 8 characters after it (the first one is looked for
// with case, the later ones without), converts those 8 characters to
// seconds and answers seconds x 100 / durationSeconds, computed in single
// precision with both numbers taken as unsigned. Not clamped: a report past
// the duration goes beyond 100, a duration of 0 gives inf (or nan for 0 s).
std::optional<float> transcoderPercent(const QString &chunk, qint64 durationSeconds);

// The disk image tool's "DRStatusPercentCompleteKey: 0.45" reports. Only the
// first key of the chunk counts, and only when more than 5 characters follow
// it: the 4 characters after its blank are read as a fraction (logged as
// they are) and answered x 100, in single precision. A result above 100 is
// dropped.
std::optional<double> recorderPercent(const QString &chunk);

// The 4 characters recorderPercent reads, for the log; empty when it reads none.
QString recorderFractionText(const QString &chunk);

// The disk image tool's key, and how the text after it is read: its leading
// number (blanks skipped) as a fraction, x 100 in single precision. Nothing
// when the result is above 100 or not a number; hdiutil's -1 reads -100.
inline constexpr char RecorderPercentKey[] = "DRStatusPercentCompleteKey:";
std::optional<double> recorderValuePercent(const QString &afterKey);

// Linux recorders. The last percentage reported in the chunk by any of
// (each read by its parser in WriteProgress):
//   xorriso          "xorriso : UPDATE : Writing:   8192s   31.8%   fifo ..."
//   xorriso -as cdrecord, cdrskin
//                    "  11 of   50 MB written (fifo ...)", "Track 01:   11 of   50 MB written"
//   xorriso -as mkisofs  " 12.34% done"
// A report is one line (blanks and tabs between its words). "N of 0 MB", a
// figure above 100 and one too long to be a number (NaN or infinite) are
// skipped: the report before them counts. The answer is always a finite
// number from 0 to 100.
std::optional<double> linuxRecorderPercent(const QString &chunk);

// The leading number of a text as the old string-to-number helpers read it:
// leading white space skipped, an optional sign, then digits (and for the
// floating version a fraction and an exponent); 0 when nothing is readable.
qint64 leadingInteger(const QString &s);
float leadingFloat(const QString &s);

} // namespace ProgressParsers
