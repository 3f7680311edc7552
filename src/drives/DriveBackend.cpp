#include "drives/DriveBackend.h"

#include <QTimer>

void DriveBackend::queryFreeSpace(const Object_Optical_Drive &, SpaceCallback done)
{
    QTimer::singleShot(0, this, [done = std::move(done)] {
        MediaSpace space;
        space.known = false;
        if (done)
            done(space);
    });
}
