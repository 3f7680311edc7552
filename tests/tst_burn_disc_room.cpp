// Room on the disc: the size estimates of every kind of burn, the
// file-system rule held against what xorriso really writes, the refusal's
// words, and each operation at the boundary on a pseudo-drive whose room is
// exactly its estimate (it goes on) or one megabyte short of it (refused,
// nothing started, the working folder untouched).
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "burn/DiscRoom.h"
#include "burn/MediaBurn.h"
#include "burn/XorrisoRecorder.h"
#include "compilation/Measurements.h"
#include "drives/MediaQuestions.h"
#include "drives/XorrisoBackend.h"
#include "images/DataBurnFlow.h"
#include "images/Duplication.h"
#include "images/DuplicationFlow.h"
#include "images/ImageBurnFlow.h"
#include "images/XorrisoImageTool.h"
#include "support/DiscImages.h"
#include "support/FakeDriveBackend.h"
#include "support/Files.h"
#include "support/SheetLog.h"
#include "support/FakeAlerts.h"
#include "support/FakeFilePicker.h"
#include "support/SmallDisk.h"
#include "support/FlowRig.h"
#include "support/ListRecords.h"
#include "support/TestMain.h"
#include "support/Tools.h"
#include "toolrun/ToolRun.h"

namespace {

// One megabyte of data sectors: how far short of the estimate the room of
// the refused burns is.
constexpr qint64 OneMegabyte = 1024 * 1024 / 2048;


QStringList names(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

// The flows' context on the pseudo-drive `device`: the medium checks
// answered by a blank disc of `family`, the room by the real xorriso on the
// pseudo-drive.
struct RoomRig : FlowRig {
    XorrisoBackend xorriso{xorrisoPath(), QStringLiteral("eject")};

    RoomRig(const QString &family, const QString &device)
    {
        drive.status = FakeDriveBackend::blank(family);
        drive.spaceFrom = &xorriso;
        current.s_Device_Path = device;
    }
};

QString roomAlert(const QString &subject, const QString &need, const QString &room, const QString &advice)
{
    return QStringLiteral("Not enough room on the disc / %1 needs %2, but the disc has room for %3 only. %4")
        .arg(subject, need, room, advice);
}

const QString CompilationAdvice =
    QStringLiteral("Remove some items from the list, or insert a disc with more room, and try again.");
const QString DiscAdvice = QStringLiteral("Insert a disc with more room and try again.");

} // namespace

class TestBurnDiscRoom : public QObject {
    Q_OBJECT

    QTemporaryDir m_media;
    QString m_ffmpeg;
    QString m_tone;
    QString m_clip;

    // Sectors xorriso wrote for a session of `tree` under /T, as a data burn
    // writes it ("Written to medium : N sectors").
    static qint64 writtenSectors(const QString &tree, const QString &scratch)
    {
        QProcess p;
        p.setProcessChannelMode(QProcess::MergedChannels);
        p.start(xorrisoPath(), {"-md5", "on", "-outdev", "stdio:" + scratch, "-joliet", "on", "-volid", "T", "-map",
                                tree, "/T", "-commit"});
        p.waitForFinished(120000);
        const QString out = QString::fromUtf8(p.readAll());
        const QRegularExpressionMatch m =
            QRegularExpression(QStringLiteral("Written to medium : (\\d+) sectors")).match(out);
        return m.hasMatch() ? m.captured(1).toLongLong() : -1;
    }

    // The media burn `op` of `list` on a pseudo-drive with room for `room`
    // sectors: the sheets and alerts it leaves, and the working folder.
    struct MediaRun {
        QStringList sheets;
        QStringList alerts;
        QStringList folderAfter;
        int refused = 0;
    };
    MediaRun runMediaBurn(BurnOperation op, const QString &family, const QList<NodeMediaFile> &list, qint64 room)
    {
        MediaRun out;
        SmallDisk disk = SmallDisk::withRoomFor(room);
        if (!disk.isMounted()) {
            out.alerts << disk.error();
            return out;
        }
        RoomRig rig(family, disk.device());
        MediaBurnContext ctx;
        ctx.ffmpeg = m_ffmpeg;
        ctx.audioFolder = rig.tmp.filePath(QStringLiteral("TambloAudio"));
        ctx.videoFolder = rig.tmp.filePath(QStringLiteral("TambloVideo"));
        ctx.currentDrive = rig.current;
        const QString folder = BurnMessages::isVideoBurn(op) ? ctx.videoFolder : ctx.audioFolder;
        writeFile(folder + "/left over.txt", "mine\n");
        XorrisoRecorder recorder(xorrisoPath(), QStandardPaths::findExecutable(QStringLiteral("cdrskin")));
        MediaBurn burn(recorder, rig.alerts, rig.media->checker());
        SheetLog sheets(&burn);
        burn.burn(op, list, ctx);
        if (!QTest::qWaitFor([&] { return !burn.isBusy(); }, 120000))
            out.alerts << QStringLiteral("the burn did not end");
        out.sheets = sheets.steps();
        out.alerts = rig.alerts.texts();
        out.refused = sheets.endedCount == 1 && sheets.endedRefused() ? 1 : 0;
        out.folderAfter = names(folder);
        return out;
    }

