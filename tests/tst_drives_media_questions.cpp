#include "support/Files.h"
#include "support/TestMain.h"

#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "drives/DrutilBackend.h"
#include "drives/MediaQuestions.h"
#include "toolrun/ToolMessages.h"
#include "drives/XorrisoBackend.h"
#include "support/FakeAlerts.h"
#include "toolrun/ToolProcess.h"

static const QString kFakeDrutil = fake("drutil");

class TestDrivesMediaQuestions : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_log;
    bool m_debug = false;
    QString m_number = QStringLiteral("1");

    QStringList runs() const { return readText(m_log).split('\n', Qt::SkipEmptyParts); }

    // The status text every run of the fake drutil prints for the current drive.
    void medium(const QString &name)
    {
        qputenv("TAMBLO_FAKE_DRUTIL_STATUS", fixture(name).toLocal8Bit());
    }

    Object_Optical_Drive current() const
    {
        Object_Optical_Drive d;
        d.s_Drive_Number = m_number;
        return d;
    }

    MediaQuestions *questions(DriveBackend &backend, FakeAlerts &alerts)
    {
        return new MediaQuestions(
            backend, alerts, [this] { return m_debug; }, [this] { return current(); }, this);
    }

    template <typename T, typename Ask>
    bool wait(Ask ask, T &value)
    {
        bool answered = false;
        ask([&](T v) {
            value = v;
            answered = true;
        });
        if (answered)
            return false;  // must come later, not inside the call
        return QTest::qWaitFor([&] { return answered; }, 15000);
    }

    MediumCheck check(MediaQuestions &q, const QString &family)
    {
        MediumCheck result;
        result.result = MediumCheck::Result(-1);
        bool answered = false;
        int calls = 0;
        q.check(MediumNeed::Writable, family, [&](MediumCheck c) {
            result = c;
            answered = true;
            ++calls;
        });
        QTest::qWaitFor([&] { return answered; }, 15000);
        QTest::qWait(30);
        if (calls != 1)
            result.result = MediumCheck::Result(-2);
        return result;
    }

