#pragma once
#include <QObject>
#include <functional>
#include <optional>

#include "drives/MediaAnswers.h"
#include "toolrun/ToolCommand.h"
#include "toolrun/ToolVerdict.h"

// One short run of a drive tool whose whole output we want as text: standard
// output and standard error in one stream, read until the tool ends. Nothing
// blocks: the verdict comes later through the callback, on the thread that
// asked, never inside run(). A tool still running after the time-out is
// stopped and answers TimedOut; one that cannot be started answers
// FailedToStart. The run lives as a child of `owner`.
namespace DriveQuery {

using Done = std::function<void(const ToolVerdict &verdict)>;
void run(const ToolCommand &command, int timeoutMs, QObject *owner, Done done);

// Whether the verdict is an answer at all (not a hang, not a missing tool).
bool answered(const ToolVerdict &verdict);

// A free-space answer: what the tool printed when it answered at all, and
// the sectors `parse` finds in it.
MediaSpace space(const ToolVerdict &verdict, std::optional<qint64> (*parse)(const QString &text));

} // namespace DriveQuery