    // Durations from `start` up whose estimate is an even number of sectors
    // (a tmpfs holds whole 4 KiB pages).
    static QList<qint64> evenDurations(QList<qint64> seconds, const std::function<DiscSize(const QList<qint64> &)> &size)
    {
        while (size(seconds).sectors % 2 != 0)
            ++seconds.last();
        return seconds;
    }

private slots:
    void initTestCase()
    {
        m_ffmpeg = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
        QVERIFY2(!m_ffmpeg.isEmpty(), "ffmpeg must be installed");
        QVERIFY2(!xorrisoPath().isEmpty(), "xorriso must be installed");
        m_tone = m_media.filePath(QStringLiteral("tone.mp3"));
        m_clip = m_media.filePath(QStringLiteral("clip.mov"));
        makeMedia({"-f", "lavfi", "-i", "sine=frequency=440:duration=1", m_tone});
        makeMedia({"-f", "lavfi", "-i", "testsrc=duration=1:size=160x120:rate=25", "-f", "lavfi", "-i",
              "sine=duration=1", "-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p", "-c:a", "aac",
              "-shortest", m_clip});
    }

    // ---- the estimates --------------------------------------------------------
    void audioCdByPlayingTime()
    {
        const DiscSize cd74 = DiscRoom::audioCD({74 * 60});
        QCOMPARE(cd74.sectors, qint64(74 * 60 * 75));
        QCOMPARE(cd74.sectors, qint64(333000));
        QCOMPARE(cd74.sectorBytes, 2352);
        QCOMPARE(cd74.bytes(), qint64(783216000));
        QVERIFY(cd74.isAudio());
        QCOMPARE(DiscRoom::audioCD({60, 0, 1}).sectors, qint64(61 * 75));
        QCOMPARE(DiscRoom::audioCD({}).sectors, qint64(0));
        QCOMPARE(DiscRoom::audioCD({-5}).sectors, qint64(0));
    }

    void mp3DiscAt192kbits()
    {
        QCOMPARE(DiscRoom::mp3Bytes(60), qint64(61 * 24000 + 4096));
        QCOMPARE(DiscRoom::mp3Bytes(0), qint64(24000 + 4096));
        // Two files at the root: their sectors, one sector for their two
        // entries and the root's, the root's 3, the volume's 256.
        const qint64 a = (DiscRoom::mp3Bytes(60) + 2047) / 2048;
        const qint64 b = (DiscRoom::mp3Bytes(120) + 2047) / 2048;
        const DiscSize disc = DiscRoom::mp3Disc({60, 120});
        QCOMPARE(disc.sectorBytes, 2048);
        QCOMPARE(disc.sectors, 256 + a + b + 2 + 3);
    }

    void videoDiscAtThePresetsRates()
    {
        // 6000 kbit/s of picture and 448 kbit/s of AC-3, or 384 kbit/s of MP2,
        // with 2 % for the program stream's headers, one second more.
        QCOMPARE(DiscRoom::videoBytes(10, QStringLiteral("0")), qint64(11 * 806000 + 177320));
        QCOMPARE(DiscRoom::videoBytes(10, QStringLiteral("1")), qint64(11 * 798000 + 175560));
        const DiscSize dvd = DiscRoom::videoDisc({3600}, QStringLiteral("0"));
        QCOMPARE(dvd.sectors, 256 + (DiscRoom::videoBytes(3600, QStringLiteral("0")) + 2047) / 2048 + 1 + 3);
        // A single-layer DVD (2 295 104 sectors) holds about 95 minutes.
        QVERIFY(DiscRoom::videoDisc({95 * 60}, QStringLiteral("0")).sectors < 2295104);
        QVERIFY(DiscRoom::videoDisc({100 * 60}, QStringLiteral("0")).sectors > 2295104);
    }

