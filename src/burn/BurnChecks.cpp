#include "burn/BurnChecks.h"

#include "platform/Alerts.h"
#include "burn/DiscRoom.h"
#include "toolrun/ToolMessages.h"

void BurnChecks::run(BurnOperation operation, bool listIsEmpty, const MediumCheckFn &check, Alerts &alerts,
                     bool debugMode, std::function<void(bool passed)> done)
{
    run(operation, listIsEmpty, SizeEstimate{}, check, alerts, debugMode, std::move(done));
}

void BurnChecks::run(BurnOperation operation, bool listIsEmpty, const SizeEstimate &size,
                     const MediumCheckFn &check, Alerts &alerts, bool debugMode,
                     std::function<void(bool passed)> done)
{
    const BurnTexts texts = BurnMessages::forOperation(operation);
    auto finish = [done](bool passed) {
        if (done)
            done(passed);
    };
    if (listIsEmpty) {
        alerts.close(texts.emptyListMessage, texts.emptyListInformative);
        finish(false);
        return;
    }
    Alerts *shown = &alerts;
    check(MediumNeed::Writable, texts.family, size, [shown, texts, debugMode, finish](const MediumCheck &c) {
        switch (c.result) {
        case MediumCheck::Ok:
            finish(true);
            return;
        case MediumCheck::NoDisc:
            shown->close(BurnMessages::NoDiscMessage, BurnMessages::NoDiscInformative);
            break;
        case MediumCheck::NotWritable:
        case MediumCheck::NotRewritable:
            shown->close(BurnMessages::NotWritableMessage, BurnMessages::NotWritableInformative);
            break;
        case MediumCheck::WrongFamily:
            shown->close(texts.wrongMediumMessage, texts.wrongMediumInformative);
            if (debugMode)
                shown->close(c.detectedFamily, texts.debugCode);
            break;
        case MediumCheck::NoAnswer:
            shown->show(ToolMessages::driveDidNotAnswer(c.status.verdict));
            break;
        case MediumCheck::NoRoom:
            shown->show(DiscRoom::noRoom(c.needed, c.freeSectors, DiscRoom::Subject::Compilation));
            break;
        }
        finish(false);
    });
}
