#include "support/Files.h"
#include "support/TestMain.h"

#include "platform/AppSettings.h"
#include "platform/WorkingFolders.h"
#include "appearance/Theme.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

class TestAppFolders : public QObject {
    Q_OBJECT

private slots:
    void foldersAreSiblingsInsideDocuments()
    {
        const WorkingFolders f = WorkingFolders::inside("/home/u/Documents/");
        QCOMPARE(f.s_Output_Folder, QString("/home/u/Documents/Tamblo"));
        QCOMPARE(f.s_Audio_Folder, QString("/home/u/Documents/TambloAudio"));
        QCOMPARE(f.s_Video_Folder, QString("/home/u/Documents/TambloVideo"));
        QCOMPARE(f.s_Data_Folder, QString("/home/u/Documents/TambloData"));
    }

    void ensureFolderCreatesOrKeeps()
    {
        QTemporaryDir tmp;
        const QString p = tmp.filePath("a/b/Tamblo");
        QCOMPARE(FolderOps::ensureFolder(p), FolderOps::Presence::Created);
        QVERIFY(QFileInfo(p).isDir());
        QCOMPARE(FolderOps::ensureFolder(p), FolderOps::Presence::Existed);
        writeFile(tmp.filePath("file"), "x");
        QCOMPARE(FolderOps::ensureFolder(tmp.filePath("file")), FolderOps::Presence::Existed);
        QCOMPARE(FolderOps::ensureFolder(tmp.filePath("file/sub")), FolderOps::Presence::Failed);
    }

    void removeAllContentKeepsTheFolder()
    {
        QTemporaryDir tmp;
        const QString w = tmp.filePath("TambloData");
        writeFile(w + "/a.wav", "x");
        writeFile(w + "/.hidden", "x");
        writeFile(w + "/Photos 1/Photos/deep/x.jpg", "x");
        writeFile(w + "/name with spaces/ü ñ.txt", "x");
        QDir().mkpath(w + "/empty");
        FolderOps::RemoveAllContentInFolder(w);
        QVERIFY(QFileInfo(w).isDir());
        QCOMPARE(everything(w), QStringList());
    }

    // The emptying used by the burns runs on a worker: the call returns at
    // once, the continuation comes from the event loop after the folder is
    // empty, and a receiver that is gone by then hears nothing.
    void emptyFolderThenRunsOffTheCallerAndContinuesAfter()
    {
        QTemporaryDir tmp;
        const QString w = tmp.filePath("TambloData");
        for (int i = 0; i < 200; ++i)
            writeFile(w + QStringLiteral("/Photos %1/deep/x.jpg").arg(i), "x");
        QObject receiver;
        QStringList seenWhenCalled{"not called"};
        int calls = 0;
        FolderOps::emptyFolderThen(w, &receiver, [&] {
            ++calls;
            seenWhenCalled = everything(w);
        });
        QCOMPARE(calls, 0);  // never before the caller's turn ends
        QTRY_COMPARE(calls, 1);
        QCOMPARE(seenWhenCalled, QStringList());
        QVERIFY(QFileInfo(w).isDir());

        writeFile(w + "/again.wav", "x");
        bool heard = false;
        {
            QObject gone;
            FolderOps::emptyFolderThen(w, &gone, [&] { heard = true; });
        }
        QTRY_COMPARE(everything(w), QStringList());
        QTest::qWait(50);
        QVERIFY(!heard);
    }

    void removeAllContentNeverFollowsLinksOut()
    {
        QTemporaryDir tmp;
        const QString user = tmp.filePath("UserPhotos");
        writeFile(user + "/precious.jpg", "keep me");
        const QString w = tmp.filePath("TambloData");
        QDir().mkpath(w);
        QVERIFY(QFile::link(user, w + "/link-to-folder"));
        QVERIFY(QFile::link(user + "/precious.jpg", w + "/link-to-file"));
        FolderOps::RemoveAllContentInFolder(w);
        QCOMPARE(everything(w), QStringList());
        QCOMPARE(everything(user), QStringList{"precious.jpg"});
    }

    void removeAllContentOfAMissingFolderDoesNothing()
    {
        QTemporaryDir tmp;
        FolderOps::RemoveAllContentInFolder(tmp.filePath("nope"));
        QVERIFY(!QFileInfo::exists(tmp.filePath("nope")));
    }

    void failedRemovalIsLoggedAndSkipped()
    {
        QTemporaryDir tmp;
        const QString w = tmp.filePath("Tamblo");
        writeFile(w + "/stuck.txt", "x");
        writeFile(w + "/goes.txt", "x");
        const QString stuck = w + "/stuck.txt";
        // An immutable file cannot be removed, not even by root.
        QCOMPARE(QProcess::execute("chattr", {"+i", stuck}), 0);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^oops: .*stuck\\.txt.*"));
        FolderOps::RemoveAllContentInFolder(w);
        QProcess::execute("chattr", {"-i", stuck});
        QCOMPARE(everything(w), QStringList{"stuck.txt"});
    }

    void themeFirstStartWritesDefaultsAndCompanions()
    {
        QTemporaryDir tmp;
        QSettings s(tmp.filePath("t.conf"), QSettings::IniFormat);
        AppSettings settings(s);
        const Theme t = ThemeSettings::loadAtStartup(settings);
        QCOMPARE(t.b_List_Alternating_Rows, qint64(1));
        QCOMPARE(s.value("Zendrova_Tamblo_b_List_Alternating_Rows").toString(), QString("1"));
        QCOMPARE(qRound(t.colorTableBackground.redF() * 255), 82);
        QCOMPARE(t.colorTableBackground.alphaF(), 1.0);
        QCOMPARE(t.colorSpaceOccupiedBar, QColor(0, 0, 255));
        QCOMPARE(t.colorTableForeground, QColor(255, 255, 255));
        QCOMPARE(t.colorToolbar, t.colorBottomBar);
        QCOMPARE(qRound(t.colorToolbar.greenF() * 255), 105);
        for (ThemeColor c : ThemeDefaults::all) {
            QCOMPARE(s.value(ThemeDefaults::key(c) + "_String").toString(), QString("Recorded"));
            QCOMPARE(s.value(ThemeDefaults::key(c)).value<QColor>(), ThemeDefaults::color(c));
        }
    }

    void themeUndecodableColourStaysEmpty()
    {
        QTemporaryDir tmp;
        QSettings s(tmp.filePath("t.conf"), QSettings::IniFormat);
        s.setValue("Zendrova_Tamblo_Color_Toolbar", "not a colour");
        s.setValue("Zendrova_Tamblo_Color_Toolbar_String", "Recorded");
        AppSettings settings(s);
        const Theme t = ThemeSettings::loadAtStartup(settings);
        QVERIFY(!t.colorToolbar.isValid());
        QCOMPARE(s.value("Zendrova_Tamblo_Color_Toolbar").toString(), QString("not a colour"));  // untouched
    }
};

TAMBLO_TEST_MAIN(TestAppFolders)
#include "tst_app_folders.moc"
