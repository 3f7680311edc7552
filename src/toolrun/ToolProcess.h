#pragma once
#include <QProcess>

#include "toolrun/ToolCommand.h"

// The one place where Tamblo starts a child process. Every child gets
// LC_ALL=C (the markers we read are English) and the null device as its
// standard input (a tool that asks a question gets its answer at once).
namespace ToolProcess {

// Prepares (does not start) a process for the command.
void prepare(QProcess &process, const ToolCommand &command,
             QProcess::ProcessChannelMode mode = QProcess::SeparateChannels);

// Starts it; the caller owns the process.
QProcess *start(const ToolCommand &command, QObject *parent,
                QProcess::ProcessChannelMode mode = QProcess::SeparateChannels);

// Fire and forget: starts the command detached from our life (tray commands).
bool startDetached(const ToolCommand &command);

} // namespace ToolProcess
