// The end of a long operation told to a user who is elsewhere: an operation
// that ran longer than 30 seconds and ends while the window is not the active
// one shows its verdict as a desktop notification; a short one, or one that
// ends in front of the user, does not.
#include <QPushButton>
#include <QWidget>
#include <QWindow>

#include "app/ui/MainWindow.h"
#include "support/AppHarness.h"
#include "support/RecordingNotifier.h"
#include "support/TestMain.h"

namespace {

struct NotifyRig : AppHarness<> {
    RecordingNotifier notifier;
    qint64 now = 0;
    NotifyRig()
    {
        drive->drives = {opticalDrive("1", "Fake", "Writer")};
        drive->status = FakeDriveBackend::rewritable("DVD");
        tune = [this](AppContext &c) {
            c.notifier = &notifier;
            c.clockMs = [this] { return now; };
        };
    }
};

// Another window takes the focus, as when the user goes to work elsewhere
// while the operation runs.
struct Elsewhere {
    QWidget other;
    Elsewhere()
    {
        other.setWindowTitle(QStringLiteral("Some other program"));
        other.show();
    }
    void go()
    {
        other.activateWindow();
        other.windowHandle()->requestActivate();
        QTRY_COMPARE(QGuiApplication::focusWindow(), other.windowHandle());
    }
};

} // namespace

class TestAppNotification : public QObject {
    Q_OBJECT

private slots:
    void longEraseEndingWhileAwayIsTold_data()
    {
        QTest::addColumn<QString>("tool");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("cancel");
        QTest::addColumn<QString>("told");
        QTest::newRow("complete") << "/bin/sleep" << QStringList{"0.3"} << false
                                  << "Tamblo — Erase Quickly / The operation is complete.";
        QTest::newRow("failed") << "/bin/sh" << QStringList{"-c", "sleep 0.3; exit 3"} << false
                                << "Tamblo — Erase Quickly / The disc could not be erased.";
        QTest::newRow("cancelled") << TAMBLO_FAKES_DIR "/hang-tool" << QStringList{} << true
                                   << "Tamblo — Erase Quickly / Erasing was cancelled.";
    }
    void longEraseEndingWhileAwayIsTold()
    {
        QFETCH(QString, tool);
        QFETCH(QStringList, arguments);
        QFETCH(bool, cancel);
        QFETCH(QString, told);
        NotifyRig r;
        r.drive->erase = ToolCommand{tool, arguments};
        QVERIFY(r.start());
        Elsewhere away;
        r.app->mainWindow()->menuitemEraseQuick->trigger();
        QTRY_VERIFY(r.app->windowPerformingOperation);
        away.go();
        r.now = 30001;  // half a minute and a bit later
        if (cancel)
            r.app->windowPerformingOperation->btnCancel->click();
        QTRY_VERIFY_WITH_TIMEOUT(r.app->windowOperationCompleted, 5000);
        QCOMPARE(r.notifier.shown, QStringList{told});
    }

    void shortOperationIsNotTold()
    {
        NotifyRig r;
        r.drive->erase = ToolCommand{"/bin/sleep", {"0.3"}};
        QVERIFY(r.start());
        Elsewhere away;
        r.app->mainWindow()->menuitemEraseQuick->trigger();
        QTRY_VERIFY(r.app->windowPerformingOperation);
        away.go();
        r.now = 30000;  // exactly half a minute: not longer
        QTRY_VERIFY_WITH_TIMEOUT(r.app->windowOperationCompleted, 5000);
        QCOMPARE(r.notifier.shown, QStringList());
    }

    void operationEndingInFrontOfTheUserIsNotTold()
    {
        NotifyRig r;
        r.drive->erase = ToolCommand{"/bin/sleep", {"0.3"}};
        QVERIFY(r.start());
        Elsewhere away;
        away.go();
        r.app->mainWindow()->menuitemEraseQuick->trigger();
        QTRY_VERIFY(r.app->windowPerformingOperation);
        // The user comes back and watches the working sheet.
        r.app->windowPerformingOperation->activateWindow();
        r.app->windowPerformingOperation->windowHandle()->requestActivate();
        QTRY_COMPARE(QGuiApplication::focusWindow(), r.app->windowPerformingOperation->windowHandle());
        r.now = 120000;
        QTRY_VERIFY_WITH_TIMEOUT(r.app->windowOperationCompleted, 5000);
        QCOMPARE(r.notifier.shown, QStringList());
    }

    // The sheets alone (no operation begun) tell nothing.
    void sheetWithoutOperationIsNotTold()
    {
        NotifyRig r;
        QVERIFY(r.start());
        Elsewhere away;
        away.go();
        r.now = 100000;
        r.app->Show_Window_Operation_Complete();
        QCOMPARE(r.notifier.shown, QStringList());
    }
};

TAMBLO_TEST_MAIN(TestAppNotification)
#include "tst_app_notification.moc"
