#pragma once
#include <QProcess>

#include "toolrun/ToolCommand.h"

// The one place where Tamblo starts a child process. Every child gets an
// English locale with UTF-8 text (childLocale(): the markers we read are
// English, and file names stay whole: under a plain "C" locale xorriso takes
// names for ASCII and writes "_" for every other letter in a disc's Joliet
// tree) and the null device as its standard input (a tool that asks a
// question gets its answer at once).
namespace ToolProcess {

// "C.UTF-8" (Linux) or "en_US.UTF-8" (macOS), set as LC_ALL and LANG.
QString childLocale();

// Prepares (does not start) a process for the command.
void prepare(QProcess &process, const ToolCommand &command,
             QProcess::ProcessChannelMode mode = QProcess::SeparateChannels);

// Starts it; the caller owns the process.
QProcess *start(const ToolCommand &command, QObject *parent,
                QProcess::ProcessChannelMode mode = QProcess::SeparateChannels);

// Fire and forget: starts the command detached from our life (tray commands).
bool startDetached(const ToolCommand &command);

} // namespace ToolProcess
