#pragma once
#include <QString>
#include <functional>

#include "burn/BurnMessages.h"

class Alerts;

// The four questions a burn asks about the medium in the current drive. Each
// answers later through its callback (a status query of the drive).
struct MediumProbe {
    std::function<void(std::function<void(bool)>)> IsDriveEmpty;
    std::function<void(std::function<void(bool)>)> IsMediaOneTimeWritable;
    std::function<void(std::function<void(bool)>)> IsMediaReWritable;
    std::function<void(std::function<void(QString)>)> TypeOfMediaInTheDrive;
};

// The checks before a burn, in their fixed order; the first that fails shows
// its alert (one button "Close") and ends the burn:
//   1. the list is empty (the drive is not even asked);
//   2. IsDriveEmpty says yes: "No disc";
//   3. neither IsMediaOneTimeWritable nor, asked only then, IsMediaReWritable
//      says yes: "Media not writable";
//   4. TypeOfMediaInTheDrive is not the burn's family: the wrong-medium
//      alert, and in debug mode a second one titled with the kind read and
//      carrying the burn's warning code.
// `done(true)` when all passed, `done(false)` after a refusal.
class BurnChecks {
public:
    static void run(BurnOperation operation, bool listIsEmpty, const MediumProbe &probe, Alerts &alerts,
                    bool debugMode, std::function<void(bool passed)> done);
};
