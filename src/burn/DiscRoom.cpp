#include "burn/DiscRoom.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QPointer>
#include <QtConcurrent/QtConcurrentRun>

#include "compilation/Measurements.h"

namespace DiscRoom {

namespace {

qint64 ceilDiv(qint64 a, qint64 b)
{
    return a <= 0 ? 0 : (a + b - 1) / b;
}

QList<qint64> secondsOf(const QList<NodeMediaFile> &files)
{
    QList<qint64> seconds;
    seconds.reserve(files.size());
    for (const NodeMediaFile &f : files)
        seconds << qMax<qint64>(0, f.i_Duration_in_Seconds);
    return seconds;
}

// One folder of files, as the MP3 and video discs are: the working folder's
// files at the root.
DiscSize filesAtTheRoot(const QList<qint64> &bytesPerFile)
{
    TreeCensus tree;
    tree.folders = 1;
    for (qint64 b : bytesPerFile)
        tree.addFile(quint64(qMax<qint64>(0, b)));
    return fileSystem(tree);
}

} // namespace

DiscSize audioCD(const QList<qint64> &secondsPerFile)
{
    DiscSize size;
    size.sectorBytes = DiscSize::AudioSectorBytes;
    for (qint64 s : secondsPerFile)
        size.sectors += qMax<qint64>(0, s) * AudioSectorsPerSecond;
    return size;
}

void TreeCensus::addFile(quint64 size)
{
    ++files;
    bytes = Measurements::saturatingAdd(bytes, size);
    dataSectors += size / DiscSize::DataSectorBytes + (size % DiscSize::DataSectorBytes ? 1 : 0);
}

DiscSize fileSystem(const TreeCensus &tree)
{
    DiscSize size;
    size.sectorBytes = DiscSize::DataSectorBytes;
    size.sectors = VolumeSectors + qint64(tree.dataSectors) + ceilDiv(qint64(tree.entries()), EntriesPerSector)
        + qint64(tree.folders) * SectorsPerFolder;
    return size;
}

TreeCensus census(const QStringList &folders)
{
    TreeCensus tree;
    for (const QString &folder : folders) {
        // The listed folder, and the numbered folder it may land in when
        // another of the same name came first.
        tree.folders += 2;
        QDirIterator it(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                        QDirIterator::Subdirectories);
        while (it.hasNext()) {
            it.next();
            const QFileInfo fi = it.fileInfo();
            if (fi.isSymLink())
                ++tree.others;
            else if (fi.isDir())
                ++tree.folders;
            else if (fi.isFile())
                tree.addFile(quint64(qMax<qint64>(0, fi.size())));
            else
                ++tree.others;
        }
    }
    return tree;
}

qint64 mp3Bytes(qint64 seconds)
{
    return (qMax<qint64>(0, seconds) + 1) * (Mp3BitsPerSecond / 8) + 4096;
}

DiscSize mp3Disc(const QList<qint64> &secondsPerFile)
{
    QList<qint64> bytes;
    for (qint64 s : secondsPerFile)
        bytes << mp3Bytes(s);
    return filesAtTheRoot(bytes);
}

qint64 videoBytes(qint64 seconds, const QString &audioFormat)
{
    const qint64 sound = audioFormat == QLatin1String("0") ? Ac3BitsPerSecond : Mp2BitsPerSecond;
    const qint64 perSecond = (VideoBitsPerSecond + sound) / 8;
    const qint64 streams = (qMax<qint64>(0, seconds) + 1) * perSecond;
    return streams + ceilDiv(streams * 2, 100);  // pack and packet headers
}

DiscSize videoDisc(const QList<qint64> &secondsPerFile, const QString &audioFormat)
{
    QList<qint64> bytes;
    for (qint64 s : secondsPerFile)
        bytes << videoBytes(s, audioFormat);
    return filesAtTheRoot(bytes);
}

DiscSize imageFile(qint64 bytes)
{
    DiscSize size;
    size.sectorBytes = DiscSize::DataSectorBytes;
    size.sectors = ceilDiv(bytes, DiscSize::DataSectorBytes);
    return size;
}

SizeEstimate forMediaBurn(BurnOperation operation, const QList<NodeMediaFile> &files,
                          const QString &audioFormat)
{
    DiscSize size;
    switch (operation) {
    case BurnOperation::AudioCD:
        size = audioCD(secondsOf(files));
        break;
    case BurnOperation::MP3CD:
    case BurnOperation::MP3DVD:
        size = mp3Disc(secondsOf(files));
        break;
    case BurnOperation::VideoDVD:
    case BurnOperation::VideoBluray:
        size = videoDisc(secondsOf(files), audioFormat);
        break;
    default:
        return SizeEstimate{};
    }
    return [size](std::function<void(const DiscSize &)> sized) {
        if (sized)
            sized(size);
    };
}

SizeEstimate forFolders(const QStringList &folders, QObject *receiver)
{
    QPointer<QObject> owner(receiver);
    return [folders, owner](std::function<void(const DiscSize &)> sized) {
        if (!owner)
            return;
        auto *watcher = new QFutureWatcher<TreeCensus>(owner.data());
        QObject::connect(watcher, &QFutureWatcher<TreeCensus>::finished, owner.data(), [watcher, sized] {
            watcher->deleteLater();
            if (sized)
                sized(fileSystem(watcher->result()));
        });
        watcher->setFuture(QtConcurrent::run([folders] { return census(folders); }));
    };
}

SizeEstimate forImage(const QString &imagePath)
{
    return [imagePath](std::function<void(const DiscSize &)> sized) {
        if (sized)
            sized(imageFile(QFileInfo(imagePath).size()));
    };
}

QString playingTime(qint64 sectors, bool roundUp)
{
    const qint64 seconds = roundUp ? ceilDiv(sectors, AudioSectorsPerSecond) : qMax<qint64>(0, sectors) / AudioSectorsPerSecond;
    return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

AlertRequest noRoom(const DiscSize &needed, qint64 freeSectors, Subject subject)
{
    QString need;
    QString room;
    if (needed.isAudio()) {
        need = QStringLiteral("about %1 of audio").arg(playingTime(needed.sectors, true));
        room = QStringLiteral("%1").arg(playingTime(freeSectors, false));
    } else {
        need = QStringLiteral("about %1").arg(Measurements::sizeText(quint64(qMax<qint64>(0, needed.bytes()))));
        room = Measurements::sizeText(quint64(qMax<qint64>(0, freeSectors)) * quint64(needed.sectorBytes));
    }
    QString what;
    QString advice;
    switch (subject) {
    case Subject::Compilation:
        what = QStringLiteral("The compilation");
        advice = QStringLiteral("Remove some items from the list, or insert a disc with more room, and try again.");
        break;
    case Subject::Image:
        what = QStringLiteral("The image");
        advice = QStringLiteral("Insert a disc with more room and try again.");
        break;
    case Subject::Copy:
        what = QStringLiteral("The copy");
        advice = QStringLiteral("Insert a disc with more room and try again.");
        break;
    }
    AlertRequest r;
    r.messageText = NoRoomMessage;
    r.informativeText = QStringLiteral("%1 needs %2, but the disc has room for %3 only. %4").arg(what, need, room, advice);
    r.buttons = QStringList{QStringLiteral("Close")};
    return r;
}

} // namespace DiscRoom