    void imageByItsBytes()
    {
        QCOMPARE(DiscRoom::imageFile(0).sectors, qint64(0));
        QCOMPARE(DiscRoom::imageFile(1).sectors, qint64(1));
        QCOMPARE(DiscRoom::imageFile(2048).sectors, qint64(1));
        QCOMPARE(DiscRoom::imageFile(2049).sectors, qint64(2));
        QCOMPARE(DiscRoom::imageFile(4700000000LL).sectors, qint64(2294922));
    }

    void dataByTheWalkAndTheFileSystemRule()
    {
        QTemporaryDir tmp;
        const QString a = tmp.filePath(QStringLiteral("Photos"));
        writeFile(a + "/one.jpg", QByteArray(5000, 'a'));      // 3 sectors
        writeFile(a + "/two.jpg", QByteArray(2048, 'b'));      // 1
        writeFile(a + "/sub/.hidden", QByteArray(1, 'c'));    // 1
        writeFile(a + "/sub/empty", QByteArray());            // 0
        QVERIFY(QFile::link(a + "/one.jpg", a + "/link.jpg"));
        const QString b = tmp.filePath(QStringLiteral("Music"));
        QDir().mkpath(b);
        const DiscRoom::TreeCensus c = DiscRoom::census({a, b});
        QCOMPARE(c.files, quint64(4));
        QCOMPARE(c.folders, quint64(2 + 2 + 1));  // each listed folder (and its numbered one), and sub
        QCOMPARE(c.others, quint64(1));           // the link: an entry, no data
        QCOMPARE(c.bytes, quint64(5000 + 2048 + 1));
        QCOMPARE(c.dataSectors, quint64(3 + 1 + 1));
        QCOMPARE(DiscRoom::fileSystem(c).sectors, qint64(256 + 5 + (10 + 1) / 2 + 5 * 3));
    }

    // The rule is an upper bound of what xorriso really writes, for a tree of
    // many small files with long names and for one of a few large files.
    void theRuleIsNeverShortOfWhatXorrisoWrites_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("many small files, long names") << 0;
        QTest::newRow("deep folders") << 1;
        QTest::newRow("a few large files") << 2;
    }
    void theRuleIsNeverShortOfWhatXorrisoWrites()
    {
        QFETCH(int, kind);
        QTemporaryDir tmp;
        const QString tree = tmp.filePath(QStringLiteral("tree"));
        if (kind == 0) {
            for (int d = 0; d < 6; ++d)
                for (int f = 0; f < 150; ++f) {
                    const QString name = QStringLiteral("%1 ünïcødé file name that goes on and on %2 ")
                                             .arg(d)
                                             .arg(f)
                                             .repeated(4)
                                             .left(230);
                    writeFile(QStringLiteral("%1/folder with a long name %2/%3.txt").arg(tree).arg(d).arg(name),
                              pseudoRandom(f * 37 % 3000, quint32(d * 1000 + f)));
                }
        } else if (kind == 1) {
            QString path = tree;
            for (int depth = 0; depth < 40; ++depth) {
                path += QStringLiteral("/level %1").arg(depth);
                writeFile(path + "/f.bin", pseudoRandom(100, quint32(depth)));
            }
        } else {
            for (int i = 0; i < 3; ++i)
                writeFile(tree + QStringLiteral("/big %1.bin").arg(i), pseudoRandom(3 * 1024 * 1024 + 7, quint32(i)));
        }
        const qint64 written = writtenSectors(tree, tmp.filePath(QStringLiteral("disc.iso")));
        QVERIFY(written > 0);
        const qint64 estimate = DiscRoom::fileSystem(DiscRoom::census({tree})).sectors;
        qInfo() << "xorriso wrote" << written << "sectors; estimated" << estimate;
        QVERIFY2(estimate >= written, qPrintable(QStringLiteral("%1 < %2").arg(estimate).arg(written)));
        // ... and not wildly more: at most a fifth, and the volume's share.
        QVERIFY2(estimate <= written + written / 5 + DiscRoom::VolumeSectors,
                 qPrintable(QStringLiteral("%1 vs %2").arg(estimate).arg(written)));
    }

