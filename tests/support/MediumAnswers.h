#pragma once
// Four answers about the medium, one callback each, turned into the medium
// check chain the operations use: the questions are asked in the chain's
// order (disc there, write-once, rewritable only when write-once said no,
// then the family, then the room when a size is asked for), so a test can
// record which ones were asked. Without a FreeSpace answer the room is not
// known and every size passes.
#include <functional>

#include "drives/MediaQuestions.h"

struct MediumProbe {
    std::function<void(std::function<void(bool)>)> IsDriveEmpty;
    std::function<void(std::function<void(bool)>)> IsMediaOneTimeWritable;
    std::function<void(std::function<void(bool)>)> IsMediaReWritable;
    std::function<void(std::function<void(QString)>)> TypeOfMediaInTheDrive;
    std::function<void(std::function<void(qint64 freeSectors)>)> FreeSpace;  // optional
};

inline MediumCheckFn asCheck(const MediumProbe &probe)
{
    return [probe](MediumNeed need, const QString &family, const SizeEstimate &size,
                   std::function<void(const MediumCheck &)> done) {
        auto finish = [probe, size, done](MediumCheck::Result r, const QString &detected = QString()) {
            MediumCheck c;
            c.result = r;
            c.detectedFamily = detected;
            if (r != MediumCheck::Ok || !size || !probe.FreeSpace) {
                done(c);
                return;
            }
            size([probe, c, done](const DiscSize &needed) {
                probe.FreeSpace([c, needed, done](qint64 freeSectors) {
                    MediumCheck room = c;
                    room.needed = needed;
                    room.roomKnown = true;
                    room.freeSectors = freeSectors;
                    if (needed.sectors > freeSectors)
                        room.result = MediumCheck::NoRoom;
                    done(room);
                });
            });
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
