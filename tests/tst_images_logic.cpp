// The deciding parts of data discs, images and duplication: progress
// parsers, command lines, staging names, texts, panels and the copy count.
#include "support/ListRecords.h"
#include "support/TestMain.h"

#include <QTemporaryDir>

#include "support/Files.h"
#include "images/DataBurnPlan.h"
#include "images/Duplication.h"
#include "images/HdiutilImageTool.h"
#include "images/ImageMessages.h"
#include "images/ImageProgress.h"
#include "images/IsoCreation.h"
#include "images/XorrisoImageTool.h"

class TestImagesLogic : public QObject {
    Q_OBJECT
private:
private slots:
    // ---- hdiutil's percentage -------------------------------------------
    void discRecordingReadsTheFourCharactersAfterTheBlank()
    {
        using ImageProgress::Kind;
        auto v = ImageProgress::parse(Kind::DiscRecordingPercent, QByteArray("DRStatusPercentCompleteKey: 0.37\nmore"));
        QVERIFY(v.has_value());
        QVERIFY(qAbs(*v - 37.0) < 1e-4);
        // Only four characters: 0.1234568 reads as 0.12.
        v = ImageProgress::parse(Kind::DiscRecordingPercent, QByteArray("DRStatusPercentCompleteKey: 0.1234568\n"));
        QVERIFY(v.has_value());
        QVERIFY(qAbs(*v - 12.0) < 1e-4);
        // "1\nClo" is 1: the whole bar.
        v = ImageProgress::parse(Kind::DiscRecordingPercent, QByteArray("DRStatusPercentCompleteKey: 1\nClosing track\n"));
        QVERIFY(v.has_value());
        QVERIFY(qAbs(*v - 100.0) < 1e-4);
    }

    void discRecordingNeedsFiveMoreCharacters()
    {
        using ImageProgress::Kind;
        // key + " 0.5" is only four characters after the key: end + 5 is not below the length.
        QVERIFY(!ImageProgress::parse(Kind::DiscRecordingPercent, QByteArray("DRStatusPercentCompleteKey: 0.5")).has_value());
        // one more character makes it: end + 5 < length.
        auto v = ImageProgress::parse(Kind::DiscRecordingPercent, QByteArray("DRStatusPercentCompleteKey: 0.5\n\n"));
        QVERIFY(v.has_value());
        QVERIFY(qAbs(*v - 50.0) < 1e-4);
        QVERIFY(!ImageProgress::parse(Kind::DiscRecordingPercent, QByteArray("DRStatusPercentCompleteKey: 0.5\n")).has_value());
        QVERIFY(!ImageProgress::parse(Kind::DiscRecordingPercent, QByteArray()).has_value());
        QVERIFY(!ImageProgress::parse(Kind::DiscRecordingPercent, QByteArray("Writing track\n..........\n")).has_value());
        // The key is matched with its case.
        QVERIFY(!ImageProgress::parse(Kind::DiscRecordingPercent, QByteArray("drstatuspercentcompletekey: 0.50\n\n")).has_value());
    }

    void discRecordingUsesOnlyTheFirstKeyOfAChunk()
    {
        using ImageProgress::Kind;
        const QByteArray chunk("DRStatusPercentCompleteKey: 0.25\nDRStatusPercentCompleteKey: 0.75\n");
        auto v = ImageProgress::parse(Kind::DiscRecordingPercent, chunk);
        QVERIFY(v.has_value());
        QVERIFY(qAbs(*v - 25.0) < 1e-4);
        // A first key too near the end hides a later one too.
        QVERIFY(!ImageProgress::parse(Kind::DiscRecordingPercent,
                                      QByteArray("DRStatusPercentCompleteKey: 0.2")).has_value());
    }

