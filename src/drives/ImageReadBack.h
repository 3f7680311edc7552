#pragma once
#include <QIODevice>
#include <QList>
#include <QString>
#include <atomic>
#include <functional>

#include "drives/DiscVerify.h"

// Reading an image back from the disc it was written to, and comparing the
// two byte for byte. The disc may hold more than the image (a recorder
// rounds the track up to its write unit with zeros): only the image's
// length is compared. Blocks: worker threads only.
namespace ImageReadBack {

// A run of differing bytes, by offset from the start (counted from 0),
// both ends included.
struct Difference {
    qint64 first = 0;
    qint64 last = 0;
};

struct Comparison {
    qint64 imageBytes = 0;
    qint64 compared = 0;            // bytes read from both and compared
    QList<Difference> differences;  // the first ListedDifferences runs
    qint64 differenceCount = 0;     // every run
    QString imageError;             // the image could not be opened or read
    QString discError;              // the disc could not be opened, or a read failed
    bool discOpened = true;
    bool stopped = false;
};

inline constexpr int ListedDifferences = 20;
inline constexpr qint64 ChunkBytes = 1024 * 1024;

// Compares `imageBytes` bytes of `image` with the start of `disc` (both
// open for reading). `read` is told the bytes compared so far after each
// chunk; a set `stop` ends the comparison early.
Comparison compare(QIODevice &image, QIODevice &disc, qint64 imageBytes,
                   const std::function<void(qint64 compared)> &read = {},
                   const std::atomic_bool *stop = nullptr);

// The same from a file and a drive: "stdio:/path" reads that file, any other
// address is the drive's device (/dev/sr0).
Comparison compareFiles(const QString &imagePath, const QString &drive,
                        const std::function<void(qint64 compared)> &read = {},
                        const std::atomic_bool *stop = nullptr);

// The file to read for a drive address: "stdio:/tmp/disc.iso" is
// "/tmp/disc.iso"; "/dev/sr0" stays.
QString discPath(const QString &drive);

// What the comparison means for the user:
//   Verified    every byte of the image read back the same;
//   Mismatch    "Bytes 40960 to 43007 of the disc differ from the image.",
//               "The disc differs from the image in 3 places, first in
//               bytes 40960 to 43007.", "The disc ends after N bytes, before
//               the end of the image (M bytes).", or a read that failed
//               part way ("The disc could not be read from byte N on: ...");
//   NotChecked  the image or the disc could not be opened, or the
//               comparison was stopped.
// The details name both, the bytes compared and every listed run.
VerifyResult result(const Comparison &comparison, const QString &imagePath, const QString &drive);

} // namespace ImageReadBack
