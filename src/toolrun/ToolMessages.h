#pragma once
#include <QString>

#include "platform/Alerts.h"
#include "toolrun/ToolVerdict.h"

// What the user reads when a tool run did not go well.
namespace ToolMessages {

// How to get a missing tool on this platform: the Debian package on Linux,
// Homebrew on macOS ("sudo apt install xorriso", "brew install ffmpeg").
QString installHint(const QString &program);

// A tool that could not be started: "xorriso could not be started." with
// what to install.
AlertRequest notStarted(const ToolVerdict &verdict);

// A drive status query that got no answer: never "No disc".
AlertRequest driveDidNotAnswer(const ToolVerdict &verdict);

// The tool's own words for the user: its error lines, one per line, or what
// happened when it printed none ("xorriso was stopped.").
QString toolWords(const ToolVerdict &verdict);

// Cancel pressed while a disc is being written: "Stop writing? A write-once
// disc will be unusable." with Stop (the default) and Continue. True when the
// user chose Stop.
AlertRequest stopWritingQuestion();
bool confirmStopWriting(Alerts &alerts);

// What the last sheet of a cancelled operation says.
inline const QString BurnCancelled = QStringLiteral("The burn was cancelled.");
inline const QString CopyCancelled = QStringLiteral("The copy was cancelled.");
inline const QString ImageCancelled = QStringLiteral("Making the image was cancelled.");
inline const QString EraseCancelled = QStringLiteral("Erasing was cancelled.");
inline const QString NothingWritten = QStringLiteral("Nothing was written to the disc.");
inline const QString WritingStopped =
    QStringLiteral("Writing was stopped before the disc was finished. A write-once disc is now unusable.");
inline const QString NoImageMade = QStringLiteral("No image was made.");
inline const QString ErasingStopped =
    QStringLiteral("Erasing was stopped part way. Erase the disc again before using it.");

} // namespace ToolMessages

// The last sheet of an operation that failed: what failed in plain words
// ("The disc could not be written."), the tool's own words, and the whole
// output of the failed run behind Details.
struct OperationFailure {
    QString message;
    QString informative;  // the tool's own error line(s)
    QString details;      // the command line and everything it printed
    bool cancelled = false;

    static OperationFailure fromVerdict(const QString &message, const ToolVerdict &verdict);
    // The last sheet of an operation the user cancelled ("The burn was
    // cancelled.", "Nothing was written to the disc."): never "complete".
    // The stopped tool's run, when there was one, goes behind Details.
    static OperationFailure cancellation(const QString &message, const QString &informative,
                                         const ToolVerdict *stoppedRun = nullptr);
};
