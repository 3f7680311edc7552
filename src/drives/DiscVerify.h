#pragma once
#include <QString>
#include <QStringList>

#include "toolrun/ToolCommand.h"
#include "toolrun/ToolMessages.h"
#include "toolrun/ToolVerdict.h"

// What reading a disc back after writing it found.
struct VerifyResult {
    enum class Outcome {
        Verified,    // every byte or checksum compared matched
        Mismatch,    // something on the disc is not what was written
        NotChecked,  // the disc could not be read back or compared
    };
    Outcome outcome = Outcome::Verified;
    QString what;     // plain words: what did not match, or why nothing could be compared
    QString details;  // the tool's words, or the comparison's report (the Details of the failure sheet)
    bool cancelled = false;  // the user stopped the check: the disc is written, not verified

    bool verified() const { return outcome == Outcome::Verified; }
};

// Verifying a disc after writing it: on Linux by the checksums xorriso
// records with the files (data, MP3 and video discs) or by reading an
// image's bytes back (image burns and copies); on macOS drutil and hdiutil
// read back what they wrote themselves (unless told -noverify /
// -noverifyburn), and their verdict says how it went. Audio CDs are not
// verified.
namespace DiscVerify {

// What the user reads.
inline const QString VerifiedMessage = QStringLiteral("The disc was written and verified.");
inline const QString VerifyingCaption = QStringLiteral("Verifying the disc…");
inline const QString VerifyingTitle = QStringLiteral("Verifying the Disc");
inline const QString MismatchMessage = QStringLiteral("The disc was written, but verifying it found differences.");
inline const QString NotCheckedMessage = QStringLiteral("The disc was written, but it could not be verified.");
// "Copy 2 of 3 was written, but verifying it found differences."
QString copyMismatchMessage(int copyNumber, int numberOfCopies);

// The last sheet of a verification that did not find the disc right:
// `message`, what did not match (or why nothing could be compared), and
// the tool's words behind Details.
OperationFailure failure(const QString &message, const VerifyResult &result);
// The message of the failure sheet for a result: MismatchMessage or
// NotCheckedMessage.
QString messageFor(const VerifyResult &result);

// ---- Linux: checksums recorded with the files --------------------------------
// While verifying is on, every xorriso session Tamblo writes carries MD5
// checksums of its files, its directory tree and the whole session
// ("-md5 on"). Reading them back:
//   xorriso -drive_access shared:readonly -md5 on -indev DEVICE
//           -check_md5_r SORRY PATH... --
// Loading the tree checks the tree's own checksum tags ("Checksum mismatch
// in System Area, Volume Descriptors, or directory tree"), then every file
// below PATH is read and compared: "MD5 MISMATCH: '/Photos/a.jpg'" for each
// one that differs and "Mismatch detected between file contents and MD5
// checksums." at the end (exit 32), or "File contents and their MD5
// checksums match.". Files of older sessions written without checksums are
// passed over ("There were data files which have no MD5 ...").
ToolCommand md5CheckCommand(const QString &xorriso, const QString &device, const QStringList &discPaths);
VerifyResult readMd5Check(const ToolVerdict &verdict);
// The files named in "MD5 MISMATCH: '...'" lines, in order.
QStringList mismatchedFiles(const QString &output);

// ---- macOS: the recorder's own read-back ------------------------------------
// Whether a tool's report says it has begun checking what it wrote
// ("Verifying burn…", "Verifying", "DRStatusStateVerifying").
bool saysVerifying(const QString &reports);
// A recording that failed after its check had begun failed the check: the
// disc was written and does not read back as written.
bool failedWhileVerifying(const ToolVerdict &verdict);

} // namespace DiscVerify
