#pragma once
#include <QString>
#include <QStringList>
#include <functional>

#include "drives/Object_Optical_Drive.h"

// Whether the user may open the optical drives (Linux). xorriso needs read
// and write permission on a drive's device node even to read it, and a
// drive the user may not open is simply left out of `xorriso -devices`; on
// Debian the `cdrom` group grants that permission. Two signs tell it:
//   - xorriso says so: "Failed to open device '/dev/sr0' : Permission denied"
//     (in a listing or in a status query);
//   - the listing finds no drive although a /dev/sr* node exists.
// The Drive menu and Disc Info then name the problem and its fix instead of
// showing no drive or no disc.
struct DriveAccess {
    // The /dev/sr* device nodes of this machine; the backend is given a
    // function returning them, so a test can pretend /dev/sr0 exists.
    using DeviceNodes = std::function<QStringList()>;
    static QStringList opticalDeviceNodes();  // what this machine's /dev holds

    QStringList deniedDevices;  // nodes the user may not open, in order, no repeats

    bool denied() const { return !deniedDevices.isEmpty(); }

    // After `xorriso -devices`: the devices it could not open for lack of
    // permission, and, when it listed no drive at all, every node in `nodes`.
    static DriveAccess afterListing(const QString &listingText, const DriveList &listed, const QStringList &nodes);

    // After a status query of `device`: the device is denied when the text
    // says it may not be opened, and cleared when the text does not say so.
    void afterStatus(const QString &device, const QString &statusText);

    // The devices that matter for `drive`: all denied ones when it has no
    // device (no drive was listed), else its own device when that is denied.
    DriveAccess forDrive(const Object_Optical_Drive &drive) const;

    // Texts, naming the devices and the fix.
    QString menuTitle() const;    // the Drive menu item that stands in for the drive
    QString alertMessage() const;  // Disc Info's alert: message...
    QString alertInformative() const;  // ...and informative text
};

namespace DriveAccessTexts {
inline const QString Fix = QStringLiteral("Add your user to the cdrom group, then log in again.");
inline const QString Title = QStringLiteral("No permission to use the drive");
}
