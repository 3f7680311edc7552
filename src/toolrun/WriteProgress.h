#pragma once
#include <QDateTime>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringView>
#include <optional>

class QDebug;

// One progress report of a tool that writes a disc or an image, with the
// figures the tool put in it. What a report leaves out stays empty.
struct WriteReport {
    // Done, 0 to 100: of the track in hand when `track` is set (cdrskin
    // counts each track on its own), else of the whole write.
    std::optional<double> percent;
    std::optional<double> writtenMB;   // MiB (2^20 bytes), as the tools count them
    std::optional<double> totalMB;     // of the track, or of the run when `runTotal`
    int track = 0;                     // "Track 02:" gives 2; 0 when the report names none
    bool runTotal = false;             // a size announcement of the whole run, no progress
    std::optional<double> speed;       // multiples of the medium's base speed ("4.2x")
    std::optional<QDateTime> finishAt; // the tool's own estimate of the end, local time

    bool operator==(const WriteReport &other) const;
    bool operator!=(const WriteReport &other) const { return !(*this == other); }
};
Q_DECLARE_METATYPE(WriteReport)

QDebug operator<<(QDebug debug, const WriteReport &report);

// The progress reports of the writing tools, one parser per format. Each
// parser reads ONE complete report line (without its line end) and answers
// nothing for any other line, for a figure that is not a number, for a total
// of 0 and for a percentage above 100. None of them throws or keeps state.
namespace WriteProgress {

// xorriso writing a session (-commit), with -pacifier:
//   "xorriso : UPDATE : Writing:       8192s   31.8%   fifo 100%  buf  50%   12.1xD "
// Sectors of 2048 bytes written, the percentage of the whole write and,
// after the first report, the speed (C, D or B: CD, DVD or BD multiples).
// The total is worked out from the sectors and the percentage.
std::optional<WriteReport> xorrisoWriting(QStringView line);

// xorriso -as cdrecord and cdrskin:
//   "xorriso : UPDATE :   11 of   50 MB written (fifo 74%) [buf  50%]   4.5x."
//   "Track 01:   11 of   50 MB written (fifo 100%) [buf  50%]   4.2x."
std::optional<WriteReport> cdrecordWritten(QStringView line);

// cdrskin's announcement before it writes: "Total size:       50 MB (05:45.78) = 25784 sectors",
// the size of all its tracks together (runTotal).
std::optional<WriteReport> cdrskinTotalSize(QStringView line);

// xorriso -as mkisofs:
//   "xorriso : UPDATE :  23.83% done, estimate finish Sun Nov 22 14:48:11 2026"
// The finish estimate, when given, is local time in the C library's layout.
std::optional<WriteReport> mkisofsDone(QStringView line);

// xorriso, every kind of write: "Writing to 'stdio:/tmp/c.iso' completed successfully."
// The whole write is done: 100 %.
std::optional<WriteReport> xorrisoCompleted(QStringView line);

// hdiutil burn -verbose: "DRStatusPercentCompleteKey: 0.1234568", a fraction
// of the burn (1 is done). Its "-1" (no estimate yet) is no report.
std::optional<WriteReport> hdiutilPercent(QStringView line);

// Calls fn(line) for each report line of a text, without its line end:
// "\r" and "\n" both end a report, and empty lines are left out.
template <typename Fn>
void forEachLine(QStringView text, Fn fn)
{
    for (const QStringView line : text.tokenize(u'\n'))
        for (const QStringView report : line.tokenize(u'\r'))
            if (!report.isEmpty())
                fn(report);
}

// Any of the above, by the marker the line carries.
std::optional<WriteReport> parseLine(QStringView line);

// Every report of a text of whole lines ('\r' or '\n' ended), in order. A
// text cut anywhere and put back together line by line (ChunkAssembler)
// gives the same reports as the whole text.
QList<WriteReport> parseReports(const QString &text);

} // namespace WriteProgress