    // ---- what the user reads ----------------------------------------------------
    void theRefusalSaysTheSizeAndTheRoom()
    {
        DiscSize data;
        data.sectors = 400000;  // 781.25 MB
        const AlertRequest r = DiscRoom::noRoom(data, 359846, DiscRoom::Subject::Compilation);
        QCOMPARE(r.messageText, QStringLiteral("Not enough room on the disc"));
        QCOMPARE(r.informativeText,
                 QStringLiteral("The compilation needs about 781.25 MB, but the disc has room for 702.82 MB only. ")
                     + CompilationAdvice);
        QCOMPARE(r.buttons, QStringList{"Close"});
        QCOMPARE(DiscRoom::noRoom(data, 359846, DiscRoom::Subject::Image).informativeText,
                 QStringLiteral("The image needs about 781.25 MB, but the disc has room for 702.82 MB only. ") + DiscAdvice);
        QCOMPARE(DiscRoom::noRoom(data, 359846, DiscRoom::Subject::Copy).informativeText,
                 QStringLiteral("The copy needs about 781.25 MB, but the disc has room for 702.82 MB only. ") + DiscAdvice);
        // An audio CD in playing time: 80:10 of audio on a disc of 79:57.
        const DiscSize audio = DiscRoom::audioCD({80 * 60 + 10});
        QCOMPARE(DiscRoom::noRoom(audio, 359846, DiscRoom::Subject::Compilation).informativeText,
                 QStringLiteral("The compilation needs about 80:10 of audio, but the disc has room for 79:57 only. ")
                     + CompilationAdvice);
        QCOMPARE(DiscRoom::playingTime(74, true), QStringLiteral("0:01"));
        QCOMPARE(DiscRoom::playingTime(74, false), QStringLiteral("0:00"));
        QCOMPARE(DiscRoom::playingTime(333000, false), QStringLiteral("74:00"));
    }

    // ---- each burn at the boundary, on a pseudo-drive ---------------------------
    void mediaBurnsAtTheBoundary_data()
    {
        QTest::addColumn<int>("op");
        QTest::addColumn<QString>("family");
        QTest::newRow("audio CD") << int(BurnOperation::AudioCD) << "CD";
        QTest::newRow("MP3 CD") << int(BurnOperation::MP3CD) << "CD";
        QTest::newRow("video DVD") << int(BurnOperation::VideoDVD) << "DVD";
    }
    void mediaBurnsAtTheBoundary()
    {
        QFETCH(int, op);
        QFETCH(QString, family);
        const BurnOperation operation = BurnOperation(op);
        const bool video = BurnMessages::isVideoBurn(operation);
        const QString source = video ? m_clip : m_tone;
        // The listed durations make the estimate; the files are short.
        std::function<DiscSize(const QList<qint64> &)> size;
        if (operation == BurnOperation::AudioCD)
            size = [](const QList<qint64> &s) { return DiscRoom::audioCD(s); };
        else if (video)
            size = [](const QList<qint64> &s) { return DiscRoom::videoDisc(s, QStringLiteral("0")); };
        else
            size = [](const QList<qint64> &s) { return DiscRoom::mp3Disc(s); };
        const QList<qint64> seconds = evenDurations(video ? QList<qint64>{4, 5} : QList<qint64>{30, 24}, size);
        const qint64 estimate = size(seconds).sectors;
        QList<NodeMediaFile> list;
        for (qint64 s : seconds)
            list << mediaFile(source, s);

        // Exactly its room: the transcodes begin.
        const MediaRun fits = runMediaBurn(operation, family, list, estimate);
        QVERIFY2(!fits.alerts.join('\n').contains(QStringLiteral("Not enough room")), qPrintable(fits.alerts.join('\n')));
        QCOMPARE(fits.refused, 0);
        QVERIFY2(!fits.sheets.isEmpty() && fits.sheets.first() == QStringLiteral("showTranscoding"), qPrintable(fits.sheets.join(", ")));
        if (operation != BurnOperation::AudioCD)  // cdrskin takes no audio onto a pseudo-drive
            QCOMPARE(fits.sheets.last(), QStringLiteral("operationComplete"));

        // One megabyte more than its room: refused before anything is done.
        const MediaRun over = runMediaBurn(operation, family, list, estimate - OneMegabyte);
        QCOMPARE(over.refused, 1);
        QVERIFY(over.sheets.isEmpty());
        QCOMPARE(over.folderAfter, QStringList{"left over.txt"});
        const DiscSize need = size(seconds);
        QString needText;
        QString roomText;
        if (operation == BurnOperation::AudioCD) {
            needText = QStringLiteral("about %1 of audio").arg(DiscRoom::playingTime(need.sectors, true));
            roomText = DiscRoom::playingTime(estimate - OneMegabyte, false);
        } else {
            needText = QStringLiteral("about ") + Measurements::sizeText(quint64(need.bytes()));
            roomText = Measurements::sizeText(quint64(estimate - OneMegabyte) * 2048);
        }
        QCOMPARE(over.alerts, QStringList{roomAlert(QStringLiteral("The compilation"), needText, roomText, CompilationAdvice)});
        QCOMPARE(ToolRun::running().size(), 0);
    }

