#pragma once
// A drive backend whose drives and medium the test sets, and that notes every
// call it gets in `calls`. Every query answers later, from the event loop, as
// the real backends do.
//
// The same medium also answers the medium check chain of the burns directly
// (check()), at once and without a status query: there each of the four
// questions is noted by its name, in the chain's order.
#include <QStringList>
#include <QTimer>
#include <functional>
#include <memory>

#include "drives/DriveBackend.h"
#include "drives/MediaQuestions.h"
#include "support/DriveQueries.h"

class FakeDriveBackend : public DriveBackend {
public:
    DriveList drives;    // what every listing answers
    MediaStatus status;  // what every status query answers
    MediaSpace space;    // what every free-space query answers (not known unless set)
    // A real backend (xorriso on a pseudo-drive) that answers the free-space
    // queries instead of `space`, when set.
    DriveBackend *spaceFrom = nullptr;
    // Runs after each eject is noted: a test puts the next disc in here.
    std::function<void()> onEject;
    ToolCommand erase{QStringLiteral("/bin/true"), {}};

    // "list", "status N", "space N", "eject N", "close N", "erase full N",
    // "erase quick N"; from check(): "IsDriveEmpty", "IsMediaOneTimeWritable",
    // "IsMediaReWritable", "TypeOfMediaInTheDrive".
    QStringList calls;

    FakeDriveBackend() = default;
    explicit FakeDriveBackend(const MediaStatus &medium) : status(medium) {}

    // --- media

    static MediaStatus medium(bool empty, bool writable, bool rewritable, const QString &family,
                              const QString &text = QStringLiteral("Type: fake\n"))
    {
        MediaStatus s;
        s.text = text;
        s.answers.driveEmpty = empty;
        s.answers.oneTimeWritable = writable;
        s.answers.reWritable = rewritable;
        s.answers.family = family;
        return s;
    }
    // A blank write-once disc of `family` ("CD", "DVD", "BD"): a CD-R, a DVD-R.
    static MediaStatus blank(const QString &family) { return medium(false, true, false, family); }
    // A rewritable disc that is not blank: a CD-RW, a DVD+RW with data.
    static MediaStatus rewritable(const QString &family) { return medium(false, false, true, family); }
    // A disc that takes no more writing: a pressed or closed one.
    static MediaStatus finished(const QString &family) { return medium(false, false, false, family); }
    static MediaStatus noDisc() { return medium(true, false, false, QStringLiteral("Other")); }
    // A drive whose tool did not answer at all (hung, missing).
    static MediaStatus noAnswer()
    {
        MediaStatus s;
        s.answered = false;
        return s;
    }

    // Room for `sectors` more sectors on the medium.
    void setFreeSectors(qint64 sectors)
    {
        space.known = true;
        space.freeSectors = sectors;
    }

    // How many calls start with `prefix` ("status", "eject" ...).
    int count(const QString &prefix) const
    {
        int n = 0;
        for (const QString &c : calls)
            n += c.startsWith(prefix) ? 1 : 0;
        return n;
    }

    // --- DriveBackend

    void listDrives(ListCallback done) override
    {
        calls << QStringLiteral("list");
        const DriveList now = drives;
        QTimer::singleShot(0, this, [done, now] { done(now); });
    }
    void queryStatus(const Object_Optical_Drive &d, StatusCallback done) override
    {
        calls << QStringLiteral("status ") + d.s_Drive_Number;
        const MediaStatus now = status;
        QTimer::singleShot(0, this, [done, now] { done(now); });
    }
    void queryFreeSpace(const Object_Optical_Drive &d, SpaceCallback done) override
    {
        calls << QStringLiteral("space ") + d.s_Drive_Number;
        if (spaceFrom) {
            spaceFrom->queryFreeSpace(d, std::move(done));
            return;
        }
        const MediaSpace now = space;
        QTimer::singleShot(0, this, [done, now] { done(now); });
    }
    void ejectTray(const Object_Optical_Drive &d) override
    {
        calls << QStringLiteral("eject ") + d.s_Drive_Number;
        if (onEject)
            onEject();
    }
    void closeTray(const Object_Optical_Drive &d) override { calls << QStringLiteral("close ") + d.s_Drive_Number; }
    ToolCommand eraseCommand(const Object_Optical_Drive &d, bool full) const override
    {
        const_cast<FakeDriveBackend *>(this)->calls
            << QStringLiteral("erase %1 %2").arg(full ? QStringLiteral("full") : QStringLiteral("quick"), d.s_Drive_Number);
        return erase;
    }
    ToolCommand discInfoCommand(const Object_Optical_Drive &) const override { return {}; }

    // --- the medium check chain, answered from `status`

    // The questions are asked in the chain's order (disc there, write-once,
    // rewritable only when write-once said no, then the family); the room is
    // not asked, so every size passes. Each answer is read from `status` when
    // its question comes.
    MediumCheckFn check()
    {
        return [this](MediumNeed need, const QString &family, const SizeEstimate &,
                      std::function<void(const MediumCheck &)> done) {
            auto finish = [done](MediumCheck::Result r, const QString &detected = QString()) {
                MediumCheck c;
                c.result = r;
                c.detectedFamily = detected;
                done(c);
            };
            auto askFamily = [this, family, finish] {
                if (family.isEmpty()) {
                    finish(MediumCheck::Ok);
                    return;
                }
                const QString kind = ask(QStringLiteral("TypeOfMediaInTheDrive")).family;
                finish(kind == family ? MediumCheck::Ok : MediumCheck::WrongFamily, kind);
            };
            if (ask(QStringLiteral("IsDriveEmpty")).driveEmpty) {
                finish(MediumCheck::NoDisc);
                return;
            }
            if (need == MediumNeed::Disc) {
                finish(MediumCheck::Ok);
                return;
            }
            if (need == MediumNeed::Writable && ask(QStringLiteral("IsMediaOneTimeWritable")).oneTimeWritable) {
                askFamily();
                return;
            }
            if (!ask(QStringLiteral("IsMediaReWritable")).reWritable) {
                finish(need == MediumNeed::Rewritable ? MediumCheck::NotRewritable : MediumCheck::NotWritable);
                return;
            }
            askFamily();
        };
    }

    // The same chain of a drive that holds `medium` throughout, for a test
    // that does not read the calls.
    static MediumCheckFn checkOf(const MediaStatus &medium)
    {
        auto drive = std::make_shared<FakeDriveBackend>(medium);
        return [drive](MediumNeed need, const QString &family, const SizeEstimate &size,
                       std::function<void(const MediumCheck &)> done) {
            drive->check()(need, family, size, std::move(done));
        };
    }

private:
    MediaAnswers ask(const QString &question)
    {
        calls << question;
        return status.answers;
    }
};
