#pragma once
// Drives as the tests name them, and one query of a real drive backend
// asked the way the application asks it: the answer comes later, from the
// event loop, and only once.
#include <QtTest>

#include "drives/DriveBackend.h"

// A drive known by its number (and the device the backend opens).
inline Object_Optical_Drive numberedDrive(const QString &number, const QString &device = QString())
{
    Object_Optical_Drive d;
    d.s_Drive_Number = number;
    d.s_Device_Path = device;
    return d;
}

// A drive as a listing names it.
inline Object_Optical_Drive opticalDrive(const QString &number, const QString &vendor, const QString &model,
                                         const QString &device = QString())
{
    Object_Optical_Drive d = numberedDrive(number, device);
    d.sManufacturer = vendor;
    d.sModel = model;
    return d;
}

// Asks once through `ask` (which hands the answer to its callback) and keeps
// the answer in `result`; fails the test when it comes inside the call, does
// not come within `answerMs`, or comes again within `againMs` after.
template <typename Answer, typename Ask>
void answeredOnce(Ask ask, Answer &result, int answerMs, int againMs)
{
    bool answered = false;
    int calls = 0;
    ask([&](const Answer &a) {
        result = a;
        answered = true;
        ++calls;
    });
    QVERIFY2(!answered, "answered inside the call");
    QVERIFY(QTest::qWaitFor([&] { return answered; }, answerMs));
    QTest::qWait(againMs);  // a second answer would arrive now
    QCOMPARE(calls, 1);
}

inline void statusOnce(DriveBackend &backend, const Object_Optical_Drive &drive, MediaStatus &result, int answerMs,
                       int againMs)
{
    answeredOnce([&](DriveBackend::StatusCallback done) { backend.queryStatus(drive, std::move(done)); }, result,
                 answerMs, againMs);
}

inline void freeSpaceOnce(DriveBackend &backend, const Object_Optical_Drive &drive, MediaSpace &result, int answerMs,
                          int againMs)
{
    answeredOnce([&](DriveBackend::SpaceCallback done) { backend.queryFreeSpace(drive, std::move(done)); }, result,
                 answerMs, againMs);
}
