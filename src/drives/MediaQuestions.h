#pragma once
#include <QObject>
#include <QString>
#include <functional>

#include "drives/DriveBackend.h"

class Alerts;

// The result of the medium check every burn makes before it starts.
struct MediumCheck {
    enum Result { Ok, NoDisc, NotWritable, WrongFamily, NotRewritable, NoAnswer, NoRoom };
    Result result = Ok;
    QString detectedFamily;  // what TypeOfMediaInTheDrive answered, when it was asked
    MediaStatus status;      // the last status read (NoAnswer: why there was none)
    // The room check, when one was asked for and reached: what the burn
    // needs, and the room the medium has left (when the drive told it).
    DiscSize needed;
    bool roomKnown = false;
    qint64 freeSectors = 0;
};

// What an operation needs of the medium before it starts.
enum class MediumNeed {
    Disc,        // a disc in the drive (disc copy, disc info)
    Writable,    // write-once, or else rewritable (every burn)
    Rewritable,  // rewritable (erasing)
};

// What a burn will put on the medium, worked out only once the medium has
// passed its other checks (a data disc walks its folders for it): the
// estimate hands its size to the callback, later or at once. A null
// estimate asks for no room check.
using SizeEstimate = std::function<void(std::function<void(const DiscSize &)> sized)>;

// The one medium check chain every operation uses.
using MediumCheckFn = std::function<void(MediumNeed need, const QString &family, const SizeEstimate &size,
                                         std::function<void(const MediumCheck &)> done)>;

// The four questions about the medium in the current drive. Each question
// runs one status query of its own (nothing is cached) and answers later,
// through its callback, without blocking the caller.
//
// In debug mode a NO to the writable questions is explained first: an alert
// whose message is the whole status text and whose informative text is
// "Warning 0030." (write-once) or "Warning 0040." (rewritable), with one
// button "OK".
class MediaQuestions : public QObject {
    Q_OBJECT
public:
    MediaQuestions(DriveBackend &backend, Alerts &alerts, std::function<bool()> debugMode,
                   std::function<Object_Optical_Drive()> currentDrive, QObject *parent = nullptr);

    void IsDriveEmpty(std::function<void(bool)> done);
    void IsMediaOneTimeWritable(std::function<void(bool)> done);
    void IsMediaReWritable(std::function<void(bool)> done);
    void TypeOfMediaInTheDrive(std::function<void(QString)> done);

    // The questions of the medium check chain, stopping at the first
    // failure: a disc must be in the drive (else NoDisc); for Writable it
    // must be write-once, or else rewritable, the second asked only when the
    // first says no (else NotWritable); for Rewritable, rewritable (else
    // NotRewritable); and when `family` is not empty, TypeOfMediaInTheDrive
    // must equal it (else WrongFamily). Up to four status queries. A status
    // query that gets no answer (a hung drive, a missing tool) ends the
    // chain with NoAnswer at once. What the user is told of a refusal is
    // MediumChecks' part.
    //
    // With a size estimate, last of all the room: the estimate is worked
    // out, then the drive is asked how many sectors the medium has left
    // (one free-space query); more sectors needed than left ends the chain
    // with NoRoom. A drive that does not answer ends it with NoAnswer; one
    // that answers without a figure lets the burn go on (the recorder is
    // then the judge).
    void check(MediumNeed need, const QString &family, std::function<void(MediumCheck)> done);
    void check(MediumNeed need, const QString &family, const SizeEstimate &size,
               std::function<void(MediumCheck)> done);
    MediumCheckFn checker();

private:
    void ask(std::function<void(const MediaStatus &)> answer);
    void askAnswered(std::function<void(MediumCheck)> done, std::function<void(const MediaStatus &)> answer);
    void explainNo(const MediaStatus &status, const QString &warning);
    void askWritable(const QString &family, std::function<void(MediumCheck)> done);
    void askRewritable(const QString &family, MediumCheck::Result refusal, std::function<void(MediumCheck)> done);
    void askFamily(const QString &family, const MediaStatus &last, std::function<void(MediumCheck)> done);
    void checkRoom(const MediumCheck &passed, const SizeEstimate &size, std::function<void(MediumCheck)> done);

    DriveBackend &m_backend;
    Alerts &m_alerts;
    std::function<bool()> m_debugMode;
    std::function<Object_Optical_Drive()> m_currentDrive;
};
