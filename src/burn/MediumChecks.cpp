#include "burn/MediumChecks.h"

#include "toolrun/ToolMessages.h"

AlertRequest MediumRefusals::closeAlert(const QString &message, const QString &informative)
{
    AlertRequest r;
    r.messageText = message;
    r.informativeText = informative;
    return r;
}

MediumRefusals MediumRefusals::forBlank(DiscRoom::Subject room)
{
    MediumRefusals r;
    r.noDisc = closeAlert(BurnMessages::NoDiscMessage, BurnMessages::NoDiscInformative);
    r.notWritable = closeAlert(BurnMessages::NotWritableMessage, BurnMessages::NotWritableInformative);
    r.room = room;
    return r;
}

MediumRefusals MediumRefusals::forBurn(BurnOperation operation)
{
    const BurnTexts texts = BurnMessages::forOperation(operation);
    MediumRefusals r = forBlank(DiscRoom::Subject::Compilation);
    r.wrongMedium = closeAlert(texts.wrongMediumMessage, texts.wrongMediumInformative);
    r.debugCode = texts.debugCode;
    return r;
}

void MediumChecks::run(const MediumCheckFn &check, Alerts &alerts, MediumNeed need, const QString &family,
                       const SizeEstimate &size, const MediumRefusals &refusals, bool debugMode,
                       std::function<void(bool passed)> done)
{
    Alerts *shown = &alerts;
    check(need, family, size, [shown, refusals, debugMode, done](const MediumCheck &c) {
        switch (c.result) {
        case MediumCheck::Ok:
            break;
        case MediumCheck::NoDisc:
            shown->show(refusals.noDiscNow ? refusals.noDiscNow() : refusals.noDisc);
            break;
        case MediumCheck::NotWritable:
        case MediumCheck::NotRewritable:
            shown->show(refusals.notWritable);
            break;
        case MediumCheck::WrongFamily:
            shown->show(refusals.wrongMedium);
            if (debugMode && !refusals.debugCode.isEmpty())
                shown->close(c.detectedFamily, refusals.debugCode);
            break;
        case MediumCheck::NoAnswer:
            shown->show(ToolMessages::driveDidNotAnswer(c.status.verdict));
            break;
        case MediumCheck::NoRoom:
            shown->show(DiscRoom::noRoom(c.needed, c.freeSectors, refusals.room));
            break;
        }
        if (done)
            done(c.result == MediumCheck::Ok);
    });
}

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
    if (listIsEmpty) {
        alerts.close(texts.emptyListMessage, texts.emptyListInformative);
        if (done)
            done(false);
        return;
    }
    MediumChecks::run(check, alerts, MediumNeed::Writable, texts.family, size, MediumRefusals::forBurn(operation),
                      debugMode, std::move(done));
}
