#pragma once
#include <QObject>

#include "platform/ToolPaths.h"
#include "drives/DriveBackend.h"

// The drive backend of the platform ToolPaths describes: drutil on macOS,
// xorriso and eject on Linux, with the default time-outs. The caller (or
// `parent`) owns it. `deviceNodes` (Linux) lists the /dev/sr* nodes; null:
// this machine's.
DriveBackend *createDriveBackend(const ToolPaths &tools, QObject *parent,
                                 DriveAccess::DeviceNodes deviceNodes = nullptr);
