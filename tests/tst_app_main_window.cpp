#include <QAction>
#include <QPointer>
#include <QProcess>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>

#include "app/HelpPages.h"
#include "app/ui/MainWindow.h"
#include "compilation/DataFolderModel.h"
#include "compilation/MediaListModel.h"
#include "compilation/ui/CompilationTable.h"
#include "compilation/ui/CompilationTabs.h"
#include "compilation/ui/SpaceOccupiedView.h"
#include "compilation/ui/Window_New_Disc.h"
#include "drives/XorrisoBackend.h"
#include "support/AppHarness.h"
#include "support/BurnDispatchProbe.h"
#include "support/Files.h"
#include "support/ListRecords.h"
#include "support/TestMain.h"
#include "toolrun/ui/StatusWindows.h"


// Starts the controller on the Linux drive backend it makes itself, running
// `xorriso` with the given /dev/sr* node check, and waits for the listing.
static bool startOnXorriso(AppHarness<> &h, const QString &xorriso, DriveAccess::DeviceNodes nodes,
                           int waitMs = 10000)
{
    h.listingWaitMs = waitMs;
    h.tune = [xorriso, nodes = std::move(nodes)](AppContext &c) {
        c.driveBackend = nullptr;
        c.tools.xorriso = xorriso;
        c.tools.eject = QStringLiteral("/bin/true");
        c.opticalDeviceNodes = nodes;
    };
    return h.start();
}

class TestAppMainWindow : public QObject {
    Q_OBJECT

