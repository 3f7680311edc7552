#include "burn/BurnChecks.h"

#include "app/Alerts.h"

void BurnChecks::run(BurnOperation operation, bool listIsEmpty, const MediumProbe &probe, Alerts &alerts,
                     bool debugMode, std::function<void(bool passed)> done)
{
    const BurnTexts texts = BurnMessages::forOperation(operation);
    Alerts *shown = &alerts;
    auto finish = [done](bool passed) {
        if (done)
            done(passed);
    };

    if (listIsEmpty) {
        shown->close(texts.emptyListMessage, texts.emptyListInformative);
        finish(false);
        return;
    }

    auto checkFamily = [probe, shown, texts, debugMode, finish] {
        probe.TypeOfMediaInTheDrive([shown, texts, debugMode, finish](const QString &kind) {
            if (kind != texts.family) {
                shown->close(texts.wrongMediumMessage, texts.wrongMediumInformative);
                if (debugMode)
                    shown->close(kind, texts.debugCode);
                finish(false);
                return;
            }
            finish(true);
        });
    };

    auto checkWritable = [probe, shown, finish, checkFamily] {
        probe.IsMediaOneTimeWritable([probe, shown, finish, checkFamily](bool oneTime) {
            if (oneTime) {
                checkFamily();
                return;
            }
            probe.IsMediaReWritable([shown, finish, checkFamily](bool reWritable) {
                if (!reWritable) {
                    shown->close(BurnMessages::NotWritableMessage, BurnMessages::NotWritableInformative);
                    finish(false);
                    return;
                }
                checkFamily();
            });
        });
    };

    probe.IsDriveEmpty([shown, finish, checkWritable](bool empty) {
        if (empty) {
            shown->close(BurnMessages::NoDiscMessage, BurnMessages::NoDiscInformative);
            finish(false);
            return;
        }
        checkWritable();
    });
}