    void audioCdWordsAtTheBoundary()
    {
        // 54 s of audio on a disc with room for 47 s.
        const MediaRun over = runMediaBurn(BurnOperation::AudioCD, QStringLiteral("CD"),
                                           {mediaFile(m_tone, 30), mediaFile(m_tone, 24)}, 4050 - OneMegabyte);
        QCOMPARE(over.alerts, QStringList{roomAlert(QStringLiteral("The compilation"), QStringLiteral("about 0:54 of audio"),
                                                    QStringLiteral("0:47"), CompilationAdvice)});
    }

    void dataBurnAtTheBoundary()
    {
        QTemporaryDir tmp;
        const QString folder = tmp.filePath(QStringLiteral("Photos"));
        writeFile(folder + "/a.bin", pseudoRandom(3 * 1024 * 1024, 1));
        writeFile(folder + "/sub/b.bin", pseudoRandom(5000, 2));
        if (DiscRoom::fileSystem(DiscRoom::census({folder})).sectors % 2 != 0)
            writeFile(folder + "/c.bin", pseudoRandom(2048, 3));
        const qint64 estimate = DiscRoom::fileSystem(DiscRoom::census({folder})).sectors;
        QCOMPARE(estimate % 2, qint64(0));
        const NodeDataFolder listed = measuredFolder(folder);

        for (const qint64 room : {estimate, estimate - OneMegabyte}) {
            SmallDisk disk = SmallDisk::withRoomFor(room);
            QVERIFY2(disk.isMounted(), qPrintable(disk.error()));
            RoomRig rig(QStringLiteral("DVD"), disk.device());
            writeFile(rig.data + "/left over.txt", "mine\n");
            DataBurnFlow flow(rig.ctx);
            SheetLog log(&flow);
            flow.burn(ImageMessages::DataDisc::DVD, {listed});
            QVERIFY(log.waitEnded(1, 120000));
            if (room == estimate) {
                QVERIFY2(rig.alerts.shown.isEmpty(), qPrintable(rig.alerts.texts().join('\n')));
                QCOMPARE(log.sheets().last(2), (QStringList{"operationComplete", "ended"}));
                QVERIFY(QFileInfo(disk.file()).size() > 3 * 1024 * 1024);
            } else {
                const QString need = QStringLiteral("about ") + Measurements::sizeText(quint64(estimate) * 2048);
                const QString left = Measurements::sizeText(quint64(room) * 2048);
                QCOMPARE(rig.alerts.texts(),
                         QStringList{roomAlert(QStringLiteral("The compilation"), need, left, CompilationAdvice)});
                QCOMPARE(log.sheets(), QStringList{"ended"});
                QCOMPARE(names(rig.data), QStringList{"left over.txt"});
                QVERIFY(!QFile::exists(disk.file()));
            }
        }
    }

    void imageBurnAtTheBoundary()
    {
        QTemporaryDir tmp;
        const qint64 sectors = 2 * OneMegabyte + 16;  // 2 MiB and 32 KiB: whole write units
        const QString image = tmp.filePath(QStringLiteral("raw.img"));
        writeFile(image, pseudoRandom(int(sectors * 2048), 7));
        for (const qint64 room : {sectors, sectors - OneMegabyte}) {
            SmallDisk disk = SmallDisk::withRoomFor(room);
            QVERIFY2(disk.isMounted(), qPrintable(disk.error()));
            RoomRig rig(QStringLiteral("Other"), disk.device());
            rig.picker.answers.enqueue({image});
            ImageBurnFlow flow(rig.ctx);
            SheetLog log(&flow);
            flow.start();
            QVERIFY(log.waitEnded(1, 120000));
            if (room == sectors) {
                QVERIFY2(rig.alerts.shown.isEmpty(), qPrintable(rig.alerts.texts().join('\n')));
                QCOMPARE(log.sheets().last(2), (QStringList{"operationComplete", "ended"}));
                // The image, then at most the rest of the recorder's write unit in zeros.
                QFile disc(disk.file());
                QVERIFY(disc.open(QIODevice::ReadOnly));
                QFile img(image);
                QVERIFY(img.open(QIODevice::ReadOnly));
                QVERIFY(disc.read(sectors * 2048) == img.readAll());
                const QByteArray tail = disc.readAll();
                QVERIFY(tail.size() < 64 * 1024);
                QCOMPARE(tail, QByteArray(tail.size(), '\0'));
            } else {
                QCOMPARE(rig.alerts.texts(),
                         QStringList{roomAlert(QStringLiteral("The image"), QStringLiteral("about 2.03 MB"),
                                               QStringLiteral("1.03 MB"), DiscAdvice)});
                QCOMPARE(log.sheets(), QStringList{"ended"});
                QVERIFY(log.commands.isEmpty());
                QVERIFY(!QFile::exists(disk.file()));
            }
        }
    }

