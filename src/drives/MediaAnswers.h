#pragma once
#include <QString>

#include "toolrun/ToolVerdict.h"

// What the medium in a drive is, as read from one status query.
struct MediaAnswers {
    bool driveEmpty = false;       // IsDriveEmpty
    bool oneTimeWritable = false;  // IsMediaOneTimeWritable ("writable": blank or appendable)
    bool reWritable = false;       // IsMediaReWritable
    QString family = QStringLiteral("Other");  // TypeOfMediaInTheDrive: "DVD", "CD", "BD" or "Other"
};

// The full text of one status query and what it says.
struct MediaStatus {
    QString text;      // everything the tool printed (stdout and stderr), unchanged
    MediaAnswers answers;
    // False when the tool did not answer at all: it hung past its time
    // limit, or could not be started. The answers then mean nothing.
    bool answered = true;
    ToolVerdict verdict;
};

// How much a burn puts on a disc, in the disc's own sectors: 2048 bytes of
// data each, or 2352 bytes of sound on an audio CD (a sector is 1/75 s of
// audio there). Free space is counted in the same sectors, so the two
// compare whole.
struct DiscSize {
    static constexpr int DataSectorBytes = 2048;
    static constexpr int AudioSectorBytes = 2352;

    qint64 sectors = 0;
    int sectorBytes = DataSectorBytes;

    qint64 bytes() const { return sectors * sectorBytes; }
    bool isAudio() const { return sectorBytes == AudioSectorBytes; }
};

// The room left on the medium in a drive, from one free-space query.
struct MediaSpace {
    // False when the tool did not answer at all (hung, missing); the rest
    // then means nothing.
    bool answered = true;
    // False when the answer names no free space (a tool or medium that does
    // not say): nothing is known about the room.
    bool known = false;
    qint64 freeSectors = 0;  // sectors that may still be written
    QString text;            // everything the tool printed
    ToolVerdict verdict;
};
