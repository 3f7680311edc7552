#include "drives/MediaQuestions.h"

#include <QPointer>

#include "platform/Alerts.h"

MediaQuestions::MediaQuestions(DriveBackend &backend, Alerts &alerts, std::function<bool()> debugMode,
                               std::function<Object_Optical_Drive()> currentDrive, QObject *parent)
    : QObject(parent), m_backend(backend), m_alerts(alerts), m_debugMode(std::move(debugMode)),
      m_currentDrive(std::move(currentDrive))
{
}

void MediaQuestions::ask(std::function<void(const MediaStatus &)> answer)
{
    const Object_Optical_Drive drive = m_currentDrive ? m_currentDrive() : Object_Optical_Drive{};
    QPointer<MediaQuestions> self(this);
    m_backend.queryStatus(drive, [self, answer = std::move(answer)](const MediaStatus &status) {
        if (self)
            answer(status);
    });
}

void MediaQuestions::explainNo(const MediaStatus &status, const QString &warning)
{
    if (!m_debugMode || !m_debugMode())
        return;
    AlertRequest request;
    request.messageText = status.text;
    request.informativeText = warning;
    request.buttons = QStringList{QStringLiteral("OK")};
    m_alerts.show(request);
}

void MediaQuestions::IsDriveEmpty(std::function<void(bool)> done)
{
    ask([done = std::move(done)](const MediaStatus &status) {
        if (done)
            done(status.answers.driveEmpty);
    });
}

void MediaQuestions::IsMediaOneTimeWritable(std::function<void(bool)> done)
{
    ask([this, done = std::move(done)](const MediaStatus &status) {
        const bool yes = status.answers.oneTimeWritable;
        if (!yes)
            explainNo(status, QStringLiteral("Warning 0030."));
        if (done)
            done(yes);
    });
}

void MediaQuestions::IsMediaReWritable(std::function<void(bool)> done)
{
    ask([this, done = std::move(done)](const MediaStatus &status) {
        const bool yes = status.answers.reWritable;
        if (!yes)
            explainNo(status, QStringLiteral("Warning 0040."));
        if (done)
            done(yes);
    });
}

void MediaQuestions::TypeOfMediaInTheDrive(std::function<void(QString)> done)
{
    ask([done = std::move(done)](const MediaStatus &status) {
        if (done)
            done(status.answers.family);
    });
}

MediumCheckFn MediaQuestions::checker()
{
    QPointer<MediaQuestions> self(this);
    return [self](MediumNeed need, const QString &family, const SizeEstimate &size,
                  std::function<void(const MediumCheck &)> done) {
        if (self)
            self->check(need, family, size, [done](MediumCheck c) {
                if (done)
                    done(c);
            });
    };
}

void MediaQuestions::check(MediumNeed need, const QString &family, const SizeEstimate &size,
                           std::function<void(MediumCheck)> done)
{
    if (!size) {
        check(need, family, std::move(done));
        return;
    }
    QPointer<MediaQuestions> self(this);
    check(need, family, [self, size, done](MediumCheck c) {
        if (c.result != MediumCheck::Ok || !self) {
            if (done)
                done(c);
            return;
        }
        self->checkRoom(c, size, done);
    });
}

// The last link of the chain: the size of the burn against the room left.
void MediaQuestions::checkRoom(const MediumCheck &passed, const SizeEstimate &size,
                               std::function<void(MediumCheck)> done)
{
    QPointer<MediaQuestions> self(this);
    size([self, passed, done](const DiscSize &needed) {
        if (!self)
            return;
        const Object_Optical_Drive drive = self->m_currentDrive ? self->m_currentDrive() : Object_Optical_Drive{};
        self->m_backend.queryFreeSpace(drive, [self, passed, needed, done](const MediaSpace &space) {
            if (!self)
                return;
            MediumCheck c = passed;
            c.needed = needed;
            if (!space.answered) {
                c.result = MediumCheck::NoAnswer;
                c.status.answered = false;
                c.status.text.clear();
                c.status.verdict = space.verdict;
            } else if (space.known) {
                c.roomKnown = true;
                c.freeSectors = space.freeSectors;
                if (needed.sectors > space.freeSectors)
                    c.result = MediumCheck::NoRoom;
            }
            if (done)
                done(c);
        });
    });
}

// One question of the chain: its status, or the end of the chain with
// NoAnswer when the drive said nothing.
void MediaQuestions::askAnswered(std::function<void(MediumCheck)> done,
                                 std::function<void(const MediaStatus &)> answer)
{
    ask([done, answer = std::move(answer)](const MediaStatus &status) {
        if (!status.answered) {
            MediumCheck c;
            c.result = MediumCheck::NoAnswer;
            c.status = status;
            if (done)
                done(c);
            return;
        }
        answer(status);
    });
}

static void answer(const std::function<void(MediumCheck)> &done, MediumCheck::Result result,
                   const MediaStatus &status, const QString &detected = QString())
{
    MediumCheck c;
    c.result = result;
    c.status = status;
    c.detectedFamily = detected;
    if (done)
        done(c);
}

void MediaQuestions::check(MediumNeed need, const QString &family, std::function<void(MediumCheck)> done)
{
    QPointer<MediaQuestions> self(this);
    askAnswered(done, [self, need, family, done](const MediaStatus &status) {
        if (status.answers.driveEmpty)
            answer(done, MediumCheck::NoDisc, status);
        else if (!self || need == MediumNeed::Disc)
            answer(done, MediumCheck::Ok, status);
        else if (need == MediumNeed::Rewritable)
            self->askRewritable(family, MediumCheck::NotRewritable, done);
        else
            self->askWritable(family, done);
    });
}

// Write-once, or else rewritable: the second asked only when the first says no.
void MediaQuestions::askWritable(const QString &family, std::function<void(MediumCheck)> done)
{
    QPointer<MediaQuestions> self(this);
    askAnswered(done, [self, family, done](const MediaStatus &s) {
        if (!self)
            return;
        if (s.answers.oneTimeWritable) {
            self->askFamily(family, s, done);
            return;
        }
        self->explainNo(s, QStringLiteral("Warning 0030."));
        if (self)
            self->askRewritable(family, MediumCheck::NotWritable, done);
    });
}

void MediaQuestions::askRewritable(const QString &family, MediumCheck::Result refusal,
                                   std::function<void(MediumCheck)> done)
{
    QPointer<MediaQuestions> self(this);
    askAnswered(done, [self, family, refusal, done](const MediaStatus &s) {
        if (!self)
            return;
        if (!s.answers.reWritable) {
            self->explainNo(s, QStringLiteral("Warning 0040."));
            answer(done, refusal, s);
            return;
        }
        self->askFamily(family, s, done);
    });
}

void MediaQuestions::askFamily(const QString &family, const MediaStatus &last, std::function<void(MediumCheck)> done)
{
    if (family.isEmpty()) {
        answer(done, MediumCheck::Ok, last);
        return;
    }
    askAnswered(done, [family, done](const MediaStatus &status) {
        const QString detected = status.answers.family;
        answer(done, detected == family ? MediumCheck::Ok : MediumCheck::WrongFamily, status, detected);
    });
}
