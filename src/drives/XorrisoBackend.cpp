#include "drives/XorrisoBackend.h"

#include "drives/DriveQuery.h"
#include "drives/XorrisoParsing.h"
#include "toolrun/ToolProcess.h"

XorrisoBackend::XorrisoBackend(const QString &xorriso, const QString &eject, QObject *parent,
                               int listTimeoutMs, int statusTimeoutMs, DriveAccess::DeviceNodes deviceNodes)
    : DriveBackend(parent), m_xorriso(xorriso), m_eject(eject), m_listTimeoutMs(listTimeoutMs),
      m_statusTimeoutMs(statusTimeoutMs),
      m_deviceNodes(deviceNodes ? std::move(deviceNodes) : DriveAccess::DeviceNodes(&DriveAccess::opticalDeviceNodes))
{
}

ToolCommand XorrisoBackend::listCommand() const
{
    return XorrisoParsing::devicesCommand(m_xorriso);
}

ToolCommand XorrisoBackend::statusCommand(const Object_Optical_Drive &drive) const
{
    if (drive.s_Device_Path.isEmpty())
        return ToolCommand{};
    return XorrisoParsing::statusCommand(m_xorriso, drive.s_Device_Path);
}

ToolCommand XorrisoBackend::spaceCommand(const Object_Optical_Drive &drive) const
{
    if (drive.s_Device_Path.isEmpty())
        return ToolCommand{};
    return XorrisoParsing::spaceCommand(m_xorriso, drive.s_Device_Path);
}

ToolCommand XorrisoBackend::trayCommand(const Object_Optical_Drive &drive, bool eject) const
{
    if (drive.s_Device_Path.isEmpty())
        return ToolCommand{};
    if (eject)
        return ToolCommand{m_eject, {drive.s_Device_Path}};
    return ToolCommand{m_eject, {QStringLiteral("-t"), drive.s_Device_Path}};
}

void XorrisoBackend::listDrives(ListCallback done)
{
    DriveQuery::run(listCommand(), m_listTimeoutMs, this,
                    [this, done = std::move(done)](const ToolVerdict &verdict) {
                        const DriveList drives = XorrisoParsing::parseDevices(verdict.output);
                        m_access = DriveAccess::afterListing(verdict.output, drives, m_deviceNodes());
                        if (done)
                            done(drives);
                    });
}

void XorrisoBackend::queryStatus(const Object_Optical_Drive &drive, StatusCallback done)
{
    // Without a device the null command runs nothing and answers an empty
    // text, which reads as an empty drive.
    DriveQuery::run(statusCommand(drive), m_statusTimeoutMs, this,
                    [this, device = drive.s_Device_Path, done = std::move(done)](const ToolVerdict &verdict) {
                        m_access.afterStatus(device, verdict.output);
                        MediaStatus status;
                        // A drive that did not answer says nothing: what a hung
                        // tool printed before it was stopped is not its answer.
                        status.answered = DriveQuery::answered(verdict);
                        status.text = status.answered ? verdict.output : QString();
                        status.answers = XorrisoParsing::answers(status.text);
                        status.verdict = verdict;
                        if (done)
                            done(status);
                    });
}

void XorrisoBackend::queryFreeSpace(const Object_Optical_Drive &drive, SpaceCallback done)
{
    // Without a device the null command runs nothing and answers an empty
    // text: nothing is known.
    DriveQuery::run(spaceCommand(drive), m_statusTimeoutMs, this,
                    [done = std::move(done)](const ToolVerdict &verdict) {
                        if (done)
                            done(DriveQuery::space(verdict, &XorrisoParsing::mediaSpaceSectors));
                    });
}

void XorrisoBackend::ejectTray(const Object_Optical_Drive &drive)
{
    const ToolCommand command = trayCommand(drive, true);
    if (!command.isNull())
        ToolProcess::startDetached(command);
}

void XorrisoBackend::closeTray(const Object_Optical_Drive &drive)
{
    const ToolCommand command = trayCommand(drive, false);
    if (!command.isNull())
        ToolProcess::startDetached(command);
}

ToolCommand XorrisoBackend::eraseCommand(const Object_Optical_Drive &drive, bool full) const
{
    if (drive.s_Device_Path.isEmpty())
        return ToolCommand{};
    return XorrisoParsing::eraseCommand(m_xorriso, drive.s_Device_Path, full);
}

ToolCommand XorrisoBackend::discInfoCommand(const Object_Optical_Drive &drive) const
{
    if (drive.s_Device_Path.isEmpty())
        return listCommand();
    return statusCommand(drive);
}
