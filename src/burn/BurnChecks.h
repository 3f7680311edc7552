#pragma once
#include <QString>
#include <functional>

#include "burn/BurnMessages.h"
#include "drives/MediaQuestions.h"

class Alerts;

// The checks before a burn, in their fixed order; the first that fails shows
// its alert (one button "Close") and ends the burn:
//   1. the list is empty (the drive is not even asked);
//   2. the medium check chain: no disc ("No disc"); neither write-once nor
//      rewritable ("Media not writable"); not the burn's family (the
//      wrong-medium alert, and in debug mode a second one titled with the
//      kind read and carrying the burn's warning code); a drive that does
//      not answer (that, never "No disc");
//   3. with a size estimate, the room: a compilation that needs more than
//      the medium has left is refused with "Not enough room on the disc",
//      its estimated size and the room left (DiscRoom::noRoom).
// `done(true)` when all passed, `done(false)` after a refusal.
class BurnChecks {
public:
    static void run(BurnOperation operation, bool listIsEmpty, const MediumCheckFn &check, Alerts &alerts,
                    bool debugMode, std::function<void(bool passed)> done);
    static void run(BurnOperation operation, bool listIsEmpty, const SizeEstimate &size,
                    const MediumCheckFn &check, Alerts &alerts, bool debugMode,
                    std::function<void(bool passed)> done);
};
