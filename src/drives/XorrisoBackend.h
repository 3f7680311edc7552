#pragma once
#include "drives/DriveBackend.h"

// The drives through xorriso and eject on Linux. A drive is addressed by the
// device path the listing gave (/dev/sr0; a "stdio:/path" pseudo-drive works
// as well):
//   list          xorriso -devices
//   status        xorriso -drive_access shared:readonly -outdev DEV -toc
//                 (read-only; also the disc information)
//   free space    xorriso -drive_access shared:readonly -outdev DEV -tell_media_space
//   eject / load  eject DEV, eject -t DEV   (launched, not waited for)
//   erase         xorriso -outdev DEV -blank all|fast
// A drive record without a device path (no drive was listed) answers every
// status query as an empty drive without running anything, launches no tray
// command and has no erase command (a null ToolCommand); its disc
// information is the listing, which tells that no drive is found.
//
// access() gathers what the listing and each status query say about
// permission (see DriveAccess); `deviceNodes` tells which /dev/sr* nodes
// exist (null: this machine's /dev).
class XorrisoBackend : public DriveBackend {
    Q_OBJECT
public:
    static constexpr int DefaultListTimeoutMs = 30000;
    static constexpr int DefaultStatusTimeoutMs = 60000;

    XorrisoBackend(const QString &xorriso, const QString &eject, QObject *parent = nullptr,
                   int listTimeoutMs = DefaultListTimeoutMs,
                   int statusTimeoutMs = DefaultStatusTimeoutMs,
                   DriveAccess::DeviceNodes deviceNodes = nullptr);

    void listDrives(ListCallback done) override;
    DriveAccess access() const override { return m_access; }
    void queryStatus(const Object_Optical_Drive &drive, StatusCallback done) override;
    void queryFreeSpace(const Object_Optical_Drive &drive, SpaceCallback done) override;
    void ejectTray(const Object_Optical_Drive &drive) override;
    void closeTray(const Object_Optical_Drive &drive) override;
    ToolCommand eraseCommand(const Object_Optical_Drive &drive, bool full) const override;
    ToolCommand discInfoCommand(const Object_Optical_Drive &drive) const override;

    ToolCommand listCommand() const;
    ToolCommand statusCommand(const Object_Optical_Drive &drive) const;  // null without a device
    ToolCommand spaceCommand(const Object_Optical_Drive &drive) const;   // null without a device
    ToolCommand trayCommand(const Object_Optical_Drive &drive, bool eject) const;  // null without a device

private:
    QString m_xorriso;
    QString m_eject;
    int m_listTimeoutMs;
    int m_statusTimeoutMs;
    DriveAccess::DeviceNodes m_deviceNodes;
    DriveAccess m_access;
};
