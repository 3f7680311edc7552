#include "support/DriveQueries.h"
#include "support/Files.h"
#include "support/TestMain.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "drives/DriveBackendFactory.h"
#include "drives/DrutilBackend.h"
#include "drives/XorrisoBackend.h"
#include "drives/XorrisoParsing.h"
#include "toolrun/ToolProcess.h"

#define STATUS(var, backend, drive)             \
    MediaStatus var;                            \
    statusOnce(backend, drive, var, 30000, 20); \
    if (QTest::currentTestFailed())             \
        return;

static const QString kArgsLogger = fake("args-logger");
static const QString kHangTool = fake("hang-tool");
static const QString kNoPermission = fake("xorriso-permission-denied");

static QByteArray checksum(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QByteArray();
    return QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha1);
}

class TestDrivesXorrisoBackend : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_xorriso;

    // Runs a command to its end (tests only) and returns what it printed.
    QString runToEnd(const ToolCommand &command)
    {
        QProcess p;
        ToolProcess::prepare(p, command, QProcess::MergedChannels);
        p.start();
        if (!p.waitForFinished(60000))
            qWarning("command did not end: %s", qPrintable(command.arguments.join(' ')));
        return QString::fromUtf8(p.readAll());
    }

    QString writeIso(const QString &name)
    {
        const QString data = m_dir.filePath(name + "-data");
        writeFile(data + "/sub/file.txt", QByteArray(100000, 'x'));
        const QString iso = m_dir.filePath(name);
        runToEnd({m_xorriso, {"-outdev", "stdio:" + iso, "-map", data, "/", "-commit"}});
        return iso;
    }

    static void check(const MediaAnswers &a, bool empty, bool writable, bool rewritable, const QString &family)
    {
        QCOMPARE(a.driveEmpty, empty);
        QCOMPARE(a.oneTimeWritable, writable);
        QCOMPARE(a.reWritable, rewritable);
        QCOMPARE(a.family, family);
    }

