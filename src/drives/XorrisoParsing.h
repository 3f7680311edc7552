#pragma once
#include <QString>
#include <QStringList>
#include <optional>

#include "drives/MediaAnswers.h"
#include "drives/Object_Optical_Drive.h"
#include "toolrun/ToolCommand.h"

// Reading what Linux's xorriso prints, and the command lines that make it
// print it.
namespace XorrisoParsing {

// `xorriso -devices`: one row per drive between two dashed rules,
//   "0  -dev '/dev/sr0' rwrw-- :  'TSSTcorp' 'DVD+-RW TS-L633J' "
// A drive's number is its position among the rows, from "1" (xorriso's own
// index starts at 0 and is not used); vendor and model are the two quoted
// fields, trimmed; the device path is the quoted address after -dev.
// "No drives found", empty text and lines of any other shape give no drive.
DriveList parseDevices(const QString &text);

// The read-only status query of the medium in `device`:
//   xorriso -drive_access shared:readonly -outdev DEVICE -toc
// -outdev acquires the drive without loading an ISO tree; "readonly" forbids
// blanking, formatting, writing and ejecting on it, and "shared" lets it look
// at a drive whose disc the desktop has mounted. The query does not create a
// stdio: file that is not there.
ToolCommand statusCommand(const QString &xorriso, const QString &device);

// The read-only query of the room left on the medium in `device`:
//   xorriso -drive_access shared:readonly -outdev DEVICE -tell_media_space
// It prints "Media space  : 41107816s" (and "After commit : ..."), in
// 2048-byte sectors. On a stdio: pseudo-drive that is a file, the figure
// is the free space of the file system holding it (plus what the file
// already occupies) less 32 sectors.
ToolCommand spaceCommand(const QString &xorriso, const QString &device);

// The sectors of the first "Media space  : Ns" line; nothing when there is
// no such line (no medium, a drive that could not be acquired).
std::optional<qint64> mediaSpaceSectors(const QString &text);

// Blanking the medium in `device`: "-blank all" for a full erase,
// "-blank fast" for a quick one.
ToolCommand eraseCommand(const QString &xorriso, const QString &device, bool full);

// The listing: xorriso -devices.
ToolCommand devicesCommand(const QString &xorriso);

// The devices xorriso could not open for lack of permission, in the order
// named. libburn reports each with errno's text appended, at NOTE level while
// scanning and when looking for one drive's node:
//   "libburn : NOTE : Failed to open device '/dev/sr0' : Permission denied"
// (SORRY instead of NOTE when it grabs a drive). Other failures to open
// (busy, missing) are not counted.
QStringList deniedDevices(const QString &text);

// The profile named in the first "Media current:" line, without the
// qualifiers xorriso adds after a comma ("stdio file, overwriteable" gives
// "stdio file"); empty when there is no such line.
QString mediaProfile(const QString &text);

// The value of the first "Media status :" line ("is blank",
// "is written , is appendable", "is not present"...); empty when none.
QString mediaStatus(const QString &text);

// The four answers from the text of statusCommand():
//   empty       no medium: "Media status : is not present", or no
//               "Media status :" line at all (drive missing, cannot be
//               opened, tool missing, hung or printing nothing or garbage).
//   writable    the status is blank or appendable, and not "but next track is
//               damaged" / "but no writable address".
//   rewritable  the profile is one that can be blanked or overwritten:
//               CD-RW, DVD-RW (both modes), DVD+RW, DVD+RW/DL, DVD-RAM, BD-RE,
//               or a stdio: pseudo-drive on a random-access file
//               ("stdio file, overwriteable"). A sequential stdio target
//               (/dev/null) is not.
//   family      "CD", "DVD" or "BD" from the whole profile name; anything
//               else, stdio pseudo-drives included, "Other".
MediaAnswers answers(const QString &text);

} // namespace XorrisoParsing