private slots:
    void init()
    {
        m_debug = false;
        m_number = QStringLiteral("1");
        m_log = m_dir.filePath(QStringLiteral("%1.log").arg(QTest::currentTestFunction()));
        QFile::remove(m_log);
        qputenv("TAMBLO_FAKE_DRUTIL_LOG", m_log.toLocal8Bit());
        qunsetenv("TAMBLO_FAKE_DRUTIL_LIST");
        qunsetenv("TAMBLO_FAKE_DRUTIL_STATUS_1");
        qunsetenv("TAMBLO_FAKE_DRUTIL_STATUS_2");
    }

    void emptyDriveEachQuestionRunsItsOwnQuery()
    {
        medium("synthetic-drutil-status-no-media.txt");
        DrutilBackend backend(kFakeDrutil);
        FakeAlerts alerts;
        MediaQuestions *q = questions(backend, alerts);
        bool empty = false, writable = true, rewritable = true;
        QString type;
        QVERIFY(wait<bool>([&](auto cb) { q->IsDriveEmpty(cb); }, empty));
        QCOMPARE(empty, true);
        QCOMPARE(runs().size(), 1);
        QVERIFY(wait<bool>([&](auto cb) { q->IsMediaOneTimeWritable(cb); }, writable));
        QVERIFY(wait<bool>([&](auto cb) { q->IsMediaReWritable(cb); }, rewritable));
        QVERIFY(wait<QString>([&](auto cb) { q->TypeOfMediaInTheDrive(cb); }, type));
        QCOMPARE(writable, false);
        QCOMPARE(rewritable, false);
        QCOMPARE(type, QString("Other"));
        QCOMPARE(runs(), QStringList(4, "status|-drive|1"));
        QVERIFY(alerts.shown.isEmpty());  // debug mode is off
    }

    void writableNotRewritableWarnsInDebugMode()
    {
        medium("synthetic-drutil-status-blank-cdr.txt");
        m_debug = true;
        DrutilBackend backend(kFakeDrutil);
        FakeAlerts alerts;
        MediaQuestions *q = questions(backend, alerts);
        bool writable = false, rewritable = true;
        QVERIFY(wait<bool>([&](auto cb) { q->IsMediaOneTimeWritable(cb); }, writable));
        QCOMPARE(writable, true);
        QVERIFY(alerts.shown.isEmpty());

        bool answeredBeforeAlert = true;
        bool answered = false;
        alerts.onShow = [&](const AlertRequest &) { answeredBeforeAlert = answered; };
        q->IsMediaReWritable([&](bool v) { rewritable = v; answered = true; });
        QTRY_VERIFY_WITH_TIMEOUT(answered, 15000);
        QCOMPARE(rewritable, false);
        QCOMPARE(alerts.shown.size(), 1);
        QVERIFY2(!answeredBeforeAlert, "the alert comes before the answer");
        const AlertRequest &a = alerts.shown.first();
        QCOMPARE(a.messageText, fixtureText("synthetic-drutil-status-blank-cdr.txt"));
        QCOMPARE(a.informativeText, QString("Warning 0040."));
        QCOMPARE(a.buttons, QStringList{"OK"});
        QCOMPARE(runs().size(), 2);
    }

    void pressedDiscWarnsWithWholeText()
    {
        medium("drutil-status-pressed-cdrom-audio.txt");
        m_debug = true;
        DrutilBackend backend(kFakeDrutil);
        FakeAlerts alerts;
        MediaQuestions *q = questions(backend, alerts);
        bool writable = true;
        QVERIFY(wait<bool>([&](auto cb) { q->IsMediaOneTimeWritable(cb); }, writable));
        QCOMPARE(writable, false);
        QCOMPARE(alerts.texts(),
                 QStringList{fixtureText("drutil-status-pressed-cdrom-audio.txt") + " / Warning 0030."});
        // The whole text, the drive's own header line included.
        QVERIFY(alerts.shown.first().messageText.contains("HL-DT-ST DVDRW  GX50N"));
        QString type;
        QVERIFY(wait<QString>([&](auto cb) { q->TypeOfMediaInTheDrive(cb); }, type));
        QCOMPARE(type, QString("CD"));
    }

    void noAlertsOutsideDebugMode()
    {
        medium("drutil-status-pressed-cdrom-audio.txt");
        DrutilBackend backend(kFakeDrutil);
        FakeAlerts alerts;
        MediaQuestions *q = questions(backend, alerts);
        bool writable = true, rewritable = true;
        QVERIFY(wait<bool>([&](auto cb) { q->IsMediaOneTimeWritable(cb); }, writable));
        QVERIFY(wait<bool>([&](auto cb) { q->IsMediaReWritable(cb); }, rewritable));
        QCOMPARE(writable, false);
        QCOMPARE(rewritable, false);
        QVERIFY(alerts.shown.isEmpty());
    }

    void questionsFollowTheCurrentDrive()
    {
        qputenv("TAMBLO_FAKE_DRUTIL_STATUS_1", fixture("synthetic-drutil-status-blank-cdr.txt").toLocal8Bit());
        qputenv("TAMBLO_FAKE_DRUTIL_STATUS_2", fixture("synthetic-drutil-status-blank-dvdplusrw.txt").toLocal8Bit());
        DrutilBackend backend(kFakeDrutil);
        FakeAlerts alerts;
        MediaQuestions *q = questions(backend, alerts);
        QString type;
        QVERIFY(wait<QString>([&](auto cb) { q->TypeOfMediaInTheDrive(cb); }, type));
        QCOMPARE(type, QString("CD"));
        m_number = "2";
        QVERIFY(wait<QString>([&](auto cb) { q->TypeOfMediaInTheDrive(cb); }, type));
        QCOMPARE(type, QString("DVD"));
        QCOMPARE(runs(), QStringList({"status|-drive|1", "status|-drive|2"}));
    }

    void checkNoDisc()
    {
        medium("synthetic-drutil-status-no-media.txt");
        m_debug = true;
        DrutilBackend backend(kFakeDrutil);
        FakeAlerts alerts;
        MediaQuestions *q = questions(backend, alerts);
        const MediumCheck c = check(*q, "CD");
        QCOMPARE(c.result, MediumCheck::NoDisc);
        QVERIFY(c.detectedFamily.isEmpty());
        QCOMPARE(runs().size(), 1);
        QVERIFY(alerts.shown.isEmpty());
    }

    void checkWritableRightFamily()
    {
        medium("synthetic-drutil-status-blank-cdr.txt");
        m_debug = true;
        DrutilBackend backend(kFakeDrutil);
        FakeAlerts alerts;
        MediaQuestions *q = questions(backend, alerts);
        const MediumCheck c = check(*q, "CD");
        QCOMPARE(c.result, MediumCheck::Ok);
        QCOMPARE(c.detectedFamily, QString("CD"));
        QCOMPARE(runs().size(), 3);  // empty, writable, family: rewritable not asked
        QVERIFY(alerts.shown.isEmpty());
    }

    void checkWrongFamily()
    {
        medium("synthetic-drutil-status-blank-bdr.txt");
        DrutilBackend backend(kFakeDrutil);
        FakeAlerts alerts;
        MediaQuestions *q = questions(backend, alerts);
        const MediumCheck c = check(*q, "DVD");
        QCOMPARE(c.result, MediumCheck::WrongFamily);
        QCOMPARE(c.detectedFamily, QString("BD"));
        QCOMPARE(runs().size(), 3);
    }

    void checkWithoutFamilySkipsTheType()
    {
        medium("synthetic-drutil-status-blank-dvdplusrw.txt");
        DrutilBackend backend(kFakeDrutil);
        FakeAlerts alerts;
        MediaQuestions *q = questions(backend, alerts);
        const MediumCheck c = check(*q, QString());
        QCOMPARE(c.result, MediumCheck::Ok);
        QVERIFY(c.detectedFamily.isEmpty());
        QCOMPARE(runs().size(), 2);
    }

    void checkNotWritableShowsBothWarnings()
    {
        medium("drutil-status-pressed-cdrom-audio.txt");
        m_debug = true;
        DrutilBackend backend(kFakeDrutil);
        FakeAlerts alerts;
        MediaQuestions *q = questions(backend, alerts);
        const MediumCheck c = check(*q, "CD");
        QCOMPARE(c.result, MediumCheck::NotWritable);
        QCOMPARE(runs().size(), 3);  // empty, writable, rewritable: family not asked
        QCOMPARE(alerts.shown.size(), 2);
        QCOMPARE(alerts.shown[0].informativeText, QString("Warning 0030."));
        QCOMPARE(alerts.shown[1].informativeText, QString("Warning 0040."));
    }

    void checkRewritableOnlyAsksAllFour()
    {
        // A used rewritable disc: erasable, but nothing left to write.
        const QString path = m_dir.filePath("used-rw.txt");
        QVERIFY(writeFile(path, " Vendor   Product           Rev \n"
                                " HL-DT-ST DVDRW  GX50N      RR06\n\n"
                                "           Type: CD-RW                Name: /dev/disk4\n"
                                "    Writability: erasable\n"));
        qputenv("TAMBLO_FAKE_DRUTIL_STATUS", path.toLocal8Bit());
        m_debug = true;
        DrutilBackend backend(kFakeDrutil);
        FakeAlerts alerts;
        MediaQuestions *q = questions(backend, alerts);
        const MediumCheck c = check(*q, "CD");
        QCOMPARE(c.result, MediumCheck::Ok);
        QCOMPARE(c.detectedFamily, QString("CD"));
        QCOMPARE(runs().size(), 4);
        QCOMPARE(alerts.shown.size(), 1);
        QCOMPARE(alerts.shown[0].informativeText, QString("Warning 0030."));
    }

    void checkWithMissingTool()
    {
        DrutilBackend backend(m_dir.filePath("no-such-drutil"));
        FakeAlerts alerts;
        MediaQuestions *q = questions(backend, alerts);
        const MediumCheck c = check(*q, "CD");
        // A drive tool that cannot even start is no answer: never "No disc",
        // never "not writable".
        QCOMPARE(c.result, MediumCheck::NoAnswer);
        QCOMPARE(c.status.verdict.outcome, ToolVerdict::Outcome::FailedToStart);
        QCOMPARE(ToolMessages::driveDidNotAnswer(c.status.verdict).messageText, QStringLiteral("no-such-drutil could not be started."));
    }

    void checkOnLinuxPseudoDrives()
    {
        const QString xorriso = QStandardPaths::findExecutable("xorriso");
        QVERIFY2(!xorriso.isEmpty(), "xorriso must be installed for the tests");
        XorrisoBackend backend(xorriso, "eject");
        FakeAlerts alerts;
        Object_Optical_Drive drive;
        auto *q = new MediaQuestions(
            backend, alerts, [] { return true; }, [&] { return drive; }, this);

        QCOMPARE(check(*q, "DVD").result, MediumCheck::NoDisc);  // nothing listed, no device

        drive.s_Drive_Number = "1";
        drive.s_Device_Path = "stdio:" + m_dir.filePath("linux-blank.iso");
        QCOMPARE(check(*q, QString()).result, MediumCheck::Ok);
        const MediumCheck wrong = check(*q, "DVD");
        QCOMPARE(wrong.result, MediumCheck::WrongFamily);
        QCOMPARE(wrong.detectedFamily, QString("Other"));
        QVERIFY(alerts.shown.isEmpty());

        // A closed image on a random-access file: not writable, but rewritable.
        const QString junk = m_dir.filePath("linux-closed.img");
        QFile f(junk);
        QVERIFY(f.open(QIODevice::WriteOnly));
        QByteArray bytes(512 * 1024, '\0');
        for (int i = 0; i < bytes.size(); ++i)
            bytes[i] = char((i * 2654435761u) >> 24);
        f.write(bytes);
        f.close();
        drive.s_Device_Path = "stdio:" + junk;
        QCOMPARE(check(*q, QString()).result, MediumCheck::Ok);
        QCOMPARE(alerts.shown.size(), 1);
        QCOMPARE(alerts.shown[0].informativeText, QString("Warning 0030."));
        QVERIFY(alerts.shown[0].messageText.contains("Media status : is written , is closed"));
    }

    void noAnswerAfterTheQuestionsAreGone()
    {
        medium("synthetic-drutil-status-blank-cdr.txt");
        DrutilBackend backend(kFakeDrutil);
        FakeAlerts alerts;
        MediaQuestions *q = questions(backend, alerts);
        bool answered = false;
        q->IsDriveEmpty([&](bool) { answered = true; });
        delete q;
        QTRY_COMPARE_WITH_TIMEOUT(runs().size(), 1, 10000);
        QTest::qWait(200);
        QVERIFY(!answered);
    }
};

TAMBLO_TEST_MAIN(TestDrivesMediaQuestions)
#include "tst_drives_media_questions.moc"
