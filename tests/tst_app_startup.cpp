#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QResizeEvent>

#include "platform/AppSettings.h"
#include "app/StartupFolders.h"
#include "app/ui/MainWindow.h"
#include "compilation/ui/CompilationTable.h"
#include "support/AppHarness.h"
#include "support/Files.h"
#include "support/TestMain.h"
#include "toolrun/ToolRun.h"
#include "toolrun/ui/StatusWindows.h"

class TestAppStartup : public QObject {
    Q_OBJECT

    static const QStringList &folderNames()
    {
        static const QStringList names = {"Tamblo", "TambloAudio", "TambloVideo", "TambloData"};
        return names;
    }

private slots:
    void firstRunCreatesFoldersAndDefaults()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        for (const QString &n : folderNames())
            QVERIFY2(QFileInfo(h.documents + "/" + n).isDir(), qPrintable(n));
        QCOMPARE(h.setting("ZendrovaVideoFormat18"), QString("0"));
        QCOMPARE(h.setting("ZendrovaAudioFormat18"), QString("0"));
        QCOMPARE(h.setting("Zendrova_Tamblo_b_List_Alternating_Rows"), QString("1"));
        for (ThemeColor c : ThemeDefaults::all) {
            const QString key = ThemeDefaults::key(c);
            QCOMPARE(h.settings->value(key).value<QColor>(), ThemeDefaults::color(c));
            QCOMPARE(h.setting(key + "_String"), QString("Recorded"));
        }
        QCOMPARE(h.settings->value("Zendrova_Tamblo_Color_Table_Background").value<QColor>(),
                 QColor::fromRgbF(82 / 255.0f, 82 / 255.0f, 82 / 255.0f));
        QCOMPARE(h.settings->value("Zendrova_Tamblo_Color_Space_Occupied_Bar").value<QColor>(), QColor(0, 0, 255));
        // Every key a first start writes, spelled out.
        QStringList written = h.settings->allKeys();
        written.sort();
        QCOMPARE(written, (QStringList{"ZendrovaAudioFormat18", "ZendrovaVideoFormat18",
                                       "Zendrova_Tamblo_Color_Bottom_Bar", "Zendrova_Tamblo_Color_Bottom_Bar_String",
                                       "Zendrova_Tamblo_Color_Space_Occupied_Bar",
                                       "Zendrova_Tamblo_Color_Space_Occupied_Bar_String",
                                       "Zendrova_Tamblo_Color_Table_Background",
                                       "Zendrova_Tamblo_Color_Table_Background_String",
                                       "Zendrova_Tamblo_Color_Table_Foreground",
                                       "Zendrova_Tamblo_Color_Table_Foreground_String",
                                       "Zendrova_Tamblo_Color_Toolbar", "Zendrova_Tamblo_Color_Toolbar_String",
                                       "Zendrova_Tamblo_b_List_Alternating_Rows"}));
        QCOMPARE(h.app->s_Video_Output_Format, QString("0"));
        QCOMPARE(h.app->s_Audio_Output_Format, QString("0"));
        QVERIFY(h.alerts.shown.isEmpty());
        QVERIFY(h.exits.isEmpty());
        QVERIFY(!h.app->m_b_Debug_Mode);
        QCOMPARE(h.app->i_Type_of_New_Disc, qint64(1));
        QVERIFY(h.app->sortFlags.m_b_Col1_Ascenging);
        QVERIFY(!h.app->sortFlags.m_b_Col2_Ascenging);
        QVERIFY(h.app->mainWindow()->isVisible());
    }

    void laterRunEmptiesLeftoversBeforeTheWindowShows()
    {
        AppHarness<> h;
        for (const QString &n : folderNames()) {
            writeFile(h.documents + "/" + n + "/a.wav", "leftover");
            writeFile(h.documents + "/" + n + "/sub/deeper/b.mp3", "leftover");
            writeFile(h.documents + "/" + n + "/.hidden", "leftover");
        }
        h.settings->setValue("ZendrovaVideoFormat18", "1");
        h.settings->setValue("ZendrovaAudioFormat18", "1");
        h.build();
        QStringList seenWhenShown;
        h.app->mainWindow()->installEventFilter(this);
        m_onShow = [&] {
            for (const QString &n : folderNames())
                seenWhenShown << everything(h.documents + "/" + n);
        };
        QVERIFY(h.app->applicationDidFinishLaunching());
        QVERIFY(m_showSeen);
        QCOMPARE(seenWhenShown, QStringList());
        for (const QString &n : folderNames())
            QVERIFY(QFileInfo(h.documents + "/" + n).isDir());
        // Not a first run: the stored choices are kept.
        QCOMPARE(h.app->s_Video_Output_Format, QString("1"));
        QCOMPARE(h.app->s_Audio_Output_Format, QString("1"));
        m_onShow = nullptr;
    }

    void plainFileNamedTambloCountsAsPresent()
    {
        AppHarness<> h;
        writeFile(h.documents + "/Tamblo", "leftover");
        QVERIFY(h.start());
        QVERIFY(QFileInfo(h.documents + "/Tamblo").isFile());
        QVERIFY(!h.settings->contains("ZendrovaVideoFormat18"));
        QVERIFY(!h.settings->contains("ZendrovaAudioFormat18"));
        QVERIFY(h.alerts.shown.isEmpty());
        QVERIFY(h.exits.isEmpty());
        QVERIFY(h.app->s_Video_Output_Format.isEmpty());
        QVERIFY(QFileInfo(h.documents + "/TambloData").isDir());
    }

    void storedAlternatingRowsZeroIsKept()
    {
        AppHarness<> h;
        h.settings->setValue("Zendrova_Tamblo_b_List_Alternating_Rows", "0");
        h.settings->setValue("Zendrova_Tamblo_Color_Table_Background", QVariant::fromValue(QColor(10, 120, 30)));
        h.settings->setValue("Zendrova_Tamblo_Color_Table_Background_String", "Recorded");
        QVERIFY(h.start());
        QCOMPARE(h.setting("Zendrova_Tamblo_b_List_Alternating_Rows"), QString("0"));
        QCOMPARE(h.app->theme.b_List_Alternating_Rows, qint64(0));
        for (QAbstractItemView *t : {static_cast<QAbstractItemView *>(h.app->mainWindow()->tableviewAudioFiles),
                                     static_cast<QAbstractItemView *>(h.app->mainWindow()->tableviewVideoFiles),
                                     static_cast<QAbstractItemView *>(h.app->mainWindow()->tableviewDataFolders)}) {
            QCOMPARE(t->palette().color(QPalette::Base), QColor(10, 120, 30));
        }
        QTest::qWait(250);
        QVERIFY(!h.app->mainWindow()->tableviewAudioFiles->alternatingRowColors());
    }

    void alternatingRowsOnFollowsTheSystemAppearance()
    {
        for (bool dark : {false, true}) {
            AppHarness<> h;
            h.dark = dark;
            QVERIFY(h.start());
            QCOMPARE(h.app->mainWindow()->tableviewDataFolders->palette().color(QPalette::Base),
                     dark ? QColor(Qt::black) : QColor(Qt::white));
            QVERIFY(!h.app->mainWindow()->tableviewDataFolders->alternatingRowColors());
            QTRY_VERIFY(h.app->mainWindow()->tableviewDataFolders->alternatingRowColors());  // 0.1 s later
        }
    }

    void windowHoldsItsMinimumSizePerDimension()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        QCOMPARE(w->minimumSize(), QSize(700, 400));
        w->resize(500, 300);
        QCOMPARE(w->size(), QSize(700, 400));
        w->resize(500, 650);
        QCOMPARE(w->size(), QSize(700, 650));
        w->resize(900, 120);
        QCOMPARE(w->size(), QSize(900, 400));
        QCOMPARE(w->windowTitle(), QString("Tamblo"));
    }

    static ToolRun *startSleeper(QObject *owner, ToolRun::Purpose purpose)
    {
        ToolRun::Options o;
        o.purpose = purpose;
        auto *run = new ToolRun(ToolCommand{"/bin/sleep", {"30"}}, o, owner);
        run->start();
        return run;
    }

    void closingTheWindowMidTranscodeEndsAtOnceAndStopsTheTool()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        QObject owner;
        ToolRun *run = startSleeper(&owner, ToolRun::Purpose::Transcode);
        QSignalSpy ended(run, &ToolRun::finished);
        QTRY_VERIFY(run->isRunning());
        h.app->mainWindow()->close();
        // Nothing is written: no question, the process ends, the tool is stopped.
        QCOMPARE(h.exits, QList<int>{0});
        QVERIFY(h.alerts.shown.isEmpty());
        QTRY_COMPARE(ended.count(), 1);
        QCOMPARE(ended.first().first().value<ToolVerdict>().outcome, ToolVerdict::Outcome::Stopped);
    }

    void quittingWhileWritingAsksAndContinueKeepsEverything()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        QObject owner;
        ToolRun *run = startSleeper(&owner, ToolRun::Purpose::Write);
        QTRY_VERIFY(run->isRunning());
        h.app->Show_Window_Performing_Operation();
        h.alerts.answer(1);  // Continue
        h.app->mainWindow()->menuitemQuit->trigger();
        QCOMPARE(h.alerts.texts(),
                 QStringList{"A disc is being written. Quit anyway? The disc may become unusable. / "});
        QCOMPARE(h.alerts.shown.first().buttons, (QStringList{"Quit", "Continue"}));
        QTest::qWait(200);
        QVERIFY(h.exits.isEmpty());
        QVERIFY(run->isRunning());
        QVERIFY(h.app->mainWindow()->isVisible());
    }

    void quittingWhileWritingStopsTheToolThenExits()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        QObject owner;
        ToolRun *run = startSleeper(&owner, ToolRun::Purpose::Write);
        QSignalSpy ended(run, &ToolRun::finished);
        QTRY_VERIFY(run->isRunning());
        h.app->Show_Window_Performing_Operation();
        // The close box, with the working sheet up.
        h.app->mainWindow()->close();
        QCOMPARE(h.alerts.shown.size(), 1);
        QTRY_COMPARE(ended.count(), 1);
        QCOMPARE(ended.first().first().value<ToolVerdict>().outcome, ToolVerdict::Outcome::Stopped);
        QTRY_COMPARE(h.exits, QList<int>{0});
    }

    void quitAndItsShortcutWorkWhileASheetIsShown()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        h.app->mainWindow()->show();
        h.app->Show_Window_Performing_Operation();
        Window_Performing_Operation *sheet = h.app->windowPerformingOperation;
        QVERIFY(sheet && sheet->isVisible());
        // The window takes no other input meanwhile, but Quit stays on.
        QVERIFY(!h.app->mainWindow()->tabviewMain->isEnabled());
        QVERIFY(!h.app->mainWindow()->menuitemNewDisc->isEnabled());
        QVERIFY(h.app->mainWindow()->menuitemQuit->isEnabled());
        QVERIFY(!QApplication::activeModalWidget());
        sheet->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(sheet));
        // The shortcut, typed into the sheet's own window.
        QTest::keyClick(sheet->windowHandle(), Qt::Key_Q, Qt::ControlModifier);
        QCOMPARE(h.exits, QList<int>{0});
    }

    void theWindowTakesInputAgainWhenTheSheetEnds()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        h.app->Show_Window_Operation_Complete();
        QVERIFY(!h.app->mainWindow()->btnBurn->isEnabled());
        QVERIFY(!h.app->mainWindow()->tabviewMain->isEnabled());
        h.app->Close_Window_Operation_Complete();
        QVERIFY(h.app->mainWindow()->tabviewMain->isEnabled());
        QVERIFY(h.app->mainWindow()->menuitemNewDisc->isEnabled());
    }

    void quitEndsAtOnce()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        h.app->mainWindow()->menuitemQuit->trigger();
        QCOMPARE(h.exits, QList<int>{0});
    }

    void mainFolderThatCannotBeMadeIsFatal()
    {
        QTemporaryDir tmp;
        writeFile(tmp.filePath("notafolder"), "leftover");
        AppHarness<> h(tmp.filePath("notafolder/Documents"));
        QVERIFY(!h.start());
        QCOMPARE(h.alerts.texts(), QStringList{"Error / Error #0008. Application will exit."});
        QCOMPARE(h.alerts.shown.first().buttons, QStringList{"Close"});
        QCOMPARE(h.exits, QList<int>{0});
        QVERIFY(!h.settings->contains("ZendrovaVideoFormat18"));
        QVERIFY(!h.app->mainWindow()->isVisible());
    }

    void eachFolderHasItsOwnFatalCode_data()
    {
        QTest::addColumn<QString>("blocked");
        QTest::addColumn<QString>("text");
        QTest::newRow("audio") << "TambloAudio" << "Error #0009. Application will exit.";
        QTest::newRow("video") << "TambloVideo" << "Error #000a. Application will exit.";
        QTest::newRow("data") << "TambloData" << "Error #000b. Application will exit.";
    }
    void eachFolderHasItsOwnFatalCode()
    {
        QFETCH(QString, blocked);
        QFETCH(QString, text);
        AppHarness<> h;
        QDir().mkpath(h.documents);
        // A link that leads under a plain file: nothing is there, and no folder can be made.
        writeFile(h.root.filePath("plain"), "leftover");
        QVERIFY(QFile::link(h.root.filePath("plain/below"), h.documents + "/" + blocked));
        QVERIFY(!h.start());
        QCOMPARE(h.alerts.texts(), QStringList{"Error / " + text});
        QCOMPARE(h.exits, QList<int>{0});
        // Folders made before the failure remain; the first run was already noted.
        QVERIFY(QFileInfo(h.documents + "/Tamblo").isDir());
        QCOMPARE(h.setting("ZendrovaVideoFormat18"), QString("0"));
    }

    void fatalTextsAreFixed()
    {
        QCOMPARE(StartupTexts::fatalText(0), QString("Error #0008. Application will exit."));
        QCOMPARE(StartupTexts::fatalText(3), QString("Error #000b. Application will exit."));
    }

protected:
    bool eventFilter(QObject *o, QEvent *e) override
    {
        if (e->type() == QEvent::Show && m_onShow) {
            m_showSeen = true;
            m_onShow();
        }
        return QObject::eventFilter(o, e);
    }

private:
    std::function<void()> m_onShow;
    bool m_showSeen = false;
};

TAMBLO_TEST_MAIN(TestAppStartup)
#include "tst_app_startup.moc"
