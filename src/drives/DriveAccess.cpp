#include "drives/DriveAccess.h"

#include <QDir>
#include <QRegularExpression>

#include "drives/XorrisoParsing.h"

namespace {

// "/dev/sr0", "/dev/sr0 and /dev/sr1", "/dev/sr0, /dev/sr1 and /dev/sr2"
QString namesOf(const QStringList &devices)
{
    if (devices.size() <= 1)
        return devices.value(0);
    return devices.mid(0, devices.size() - 1).join(QStringLiteral(", ")) + QStringLiteral(" and ") + devices.last();
}

void addOnce(QStringList &list, const QString &device)
{
    if (!device.isEmpty() && !list.contains(device))
        list.append(device);
}

} // namespace

QStringList DriveAccess::opticalDeviceNodes()
{
    static const QRegularExpression name(QStringLiteral("^sr[0-9]+$"));
    QStringList nodes;
    const QDir dev(QStringLiteral("/dev"));
    const QStringList entries =
        dev.entryList({QStringLiteral("sr*")}, QDir::System | QDir::Files | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &entry : entries) {
        if (name.match(entry).hasMatch())
            nodes.append(dev.filePath(entry));
    }
    return nodes;
}

DriveAccess DriveAccess::afterListing(const QString &listingText, const DriveList &listed, const QStringList &nodes)
{
    DriveAccess access;
    for (const QString &device : XorrisoParsing::deniedDevices(listingText))
        addOnce(access.deniedDevices, device);
    if (listed.isEmpty()) {
        for (const QString &node : nodes)
            addOnce(access.deniedDevices, node);
    }
    return access;
}

void DriveAccess::afterStatus(const QString &device, const QString &statusText)
{
    if (device.isEmpty())
        return;
    deniedDevices.removeAll(device);
    if (XorrisoParsing::deniedDevices(statusText).contains(device))
        deniedDevices.append(device);
}

DriveAccess DriveAccess::forDrive(const Object_Optical_Drive &drive) const
{
    if (drive.s_Device_Path.isEmpty())
        return *this;
    DriveAccess mine;
    if (deniedDevices.contains(drive.s_Device_Path))
        mine.deniedDevices.append(drive.s_Device_Path);
    return mine;
}

QString DriveAccess::menuTitle() const
{
    if (!denied())
        return QString();
    return QStringLiteral("No permission to use %1. ").arg(namesOf(deniedDevices)) + DriveAccessTexts::Fix;
}

QString DriveAccess::alertMessage() const
{
    return denied() ? DriveAccessTexts::Title : QString();
}

QString DriveAccess::alertInformative() const
{
    if (!denied())
        return QString();
    return QStringLiteral("Tamblo may not open %1, so it cannot see the disc. ").arg(namesOf(deniedDevices))
        + DriveAccessTexts::Fix;
}
