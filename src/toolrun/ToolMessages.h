#pragma once
#include <QString>

#include "app/Alerts.h"
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
};