    void copyAtTheBoundary()
    {
        QTemporaryDir tmp;
        const QString volume = tmp.filePath(QStringLiteral("Volumes/HOLIDAY"));
        writeFile(volume + "/a.bin", pseudoRandom(2 * 1024 * 1024, 9));
        writeFile(volume + "/notes.txt", "notes\n");
        // The copy's size: its image, as the duplication makes it.
        auto imageSectors = [&] {
            const QString probe = tmp.filePath(QStringLiteral("probe.iso"));
            QFile::remove(probe);
            const ToolCommand c = XorrisoImageTool(xorrisoPath()).makeImageCommand(probe, volume);
            QProcess p;
            p.start(c.program, c.arguments);
            p.waitForFinished(120000);
            return DiscRoom::imageFile(QFileInfo(probe).size()).sectors;
        };
        qint64 sectors = imageSectors();
        if (sectors % 2 != 0) {
            writeFile(volume + "/pad.bin", pseudoRandom(2048, 10));
            sectors = imageSectors();
        }
        QCOMPARE(sectors % 2, qint64(0));

        for (const qint64 room : {sectors, sectors - OneMegabyte}) {
            SmallDisk disk = SmallDisk::withRoomFor(room);
            QVERIFY2(disk.isMounted(), qPrintable(disk.error()));
            RoomRig rig(QStringLiteral("Other"), disk.device());
            rig.drive.status = FakeDriveBackend::finished(QStringLiteral("CD"));  // the source disc
            rig.drive.onEject = [&rig] { rig.drive.status = FakeDriveBackend::blank(QStringLiteral("Other")); };
            rig.picker.answers.enqueue({volume});
            rig.alerts.answer(0, QStringLiteral("1"));  // one copy
            rig.alerts.answer(0);  // "Burn Copy 1 of 1"
            if (room != sectors) {
                rig.alerts.answer(0);  // "Close" on the room alert
                rig.alerts.answer(1);  // then "Cancel"
            }
            DuplicationFlow flow(rig.ctx);
            SheetLog log(&flow);
            QStringList imageWhenRefused;
            rig.alerts.onShow = [&](const AlertRequest &r) {
                if (r.messageText == DiscRoom::NoRoomMessage)
                    imageWhenRefused = names(rig.data);
            };
            flow.start();
            QVERIFY(log.waitEnded(1, 180000));
            const QStringList texts = rig.alerts.texts();
            if (room == sectors) {
                QVERIFY2(!texts.join('\n').contains(QStringLiteral("Not enough room")), qPrintable(texts.join('\n')));
                QCOMPARE(log.sheets().last(2), (QStringList{"operationComplete", "ended"}));
                QVERIFY(QFileInfo(disk.file()).size() >= sectors * 2048);
            } else {
                const QString need = QStringLiteral("about ") + Measurements::sizeText(quint64(sectors) * 2048);
                const QString left = Measurements::sizeText(quint64(room) * 2048);
                QCOMPARE(texts.mid(2, 1), QStringList{roomAlert(QStringLiteral("The copy"), need, left, DiscAdvice)});
                // Then the question again, with the same numbers; the image
                // was there, untouched, until the user cancelled.
                QCOMPARE(texts.size(), 4);
                QCOMPARE(rig.alerts.shown.at(3).buttons.value(0), QStringLiteral("Burn Copy 1 of 1"));
                QCOMPARE(imageWhenRefused, QStringList{"image.iso"});
                QVERIFY(!QFile::exists(disk.file()));
                QCOMPARE(log.commands.size(), 1);  // the imaging, no recording
            }
        }
    }
};

TAMBLO_TEST_MAIN(TestBurnDiscRoom)
#include "tst_burn_disc_room.moc"