    static QStringList checkedTabItems(MainWindow *w)
    {
        QStringList out;
        for (QAction *a : w->tabMenuItems())
            if (a->isChecked())
                out << a->text().remove(QLatin1Char('&'));  // without its mnemonic
        return out;
    }

private slots:
    void windowShowsTabsMenusAndBurnTitle()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        QVERIFY(QTest::qWaitForWindowExposed(w));
        QCOMPARE(w->windowTitle(), QString("Tamblo"));
        QCOMPARE(w->tabviewMain->count(), 5);
        const QStringList names = {"Audio", "Video", "Data", "ISO", "Tools"};
        for (int i = 0; i < 5; ++i) {
            QCOMPARE(w->tabviewMain->tabText(i), names[i]);
            QCOMPARE(w->tabIdentifier(i), QString::number(i + 1));
        }
        QCOMPARE(w->tabviewMain->currentIndex(), 0);
        QCOMPARE(w->btnBurn->text(), QString("Burn Audio CD"));
        QVERIFY(w->btnBurn->isVisible());
        QVERIFY(w->spaceoccupiedviewControl->isVisible());
        QCOMPARE(checkedTabItems(w), QStringList{"Audio"});
        QVERIFY(CompilationTabs::isBordered(w->btnAudioCD));
        QVERIFY(!CompilationTabs::isBordered(w->btnMP3CD));
        QVERIFY(CompilationTabs::isBordered(w->btnVideoDVD));
        QVERIFY(CompilationTabs::isBordered(w->btnDataCD));
        QCOMPARE(w->menuitemEraseFull->text(), QString("Erase &Completely"));
        QCOMPARE(w->menuitemEraseQuick->text(), QString("Erase &Quickly"));
        QVERIFY(!w->menuitemDebugMode->isChecked());
        // Every control can be named by a screen reader.
        for (QPushButton *b : w->findChildren<QPushButton *>())
            QVERIFY2(!b->accessibleName().isEmpty(), qPrintable(b->objectName()));
    }

    void kindButtonsSetTypeBorderAndTitle_data()
    {
        QTest::addColumn<int>("tab");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("title");
        QTest::newRow("MP3 CD") << 0 << "btnMP3CD" << "Burn MP3 CD";
        QTest::newRow("MP3 DVD") << 0 << "btnMP3DVD" << "Burn MP3 DVD";
        QTest::newRow("Audio CD") << 0 << "btnAudioCD" << "Burn Audio CD";
        QTest::newRow("Video Blu-ray") << 1 << "btnVideoBluray" << "Burn Video Blu-ray";
        QTest::newRow("Video DVD") << 1 << "btnVideoDVD" << "Burn Video DVD";
        QTest::newRow("Data DVD") << 2 << "btnDataDVD" << "Burn Data DVD";
        QTest::newRow("Data Blu-ray") << 2 << "btnDataBluray" << "Burn Data Blu-ray";
        QTest::newRow("Data CD") << 2 << "btnDataCD" << "Burn Data CD";
    }
    void kindButtonsSetTypeBorderAndTitle()
    {
        QFETCH(int, tab);
        QFETCH(QString, button);
        QFETCH(QString, title);
        AppHarness<> h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        w->tabviewMain->setCurrentIndex(tab);
        auto *b = w->findChild<QPushButton *>(button);
        QVERIFY(b);
        b->click();
        QCOMPARE(w->btnBurn->text(), title);
        for (QPushButton *other : w->tabviewMain->widget(tab)->findChildren<QPushButton *>())
            if (other->objectName().startsWith("btn"))
                QCOMPARE(CompilationTabs::isBordered(other), other == b);
    }

    void changingToVideoEmptiesTheAudioListAndKeepsTheAudioKind()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        w->btnMP3DVD->click();
        h.app->arrayMediaFiles->append(musicTrack("a.mp3"));
        h.app->arrayDataFolders->append(folderRecord("/d", 10));
        w->tabviewMain->setCurrentIndex(1);
        QCOMPARE(h.app->arrayMediaFiles->count(), 0);
        QCOMPARE(h.app->arrayDataFolders->count(), 0);
        QCOMPARE(w->tableviewAudioFiles->model()->rowCount(), 0);
        QCOMPARE(w->btnBurn->text(), QString("Burn Video DVD"));
        QCOMPARE(checkedTabItems(w), QStringList{"Video"});
        w->tabviewMain->setCurrentIndex(0);
        QCOMPARE(w->btnBurn->text(), QString("Burn MP3 DVD"));
    }

    void isoAndToolsKeepTheListsAndHideGaugeAndBurn()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        h.app->arrayMediaFiles->append(musicTrack("a.mp3"));
        w->tabviewMain->setCurrentIndex(3);
        QCOMPARE(h.app->arrayMediaFiles->count(), 1);
        QVERIFY(!w->btnBurn->isVisible());
        QVERIFY(!w->spaceoccupiedviewControl->isVisible());
        QCOMPARE(checkedTabItems(w), QStringList{"ISO"});
        w->tabviewMain->setCurrentIndex(4);
        QCOMPARE(h.app->arrayMediaFiles->count(), 1);
        QCOMPARE(checkedTabItems(w), QStringList{"Tools"});
        w->tabviewMain->setCurrentIndex(0);  // the way back empties them
        QCOMPARE(h.app->arrayMediaFiles->count(), 0);
        QVERIFY(w->btnBurn->isVisible());
        QVERIFY(w->spaceoccupiedviewControl->isVisible());
    }

    void tabMenuSelectsAndChecks()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        h.app->arrayMediaFiles->append(musicTrack("a.mp3"));
        w->submenuItemTabData->trigger();
        QCOMPARE(w->tabviewMain->currentIndex(), 2);
        QCOMPARE(checkedTabItems(w), QStringList{"Data"});
        QCOMPARE(w->btnBurn->text(), QString("Burn Data CD"));
        QCOMPARE(h.app->arrayMediaFiles->count(), 0);
        h.app->arrayDataFolders->append(folderRecord("/d", 10));
        w->submenuItemTabTools->trigger();
        QCOMPARE(w->tabviewMain->currentIndex(), 4);
        QCOMPARE(checkedTabItems(w), QStringList{"Tools"});
        QCOMPARE(h.app->arrayDataFolders->count(), 1);
        w->submenuItemTabAudio->trigger();
        QCOMPARE(checkedTabItems(w), QStringList{"Audio"});
        QCOMPARE(h.app->arrayDataFolders->count(), 0);
    }

    void burnButtonReachesEachOperationByTitle()
    {
        AppHarness<DispatchProbe> h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        const QList<QPair<QPushButton *, QString>> kinds = {
            {w->btnAudioCD, "Burn_Audio_CD"},   {w->btnMP3CD, "Burn_Audio_MP3_CD"},
            {w->btnMP3DVD, "Burn_Audio_MP3_DVD"}, {w->btnVideoDVD, "Burn_Video_DVD"},
            {w->btnVideoBluray, "Burn_Video_Bluray"}, {w->btnDataCD, "Burn_Data_CD"},
            {w->btnDataDVD, "Burn_Data_DVD"},   {w->btnDataBluray, "Burn_Data_Bluray"}};
        QStringList expected;
        for (const auto &k : kinds) {
            k.first->click();
            QTest::mouseClick(w->btnBurn, Qt::LeftButton);
            expected << k.second;
            QCOMPARE(h.app->called, expected);
        }
        w->btnBurn->setText("Burn Something Else");
        w->btnBurn->click();
        QCOMPARE(h.app->called, expected);
    }

    void helpMenuOpensFourPages()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        w->menuitemHelpAppHomePage->trigger();
        w->menuitemHelpCompanyHomePage->trigger();
        w->menuitemHelpSubmitTicket->trigger();
        w->menuitemHelpPrivacyPolicy->trigger();
        QCOMPARE(h.opened, (QList<QUrl>{HelpPages::AppHomePage, HelpPages::CompanyHomePage,
                                        HelpPages::SubmitTicket, HelpPages::PrivacyPolicy}));
    }

    void debugModeTogglesAndIsNeverSaved()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        const QStringList keysBefore = h.settings->allKeys();
        w->menuitemDebugMode->trigger();
        QVERIFY(h.app->m_b_Debug_Mode);
        QVERIFY(w->menuitemDebugMode->isChecked());
        w->menuitemDebugMode->trigger();
        QVERIFY(!h.app->m_b_Debug_Mode);
        QVERIFY(!w->menuitemDebugMode->isChecked());
        w->menuitemDebugMode->trigger();
        QCOMPARE(h.settings->allKeys(), keysBefore);
        // A new start begins with it off.
        AppHarness<> again;
        QVERIFY(again.start());
        QVERIFY(!again.app->m_b_Debug_Mode);
    }

    void debugModeAddsTheCodedAlertAfterTheRefusal()
    {
        AppHarness<> h;
        h.drive->status = FakeDriveBackend::blank("DVD");
        QVERIFY(h.start());
        h.app->arrayMediaFiles->append(musicTrack("a.mp3"));
        h.app->OnMenuDebugMode();
        h.app->mainWindow()->btnBurn->click();
        QTRY_COMPARE(h.alerts.shown.size(), 2);
        QCOMPARE(h.alerts.texts(),
                 (QStringList{"Media not CD / The media on the drive is not a CD. insert a writable CD on the drive and try again.",
                              "DVD / Warning 0060."}));
        QVERIFY(!h.app->windowProgress);
    }

    void completionSheetClosesOnOkAndComesBackFresh()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        h.app->Show_Window_Operation_Complete();
        QPointer<Window_Operation_Terminated> first = h.app->windowOperationCompleted;
        QVERIFY(first);
        QVERIFY(first->isVisible());
        // A sheet holds the window (no input but Quit) without being modal,
        // so that Quit and the close box still work.
        QCOMPARE(first->windowModality(), Qt::NonModal);
        QVERIFY(!h.app->mainWindow()->centralWidget()->isEnabled());
        QVERIFY(first->windowFlags() & Qt::Sheet);
        QCOMPARE(first->parentWidget(), h.app->mainWindow());
        QTest::mouseClick(first->btnOK, Qt::LeftButton);
        QVERIFY(!h.app->windowOperationCompleted);
        QTRY_VERIFY(!first);
        QVERIFY(h.app->mainWindow()->centralWidget()->isEnabled());
        h.app->Show_Window_Operation_Complete();
        QVERIFY(h.app->windowOperationCompleted);
        QVERIFY(h.app->windowOperationCompleted->isVisible());
    }

    void workingSheetSpinsFromItsFirstFrame()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        h.app->Show_Window_Performing_Operation();
        QVERIFY(h.app->windowPerformingOperation);
        QVERIFY(h.app->windowPerformingOperation->isVisible());
        QCOMPARE(h.app->windowPerformingOperation->pgAnimation->minimum(), 0);
        QCOMPARE(h.app->windowPerformingOperation->pgAnimation->maximum(), 0);  // busy
    }

    // A sheet that goes while it is up gives the window and its menu
    // commands back; one still up when the window closes goes with it.
    void aSheetThatGoesGivesTheWindowBack()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        auto enabledCommands = [w] {
            int n = 0;
            for (QAction *a : w->menuBar()->findChildren<QAction *>())
                n += a->isEnabled();
            return n;
        };
        const int before = enabledCommands();
        auto *sheet = new Window_Performing_Operation(w);
        sheet->begin();
        QVERIFY(!w->centralWidget()->isEnabled());
        QVERIFY(enabledCommands() < before);
        delete sheet;
        QVERIFY(w->centralWidget()->isEnabled());
        QCOMPARE(enabledCommands(), before);

        QPointer<Window_Performing_Operation> left = new Window_Performing_Operation(w);
        left->begin();
        h.app.reset();
        QVERIFY(!left);
    }

    void emptyListNeverShowsTheTwoBarSheet()
    {
        AppHarness<> h;
        h.drive->status = FakeDriveBackend::blank("CD");
        QVERIFY(h.start());
        bool seen = false;
        QTimer watch;
        connect(&watch, &QTimer::timeout, this, [&] { seen = seen || h.app->windowProgress; });
        watch.start(1);
        h.app->mainWindow()->btnBurn->click();
        QTRY_COMPARE(h.alerts.shown.size(), 1);
        QTest::qWait(100);
        QVERIFY(!seen);
        QCOMPARE(h.alerts.texts().first(),
                 QString("No audio files on the list / There are no audio files on the list. Add audio files to the list and try again."));
        QCOMPARE(h.drive->count("status"), 0);
    }

    // --- drives

    void firstRunWithTwoDrivesTakesTheFirst()
    {
        AppHarness<> h;
        h.drive->drives = {opticalDrive("1", "HL-DT-ST", "DVDRW  GX50N"),
                           opticalDrive("2", "PIONEER", "BD-RW BDR-XD07")};
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        QCOMPARE(h.app->s_Current_Drive_Number, QString("1"));
        QCOMPARE(h.setting("Zendrova_Last_Selected_Drive_18"), QString("HL-DT-ST - DVDRW  GX50N"));
        QCOMPARE(w->submenuItemDriveSlot[0]->text(), QString("HL-DT-ST - DVDRW  GX50N"));
        QCOMPARE(w->submenuItemDriveSlot[1]->text(), QString("PIONEER - BD-RW BDR-XD07"));
        QVERIFY(w->submenuItemDriveSlot[0]->isChecked());
        QVERIFY(!w->submenuItemDriveSlot[1]->isChecked());
        for (int i = 2; i < 6; ++i)
            QVERIFY(!w->submenuItemDriveSlot[i]->isVisible());
        // Choosing the second one.
        w->submenuItemDriveSlot[1]->trigger();
        QCOMPARE(h.app->s_Current_Drive_Number, QString("2"));
        QVERIFY(!w->submenuItemDriveSlot[0]->isChecked());
        QVERIFY(w->submenuItemDriveSlot[1]->isChecked());
        QCOMPARE(h.setting("Zendrova_Last_Selected_Drive_18"), QString("PIONEER - BD-RW BDR-XD07"));
        h.app->OnToolsEjectDisc();
        QCOMPARE(h.drive->calls.last(), QString("eject 2"));
    }

    void savedSecondDriveIsRestored()
    {
        AppHarness<> h;
        h.settings->setValue("Zendrova_Last_Selected_Drive_18", "PIONEER - BD-RW BDR-XD07");
        h.drive->drives = {opticalDrive("1", "HL-DT-ST", "DVDRW  GX50N"),
                           opticalDrive("2", "PIONEER", "BD-RW BDR-XD07")};
        QVERIFY(h.start());
        QCOMPARE(h.app->s_Current_Drive_Number, QString("2"));
        QVERIFY(h.app->mainWindow()->submenuItemDriveSlot[1]->isChecked());
        QVERIFY(!h.app->mainWindow()->submenuItemDriveSlot[0]->isChecked());
    }

    void noDriveLeavesOneItemThatDoesNothing()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        QVERIFY(w->submenuItemDriveSlot[0]->isVisible());
        for (int i = 1; i < 6; ++i)
            QVERIFY(!w->submenuItemDriveSlot[i]->isVisible());
        const QStringList keys = h.settings->allKeys();
        w->submenuItemDriveSlot[0]->trigger();
        QCOMPARE(h.app->s_Current_Drive_Number, QString("1"));
        QVERIFY(!w->submenuItemDriveSlot[0]->isChecked());
        QCOMPARE(h.settings->allKeys(), keys);
    }

    void windowAppearsBeforeASlowListing()
    {
        // The real Linux backend on a tool that takes its time: start-up does not wait.
        AppHarness<> h;
        h.backend = new XorrisoBackend(fake("xorriso-slow-list"), "/bin/true");
        h.build();
        QSignalSpy listed(h.app.get(), &AppDelegate::drivesListed);
        QElapsedTimer t;
        t.start();
        QVERIFY(h.app->applicationDidFinishLaunching());
        QVERIFY(h.app->mainWindow()->isVisible());
        QVERIFY(listed.isEmpty());
        QVERIFY2(t.elapsed() < 1000, qPrintable(QString::number(t.elapsed())));
        QVERIFY(listed.wait(20000));
    }

    // --- disc tools

    void eraseRefusesAnEmptyDrive()
    {
        AppHarness<> h;
        h.drive->status = FakeDriveBackend::noDisc();
        QVERIFY(h.start());
        h.app->mainWindow()->menuitemEraseFull->trigger();
        QTRY_COMPARE(h.alerts.shown.size(), 1);
        QCOMPARE(h.alerts.texts().first(),
                 QString("No disc / There is no disc on the drive. insert a rewritable media on the drive and try again."));
        QCOMPARE(h.alerts.shown.first().buttons, QStringList{"Close"});
        QCOMPARE(h.drive->count("erase"), 0);
        QVERIFY(!h.app->windowPerformingOperation);
    }

    void eraseRefusesAWriteOnceDisc()
    {
        AppHarness<> h;
        h.drive->status = FakeDriveBackend::blank("CD");
        QVERIFY(h.start());
        h.app->OnToolsFormatQuick();
        QTRY_COMPARE(h.alerts.shown.size(), 1);
        QCOMPARE(h.alerts.texts().first(),
                 QString("Media not rewritable / The media on the drive is not rewritable. insert a rewritable media on the drive and try again."));
        QCOMPARE(h.drive->count("erase"), 0);
    }

    void eraseRunsWithTheWorkingSheetAndEndsInCompletion()
    {
        AppHarness<> h;
        h.drive->drives = {opticalDrive("1", "V", "M")};
        h.drive->status = FakeDriveBackend::rewritable("DVD");
        h.drive->erase = ToolCommand{"/bin/sleep", {"0.3"}};
        QVERIFY(h.start());
        h.app->mainWindow()->menuitemEraseQuick->trigger();
        QTRY_VERIFY(h.app->windowPerformingOperation);
        QCOMPARE(h.drive->calls.filter("erase"), QStringList{"erase quick 1"});
        QVERIFY(!h.app->windowOperationCompleted);
        QTRY_VERIFY_WITH_TIMEOUT(h.app->windowOperationCompleted, 5000);
        QVERIFY(!h.app->windowPerformingOperation);
        QVERIFY(h.alerts.shown.isEmpty());
    }

    void discInfoShowsTheTextUnchanged()
    {
        AppHarness<> h;
        const QString text = "   Vendor   Product\n   HL-DT-ST DVDRW\n\n      Type: DVD-R   Name: /dev/disk2\n";
        h.drive->status = FakeDriveBackend::medium(false, true, false, "DVD", text);
        QVERIFY(h.start());
        h.app->mainWindow()->toolbar_btn_Tools_Disc_Info->click();
        QTRY_COMPARE(h.alerts.shown.size(), 1);
        QCOMPARE(h.alerts.shown.first().messageText, QString("Disc Information"));
        QCOMPARE(h.alerts.shown.first().informativeText, text);
        QCOMPARE(h.alerts.shown.first().buttons, QStringList{"OK"});
        QCOMPARE(h.drive->count("status"), 2);  // the empty question, then the text itself
    }

    void discInfoWithoutADiscSaysSo()
    {
        AppHarness<> h;
        h.drive->status = FakeDriveBackend::noDisc();
        QVERIFY(h.start());
        h.app->OnToolsDiscInfo();
        QTRY_COMPARE(h.alerts.shown.size(), 1);
        QCOMPARE(h.alerts.texts().first(),
                 QString("No disc / There is no disc on the drive. Insert a media on the drive and try again."));
    }

    void ejectAndCloseAskNothing()
    {
        AppHarness<> h;
        h.drive->status = FakeDriveBackend::noDisc();
        QVERIFY(h.start());
        h.app->mainWindow()->toolbar_btn_Tools_Eject_Disc->click();
        h.app->mainWindow()->toolbar_btn_Tools_Load_Disc->click();
        QCOMPARE(h.drive->calls.mid(1), (QStringList{"eject 1", "close 1"}));
        QVERIFY(h.alerts.shown.isEmpty());
    }

    void linuxWithNoDriveAnswersNoDisc()
    {
        const QString xorriso = QStandardPaths::findExecutable("xorriso");
        if (xorriso.isEmpty())
            QFAIL("xorriso is not installed");
        AppHarness<> h;
        QVERIFY(startOnXorriso(h, xorriso, nullptr, 30000));
        QVERIFY(h.app->array_Optical_Media_Drives.isEmpty());
        QVERIFY(h.app->mainWindow()->submenuItemDriveSlot[0]->isVisible());
        h.app->OnToolsDiscInfo();
        QTRY_COMPARE_WITH_TIMEOUT(h.alerts.shown.size(), 1, 30000);
        QCOMPARE(h.alerts.shown.first().messageText, QString("No disc"));
    }

    // A user outside the cdrom group, with /dev/sr0 present: xorriso lists no
    // drive and says it may not open /dev/sr0.
    void linuxDriveWithoutPermissionNamesTheFix()
    {
        AppHarness<> h;
        QVERIFY(startOnXorriso(h, fake("xorriso-permission-denied"), [] { return QStringList{"/dev/sr0"}; }));
        QVERIFY(h.app->array_Optical_Media_Drives.isEmpty());
        QAction *item = h.app->mainWindow()->submenuItemDriveSlot[0];
        QVERIFY(item->isVisible());
        QVERIFY(!item->isChecked());
        QCOMPARE(item->text(),
                 QString("No permission to use /dev/sr0. Add your user to the cdrom group, then log in again."));
        item->trigger();  // nothing to choose
        QVERIFY(!item->isChecked());
        QCOMPARE(h.app->s_Current_Drive_Number, QString("1"));

        h.app->OnToolsDiscInfo();
        QTRY_COMPARE_WITH_TIMEOUT(h.alerts.shown.size(), 1, 10000);
        QCOMPARE(h.alerts.texts().first(),
                 QString("No permission to use the drive / Tamblo may not open /dev/sr0, so it cannot see the disc. "
                         "Add your user to the cdrom group, then log in again."));
    }

    // The drive was listed, but its status query may not open it.
    void listedDriveWithoutPermissionNamesTheFix()
    {
        AppHarness<> h;
        const QString script = h.root.filePath("xorriso-listed-then-denied");
        QVERIFY(writeScript(script, "#!/bin/sh\n"
                                    "[ \"$1\" = -devices ] && exec cat '" TAMBLO_FIXTURES_DIR "/xorriso-devices-one-drive-1.4.2.txt'\n"
                                    "exec '" TAMBLO_FAKES_DIR "/xorriso-permission-denied' \"$@\"\n"));
        QVERIFY(startOnXorriso(h, script, [] { return QStringList{"/dev/sr0"}; }));
        QCOMPARE(h.app->mainWindow()->submenuItemDriveSlot[0]->text(), QString("TSSTcorp - DVD+-RW TS-L633J"));
        QVERIFY(!h.app->mainWindow()->submenuItemDriveSlot[1]->isVisible());
        h.app->OnToolsDiscInfo();
        QTRY_COMPARE_WITH_TIMEOUT(h.alerts.shown.size(), 1, 10000);
        QCOMPARE(h.alerts.shown.first().messageText, QString("No permission to use the drive"));
        QVERIFY(h.alerts.shown.first().informativeText.endsWith("Add your user to the cdrom group, then log in again."));
    }

    // --- lists, kinds, gauge

    void newDiscOkEmptiesEveryListAndSwitches()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        h.app->arrayMediaFiles->append(musicTrack("a.mp3"));
        h.app->arrayDataFolders->append(folderRecord("/d", 1));
        w->toolbar_btn_Audio_New_Disc->click();
        QVERIFY(h.app->windowNewDisc);
        QVERIFY(h.app->windowNewDisc->radio1->isChecked());
        h.app->windowNewDisc->radio4->click();
        QVERIFY(!h.app->windowNewDisc->radio1->isChecked());
        h.app->windowNewDisc->btnOK->click();
        QVERIFY(!h.app->windowNewDisc);
        QCOMPARE(h.app->arrayMediaFiles->count(), 0);
        QCOMPARE(h.app->arrayDataFolders->count(), 0);
        QCOMPARE(w->tabviewMain->currentIndex(), 1);
        QCOMPARE(w->btnBurn->text(), QString("Burn Video DVD"));
        QVERIFY(CompilationTabs::isBordered(w->btnVideoDVD));
        QVERIFY(!CompilationTabs::isBordered(w->btnVideoBluray));
        QCOMPARE(h.app->i_Type_of_New_Disc, qint64(4));
    }

    void newDiscCancelKeepsListsAndFallsBackToAudioCd()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        h.app->i_Type_of_New_Disc = 7;
        h.app->arrayMediaFiles->append(musicTrack("a.mp3"));
        w->menuitemNewDisc->trigger();
        QVERIFY(h.app->windowNewDisc->radio7->isChecked());
        h.app->windowNewDisc->btnCancel->click();
        QCOMPARE(h.app->arrayMediaFiles->count(), 1);
        QCOMPARE(h.app->i_Type_of_New_Disc, qint64(1));
        QCOMPARE(w->btnBurn->text(), QString("Burn Audio CD"));
        h.app->ShowNewDiscWindow();
        QVERIFY(h.app->windowNewDisc->radio1->isChecked());
    }

    void gaugeFollowsTheTotalsAndShowsZeroOffTheListTabs()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        h.app->arrayMediaFiles->append(musicTrack("a.mp3", 2220));
        h.app->refreshTableAudioFiles();
        QCOMPARE(h.app->i_Audio_Total_Duration_in_Seconds, qint64(2220));
        QCOMPARE(w->spaceoccupiedviewControl->i_Percentage(), qint64(50));
        w->tabviewMain->setCurrentIndex(3);
        h.app->PaintSpaceOccupiedControl();
        QCOMPARE(w->spaceoccupiedviewControl->i_Percentage(), qint64(0));
        w->tabviewMain->setCurrentIndex(2);
        h.app->arrayDataFolders->append(folderRecord("/a", 683593));
        h.app->arrayDataFolders->append(folderRecord("/a", 683593));  // the same folder twice counts twice
        h.app->refreshTableDataFolders();
        QCOMPARE(h.app->i_Data_Total_Size_in_KBytes, qint64(1367186));
        QCOMPARE(w->spaceoccupiedviewControl->i_Percentage(), qint64(200));
    }

    void headerClicksSortLikeAFileBrowser()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        h.app->arrayMediaFiles->append(musicTrack("Track 10.mp3"));
        h.app->arrayMediaFiles->append(musicTrack("track 2.mp3"));
        h.app->arrayMediaFiles->append(musicTrack("Track 1.mp3"));
        emit w->tableviewAudioFiles->horizontalHeader()->sectionClicked(0);
        QStringList names;
        for (const NodeMediaFile &n : h.app->arrayMediaFiles->records())
            names << n.s_File_Name_With_Extension;
        QCOMPARE(names, (QStringList{"Track 1.mp3", "track 2.mp3", "Track 10.mp3"}));
        QVERIFY(!h.app->sortFlags.m_b_Col1_Ascenging);
        // The Video table shows the same list.
        QCOMPARE(w->tableviewVideoFiles->model()->index(0, 0).data().toString(), QString("Track 1.mp3"));
    }

    void deleteAndClearAskNothing()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        MainWindow *w = h.app->mainWindow();
        for (const QString &n : {"a.mp3", "b.mp3", "c.mp3"})
            h.app->arrayMediaFiles->append(musicTrack(n, 100));
        h.app->refreshTableAudioFiles();
        w->toolbar_btn_Audio_Delete->click();  // nothing selected: nothing goes, total recomputed
        QCOMPARE(h.app->arrayMediaFiles->count(), 3);
        QCOMPARE(h.app->i_Audio_Total_Duration_in_Seconds, qint64(300));
        w->tableviewAudioFiles->selectRow(1);
        w->toolbar_btn_Audio_Delete->click();
        QCOMPARE(h.app->arrayMediaFiles->count(), 2);
        QCOMPARE(h.app->i_Audio_Total_Duration_in_Seconds, qint64(200));
        w->toolbar_btn_Audio_Clear->click();
        QCOMPARE(h.app->arrayMediaFiles->count(), 0);
        QCOMPARE(w->tableviewVideoFiles->model()->rowCount(), 0);
        QVERIFY(h.alerts.shown.isEmpty());
    }

    void addingShowsTheSingleBarSheetAndFillsBothMediaTables()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        QTemporaryDir media;
        QStringList files;
        for (int i = 1; i <= 3; ++i) {
            const QString f = media.filePath(QString("tone %1.mp3").arg(i));
            QCOMPARE(QProcess::execute("ffmpeg", {"-nostdin", "-v", "error", "-f", "lavfi", "-i",
                                                  "sine=d=" + QString::number(i), f}),
                     0);
            files << f;
        }
        h.app->OnMenuTabVideo();  // added on the Video tab ...
        h.picker.answers.enqueue(files);
        QList<double> values;
        double maximum = -1;
        QTimer watch;
        connect(&watch, &QTimer::timeout, this, [&] {
            if (h.app->windowUniqueProgress) {
                maximum = h.app->windowUniqueProgress->progressBar->maxDouble();
                const double v = h.app->windowUniqueProgress->progressBar->doubleValue();
                if (values.isEmpty() || values.last() != v)
                    values << v;
            }
        });
        watch.start(1);
        h.app->mainWindow()->toolbar_btn_Video_Add_Files->click();
        QVERIFY(h.app->windowUniqueProgress);
        QVERIFY(h.app->windowUniqueProgress->isVisible());
        QTRY_COMPARE_WITH_TIMEOUT(h.app->arrayMediaFiles->count(), 3, 20000);
        QTRY_VERIFY(!h.app->windowUniqueProgress);
        QCOMPARE(maximum, 3.0);
        QVERIFY(values.size() >= 1);
        QCOMPARE(values.first(), 0.0);
        // ... shows in the Audio table too, and the total is the files' seconds.
        QCOMPARE(h.app->mainWindow()->tableviewAudioFiles->model()->rowCount(), 3);
        QCOMPARE(h.app->i_Video_Total_Duration_in_Seconds, qint64(1 + 2 + 3));
        QCOMPARE(h.app->arrayMediaFiles->at(2).s_File_Name_With_Extension, QString("tone 3.mp3"));
    }

    void dataFolderIsMeasuredBehindTheSheet()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        QTemporaryDir tree;
        QVERIFY(writeFile(tree.filePath("a.bin"), QByteArray(2048, 'x')));
        h.app->OnMenuTabData();
        h.picker.answers.enqueue({tree.path()});
        h.app->mainWindow()->toolbar_btn_Data_Add_Folder->click();
        QVERIFY(h.app->windowUniqueProgress);
        QTRY_COMPARE(h.app->arrayDataFolders->count(), 1);
        QTRY_VERIFY(!h.app->windowUniqueProgress);
        QCOMPARE(h.app->arrayDataFolders->at(0).i_Size_in_KBytes, quint64(2));
        QCOMPARE(h.app->i_Data_Total_Size_in_KBytes, qint64(2));
    }

    void playWithNothingSelectedSaysSo()
    {
        AppHarness<> h;
        QVERIFY(h.start());
        h.app->arrayMediaFiles->append(musicTrack("a.mp3"));
        h.app->mainWindow()->toolbar_btn_Audio_Play->click();
        QCOMPARE(h.alerts.texts(), QStringList{"There is no file selected. / There is no file selected."});
        QVERIFY(!h.app->windowPlayer);
    }
};

TAMBLO_TEST_MAIN(TestAppMainWindow)
#include "tst_app_main_window.moc"
