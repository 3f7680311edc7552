#include "drives/ImageReadBack.h"

#include <QFile>
#include <QStringList>
#include <cstring>

namespace ImageReadBack {

namespace {

// Reads up to `want` bytes, going on after short reads; fewer only at the
// end of the data or after an error (then `failed` is set).
qint64 readFully(QIODevice &device, char *into, qint64 want, bool *failed)
{
    qint64 got = 0;
    *failed = false;
    while (got < want) {
        const qint64 n = device.read(into + got, want - got);
        if (n < 0) {
            *failed = true;
            break;
        }
        if (n == 0)
            break;
        got += n;
    }
    return got;
}

QString range(const Difference &d)
{
    if (d.first == d.last)
        return QString::number(d.first);
    return QStringLiteral("%1 to %2").arg(d.first).arg(d.last);
}

} // namespace

QString discPath(const QString &drive)
{
    if (drive.startsWith(QLatin1String("stdio:")))
        return drive.mid(6);
    return drive;
}

Comparison compare(QIODevice &image, QIODevice &disc, qint64 imageBytes,
                   const std::function<void(qint64)> &read, const std::atomic_bool *stop)
{
    Comparison c;
    c.imageBytes = imageBytes;
    QByteArray a(int(ChunkBytes), Qt::Uninitialized);
    QByteArray b(int(ChunkBytes), Qt::Uninitialized);
    bool open = false;  // a run of differences reaches the end of the last chunk
    while (c.compared < imageBytes) {
        if (stop && stop->load()) {
            c.stopped = true;
            return c;
        }
        const qint64 want = qMin(ChunkBytes, imageBytes - c.compared);
        bool imageFailed = false;
        const qint64 gotImage = readFully(image, a.data(), want, &imageFailed);
        if (gotImage < want) {
            c.imageError = imageFailed ? image.errorString() : QStringLiteral("it ended early");
            return c;
        }
        bool discFailed = false;
        const qint64 gotDisc = readFully(disc, b.data(), want, &discFailed);
        const qint64 both = gotDisc;
        if (std::memcmp(a.constData(), b.constData(), size_t(both)) != 0) {
            for (qint64 i = 0; i < both; ++i) {
                const qint64 at = c.compared + i;
                if (a.at(int(i)) != b.at(int(i))) {
                    if (open) {
                        if (c.differenceCount <= ListedDifferences)
                            c.differences.last().last = at;
                    } else {
                        ++c.differenceCount;
                        open = true;
                        if (c.differenceCount <= ListedDifferences)
                            c.differences << Difference{at, at};
                    }
                } else {
                    open = false;
                }
            }
        } else {
            open = false;
        }
        c.compared += both;
        if (read)
            read(c.compared);
        if (gotDisc < want) {
            if (discFailed)
                c.discError = disc.errorString();
            return c;
        }
    }
    return c;
}

Comparison compareFiles(const QString &imagePath, const QString &drive,
                        const std::function<void(qint64)> &read, const std::atomic_bool *stop)
{
    QFile image(imagePath);
    QFile disc(discPath(drive));
    Comparison c;
    if (!image.open(QIODevice::ReadOnly)) {
        c.imageError = image.errorString();
        return c;
    }
    c.imageBytes = image.size();
    if (!disc.open(QIODevice::ReadOnly)) {
        c.discOpened = false;
        c.discError = disc.errorString();
        return c;
    }
    return compare(image, disc, image.size(), read, stop);
}

// What was compared and where it differed, for the sheet's Details.
static QString detailsOf(const Comparison &c, const QString &imagePath, const QString &drive)
{
    QStringList details;
    details << QStringLiteral("Image: %1 (%2 bytes)").arg(imagePath).arg(c.imageBytes);
    details << QStringLiteral("Disc: %1").arg(discPath(drive));
    details << QStringLiteral("Bytes compared: %1").arg(c.compared);
    if (c.differenceCount > 0) {
        QStringList runs;
        for (const Difference &d : c.differences)
            runs << range(d);
        QString line = QStringLiteral("Differing bytes (offsets from 0): ") + runs.join(QStringLiteral(", "));
        if (c.differenceCount > c.differences.size())
            line += QStringLiteral(", and %1 more runs").arg(c.differenceCount - c.differences.size());
        details << line;
    }
    if (!c.imageError.isEmpty())
        details << QStringLiteral("The image could not be read: %1").arg(c.imageError);
    if (!c.discError.isEmpty())
        details << QStringLiteral("The disc could not be read: %1").arg(c.discError);
    return details.join(QLatin1Char('\n'));
}

VerifyResult result(const Comparison &c, const QString &imagePath, const QString &drive)
{
    VerifyResult r;
    r.details = detailsOf(c, imagePath, drive);
    if (c.stopped) {
        r.outcome = VerifyResult::Outcome::NotChecked;
        r.what = QStringLiteral("The check was stopped.");
        return r;
    }
    if (!c.imageError.isEmpty()) {
        r.outcome = VerifyResult::Outcome::NotChecked;
        r.what = QStringLiteral("The image could not be read: %1").arg(c.imageError);
        return r;
    }
    if (!c.discOpened) {
        r.outcome = VerifyResult::Outcome::NotChecked;
        r.what = QStringLiteral("The disc could not be read: %1").arg(c.discError);
        return r;
    }
    if (c.differenceCount == 1) {
        r.outcome = VerifyResult::Outcome::Mismatch;
        const Difference &d = c.differences.first();
        r.what = d.first == d.last
            ? QStringLiteral("Byte %1 of the disc differs from the image.").arg(d.first)
            : QStringLiteral("Bytes %1 of the disc differ from the image.").arg(range(d));
    } else if (c.differenceCount > 1) {
        r.outcome = VerifyResult::Outcome::Mismatch;
        r.what = QStringLiteral("The disc differs from the image in %1 places, first in bytes %2.")
                     .arg(c.differenceCount)
                     .arg(range(c.differences.first()));
    }
    if (c.compared < c.imageBytes) {
        r.outcome = VerifyResult::Outcome::Mismatch;
        const QString end = c.discError.isEmpty()
            ? QStringLiteral("The disc ends after %1 bytes, before the end of the image (%2 bytes).")
                  .arg(c.compared)
                  .arg(c.imageBytes)
            : QStringLiteral("The disc could not be read from byte %1 on: %2").arg(c.compared).arg(c.discError);
        r.what = r.what.isEmpty() ? end : r.what + QLatin1Char(' ') + end;
    }
    return r;
}

} // namespace ImageReadBack
