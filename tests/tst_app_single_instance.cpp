// One Tamblo per user: a second start finds the first, asks it to show its
// window, and is told to end before it touches anything.
#include <QFile>
#include <QSysInfo>
#include <QSignalSpy>
#include <QTemporaryDir>

#include "app/SingleInstance.h"
#include "support/TestMain.h"

class TestAppSingleInstance : public QObject {
    Q_OBJECT

    static QString uniqueName() { return QStringLiteral("Tamblo-test-%1").arg(QCoreApplication::applicationPid()); }

private slots:
    void aSecondStartShowsTheFirstAndEnds()
    {
        QTemporaryDir dir;
        SingleInstance first(dir.path(), uniqueName());
        QVERIFY(first.claim());
        QSignalSpy shown(&first, &SingleInstance::activationRequested);
        SingleInstance second(dir.path(), uniqueName());
        QVERIFY(!second.claim());
        QVERIFY(shown.wait(5000));
        QCOMPARE(shown.count(), 1);
    }

    void theLockGoesWithTheFirst()
    {
        QTemporaryDir dir;
        {
            SingleInstance first(dir.path(), uniqueName());
            QVERIFY(first.claim());
        }
        SingleInstance again(dir.path(), uniqueName());
        QVERIFY(again.claim());
    }

    void aLockLeftByATambloThatDiedIsTakenOver()
    {
        QTemporaryDir dir;
        QFile lock(dir.filePath("tamblo.lock"));
        QVERIFY(lock.open(QIODevice::WriteOnly));
        // The lock file of a process that is gone (no such process id).
        lock.write(QStringLiteral("999999\ntamblo\n%1\n").arg(QSysInfo::machineHostName()).toUtf8());
        lock.close();
        SingleInstance next(dir.path(), uniqueName());
        QVERIFY(next.claim());
    }
};

TAMBLO_TEST_MAIN(TestAppSingleInstance)
#include "tst_app_single_instance.moc"
