// Disc duplication: imaging the volume, ejecting, the count question and its
// odd answers, the blank-disc loop with its re-asking, cancelling at either
// question, with a stand-in hdiutil and with real xorriso making two copies.
#include "support/FakeAlerts.h"
#include "support/FakeFilePicker.h"
#include "support/FlowRig.h"
#include "support/ScopedEnv.h"
#include "support/TestMain.h"

#include <QTemporaryDir>

#include "drives/MediaQuestions.h"
#include "support/SheetLog.h"
#include "support/DiscImages.h"
#include "support/FakeDriveBackend.h"
#include "support/Files.h"
#include "images/DuplicationFlow.h"

namespace {

const QString insertText = QStringLiteral("Insert a writable media and click OK or click Cancel to stop the media duplication.");

// A volume to copy, the source disc in the drive (a finished CD), and the
// stand-in hdiutil noting its runs and burning as recorded.
struct Rig : FlowRig {
    QString volume = tmp.path() + "/Volumes/MY DISC";
    QString hdiutilLog = tmp.path() + "/hdiutil.log";
    ScopedEnv env;

    explicit Rig(ToolPaths::Backend backend) : FlowRig(backend)
    {
        writeFile(volume + "/README.txt", "readme\n");
        writeFile(volume + "/data/blob.bin", pseudoRandom(200000, 51));
        env.set("TAMBLO_FAKE_HDIUTIL_LOG", hdiutilLog);
        env.set("TAMBLO_FAKE_HDIUTIL_BURN", fixture("hdiutil-burn-iso-success-2023.txt"));
        drive.status = FakeDriveBackend::finished(QStringLiteral("CD"));  // the source disc
        // Taking a disc out puts a blank one in, unless a test says otherwise.
        drive.onEject = [this] { drive.status = FakeDriveBackend::blank(QStringLiteral("CD")); };
    }

    QStringList burnQuestions() const
    {
        QStringList out;
        for (const AlertRequest &r : alerts.shown)
            if (r.messageText == insertText)
                out << r.buttons.value(0);
        return out;
    }
    QStringList burns() const
    {
        QStringList out;
        for (const QString &l : readLines(hdiutilLog))
            if (l.startsWith(QLatin1String("burn|")))
                out << l;
        return out;
    }
};

} // namespace