    void discRecordingDropsValuesAboveOneHundred()
    {
        using ImageProgress::Kind;
        QVERIFY(!ImageProgress::parse(Kind::DiscRecordingPercent, QByteArray("DRStatusPercentCompleteKey: 1.01\n\n")).has_value());
        QVERIFY(!ImageProgress::parse(Kind::DiscRecordingPercent, QByteArray("DRStatusPercentCompleteKey: 2\nabcd")).has_value());
        // -1 (no estimate yet) is below 100 and passes as -100, below the bar's minimum.
        auto v = ImageProgress::parse(Kind::DiscRecordingPercent, QByteArray("DRStatusPercentCompleteKey: -1\nOpening"));
        QVERIFY(v.has_value());
        QVERIFY(qAbs(*v + 100.0) < 1e-4);
        // Text without a number reads as 0.
        v = ImageProgress::parse(Kind::DiscRecordingPercent, QByteArray("DRStatusPercentCompleteKey: abcd\n"));
        QVERIFY(v.has_value());
        QCOMPARE(*v, 0.0);
    }

    void discRecordingOverTheSyntheticFixtureLineByLine()
    {
        const QByteArray all = fixtureBytes("synthetic-hdiutil-burn-verbose-progress.txt");
        QVERIFY(!all.isEmpty());
        QList<double> values;
        for (const QByteArray &line : all.split('\n')) {
            if (auto v = ImageProgress::parse(ImageProgress::Kind::DiscRecordingPercent, line + '\n'))
                values << *v;
        }
        // Lines whose value has fewer than four characters after the blank
        // ("0", "1", "0.5") are too short with their newline alone.
        QCOMPARE(values.size(), 4);
        QVERIFY(qAbs(values.at(0) - 5.0) < 1e-4);    // 0.05
        QVERIFY(qAbs(values.at(1) - 12.0) < 1e-4);   // 0.1234568
        QVERIFY(qAbs(values.at(2) - 99.0) < 1e-4);   // 0.9999
        QVERIFY(qAbs(values.at(3) - 25.0) < 1e-4);   // 0.25
        // The whole file as one chunk: its first key is "-1".
        auto whole = ImageProgress::parse(ImageProgress::Kind::DiscRecordingPercent, all);
        QVERIFY(whole.has_value());
        QVERIFY(*whole < 0);
    }

    void discRecordingFindsNothingInRealOutputsWithoutKeys()
    {
        for (const char *name : {"hdiutil-burn-dmg-success-2013.txt", "hdiutil-burn-iso-success-2023.txt",
                                 "hdiutil-burn-iso-success-german-locale-2012.txt",
                                 "hdiutil-burn-verbose-failure-2005.txt"}) {
            const QByteArray all = fixtureBytes(name);
            QVERIFY2(!all.isEmpty(), name);
            QVERIFY2(!ImageProgress::parse(ImageProgress::Kind::DiscRecordingPercent, all).has_value(), name);
        }
    }

    void leadingFloatReadsLikeTheRecorderValue()
    {
        QCOMPARE(ImageProgress::leadingFloat(QStringLiteral("0.37")), 0.37f);
        QCOMPARE(ImageProgress::leadingFloat(QStringLiteral(" 0.5")), 0.5f);
        QCOMPARE(ImageProgress::leadingFloat(QStringLiteral("-1\nO")), -1.0f);
        QCOMPARE(ImageProgress::leadingFloat(QStringLiteral(".5xy")), 0.5f);
        QCOMPARE(ImageProgress::leadingFloat(QStringLiteral("1e-1")), 0.1f);
        QCOMPARE(ImageProgress::leadingFloat(QStringLiteral("1e")), 1.0f);
        QCOMPARE(ImageProgress::leadingFloat(QStringLiteral("0x1f")), 0.0f);
        QCOMPARE(ImageProgress::leadingFloat(QStringLiteral("nan")), 0.0f);
        QCOMPARE(ImageProgress::leadingFloat(QString()), 0.0f);
    }

