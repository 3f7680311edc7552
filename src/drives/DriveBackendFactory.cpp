#include "drives/DriveBackendFactory.h"

#include "drives/DrutilBackend.h"
#include "drives/XorrisoBackend.h"

DriveBackend *createDriveBackend(const ToolPaths &tools, QObject *parent, DriveAccess::DeviceNodes deviceNodes)
{
    if (tools.backend == ToolPaths::Backend::MacOS)
        return new DrutilBackend(tools.drutil, parent);
    return new XorrisoBackend(tools.xorriso, tools.eject, parent, XorrisoBackend::DefaultListTimeoutMs,
                              XorrisoBackend::DefaultStatusTimeoutMs, std::move(deviceNodes));
}