class TestImagesDuplication : public QObject {
    Q_OBJECT
private slots:
    void anEmptyDriveStopsBeforeThePanel()
    {
        Rig rig(ToolPaths::Backend::MacOS);
        rig.drive.status = FakeDriveBackend::noDisc();
        DuplicationFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded());
        QCOMPARE(rig.alerts.texts(), QStringList{"No disc / There is no disc on the drive. insert a media on the drive to copy and try again."});
        QCOMPARE(rig.alerts.shown.first().buttons, QStringList{"Close"});
        QVERIFY(rig.picker.requests.isEmpty());
        QVERIFY(log.commands.isEmpty());
    }

    void cancellingTheVolumePanelChangesNothing()
    {
        Rig rig(ToolPaths::Backend::MacOS);
        writeFile(rig.data + "/earlier.iso", "x");
        DuplicationFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded());
        QCOMPARE(rig.picker.requests.size(), 1);
        QCOMPARE(rig.picker.requests.first().message, QStringLiteral("Select a volume to duplicate."));
        QCOMPARE(rig.picker.requests.first().kind, PickRequest::Kind::Folder);
        QVERIFY(rig.picker.requests.first().startFolder.isEmpty());
        QVERIFY(rig.alerts.shown.isEmpty());
        QVERIFY(QFileInfo::exists(rig.data + "/earlier.iso"));
        QCOMPARE(rig.drive.count("eject"), 0);
    }

    void twoCopiesWithTheStandInTool()
    {
        Rig rig(ToolPaths::Backend::MacOS);
        writeFile(rig.data + "/leftover", "x");
        rig.picker.answers.enqueue({rig.volume});
        rig.alerts.answer(0, QStringLiteral("2"));
        DuplicationFlow flow(rig.ctx);
        SheetLog log(&flow);
        bool imageMadeFresh = false;
        connect(&flow, &SheetFlow::toolStarted, this, [&](const QString &, const QStringList &args) {
            if (args.first() == QLatin1String("makehybrid"))
                imageMadeFresh = !QFileInfo::exists(rig.data + "/leftover");
        });
        QStringList countAsked;
        rig.alerts.onShow = [&](const AlertRequest &r) {
            if (r.hasInput)
                countAsked << QStringLiteral("%1 eject(s) before").arg(rig.drive.count("eject"));
        };
        flow.start();
        QVERIFY(log.waitEnded(1, 30000));
        QVERIFY(imageMadeFresh);
        const QString image = rig.data + "/image.iso";
        QCOMPARE(readLines(rig.hdiutilLog),
                 (QStringList{"makehybrid|-o|" + image + "|" + rig.volume + "|-iso|-joliet",
                              "burn|" + image + "|-verbose|-noverifyburn", "burn|" + image + "|-verbose|-noverifyburn"}));
        QCOMPARE(countAsked, QStringList{"1 eject(s) before"});
        const AlertRequest count = rig.alerts.shown.first();
        QCOMPARE(count.messageText, QStringLiteral("Enter Number of Copies"));
        QCOMPARE(count.inputDefault, QStringLiteral("1"));
        QCOMPARE(count.buttons, (QStringList{"OK", "Cancel"}));
        QCOMPARE(rig.burnQuestions(), (QStringList{"Burn Copy 1 of 2", "Burn Copy 2 of 2"}));
        for (const AlertRequest &r : rig.alerts.shown) {
            if (r.messageText == insertText) {
                QCOMPARE(r.informativeText, insertText);
                QCOMPARE(r.buttons.value(1), QStringLiteral("Cancel"));
                QVERIFY(r.warningStyle);
            }
        }
        QCOMPARE(rig.drive.count("eject"), 3);  // the source, then each copy
        QCOMPARE(flow.numberOfCopies(), 2);
        QCOMPARE(flow.copiesDone(), 2);
        QCOMPARE(log.sheets(), (QStringList{
            "toolStarted", "showPerformingOperation", "toolFinished", "closePerformingOperation",
            "showPerformingOperation", "toolStarted", "toolFinished", "closePerformingOperation",
            "showPerformingOperation", "toolStarted", "toolFinished", "closePerformingOperation",
            "operationComplete", "ended"}));
        QVERIFY(log.progress.isEmpty());  // the stand-in reports nothing: the sheet spins
        QVERIFY(QDir(rig.data).isEmpty());
    }

    void odd_answers_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QStringList>("questions");
        QTest::newRow("0 makes one") << "0" << QStringList{"Burn Copy 1 of 1"};
        QTest::newRow("abc makes one") << "abc" << QStringList{"Burn Copy 1 of 1"};
        QTest::newRow("-3 on a first run") << "-3" << QStringList{"Burn Copy 1 of 0"};
        QTest::newRow("3x makes three") << "3x" << QStringList{"Burn Copy 1 of 3", "Burn Copy 2 of 3", "Burn Copy 3 of 3"};
    }
    void odd_answers()
    {
        QFETCH(QString, answer);
        QFETCH(QStringList, questions);
        Rig rig(ToolPaths::Backend::MacOS);
        rig.picker.answers.enqueue({rig.volume});
        rig.alerts.answer(0, answer);
        DuplicationFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded(1, 30000));
        QCOMPARE(rig.burnQuestions(), questions);
        QCOMPARE(rig.burns().size(), questions.size());
        QCOMPARE(log.sheets().last(2), (QStringList{"operationComplete", "ended"}));
    }

    void aNegativeAnswerKeepsThePreviousCount()
    {
        Rig rig(ToolPaths::Backend::MacOS);
        DuplicationFlow flow(rig.ctx);
        SheetLog log(&flow);
        rig.picker.answers.enqueue({rig.volume});
        rig.alerts.answer(0, QStringLiteral("2"));
        flow.start();
        QVERIFY(log.waitEnded(1, 30000));
        rig.drive.status = FakeDriveBackend::finished(QStringLiteral("CD"));
        rig.alerts.shown.clear();
        rig.picker.answers.enqueue({rig.volume});
        rig.alerts.answer(0, QStringLiteral("-3"));
        flow.start();
        QVERIFY(log.waitEnded(2, 30000));
        QCOMPARE(rig.burnQuestions(), (QStringList{"Burn Copy 1 of 2", "Burn Copy 2 of 2"}));
        QCOMPARE(rig.burns().size(), 4);
    }

    void anEmptyDriveAsksAgainWithTheSameNumbers()
    {
        Rig rig(ToolPaths::Backend::MacOS);
        rig.drive.onEject = [&rig] { rig.drive.status = FakeDriveBackend::noDisc(); };
        rig.picker.answers.enqueue({rig.volume});
        rig.alerts.answer(0, QStringLiteral("1"));
        int noDiscSeen = 0;
        rig.alerts.onShow = [&](const AlertRequest &r) {
            if (r.messageText == QLatin1String("No disc") && ++noDiscSeen == 2)
                rig.drive.status = FakeDriveBackend::blank(QStringLiteral("DVD"));  // put in at the second "No disc"
        };
        DuplicationFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded(1, 30000));
        QCOMPARE(noDiscSeen, 2);
        QCOMPARE(rig.burnQuestions(), (QStringList{"Burn Copy 1 of 1", "Burn Copy 1 of 1", "Burn Copy 1 of 1"}));
        const QStringList texts = rig.alerts.texts();
        QCOMPARE(texts.count("No disc / There is no disc on the drive. insert a writable media on the drive and try again."), 2);
        QCOMPARE(rig.burns().size(), 1);
        QCOMPARE(log.sheets().last(2), (QStringList{"operationComplete", "ended"}));
    }

    void aFinishedDiscAsksAgain()
    {
        Rig rig(ToolPaths::Backend::MacOS);
        rig.drive.onEject = [&rig] { rig.drive.status = FakeDriveBackend::finished(QStringLiteral("CD")); };
        rig.picker.answers.enqueue({rig.volume});
        rig.alerts.answer(0, QStringLiteral("1"));
        rig.alerts.onShow = [&](const AlertRequest &r) {
            if (r.messageText == QLatin1String("Media not writable"))
                rig.drive.status = FakeDriveBackend::rewritable(QStringLiteral("CD"));
        };
        DuplicationFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded(1, 30000));
        QCOMPARE(rig.burnQuestions(), (QStringList{"Burn Copy 1 of 1", "Burn Copy 1 of 1"}));
        QVERIFY(rig.alerts.texts().contains(
            "Media not writable / The media on the drive is not writable. insert a writable media on the drive and try again."));
        QCOMPARE(rig.burns().size(), 1);
    }

    void cancelAtTheBlankDiscQuestionDeletesTheImage()
    {
        Rig rig(ToolPaths::Backend::MacOS);
        rig.picker.answers.enqueue({rig.volume});
        rig.alerts.answer(0, QStringLiteral("3"));
        rig.alerts.answer(0);  // first copy
        rig.alerts.answer(1);  // Cancel before the second
        DuplicationFlow flow(rig.ctx);
        SheetLog log(&flow);
        bool imageBeforeCancel = false;
        rig.alerts.onShow = [&](const AlertRequest &r) {
            if (r.messageText == insertText)
                imageBeforeCancel = QFileInfo::exists(rig.data + "/image.iso");
        };
        flow.start();
        QVERIFY(log.waitEnded(1, 30000));
        QVERIFY(imageBeforeCancel);
        QCOMPARE(rig.burnQuestions(), (QStringList{"Burn Copy 1 of 3", "Burn Copy 2 of 3"}));
        QCOMPARE(rig.burns().size(), 1);
        QVERIFY(!log.events.contains("operationComplete"));
        QCOMPARE(log.sheets().last(2), (QStringList{"closePerformingOperation", "ended"}));
        QVERIFY(QDir(rig.data).isEmpty());
        QCOMPARE(flow.copiesDone(), 1);
        // The source volume is the user's: untouched.
        QVERIFY(QFileInfo::exists(rig.volume + "/README.txt"));
    }

    void cancelAtTheCountQuestionLeavesTheImage()
    {
        Rig rig(ToolPaths::Backend::MacOS);
        rig.picker.answers.enqueue({rig.volume});
        rig.alerts.answer(1);
        DuplicationFlow flow(rig.ctx);
        SheetLog log(&flow);
        flow.start();
        QVERIFY(log.waitEnded(1, 30000));
        QVERIFY(rig.burnQuestions().isEmpty());
        QVERIFY(rig.burns().isEmpty());
        QVERIFY(QFileInfo::exists(rig.data + "/image.iso"));
        QVERIFY(!log.events.contains("operationComplete"));
        QCOMPARE(rig.drive.count("eject"), 1);
    }

    void realDuplicationOfTwoCopies()
    {
        QVERIFY2(!xorrisoPath().isEmpty(), "xorriso must be installed");
        Rig rig(ToolPaths::Backend::Linux);
        writeFile(rig.volume + "/Ünïcødé/ñ.txt", "n\n");
        QDir().mkpath(rig.volume + "/empty");
        const QString drive = rig.disc;
        int copy = 0;
        rig.drive.onEject = [&] {
            // The disc in the drive comes out; a blank one goes in.
            if (QFileInfo::exists(drive))
                QFile::rename(drive, rig.tmp.path() + QStringLiteral("/copy%1.bin").arg(++copy));
            rig.drive.status = FakeDriveBackend::blank(QStringLiteral("CD"));
        };
        rig.picker.answers.enqueue({rig.volume});
        rig.alerts.answer(0, QStringLiteral("2"));
        DuplicationFlow flow(rig.ctx);
        SheetLog log(&flow);
        QByteArray image;
        connect(&flow, &SheetFlow::toolStarted, this, [&](const QString &, const QStringList &args) {
            if (!args.contains(QStringLiteral("cdrecord")))
                return;  // the image is whole once the copies begin
            QFile f(rig.data + "/image.iso");
            if (image.isEmpty() && f.open(QIODevice::ReadOnly))
                image = f.readAll();
        });
        flow.start();
        QVERIFY(log.waitEnded(1, 120000));
        QCOMPARE(log.sheets().last(2), (QStringList{"operationComplete", "ended"}));
        QCOMPARE(copy, 2);
        QVERIFY(image.size() > 200000);
        for (int i = 1; i <= 2; ++i) {
            const QString disc = rig.tmp.path() + QStringLiteral("/copy%1.bin").arg(i);
            QFile f(disc);
            QVERIFY(f.open(QIODevice::ReadOnly));
            QCOMPARE(f.read(image.size()), image);
            const QString out = rig.tmp.path() + QStringLiteral("/rb%1").arg(i);
            QString xlog;
            QVERIFY2(extract(disc, out, &xlog), qPrintable(xlog));
            QCOMPARE(tree(out), tree(rig.volume));
            QCOMPARE(volumeId(disc), QStringLiteral("MY DISC"));
        }
        QVERIFY(QDir(rig.data).isEmpty());
    }
};

TAMBLO_TEST_MAIN(TestImagesDuplication)
#include "tst_images_duplication.moc"