    // ---- xorriso's percentage -------------------------------------------
    void xorrisoRecordTakesTheLastReportOfAChunk()
    {
        using ImageProgress::Kind;
        auto v = ImageProgress::parse(Kind::XorrisoRecordPercent,
                                      QByteArray("xorriso : UPDATE :   11 of   50 MB written (fifo 74%) [buf  50%]   4.5x.\n"));
        QVERIFY(v.has_value());
        QVERIFY(qAbs(*v - 22.0) < 1e-9);
        v = ImageProgress::parse(Kind::XorrisoRecordPercent,
                                 QByteArray("xorriso : UPDATE :    5 of   50 MB written (fifo 99%) [buf  50%]   4.2x.\n"
                                            "xorriso : UPDATE :   16 of   50 MB written (fifo 99%) [buf  50%]   3.8x.\n"));
        QVERIFY(v.has_value());
        QVERIFY(qAbs(*v - 32.0) < 1e-9);
        // A total of 0 MB (an image under a megabyte) says nothing.
        QVERIFY(!ImageProgress::parse(Kind::XorrisoRecordPercent,
                                      QByteArray("xorriso : UPDATE :    0 of    0 MB written (fifo  0%) [buf  50%]\n")).has_value());
        // Above 100 % is dropped.
        QVERIFY(!ImageProgress::parse(Kind::XorrisoRecordPercent,
                                      QByteArray("xorriso : UPDATE :   60 of   50 MB written\n")).has_value());
        // xorriso's other writes report in their own words; hdiutil's key is not xorriso's.
        v = ImageProgress::parse(Kind::XorrisoRecordPercent,
                                 QByteArray("xorriso : UPDATE :  12.34% done, estimate finish Sat Nov 22\n"));
        QVERIFY(v.has_value());
        QCOMPARE(*v, 12.34);
        v = ImageProgress::parse(Kind::XorrisoRecordPercent,
                                 QByteArray("xorriso : UPDATE : Writing:       8192s   31.8%   fifo 100%  buf  50%\n"));
        QVERIFY(v.has_value());
        QCOMPARE(*v, 31.8);
        QVERIFY(!ImageProgress::parse(Kind::XorrisoRecordPercent, QByteArray("DRStatusPercentCompleteKey: 0.50\n\n")).has_value());
    }

    void xorrisoRecordFiguresTooLongForANumberAreSkipped()
    {
        using ImageProgress::Kind;
        // 309 digits read as infinity: their ratio was NaN and passed the
        // "above 100" test onto the bar.
        const QByteArray huge(309, '9');
        QVERIFY(!ImageProgress::parse(Kind::XorrisoRecordPercent, huge + " of " + huge + " MB written\n").has_value());
        QVERIFY(!ImageProgress::parse(Kind::XorrisoRecordPercent, "5 of " + huge + " MB written\n").has_value());
        const auto v = ImageProgress::parse(Kind::XorrisoRecordPercent,
                                            "   40 of   50 MB written\n" + huge + " of " + huge + " MB written\n");
        QVERIFY(v.has_value());
        QCOMPARE(*v, 80.0);
    }

    void xorrisoRecordReportIsOneLine()
    {
        using ImageProgress::Kind;
        QVERIFY(!ImageProgress::parse(Kind::XorrisoRecordPercent, QByteArray("   11 of\n   50 MB written\n")).has_value());
        QVERIFY(!ImageProgress::parse(Kind::XorrisoRecordPercent, QByteArray("   11\r\nof 50 MB written\n")).has_value());
        const auto v = ImageProgress::parse(Kind::XorrisoRecordPercent, QByteArray("   11\tof 50 MB written\n"));
        QVERIFY(v.has_value());
        QCOMPARE(*v, 22.0);
    }

    void xorrisoRecordOverTheRealFixtures()
    {
        const QByteArray throttled = fixtureBytes("xorriso-as-cdrecord-v-stdio-50mb-throttled.txt");
        QVERIFY(!throttled.isEmpty());
        QList<double> values;
        for (const QByteArray &line : throttled.split('\n'))
            if (auto v = ImageProgress::parse(ImageProgress::Kind::XorrisoRecordPercent, line))
                values << *v;
        QVERIFY(values.size() >= 5);
        QCOMPARE(values.first(), 0.0);
        for (int i = 1; i < values.size(); ++i)
            QVERIFY(values.at(i) >= values.at(i - 1));
        QCOMPARE(values.last(), 100.0);  // "completed successfully"
        QVERIFY(values.at(values.size() - 2) > 90.0);
        // The whole capture in one chunk gives its last report.
        auto whole = ImageProgress::parse(ImageProgress::Kind::XorrisoRecordPercent, throttled);
        QVERIFY(whole.has_value());
        QCOMPARE(*whole, values.last());
        // A fast write prints a single early report, then its end.
        const QByteArray fast = fixtureBytes("xorriso-as-cdrecord-v-stdio-50mb.txt");
        QVERIFY(!fast.isEmpty());
        QList<double> fastValues;
        for (const QByteArray &line : fast.split('\n'))
            if (auto v = ImageProgress::parse(ImageProgress::Kind::XorrisoRecordPercent, line))
                fastValues << *v;
        QCOMPARE(fastValues.size(), 2);
        QVERIFY(qAbs(fastValues.first() - 6.0) < 1e-9);
        QCOMPARE(fastValues.last(), 100.0);
    }