private slots:
    void initTestCase()
    {
        m_xorriso = QStandardPaths::findExecutable("xorriso");
        QVERIFY2(!m_xorriso.isEmpty(), "xorriso must be installed for the tests");
        QVERIFY(m_dir.isValid());
    }

    void factoryPicksByPlatform()
    {
        QObject owner;
        ToolPaths onLinux;
        onLinux.backend = ToolPaths::Backend::Linux;
        onLinux.xorriso = m_xorriso;
        onLinux.eject = "/usr/bin/eject";
        auto *x = qobject_cast<XorrisoBackend *>(createDriveBackend(onLinux, &owner));
        QVERIFY(x);
        QCOMPARE(x->parent(), &owner);
        QCOMPARE(x->listCommand(), (ToolCommand{m_xorriso, {"-devices"}}));
        QCOMPARE(x->trayCommand(numberedDrive("1", "/dev/sr0"), false), (ToolCommand{"/usr/bin/eject", {"-t", "/dev/sr0"}}));

        ToolPaths mac;
        mac.backend = ToolPaths::Backend::MacOS;
        mac.drutil = "/usr/bin/drutil";
        auto *d = qobject_cast<DrutilBackend *>(createDriveBackend(mac, &owner));
        QVERIFY(d);
        QCOMPARE(d->listCommand(), (ToolCommand{"/usr/bin/drutil", {"list"}}));
    }

    void listWithRealXorriso()
    {
        XorrisoBackend backend(m_xorriso, "eject");
        DriveList got{numberedDrive("1", "x")};
        bool answered = false;
        backend.listDrives([&](const DriveList &l) { got = l; answered = true; });
        QVERIFY(!answered);
        QTRY_VERIFY_WITH_TIMEOUT(answered, 30000);
        const QStringList optical = QDir("/dev").entryList({"sr*"}, QDir::System);
        if (optical.isEmpty()) {
            QCOMPARE(got.size(), 0);  // "No drives found"
        } else {
            for (int i = 0; i < got.size(); ++i) {
                QCOMPARE(got[i].s_Drive_Number, QString::number(i + 1));
                QVERIFY(got[i].s_Device_Path.startsWith("/dev/"));
            }
        }
    }

    void listFromPrintedRows()
    {
        // A stand-in xorriso that prints a real one-drive listing.
        const QString script = m_dir.filePath("xorriso-one-drive");
        QVERIFY(writeScript(script, "#!/bin/sh\n[ \"$1\" = -devices ] && cat '" TAMBLO_FIXTURES_DIR
                                    "/xorriso-devices-one-drive-1.4.2.txt'\n"));
        XorrisoBackend backend(script, "eject");
        DriveList got;
        bool answered = false;
        backend.listDrives([&](const DriveList &l) { got = l; answered = true; });
        QTRY_VERIFY_WITH_TIMEOUT(answered, 10000);
        QCOMPARE(got.size(), 1);
        QCOMPARE(got[0].s_Drive_Number, QString("1"));
        QCOMPARE(got[0].s_Device_Path, QString("/dev/sr0"));
        QCOMPARE(got[0].label(), QString("TSSTcorp - DVD+-RW TS-L633J"));
    }

    // xorriso run by a user outside the cdrom group, on a machine with /dev/sr0.
    void driveWithoutPermission()
    {
        int nodeChecks = 0;
        XorrisoBackend backend(kNoPermission, "eject", nullptr, XorrisoBackend::DefaultListTimeoutMs,
                               XorrisoBackend::DefaultStatusTimeoutMs, [&nodeChecks] {
                                   ++nodeChecks;
                                   return QStringList{"/dev/sr0"};
                               });
        QVERIFY(!backend.access().denied());
        DriveList got{numberedDrive("1", "x")};
        DriveAccess seenInCallback;
        bool answered = false;
        backend.listDrives([&](const DriveList &l) {
            got = l;
            seenInCallback = backend.access();
            answered = true;
        });
        QTRY_VERIFY_WITH_TIMEOUT(answered, 10000);
        QVERIFY(got.isEmpty());
        QCOMPARE(seenInCallback.deniedDevices, QStringList{"/dev/sr0"});
        QCOMPARE(nodeChecks, 1);

        // A status query that cannot open a drive (listed before, say) says
        // so by itself, and reads as an empty drive.
        XorrisoBackend fresh(kNoPermission, "eject", nullptr, XorrisoBackend::DefaultListTimeoutMs,
                             XorrisoBackend::DefaultStatusTimeoutMs, [] { return QStringList(); });
        STATUS(s, fresh, numberedDrive("1", "/dev/sr0"))
        QVERIFY2(s.text.contains("Failed to open device '/dev/sr0' : Permission denied"), qPrintable(s.text));
        check(s.answers, true, false, false, "Other");
        QCOMPARE(fresh.access().deniedDevices, QStringList{"/dev/sr0"});
    }

    void noDriveListedWithoutNodesIsNoPermissionProblem()
    {
        // The real xorriso on this machine; the node check says there is no /dev/sr*.
        XorrisoBackend backend(m_xorriso, "eject", nullptr, XorrisoBackend::DefaultListTimeoutMs,
                               XorrisoBackend::DefaultStatusTimeoutMs, [] { return QStringList(); });
        bool answered = false;
        DriveList got;
        backend.listDrives([&](const DriveList &l) { got = l; answered = true; });
        QTRY_VERIFY_WITH_TIMEOUT(answered, 30000);
        if (got.isEmpty())
            QVERIFY(!backend.access().denied());
        else
            QVERIFY(!backend.access().forDrive(got.first()).denied());
    }

    void blankNewFileIsNotCreated()
    {
        XorrisoBackend backend(m_xorriso, "eject");
        const QString path = m_dir.filePath("new.iso");
        STATUS(s, backend, numberedDrive("1", "stdio:" + path))
        QVERIFY2(s.text.contains("Media status : is blank"), qPrintable(s.text));
        check(s.answers, false, true, true, "Other");
        QVERIFY2(!QFile::exists(path), "the status query must not create the file");
    }

    void blankEmptyFile()
    {
        const QString path = m_dir.filePath("empty.img");
        QVERIFY(writeFile(path, QByteArray()));
        XorrisoBackend backend(m_xorriso, "eject");
        STATUS(s, backend, numberedDrive("1", "stdio:" + path))
        check(s.answers, false, true, true, "Other");
        QCOMPARE(QFileInfo(path).size(), 0);
    }

    void writtenIsoIsAppendableAndUntouched()
    {
        const QString iso = writeIso("written.iso");
        QVERIFY(QFileInfo(iso).size() > 0);
        const QByteArray before = checksum(iso);
        XorrisoBackend backend(m_xorriso, "eject");
        STATUS(s, backend, numberedDrive("1", "stdio:" + iso))
        QVERIFY2(s.text.contains("is written , is appendable"), qPrintable(s.text));
        QVERIFY(s.text.contains("ISO session  :   1"));  // the -toc part, from standard output
        check(s.answers, false, true, true, "Other");
        QCOMPARE(checksum(iso), before);
    }

    void secondSessionStillAppendable()
    {
        const QString iso = writeIso("two.iso");
        const QString more = m_dir.filePath("more");
        QVERIFY(writeFile(more + "/b.txt", "second"));
        runToEnd({m_xorriso, {"-dev", "stdio:" + iso, "-map", more, "/more", "-commit"}});
        XorrisoBackend backend(m_xorriso, "eject");
        STATUS(s, backend, numberedDrive("1", "stdio:" + iso))
        QVERIFY2(s.text.contains("2 sessions"), qPrintable(s.text));
        check(s.answers, false, true, true, "Other");
    }

    void closedNonIsoData()
    {
        const QString path = m_dir.filePath("junk.img");
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        QByteArray junk(1024 * 1024, '\0');
        for (int i = 0; i < junk.size(); ++i)
            junk[i] = char((i * 2654435761u) >> 24);
        f.write(junk);
        f.close();
        XorrisoBackend backend(m_xorriso, "eject");
        STATUS(s, backend, numberedDrive("1", "stdio:" + path))
        QVERIFY2(s.text.contains("is written , is closed"), qPrintable(s.text));
        check(s.answers, false, false, true, "Other");
    }

    void sequentialDevNull()
    {
        XorrisoBackend backend(m_xorriso, "eject");
        STATUS(s, backend, numberedDrive("1", "stdio:/dev/null"))
        QVERIFY2(s.text.contains("stdio file, sequential"), qPrintable(s.text));
        check(s.answers, false, true, false, "Other");
    }

    void unopenableDriveIsEmpty()
    {
        XorrisoBackend backend(m_xorriso, "eject");
        STATUS(s, backend, numberedDrive("1", "stdio:" + m_dir.filePath("no/such/dir/x.iso")))
        QVERIFY2(s.text.contains("Cannot acquire drive"), qPrintable(s.text));
        check(s.answers, true, false, false, "Other");
        STATUS(absent, backend, numberedDrive("1", "/dev/tamblo-no-such-drive"))
        check(absent.answers, true, false, false, "Other");
    }

    void eraseMakesWrittenIsoBlank_data()
    {
        QTest::addColumn<bool>("full");
        QTest::newRow("quick") << false;
        QTest::newRow("full") << true;
    }

    void eraseMakesWrittenIsoBlank()
    {
        QFETCH(bool, full);
        const QString iso = writeIso(full ? "erase-full.iso" : "erase-quick.iso");
        XorrisoBackend backend(m_xorriso, "eject");
        const ToolCommand erase = backend.eraseCommand(numberedDrive("1", "stdio:" + iso), full);
        QCOMPARE(erase.arguments, QStringList({"-outdev", "stdio:" + iso, "-blank", full ? "all" : "fast"}));
        const QString out = runToEnd(erase);
        QVERIFY2(out.contains(QStringLiteral("Beginning to blank medium in mode '%1'.").arg(full ? "all" : "fast")),
                 qPrintable(out));
        QVERIFY2(out.contains("Blanking done"), qPrintable(out));
        STATUS(s, backend, numberedDrive("1", "stdio:" + iso))
        QVERIFY2(s.text.contains("Media status : is blank"), qPrintable(s.text));
        check(s.answers, false, true, true, "Other");
    }

    void discInfoIsTheStatusQuery()
    {
        const QString iso = writeIso("info.iso");
        XorrisoBackend backend(m_xorriso, "eject");
        const ToolCommand info = backend.discInfoCommand(numberedDrive("1", "stdio:" + iso));
        QCOMPARE(info, XorrisoParsing::statusCommand(m_xorriso, "stdio:" + iso));
        const QString text = runToEnd(info);
        QVERIFY(text.contains("Media current: stdio file, overwriteable"));
        QVERIFY(text.contains("Media summary: 1 session"));
    }

    void noDeviceRunsNothing()
    {
        const QString log = m_dir.filePath("nodevice.log");
        qputenv("TAMBLO_FAKE_ARGS_LOG", log.toLocal8Bit());
        XorrisoBackend backend(kArgsLogger, kArgsLogger);
        Object_Optical_Drive none;  // nothing was listed
        STATUS(s, backend, none)
        QVERIFY(s.text.isEmpty());
        check(s.answers, true, false, false, "Other");
        backend.ejectTray(none);
        backend.closeTray(none);
        QTest::qWait(300);
        QVERIFY2(!QFile::exists(log), qPrintable(readText(log)));
        QVERIFY(backend.eraseCommand(none, true).isNull());
        QVERIFY(backend.eraseCommand(none, false).isNull());
        QCOMPARE(backend.discInfoCommand(none), (ToolCommand{kArgsLogger, {"-devices"}}));
        qunsetenv("TAMBLO_FAKE_ARGS_LOG");
    }

    void trayCommandsAreLaunched()
    {
        const QString log = m_dir.filePath("eject.log");
        qputenv("TAMBLO_FAKE_ARGS_LOG", log.toLocal8Bit());
        XorrisoBackend backend(m_xorriso, kArgsLogger);
        backend.ejectTray(numberedDrive("1", "/dev/sr3"));
        QTRY_COMPARE_WITH_TIMEOUT(readText(log), QString("/dev/sr3\n"), 10000);
        backend.closeTray(numberedDrive("1", "/dev/sr3"));
        QTRY_COMPARE_WITH_TIMEOUT(readText(log), QString("/dev/sr3\n-t|/dev/sr3\n"), 10000);
        qunsetenv("TAMBLO_FAKE_ARGS_LOG");
    }

    void missingXorriso()
    {
        XorrisoBackend backend(m_dir.filePath("no-such-xorriso"), "eject");
        STATUS(s, backend, numberedDrive("1", "/dev/sr0"))
        QVERIFY(s.text.isEmpty());
        check(s.answers, true, false, false, "Other");
        DriveList got{numberedDrive("1", "x")};
        bool answered = false;
        backend.listDrives([&](const DriveList &l) { got = l; answered = true; });
        QTRY_VERIFY_WITH_TIMEOUT(answered, 10000);
        QVERIFY(got.isEmpty());
    }

    void hangingXorrisoTimesOut()
    {
        XorrisoBackend backend(kHangTool, "eject", nullptr, 300, 300);
        QElapsedTimer clock;
        clock.start();
        STATUS(s, backend, numberedDrive("1", "/dev/sr0"))
        QVERIFY2(clock.elapsed() < 5000, qPrintable(QString::number(clock.elapsed())));
        // The hanging tool printed a "Media status : is blank" line first; it is dropped.
        QVERIFY(!s.answered);
        QCOMPARE(s.verdict.outcome, ToolVerdict::Outcome::TimedOut);
        QVERIFY(s.text.isEmpty());
        check(s.answers, true, false, false, "Other");
        DriveList got{numberedDrive("1", "x")};
        bool answered = false;
        backend.listDrives([&](const DriveList &l) { got = l; answered = true; });
        QTRY_VERIFY_WITH_TIMEOUT(answered, 5000);
        QVERIFY(got.isEmpty());
        QTest::qWait(200);  // let the killed child be reaped before the backend goes
    }
};

TAMBLO_TEST_MAIN(TestDrivesXorrisoBackend)
#include "tst_drives_xorriso_backend.moc"
