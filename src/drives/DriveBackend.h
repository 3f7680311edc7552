#pragma once
#include <QObject>
#include <QStringList>
#include <functional>

#include "drives/DriveAccess.h"
#include "drives/MediaAnswers.h"
#include "drives/Object_Optical_Drive.h"
#include "toolrun/ToolCommand.h"

// Everything Tamblo does with an optical drive goes through this interface.
// DrutilBackend (macOS: drutil, hdiutil) and XorrisoBackend (Linux: xorriso,
// cdrskin, eject) implement it; which one runs is decided once, from ToolPaths.
//
// Queries are asynchronous: the callback runs later on the thread that asked
// (the UI thread), never inside the call. Each query runs its tool once.
class DriveBackend : public QObject {
    Q_OBJECT
public:
    using ListCallback = std::function<void(const DriveList &)>;
    using StatusCallback = std::function<void(const MediaStatus &)>;
    using SpaceCallback = std::function<void(const MediaSpace &)>;

    explicit DriveBackend(QObject *parent = nullptr) : QObject(parent) {}
    ~DriveBackend() override = default;

    // Lists the attached drives, in the tool's order.
    virtual void listDrives(ListCallback done) = 0;

    // The drives the user may not open, as the listing and the status
    // queries since found them (already up to date when their callbacks
    // run). Nothing on macOS, where drutil needs no permission.
    virtual DriveAccess access() const { return DriveAccess{}; }

    // One status query of the medium in `drive`; a tool that is missing,
    // prints nothing or hangs past the time-out yields the answers of an
    // empty text.
    virtual void queryStatus(const Object_Optical_Drive &drive, StatusCallback done) = 0;

    // One query of the room left on the medium in `drive`, in sectors. A
    // tool that is missing or hangs answers "not answered"; an answer
    // without a figure answers "not known". A backend that has no way to
    // ask answers "not known" (later, from the event loop), and the
    // recorder is left to judge.
    virtual void queryFreeSpace(const Object_Optical_Drive &drive, SpaceCallback done);

    // Tray: launched, not waited for, output not read.
    virtual void ejectTray(const Object_Optical_Drive &drive) = 0;
    virtual void closeTray(const Object_Optical_Drive &drive) = 0;

    // Command lines of the long runs; the operations start them each as a ToolRun.
    virtual ToolCommand eraseCommand(const Object_Optical_Drive &drive, bool full) const = 0;
    virtual ToolCommand discInfoCommand(const Object_Optical_Drive &drive) const = 0;
};