    // ---- command lines --------------------------------------------------
    void hdiutilCommandsAreExact()
    {
        HdiutilImageTool tool(QStringLiteral("/usr/bin/hdiutil"));
        const ToolCommand make = tool.makeImageCommand(QStringLiteral("/Users/me/My Images/image.iso"),
                                                       QStringLiteral("/Volumes/My Disc"));
        QCOMPARE(make.program, QStringLiteral("/usr/bin/hdiutil"));
        QCOMPARE(make.arguments, (QStringList{"makehybrid", "-o", "/Users/me/My Images/image.iso",
                                              "/Volumes/My Disc", "-iso", "-joliet"}));
        Object_Optical_Drive drive;
        drive.s_Drive_Number = QStringLiteral("2");
        // hdiutil reads the disc back after burning unless told not to.
        const ToolCommand burn = tool.burnImageCommand(drive, QStringLiteral("/tmp/a b.dmg"), true);
        QCOMPARE(burn.arguments, (QStringList{"burn", "/tmp/a b.dmg", "-verbose"}));
        QCOMPARE(tool.burnImageCommand(drive, QStringLiteral("/tmp/a b.dmg"), false).arguments,
                 (QStringList{"burn", "/tmp/a b.dmg", "-verbose", "-noverifyburn"}));
        QVERIFY(tool.checksItsWriting());
        QVERIFY(!burn.arguments.contains(QStringLiteral("-drive")));
        QVERIFY(!burn.arguments.contains(QStringLiteral("2")));
        QCOMPARE(tool.progressKind(), ImageProgress::Kind::DiscRecordingPercent);
    }

    void xorrisoCommandsNameTheVolumeAndTheDevice()
    {
        XorrisoImageTool tool(QStringLiteral("/usr/bin/xorriso"));
        const ToolCommand make = tool.makeImageCommand(QStringLiteral("/home/me/out dir/image.iso"),
                                                       QStringLiteral("/home/me/Holiday Photos/"));
        QCOMPARE(make.program, QStringLiteral("/usr/bin/xorriso"));
        QCOMPARE(make.arguments, (QStringList{"-pacifier", "interval=0.2", "-as", "mkisofs", "-J", "-R", "-V", "Holiday Photos", "-o",
                                              "/home/me/out dir/image.iso", "/home/me/Holiday Photos/"}));
        Object_Optical_Drive drive;
        drive.s_Device_Path = QStringLiteral("/dev/sr1");
        const ToolCommand burn = tool.burnImageCommand(drive, QStringLiteral("/tmp/x y.img"));
        QCOMPARE(burn.arguments, (QStringList{"-pacifier", "interval=0.2", "-as", "cdrecord", "-v", "-nopad", "dev=/dev/sr1", "/tmp/x y.img"}));
        // The image is compared with the disc afterwards: the command is the same.
        QCOMPARE(tool.burnImageCommand(drive, QStringLiteral("/tmp/x y.img"), true).arguments, burn.arguments);
        QVERIFY(!tool.checksItsWriting());
        QCOMPARE(tool.progressKind(), ImageProgress::Kind::XorrisoRecordPercent);
    }

    void factoryFollowsTheBackend()
    {
        ToolPaths mac;
        mac.backend = ToolPaths::Backend::MacOS;
        mac.hdiutil = QStringLiteral("/usr/bin/hdiutil");
        mac.xorriso = QStringLiteral("/usr/bin/xorriso");
        auto a = ImageTool::create(mac);
        QCOMPARE(a->makeImageCommand("d", "s").program, QStringLiteral("/usr/bin/hdiutil"));
        ToolPaths onLinux = mac;
        onLinux.backend = ToolPaths::Backend::Linux;
        auto b = ImageTool::create(onLinux);
        QCOMPARE(b->makeImageCommand("d", "s").program, QStringLiteral("/usr/bin/xorriso"));
        QVERIFY(a->progressKind() != b->progressKind());
    }

