#pragma once
// A drive backend whose drives and medium the test sets. Every query answers
// later, from the event loop, as the real backends do, and is counted.
#include <QStringList>
#include <QTimer>

#include "drives/DriveBackend.h"

class FakeDriveBackend : public DriveBackend {
public:
    DriveList drives;
    MediaStatus status;  // what every status query answers
    MediaSpace space;    // what every free-space query answers (not known unless set)
    QStringList calls;   // "list", "status N", "space N", "eject N", "close N", "erase full N" ...
    ToolCommand erase{QStringLiteral("/bin/true"), {}};

    static MediaStatus medium(bool empty, bool writable, bool rewritable, const QString &family,
                              const QString &text = QStringLiteral("Type: fake\n"))
    {
        MediaStatus s;
        s.text = text;
        s.answers.driveEmpty = empty;
        s.answers.oneTimeWritable = writable;
        s.answers.reWritable = rewritable;
        s.answers.family = family;
        return s;
    }

    static Object_Optical_Drive drive(const QString &number, const QString &vendor, const QString &model,
                                      const QString &device = QString())
    {
        Object_Optical_Drive d;
        d.s_Drive_Number = number;
        d.sManufacturer = vendor;
        d.sModel = model;
        d.s_Device_Path = device;
        return d;
    }

    void listDrives(ListCallback done) override
    {
        calls << QStringLiteral("list");
        const DriveList now = drives;
        QTimer::singleShot(0, this, [done, now] { done(now); });
    }
    void queryStatus(const Object_Optical_Drive &d, StatusCallback done) override
    {
        calls << QStringLiteral("status ") + d.s_Drive_Number;
        const MediaStatus now = status;
        QTimer::singleShot(0, this, [done, now] { done(now); });
    }
    void queryFreeSpace(const Object_Optical_Drive &d, SpaceCallback done) override
    {
        calls << QStringLiteral("space ") + d.s_Drive_Number;
        const MediaSpace now = space;
        QTimer::singleShot(0, this, [done, now] { done(now); });
    }
    void ejectTray(const Object_Optical_Drive &d) override { calls << QStringLiteral("eject ") + d.s_Drive_Number; }
    void closeTray(const Object_Optical_Drive &d) override { calls << QStringLiteral("close ") + d.s_Drive_Number; }
    ToolCommand eraseCommand(const Object_Optical_Drive &d, bool full) const override
    {
        const_cast<FakeDriveBackend *>(this)->calls
            << QStringLiteral("erase %1 %2").arg(full ? QStringLiteral("full") : QStringLiteral("quick"), d.s_Drive_Number);
        return erase;
    }
    ToolCommand discInfoCommand(const Object_Optical_Drive &) const override { return {}; }

    int count(const QString &prefix) const
    {
        int n = 0;
        for (const QString &c : calls)
            n += c.startsWith(prefix) ? 1 : 0;
        return n;
    }
};
