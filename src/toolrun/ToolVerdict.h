#pragma once
#include <QMetaType>
#include <QString>
#include <QStringList>

#include "toolrun/ToolCommand.h"

// How one tool run ended, as the user is told: the outcome, the tool's own
// words about a failure, and everything it printed (the Details of a
// failure sheet).
struct ToolVerdict {
    enum class Outcome {
        Succeeded,
        Failed,         // exit code not 0, or the tool's own failure marker
        Crashed,        // killed by a signal it did not ask for
        FailedToStart,  // missing, not executable, no program at all
        TimedOut,       // still running past its time limit: stopped by us
        Stopped,        // stopped on request (cancel, quit)
    };

    Outcome outcome = Outcome::Succeeded;
    int exitCode = 0;
    ToolCommand command;
    QStringList errorLines;  // the tool's own failure lines, oldest first (at most a few)
    QString output;          // both channels, in the order they were read
    QString startError;      // why it could not be started
    qint64 elapsedMs = 0;

    bool ok() const { return outcome == Outcome::Succeeded; }
    // The program's file name ("xorriso"), for messages.
    QString toolName() const;
    // One line for a log: "xorriso: exit code 5", "ffmpeg: could not be started", ...
    QString summary() const;
};

Q_DECLARE_METATYPE(ToolVerdict)

// Each tool's rules for reading its end, from its own documentation:
//   ffmpeg   exit code; its last error line ("...: Invalid data found when
//            processing input", "Not overwriting - exiting", "No space left
//            on device", "Conversion failed!").
//   xorriso  exit code (1 after a FAILURE event, 5 and 32 after SORRY when
//            asked to return on it); lines with " : FAILURE : ", " : SORRY : ",
//            " : FATAL : " or " : MISHAP : "; a FAILURE or FATAL line fails
//            a run even when the exit code is 0.
//   cdrskin  exit code; its "cdrskin: SORRY :", "cdrskin: FAILURE :" and
//            "cdrskin: FATAL :" lines.
//   hdiutil  exit code; "hdiutil: ... failed" lines and the Disc Recording
//            status "DRErrorStatusKey"; a crash report ("*** malloc...").
//   drutil   exit code; lines saying "failed" or "error".
namespace ToolVerdicts {

// Fills outcome (from Succeeded/Failed), errorLines, from the exit code and
// the output of a run that did end on its own.
void judge(ToolVerdict &verdict);

// The failure lines of `output` by the rules of `program` (a path or a name).
QStringList errorLines(const QString &program, const QString &output);

} // namespace ToolVerdicts