    void volumeIdStaysWithinThirtyTwoBytes()
    {
        QCOMPARE(XorrisoImageTool::volumeIdFor(QStringLiteral("Photos")), QStringLiteral("Photos"));
        const QString longAscii(40, QLatin1Char('a'));
        QCOMPARE(XorrisoImageTool::volumeIdFor(longAscii), QString(32, QLatin1Char('a')));
        // Two-byte letters are never cut in half.
        const QString accents = QStringLiteral("ééééééééééééééééééééé");  // 21 x 2 bytes
        const QString cut = XorrisoImageTool::volumeIdFor(accents);
        QCOMPARE(cut.toUtf8().size(), 32);
        QCOMPARE(cut, accents.left(16));
        const QString odd = QStringLiteral("a") + accents;  // 1 + 42 bytes
        QCOMPARE(XorrisoImageTool::volumeIdFor(odd).toUtf8().size(), 31);
        // A surrogate pair (4 bytes) stays whole.
        const QString emoji = QString(30, QLatin1Char('x')) + QString::fromUtf8("\xF0\x9F\x93\xB7");
        QCOMPARE(XorrisoImageTool::volumeIdFor(emoji), QString(30, QLatin1Char('x')));
        QCOMPARE(XorrisoImageTool::volumeIdFor(QString()), QStringLiteral("ISOIMAGE"));
        QCOMPARE(XorrisoImageTool::folderName(QStringLiteral("/a/b/Photos/")), QStringLiteral("Photos"));
    }

    // ---- staging names --------------------------------------------------
    void stagingNamesForRepeatedFolderNames()
    {
        QTemporaryDir tmp;
        const QString data = tmp.path() + "/TambloData";
        QDir().mkpath(data);
        for (const char *p : {"/a/Photos", "/b/Photos", "/c/Photos", "/d/Music"})
            QDir().mkpath(tmp.path() + p);
        QList<NodeDataFolder> list;
        quint64 kib = 10;
        for (const char *p : {"/a/Photos", "/b/Photos", "/d/Music", "/c/Photos"})
            list << folderRecord(tmp.path() + p, kib++);
        const DataBurnPlan plan = DataBurnPlan::make(list, data);
        QCOMPARE(plan.entries().size(), 4);
        const auto &e = plan.entries();
        QCOMPARE(e[0].destinationFolder, data);
        QCOMPARE(e[0].discPath, QStringLiteral("/Photos"));
        QCOMPARE(e[1].destinationFolder, data + "/Photos 1");
        QCOMPARE(e[1].discPath, QStringLiteral("/Photos 1/Photos"));
        QCOMPARE(e[2].destinationFolder, data);
        QCOMPARE(e[2].discPath, QStringLiteral("/Music"));
        QCOMPARE(e[3].destinationFolder, data + "/Photos 2");
        QCOMPARE(e[3].discPath, QStringLiteral("/Photos 2/Photos"));
        // Every copy of a name is measured at DATA/name.
        QCOMPARE(e[0].base, data + "/Photos");
        QCOMPARE(e[1].base, data + "/Photos");
        QCOMPARE(e[3].base, data + "/Photos");
        QCOMPARE(e[2].base, data + "/Music");
        QCOMPARE(e[1].recordedKiB, quint64(11));
        QCOMPARE(e[1].source, tmp.path() + "/b/Photos");
    }

    void stagingNamesAvoidWhatExistsAndAListedNumberedName()
    {
        QTemporaryDir tmp;
        const QString data = tmp.path() + "/D";
        QDir().mkpath(data + "/Photos");   // left over: taken
        QDir().mkpath(data + "/Photos 1"); // taken too
        QDir().mkpath(tmp.path() + "/a/Photos");
        QDir().mkpath(tmp.path() + "/b/Photos 3");
        QDir().mkpath(tmp.path() + "/c/Photos");
        QList<NodeDataFolder> list;
        for (const char *p : {"/a/Photos", "/b/Photos 3", "/c/Photos"})
            list << folderRecord(tmp.path() + p);
        const DataBurnPlan plan = DataBurnPlan::make(list, data);
        QCOMPARE(plan.entries().at(0).discPath, QStringLiteral("/Photos 2/Photos"));
        QCOMPARE(plan.entries().at(1).discPath, QStringLiteral("/Photos 3"));
        QCOMPARE(plan.entries().at(2).discPath, QStringLiteral("/Photos 4/Photos"));
    }

