#pragma once
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include "platform/Alerts.h"
#include "burn/BurnMessages.h"
#include "compilation/NodeMediaFile.h"
#include "drives/MediaQuestions.h"

// How much room a burn needs on the disc, worked out before anything is
// transcoded, staged or copied, and what the user reads when it does not
// fit. Everything is counted in the disc's sectors (see DiscSize): the
// estimates round up, so that what is said to fit does fit.
namespace DiscRoom {

// ---- audio CD: by playing time --------------------------------------------
// A second of CD audio is 75 sectors of 2352 bytes (44 100 stereo 16-bit
// samples), so a 74-minute CD holds 74 * 60 * 75 = 333 000 sectors. The
// listed durations are summed as they are; track gaps are the recorder's
// business and are not counted.
inline constexpr qint64 AudioSectorsPerSecond = 75;
DiscSize audioCD(const QList<qint64> &secondsPerFile);

// ---- the file system of a data disc ---------------------------------------
// What one walk of the folders found.
struct TreeCensus {
    quint64 files = 0;        // plain files
    quint64 folders = 0;      // folders, the listed ones included
    quint64 others = 0;       // links and special files: a directory entry, no data
    quint64 bytes = 0;        // the files' bytes
    quint64 dataSectors = 0;  // the files' bytes, each file rounded up to whole sectors

    void addFile(quint64 size);
    quint64 entries() const { return files + folders + others; }
};

// The sectors an ISO 9660 file system with Rock Ridge and Joliet (as
// xorriso writes it, and as drutil and hdiutil write their hybrids) takes
// for `tree`. The rule, every part rounded up:
//   - each file's data in whole sectors (a file never shares a sector);
//   - 1 sector per 2 entries for the directory records: an entry has a
//     record in the ISO tree (at most 34 bytes and a 31-character name,
//     then its Rock Ridge fields: attributes, time stamps and the whole
//     name, up to 255 bytes, partly in a continuation area) and one in the
//     Joliet tree (34 bytes and up to 64 UCS-2 characters), together under
//     1 KiB, and records never cross a sector's end;
//   - 3 sectors per folder: its own extent in each of the two trees, and
//     its lines in the four path tables;
//   - 256 sectors (512 KiB) for the volume: 16 sectors of system area, the
//     primary and Joliet volume descriptors and the terminator, the root
//     folders, the checksum tags, and xorriso's 300 KiB of padding after
//     the session, with room to spare.
// Sessions already on an appendable disc are not counted: the drive's free
// space is what they left.
inline constexpr qint64 VolumeSectors = 256;
inline constexpr qint64 EntriesPerSector = 2;
inline constexpr qint64 SectorsPerFolder = 3;
DiscSize fileSystem(const TreeCensus &tree);

// Walks the listed folders (hidden entries included; links are entries, not
// followed, as the recorders keep them). Blocks: worker threads only.
TreeCensus census(const QStringList &folders);

// ---- MP3 discs: 192 kbit/s -------------------------------------------------
// An MP3 of `seconds` at the transcoder's 192 kbit/s: 24 000 bytes a second,
// one more second for the fraction the listed whole seconds leave out, and
// 4 KiB for its headers.
inline constexpr qint64 Mp3BitsPerSecond = 192000;
qint64 mp3Bytes(qint64 seconds);
DiscSize mp3Disc(const QList<qint64> &secondsPerFile);

// ---- video discs: the DVD preset's rates ----------------------------------
// The DVD presets ("-target ntsc-dvd" / "pal-dvd") encode the picture at
// 6000 kbit/s on average and the sound at 448 kbit/s (AC-3), or at the
// 384 kbit/s the MP2 sound is given (TranscodeArguments); the program
// stream's pack and packet headers add about 2 %. One more second per file
// for the fraction the listed whole seconds leave out.
inline constexpr qint64 VideoBitsPerSecond = 6000000;
inline constexpr qint64 Ac3BitsPerSecond = 448000;
inline constexpr qint64 Mp2BitsPerSecond = 384000;
qint64 videoBytes(qint64 seconds, const QString &audioFormat);  // "0": AC-3, else MP2
DiscSize videoDisc(const QList<qint64> &secondsPerFile, const QString &audioFormat);

// ---- images and copies ----------------------------------------------------
// An image is written as it is: its bytes, in whole sectors.
DiscSize imageFile(qint64 bytes);

// ---- the estimates the check chain asks for --------------------------------
// A media burn's size from its list (audio CD, MP3 or video disc).
SizeEstimate forMediaBurn(BurnOperation operation, const QList<NodeMediaFile> &files,
                          const QString &audioFormat);
// A data disc's: the folders are walked on a worker; the size comes back
// on `receiver`'s thread (never when the receiver is gone).
SizeEstimate forFolders(const QStringList &folders, QObject *receiver);
// An image file's (its size, read when asked).
SizeEstimate forImage(const QString &imagePath);

// ---- what the user reads --------------------------------------------------
enum class Subject { Compilation, Image, Copy };

// "Not enough room on the disc", with the estimated size and the room left:
//   "The compilation needs about 812.34 MB, but the disc has room for
//    702.82 MB only. Remove some items from the list, or insert a disc with
//    more room, and try again."
// An audio CD tells playing times instead ("about 75:10 of audio ... room
// for 74:00 only"). Sizes as in the lists (Measurements::sizeText).
inline const QString NoRoomMessage = QStringLiteral("Not enough room on the disc");
AlertRequest noRoom(const DiscSize &needed, qint64 freeSectors, Subject subject);

// "m:ss" of whole audio sectors (rounded up for a need, down for a room).
QString playingTime(qint64 sectors, bool roundUp);

} // namespace DiscRoom
