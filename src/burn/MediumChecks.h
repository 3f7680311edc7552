#pragma once
#include <QString>
#include <functional>

#include "burn/BurnMessages.h"
#include "burn/DiscRoom.h"
#include "drives/MediaQuestions.h"
#include "platform/Alerts.h"

// What an operation says when the medium in the drive is refused: the texts
// are each operation's own, the order of the checks is the same for all.
struct MediumRefusals {
    AlertRequest noDisc;       // the drive is empty
    // When set, the no-disc alert as it stands once the drive has answered
    // (a drive the user may not open reads as empty: it says why instead).
    std::function<AlertRequest()> noDiscNow;
    AlertRequest notWritable;  // neither write-once nor rewritable (erasing: not rewritable)
    AlertRequest wrongMedium;  // not the operation's family
    // Debug mode: after the wrong-medium alert, a second one titled with the
    // kind read and carrying this code (none when empty).
    QString debugCode;
    DiscRoom::Subject room = DiscRoom::Subject::Compilation;  // who needs the room

    // A blank to write on: "No disc", "Media not writable", the room counted
    // for `room`. The media burns add their family's wrong-medium alert.
    static MediumRefusals forBlank(DiscRoom::Subject room);
    static MediumRefusals forBurn(BurnOperation operation);
    // An alert of one message and one button "Close".
    static AlertRequest closeAlert(const QString &message, const QString &informative);
};

// The one medium check chain, for every operation that needs a disc: the
// questions of MediaQuestions::check (a disc; writable, or rewritable; the
// family; the room), and the first refusal told in its alert, one button
// "Close": MediumRefusals' text, "Not enough room on the disc" with the sizes
// (DiscRoom::noRoom), or the drive that did not answer (that, never "No
// disc"). `done(true)` when all passed, `done(false)` after the refusal.
namespace MediumChecks {
void run(const MediumCheckFn &check, Alerts &alerts, MediumNeed need, const QString &family,
         const SizeEstimate &size, const MediumRefusals &refusals, bool debugMode,
         std::function<void(bool passed)> done);
}

// The checks before a media burn, in their fixed order: the list is not
// empty (the drive is not even asked), then the chain above with the burn's
// family, texts and size.
class BurnChecks {
public:
    static void run(BurnOperation operation, bool listIsEmpty, const MediumCheckFn &check, Alerts &alerts,
                    bool debugMode, std::function<void(bool passed)> done);
    static void run(BurnOperation operation, bool listIsEmpty, const SizeEstimate &size,
                    const MediumCheckFn &check, Alerts &alerts, bool debugMode,
                    std::function<void(bool passed)> done);
};