    void stagingNamesCompareWithoutCaseWhereTheDiskDoes()
    {
        QTemporaryDir tmp;
        QDir().mkpath(tmp.path() + "/a/Photos");
        QDir().mkpath(tmp.path() + "/b/photos");
        QList<NodeDataFolder> list;
        for (const char *p : {"/a/Photos", "/b/photos"})
            list << folderRecord(tmp.path() + p);
        const DataBurnPlan sensitive = DataBurnPlan::make(list, tmp.path() + "/D", Qt::CaseSensitive);
        QCOMPARE(sensitive.entries().at(1).discPath, QStringLiteral("/photos"));
        const DataBurnPlan insensitive = DataBurnPlan::make(list, tmp.path() + "/D", Qt::CaseInsensitive);
        QCOMPARE(insensitive.entries().at(1).discPath, QStringLiteral("/photos 1/photos"));
    }

    void missingFoldersAreLeftOutAndTakeNoName()
    {
        QTemporaryDir tmp;
        QDir().mkpath(tmp.path() + "/b/Photos");
        QList<NodeDataFolder> list;
        for (const char *p : {"/a/Photos", "/b/Photos"})
            list << folderRecord(tmp.path() + p);
        const DataBurnPlan plan = DataBurnPlan::make(list, tmp.path() + "/D");
        QCOMPARE(plan.skipped(), QStringList{tmp.path() + "/a/Photos"});
        QCOMPARE(plan.entries().size(), 1);
        QCOMPARE(plan.entries().at(0).discPath, QStringLiteral("/Photos"));
        const DataBurnPlan kept = DataBurnPlan::make(list, tmp.path() + "/D", Qt::CaseSensitive, false);
        QCOMPARE(kept.entries().size(), 2);
        QCOMPARE(kept.entries().at(1).discPath, QStringLiteral("/Photos 1/Photos"));
    }

    void burnCommandsOfADataDisc()
    {
        QTemporaryDir tmp;
        QDir().mkpath(tmp.path() + "/a/Photos");
        QDir().mkpath(tmp.path() + "/b/Photos");
        QList<NodeDataFolder> list;
        for (const char *p : {"/a/Photos", "/b/Photos/"})
            list << folderRecord(tmp.path() + p);
        const QString data = tmp.path() + "/TambloData";
        const DataBurnPlan plan = DataBurnPlan::make(list, data);
        const ToolCommand mac = plan.drutilBurnCommand(QStringLiteral("/usr/bin/drutil"), QStringLiteral("1"), true);
        QCOMPARE(mac.program, QStringLiteral("/usr/bin/drutil"));
        QCOMPARE(mac.arguments, (QStringList{"burn", data, "-drive", "1"}));
        QCOMPARE(plan.drutilBurnCommand(QStringLiteral("/usr/bin/drutil"), QStringLiteral("1"), false).arguments,
                 (QStringList{"burn", "-noverify", data, "-drive", "1"}));
        const ToolCommand onLinux = plan.xorrisoBurnCommand(QStringLiteral("/usr/bin/xorriso"), QStringLiteral("/dev/sr0"));
        QCOMPARE(onLinux.arguments, (QStringList{"-pacifier", "interval=0.2", "-outdev", "/dev/sr0", "-joliet", "on", "-volid", "TambloData",
                                               "-map", tmp.path() + "/a/Photos", "/Photos",
                                               "-map", tmp.path() + "/b/Photos", "/Photos 1/Photos", "-commit"}));
        QVERIFY(!onLinux.arguments.contains(QStringLiteral("-blank")));
        // Verifying: the checksums go onto the disc; the listed folders are
        // what is read back.
        const ToolCommand checked = plan.xorrisoBurnCommand(QStringLiteral("/usr/bin/xorriso"), QStringLiteral("/dev/sr0"), true);
        QCOMPARE(checked.arguments.mid(0, 6), (QStringList{"-pacifier", "interval=0.2", "-md5", "on", "-outdev", "/dev/sr0"}));
        QCOMPARE(checked.arguments.mid(6), onLinux.arguments.mid(4));
        QCOMPARE(plan.discPaths(), (QStringList{"/Photos", "/Photos 1/Photos"}));
    }

