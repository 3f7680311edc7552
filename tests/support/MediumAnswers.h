#pragma once
// Four answers about the medium, one callback each, turned into the medium
// check chain the operations use: the questions are asked in the chain's
// order (disc there, write-once, rewritable only when write-once said no,
// then the family), so a test can record which ones were asked.
#include <functional>

#include "drives/MediaQuestions.h"

struct MediumProbe {
    std::function<void(std::function<void(bool)>)> IsDriveEmpty;
    std::function<void(std::function<void(bool)>)> IsMediaOneTimeWritable;
    std::function<void(std::function<void(bool)>)> IsMediaReWritable;
    std::function<void(std::function<void(QString)>)> TypeOfMediaInTheDrive;
};

inline MediumCheckFn asCheck(const MediumProbe &probe)
{
    return [probe](MediumNeed need, const QString &family, std::function<void(const MediumCheck &)> done) {
        auto finish = [done](MediumCheck::Result r, const QString &detected = QString()) {
            MediumCheck c;
            c.result = r;
            c.detectedFamily = detected;
            done(c);
        };
        auto askFamily = [probe, family, finish] {
            if (family.isEmpty()) {
                finish(MediumCheck::Ok);
                return;
            }
            probe.TypeOfMediaInTheDrive([family, finish](const QString &kind) {
                finish(kind == family ? MediumCheck::Ok : MediumCheck::WrongFamily, kind);
            });
        };
        probe.IsDriveEmpty([probe, need, finish, askFamily](bool empty) {
            if (empty) {
                finish(MediumCheck::NoDisc);
                return;
            }
            if (need == MediumNeed::Disc) {
                finish(MediumCheck::Ok);
                return;
            }
            if (need == MediumNeed::Rewritable) {
                probe.IsMediaReWritable([finish, askFamily](bool re) {
                    if (!re)
                        finish(MediumCheck::NotRewritable);
                    else
                        askFamily();
                });
                return;
            }
            probe.IsMediaOneTimeWritable([probe, finish, askFamily](bool once) {
                if (once) {
                    askFamily();
                    return;
                }
                probe.IsMediaReWritable([finish, askFamily](bool re) {
                    if (!re)
                        finish(MediumCheck::NotWritable);
                    else
                        askFamily();
                });
            });
        });
    };
}
