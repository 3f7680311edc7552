#pragma once
#include "drives/DriveBackend.h"

// The drives through macOS's drutil. Every command names the drive by its
// number, after "-drive":
//   list          drutil list
//   status        drutil status -drive N      (also the disc information,
//                 and the free space: its "Space Free:" line)
//   eject / load  drutil tray eject|close -drive N   (launched, not waited for)
//   erase         drutil erase full|quick -drive N
// The listing and the status are read whole (both output streams in one),
// without blocking; a run past its time-out is killed and read as empty.
class DrutilBackend : public DriveBackend {
    Q_OBJECT
public:
    static constexpr int DefaultListTimeoutMs = 30000;
    static constexpr int DefaultStatusTimeoutMs = 60000;

    explicit DrutilBackend(const QString &drutil, QObject *parent = nullptr,
                           int listTimeoutMs = DefaultListTimeoutMs,
                           int statusTimeoutMs = DefaultStatusTimeoutMs);

    void listDrives(ListCallback done) override;
    void queryStatus(const Object_Optical_Drive &drive, StatusCallback done) override;
    void queryFreeSpace(const Object_Optical_Drive &drive, SpaceCallback done) override;
    void ejectTray(const Object_Optical_Drive &drive) override;
    void closeTray(const Object_Optical_Drive &drive) override;
    ToolCommand eraseCommand(const Object_Optical_Drive &drive, bool full) const override;
    ToolCommand discInfoCommand(const Object_Optical_Drive &drive) const override;

    ToolCommand listCommand() const;
    ToolCommand statusCommand(const Object_Optical_Drive &drive) const;
    ToolCommand trayCommand(const Object_Optical_Drive &drive, bool eject) const;

private:
    QString m_drutil;
    int m_listTimeoutMs;
    int m_statusTimeoutMs;
};