    // ---- panels, texts, count -------------------------------------------
    void panelsOfTheIsoTabAndDuplication()
    {
        const PickRequest src = IsoCreation::sourceRequest();
        QCOMPARE(src.kind, PickRequest::Kind::Folder);
        QVERIFY(!src.multiple);
        QCOMPARE(src.message, QStringLiteral("Select a folder to export to ISO format."));
        QVERIFY(src.startFolder.isEmpty());
        const PickRequest dst = IsoCreation::destinationRequest(QStringLiteral("/home/me"));
        QCOMPARE(dst.kind, PickRequest::Kind::Folder);
        QVERIFY(!dst.multiple);
        QCOMPARE(dst.message, QStringLiteral("Select a folder to save the Image.iso file."));
        QCOMPARE(dst.startFolder, QStringLiteral("/home/me/Documents"));
        const PickRequest img = IsoCreation::imageRequest();
        QCOMPARE(img.kind, PickRequest::Kind::Files);
        QVERIFY(!img.multiple);
        QCOMPARE(img.allowedExtensions, (QStringList{"iso", "img", "dmg"}));
        QCOMPARE(img.message, QStringLiteral("Select a ISO image to burn to media."));
        QVERIFY(img.startFolder.isEmpty());
        const PickRequest vol = IsoCreation::volumeRequest();
        QCOMPARE(vol.kind, PickRequest::Kind::Folder);
        QCOMPARE(vol.message, QStringLiteral("Select a volume to duplicate."));
        QVERIFY(vol.startFolder.isEmpty());
        QCOMPARE(IsoCreation::destPathISO(QStringLiteral("/x/My Dir")), QStringLiteral("/x/My Dir/image.iso"));
    }

    void oldImageRemovalIgnoresFailures()
    {
        QTemporaryDir tmp;
        const QString iso = tmp.path() + "/image.iso";
        QVERIFY(!IsoCreation::removeOldImage(iso));  // nothing there: no error
        writeFile(iso, "old");
        QVERIFY(IsoCreation::removeOldImage(iso));
        QVERIFY(!QFileInfo::exists(iso));
        QVERIFY(!IsoCreation::removeOldImage(QStringLiteral("/proc/version/image.iso")));
    }

    void alertTextsOfTheDataBurn()
    {
        const AlertRequest none = ImageMessages::noFolders();
        QCOMPARE(none.messageText, QStringLiteral("No folders on the list"));
        QCOMPARE(none.informativeText, QStringLiteral("There are no folders on the list. Add folders to the list and try again."));
        QCOMPARE(none.buttons, QStringList{"Close"});
        const MediumRefusals refusals = ImageMessages::dataDiscRefusals(ImageMessages::DataDisc::CD);
        QCOMPARE(refusals.noDisc.informativeText,
                 QStringLiteral("There is no disc on the drive. insert a writable media on the drive and try again."));
        QCOMPARE(ImageMessages::noDiscToCopy().informativeText,
                 QStringLiteral("There is no disc on the drive. insert a media on the drive to copy and try again."));
        QCOMPARE(refusals.notWritable.messageText, QStringLiteral("Media not writable"));
        QCOMPARE(refusals.notWritable.informativeText,
                 QStringLiteral("The media on the drive is not writable. insert a writable media on the drive and try again."));
        struct Row { ImageMessages::DataDisc kind; const char *word, *title, *text, *debug; };
        const Row rows[] = {
            {ImageMessages::DataDisc::CD, "CD", "Media not CD",
             "The media on the drive is not a CD. insert a writable CD on the drive and try again.", "Warning 0070."},
            {ImageMessages::DataDisc::DVD, "DVD", "Media not DVD",
             "The media on the drive is not a DVD. insert a writable DVD on the drive and try again.", "Warning 0020."},
            {ImageMessages::DataDisc::Bluray, "BD", "Media not Blu-ray",
             "The media on the drive is not a Blu-ray. insert a writable Blu-ray on the drive and try again.", "Warning 0090."},
        };
        for (const Row &r : rows) {
            QCOMPARE(ImageMessages::dataDisc(r.kind).mediaWord, QString::fromLatin1(r.word));
            const AlertRequest wrong = ImageMessages::wrongMedia(r.kind);
            QCOMPARE(wrong.messageText, QString::fromLatin1(r.title));
            QCOMPARE(wrong.informativeText, QString::fromLatin1(r.text));
            // In debug mode the chain adds an alert titled with the kind read,
            // carrying this code, with one button "Close".
            const MediumRefusals refusals = ImageMessages::dataDiscRefusals(r.kind);
            QCOMPARE(refusals.wrongMedium.messageText, QString::fromLatin1(r.title));
            QCOMPARE(refusals.wrongMedium.buttons, QStringList{"Close"});
            QCOMPARE(refusals.debugCode, QString::fromLatin1(r.debug));
        }
    }

    void duplicationQuestions()
    {
        const AlertRequest count = ImageMessages::copyCountQuestion();
        QCOMPARE(count.messageText, QStringLiteral("Enter Number of Copies"));
        QVERIFY(count.hasInput);
        QCOMPARE(count.inputDefault, QStringLiteral("1"));
        QCOMPARE(count.buttons, (QStringList{"OK", "Cancel"}));
        QVERIFY(count.informativeText.isEmpty());
        const AlertRequest blank = ImageMessages::insertBlankQuestion(0, 0);
        QCOMPARE(blank.buttons, (QStringList{"Burn Copy 1 of 0", "Cancel"}));
        QVERIFY(blank.warningStyle);
        QCOMPARE(blank.messageText,
                 QStringLiteral("Insert a writable media and click OK or click Cancel to stop the media duplication."));
        QCOMPARE(blank.informativeText, blank.messageText);
        QCOMPARE(ImageMessages::burnCopyButton(1, 2), QStringLiteral("Burn Copy 2 of 2"));
    }

    void copyCountFromTheAnswer_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<int>("previous");
        QTest::addColumn<int>("expected");
        QTest::newRow("one") << "1" << 0 << 1;
        QTest::newRow("zero gives one") << "0" << 5 << 1;
        QTest::newRow("text gives one") << "abc" << 5 << 1;
        QTest::newRow("empty gives one") << "" << 5 << 1;
        QTest::newRow("two") << "2" << 0 << 2;
        QTest::newRow("leading digits") << "3x" << 0 << 3;
        QTest::newRow("blanks first") << "  4" << 0 << 4;
        QTest::newRow("plus sign") << "+6" << 0 << 6;
        QTest::newRow("negative keeps") << "-3" << 7 << 7;
        QTest::newRow("negative keeps zero") << "-3" << 0 << 0;
        QTest::newRow("no upper bound") << "250" << 0 << 250;
        QTest::newRow("huge clamps") << "99999999999" << 0 << std::numeric_limits<int>::max();
        QTest::newRow("digits after text") << "x3" << 2 << 1;
    }
    void copyCountFromTheAnswer()
    {
        QFETCH(QString, answer);
        QFETCH(int, previous);
        QFETCH(int, expected);
        QCOMPARE(Duplication::parseCopyCount(answer, previous), expected);
    }

    void duplicationCompletesWhenTheCounterReachesTheCount()
    {
        QVERIFY(!Duplication::isComplete(1, 2));
        QVERIFY(Duplication::isComplete(2, 2));
        QVERIFY(Duplication::isComplete(1, 0));  // a first run asked for "of 0"
        QVERIFY(Duplication::isComplete(3, 2));
        QCOMPARE(Duplication::imagePath(QStringLiteral("/d/TambloData")), QStringLiteral("/d/TambloData/image.iso"));
        HdiutilImageTool tool(QStringLiteral("/usr/bin/hdiutil"));
        QCOMPARE(Duplication::imagingCommand(tool, QStringLiteral("/d/TambloData"), QStringLiteral("/Volumes/CD")).arguments,
                 (QStringList{"makehybrid", "-o", "/d/TambloData/image.iso", "/Volumes/CD", "-iso", "-joliet"}));
    }
};

TAMBLO_TEST_MAIN(TestImagesLogic)
#include "tst_images_logic.moc"
