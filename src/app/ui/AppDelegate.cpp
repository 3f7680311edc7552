#include "app/ui/AppDelegate.h"

#include <QElapsedTimer>
#include <utility>


#include <QAction>
#include <QCursor>
#include <QDesktopServices>
#include <QDir>
#include <QMenu>
#include <QPushButton>
#include <QStandardPaths>
#include <QTabWidget>
#include <unistd.h>

#include "app/HelpPages.h"
#include "platform/ui/AwayNotice.h"
#include "platform/ui/DesktopNotifier.h"
#include "platform/ui/SheetOutlet.h"
#include "app/StartupFolders.h"
#include "app/ui/MainWindow.h"
#include "app/ui/OperationSheets.h"
#include "appearance/ui/BackgroundViews.h"
#include "appearance/ui/WindowColours.h"
#include "burn/DiscTools.h"
#include "burn/MediaBurn.h"
#include "burn/Recorder.h"
#include "burn/ui/Window_Video_Settings.h"
#include "compilation/CompilationActions.h"
#include "compilation/DataFolderModel.h"
#include "compilation/DiscKinds.h"
#include "compilation/MediaListModel.h"
#include "compilation/ui/CompilationTable.h"
#include "compilation/ui/CompilationTabs.h"
#include "compilation/ui/SpaceOccupiedView.h"
#include "drives/DiscVerify.h"
#include "drives/DriveBackendFactory.h"
#include "drives/MediaQuestions.h"
#include "drives/ui/DriveMenu.h"
#include "images/DataBurnFlow.h"
#include "images/DuplicationFlow.h"
#include "images/ImageBurnFlow.h"
#include "images/ImageFlowContext.h"
#include "images/IsoCreationFlow.h"
#include "images/ui/Window_Data_Copy_Folders.h"
#include "preview/PreviewSelection.h"
#include "preview/ui/AVSPDocument.h"
#include "toolrun/RunLog.h"
#include "toolrun/ToolMessages.h"
#include "toolrun/ToolRun.h"
#include "toolrun/ui/StatusWindows.h"


AppDelegate::AppDelegate(const AppContext &context, QObject *parent)
    : QObject(parent), m_context(context), m_settings(*context.settings), m_window(std::make_unique<MainWindow>())
{
    m_backend = m_context.driveBackend ? m_context.driveBackend
                                       : createDriveBackend(m_context.tools, this, m_context.opticalDeviceNodes);
    m_media = new MediaQuestions(*m_backend, *m_context.alerts, [this] { return m_b_Debug_Mode; },
                                 [this] { return currentDrive(); }, this);
    QString logs = m_context.logsDir;
    if (logs.isEmpty())
        logs = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/logs");
    m_log = std::make_unique<RunLog>(logs);
    if (!m_context.notifier) {
        auto *desktop = new DesktopNotifier(this);
        m_context.notifier = desktop;
    }
    if (!m_context.clockMs) {
        auto clock = std::make_shared<QElapsedTimer>();
        clock->start();
        m_context.clockMs = [clock] { return clock->elapsed(); };
    }
    RunLog *log = m_log.get();
    ToolRun::setObserver([log](const ToolVerdict &verdict) { log->record(verdict); });
    m_recorder = Recorder::create(m_context.tools);
    arrayMediaFiles = new MediaListModel(this);
    arrayDataFolders = new DataFolderModel(this);

    createWindowParts();
    createOperations();
    connectWindow();
}

// The window's drive menu, compilation tabs and colours.
void AppDelegate::createWindowParts()
{
    MainWindow *w = m_window.get();
    m_drives = new DriveMenu(*m_backend, m_settings, {array_Optical_Media_Drives, s_Current_Drive_Number},
                             w->submenuItemDriveSlot, this);

    CompilationWidgets tabs;
    tabs.window = w;
    tabs.tabs = w->tabviewMain;
    tabs.tables = {w->tableviewAudioFiles, w->tableviewVideoFiles, w->tableviewDataFolders};
    tabs.gauge = w->spaceoccupiedviewControl;
    tabs.burnBar = w->customviewButtonBurn;
    tabs.burnButton = w->btnBurn;
    tabs.tabItems = w->tabMenuItems();
    m_tabs = new CompilationTabs(tabs,
                                 {i_Audio_Type, i_Video_Type, i_Data_Type, i_Type_of_New_Disc, sortFlags,
                                  i_Audio_Total_Duration_in_Seconds, i_Video_Total_Duration_in_Seconds,
                                  i_Data_Total_Size_in_KBytes, windowNewDisc},
                                 arrayMediaFiles, arrayDataFolders, this);

    ColourTargets looks;
    looks.window = w;
    looks.tables = {w->tableviewVideoFiles, w->tableviewAudioFiles, w->tableviewDataFolders};
    looks.listText = [this](const QColor &c) {
        arrayMediaFiles->setTextColor(c);
        arrayDataFolders->setTextColor(c);
    };
    looks.gaugeColour = [w](const QColor &c) { w->spaceoccupiedviewControl->setBarColor(c); };
    looks.repainted = {w->view_Toolbar_Audio_BG, w->view_Toolbar_Audio_Sub_BG, w->view_Toolbar_Video_BG,
                       w->view_Toolbar_Video_Sub_BG, w->view_Toolbar_Data_BG, w->view_Toolbar_Data_Sub_BG,
                       w->view_Toolbar_ISO_BG, w->view_Toolbar_Tools_BG, w->spaceoccupiedviewControl,
                       w->customviewButtonBurn};
    m_colours = new WindowColours(looks, {theme, windowColors, timerSetAlternatingRows, timerForceColorsAtStartup},
                                  m_settings, m_context.systemIsDark, this);
}

// Every operation, each followed by the status sheets.
void AppDelegate::createOperations()
{
    m_mediaBurn = new MediaBurn(*m_recorder, *m_context.alerts, m_media->checker(), this);
    m_adding = new CompilationActions(arrayMediaFiles, arrayDataFolders, m_context.filePicker, this);
    ImageFlowContext flows;
    flows.tools = m_context.tools;
    flows.homeFolder = QDir::homePath();
    flows.alerts = m_context.alerts;
    flows.picker = m_context.filePicker;
    flows.media = m_media;
    flows.currentDrive = [this] { return currentDrive(); };
    flows.debugMode = [this] { return m_b_Debug_Mode; };
    flows.ejectDisc = [this] { OnToolsEjectDisc(); };
    flows.verifyAfterWriting = [this] { return m_settings.verifyAfterWriting(); };
    flows.dataFolder = WorkingFolders::inside(m_context.documentsDir).s_Data_Folder;
    m_dataBurn = new DataBurnFlow(flows, this);
    m_isoCreation = new IsoCreationFlow(flows, this);
    m_imageBurn = new ImageBurnFlow(flows, this);
    m_duplication = new DuplicationFlow(flows, this);

    DiscToolsContext tools;
    tools.backend = m_backend;
    tools.alerts = m_context.alerts;
    tools.check = m_media->checker();
    tools.currentDrive = [this] { return currentDrive(); };
    tools.debugMode = [this] { return m_b_Debug_Mode; };
    m_erase = new EraseFlow(tools, this);
    m_discInfo = new DiscInfoFlow(tools, this);

    m_sheets = new OperationSheets(m_window.get(),
                                   {windowProgress, windowUniqueProgress, windowPerformingOperation,
                                    windowOperationCompleted, windowDataCopyFolders},
                                   this);
    m_notice = std::make_unique<AwayNotice>(m_context.notifier, m_context.clockMs, m_window.get(), NotifyAfterMs);
    m_sheets->setBeforeLastSheet([this](const QString &verdict) { m_notice->tellIfAway(verdict); });
    connect(m_sheets, &OperationSheets::cancelRequested, this, &AppDelegate::cancelOperation);
    m_operations = {m_adding, m_mediaBurn, m_dataBurn, m_isoCreation, m_imageBurn, m_duplication, m_erase, m_discInfo};
    for (Operation *operation : std::as_const(m_operations))
        m_sheets->follow(operation);

}

AppDelegate::~AppDelegate()
{
    ToolRun::setObserver({});
}

// ---------------------------------------------------------------- start-up

bool AppDelegate::applicationDidFinishLaunching()
{
    m_b_Debug_Mode = false;
    s_Video_Output_Format.clear();
    s_Audio_Output_Format.clear();
    s_Current_Drive_Number = QStringLiteral("1");

    folders = WorkingFolders::inside(m_context.documentsDir);
    const FolderSetup setup = setUpWorkingFolders(folders, m_settings);
    if (!setup.ok) {
        fatal(setup.fatalText);
        return false;
    }
    s_Video_Output_Format = m_settings.string(SettingsKeys::VideoFormat);
    s_Audio_Output_Format = m_settings.string(SettingsKeys::AudioFormat);
    m_window->menuitemVerifyAfterWriting->setChecked(m_settings.verifyAfterWriting());

    Load_List_Of_Optical_Drives();  // answers later; the window does not wait for it

    sffmpegPath = m_context.tools.ffmpeg;
    m_adding->setFfmpegPath(sffmpegPath);

    m_tabs->startAfresh();
    theme = ThemeSettings::loadAtStartup(m_settings);
    m_colours->applyAtStartup();

    MainWindow *w = m_window.get();
    w->setWindowTitle(QStringLiteral("Tamblo"));
    w->show();
    w->raise();
    w->activateWindow();
    return true;
}

void AppDelegate::exitProcess()
{
    if (m_context.exitProcess)
        m_context.exitProcess(0);
    else
        ::_exit(0);
}

void AppDelegate::fatal(const QString &text)
{
    AlertRequest r;
    r.messageText = StartupTexts::FatalMessage;
    r.informativeText = text;
    r.buttons = {StartupTexts::FatalButton};
    m_context.alerts->show(r);
    Terminate_App();
}

void AppDelegate::Terminate_App()
{
    // Nothing is saved (settings are written when they change). A tool that
    // writes a disc or an image is not cut off without asking: the user may
    // go on, or quit, and then the tool is stopped cleanly first. Any other
    // tool is killed and the process ends at once.
    if (m_quitting)
        return;
    if (ToolRun::anyWriting()) {
        AlertRequest r;
        r.messageText = QStringLiteral("A disc is being written. Quit anyway? The disc may become unusable.");
        r.informativeText = QString();
        r.buttons = {QStringLiteral("Quit"), QStringLiteral("Continue")};
        r.warningStyle = true;
        if (m_context.alerts->show(r).button != 0)
            return;
        m_quitting = true;
        m_log->note(QStringLiteral("Quit while writing: the tool is stopped."));
        ToolRun::stopAllThen(this, [this] { exitProcess(); });
        return;
    }
    m_quitting = true;
    for (ToolRun *run : ToolRun::running())
        run->stop();
    exitProcess();
}

// ------------------------------------------------------------- the window

void AppDelegate::connectWindow()
{
    MainWindow *w = m_window.get();
    auto onClick = [this](QPushButton *button, void (AppDelegate::*slot)()) {
        connect(button, &QPushButton::clicked, this, [this, slot] { (this->*slot)(); });
    };
    connect(w, &MainWindow::windowWillClose, this, &AppDelegate::Terminate_App);
    connect(w->tabviewMain, &QTabWidget::currentChanged, this, &AppDelegate::tabViewDidSelect);

    onClick(w->btnAudioCD, &AppDelegate::OnActionAudioCD);
    onClick(w->btnMP3CD, &AppDelegate::OnActionMP3CD);
    onClick(w->btnMP3DVD, &AppDelegate::OnActionMP3DVD);
    onClick(w->btnVideoDVD, &AppDelegate::OnActionVideoDVD);
    onClick(w->btnVideoBluray, &AppDelegate::OnActionVideoBluray);
    onClick(w->btnDataCD, &AppDelegate::OnActionDataCD);
    onClick(w->btnDataDVD, &AppDelegate::OnActionDataDVD);
    onClick(w->btnDataBluray, &AppDelegate::OnActionDataBluray);
    onClick(w->btnBurn, &AppDelegate::OnBtnBurn);

    onClick(w->toolbar_btn_Audio_New_Disc, &AppDelegate::ShowNewDiscWindow);
    onClick(w->toolbar_btn_Video_New_Disc, &AppDelegate::ShowNewDiscWindow);
    onClick(w->toolbar_btn_Data_New_Disc, &AppDelegate::ShowNewDiscWindow);
    onClick(w->toolbar_btn_Audio_Add_Files, &AppDelegate::OnActionAudioAddFiles);
    onClick(w->toolbar_btn_Audio_Add_Folder, &AppDelegate::OnActionAudioAddFolder);
    onClick(w->toolbar_btn_Video_Add_Files, &AppDelegate::OnActionVideoAddFiles);
    onClick(w->toolbar_btn_Video_Add_Folder, &AppDelegate::OnActionVideoAddFolder);
    onClick(w->toolbar_btn_Data_Add_Folder, &AppDelegate::OnActionDataAddFolder);
    onClick(w->toolbar_btn_Audio_Delete, &AppDelegate::OnActionAudioDelete);
    onClick(w->toolbar_btn_Video_Delete, &AppDelegate::OnActionVideoDelete);
    onClick(w->toolbar_btn_Data_Delete, &AppDelegate::OnActionDataDelete);
    onClick(w->toolbar_btn_Audio_Clear, &AppDelegate::OnActionAudioClear);
    onClick(w->toolbar_btn_Video_Clear, &AppDelegate::OnActionVideoClear);
    onClick(w->toolbar_btn_Data_Clear, &AppDelegate::OnActionDataClear);
    onClick(w->toolbar_btn_Audio_Play, &AppDelegate::OnActionAudioPlay);
    onClick(w->toolbar_btn_Video_Play, &AppDelegate::OnActionVideoPlay);
    onClick(w->toolbar_btn_Audio_Copy_Disc, &AppDelegate::DuplicateMedia);
    onClick(w->toolbar_btn_Video_Copy_Disc, &AppDelegate::DuplicateMedia);
    onClick(w->toolbar_btn_Data_Copy_Disc, &AppDelegate::DuplicateMedia);
    onClick(w->toolbar_btn_Video_Settings, &AppDelegate::OnActionVideoSettings);
    onClick(w->toolbar_btn_ISO_Create, &AppDelegate::OnActionISOCreate);
    onClick(w->toolbar_btn_ISO_Burn, &AppDelegate::OnActionISOBurn);
    onClick(w->toolbar_btn_Tools_Eject_Disc, &AppDelegate::OnToolsEjectDisc);
    onClick(w->toolbar_btn_Tools_Load_Disc, &AppDelegate::OnToolsLoadDisc);
    onClick(w->toolbar_btn_Tools_Erase_Disc, &AppDelegate::OnToolsFormatRWMedia);
    onClick(w->toolbar_btn_Tools_Disc_Info, &AppDelegate::OnToolsDiscInfo);
    onClick(w->toolbar_btn_Tools_Colors, &AppDelegate::OnToolsColors);

    connectMenus();

    connectLists();
}

void AppDelegate::connectLists()
{
    MainWindow *w = m_window.get();
    w->tableviewAudioFiles->setModel(arrayMediaFiles);
    w->tableviewVideoFiles->setModel(arrayMediaFiles);
    w->tableviewDataFolders->setModel(arrayDataFolders);
    connect(w->tableviewAudioFiles, &CompilationTable::sortRequested, this, [this](int c) { sortTable(0, c); });
    connect(w->tableviewVideoFiles, &CompilationTable::sortRequested, this, [this](int c) { sortTable(1, c); });
    connect(w->tableviewDataFolders, &CompilationTable::sortRequested, this, [this](int c) { sortTable(2, c); });

    connect(m_adding, &CompilationActions::refreshTable, this, [this](int tab) {
        if (tab == CompilationActions::AudioTab)
            refreshTableAudioFiles();
        else if (tab == CompilationActions::VideoTab)
            refreshTableVideoFiles();
        else
            refreshTableDataFolders();
    });
}

void AppDelegate::connectMenus()
{
    MainWindow *w = m_window.get();
    auto on = [this](QAction *item, void (AppDelegate::*slot)()) {
        connect(item, &QAction::triggered, this, [this, slot] { (this->*slot)(); });
    };
    on(w->menuitemNewDisc, &AppDelegate::ShowNewDiscWindow);
    on(w->menuitemEraseFull, &AppDelegate::OnToolsFormatFull);
    on(w->menuitemEraseQuick, &AppDelegate::OnToolsFormatQuick);
    on(w->submenuItemTabAudio, &AppDelegate::OnMenuTabAudio);
    on(w->submenuItemTabVideo, &AppDelegate::OnMenuTabVideo);
    on(w->submenuItemTabData, &AppDelegate::OnMenuTabData);
    on(w->submenuItemTabISO, &AppDelegate::OnMenuTabISO);
    on(w->submenuItemTabTools, &AppDelegate::OnMenuTabTools);
    on(w->menuitemHelpAppHomePage, &AppDelegate::OnMenuHelpAppHomePage);
    on(w->menuitemHelpCompanyHomePage, &AppDelegate::OnMenuHelpCompanyHomePage);
    on(w->menuitemHelpSubmitTicket, &AppDelegate::OnMenuHelpSubmitTicket);
    on(w->menuitemHelpPrivacyPolicy, &AppDelegate::OnMenuHelpPrivacyPolicy);
    on(w->menuitemQuit, &AppDelegate::OnMenuQuit);
    on(w->menuitemHelpShowLogs, &AppDelegate::OnMenuHelpShowLogs);
    on(w->menuitemDebugMode, &AppDelegate::OnMenuDebugMode);
    on(w->menuitemVerifyAfterWriting, &AppDelegate::OnMenuVerifyAfterWriting);
    for (int i = 0; i < 6; ++i)
        connect(w->submenuItemDriveSlot[i], &QAction::triggered, this, [this, i] { OnMenuDriveSlot(i + 1); });
}

void AppDelegate::tabViewDidSelect(int index) { m_tabs->tabSelected(index); }
void AppDelegate::chooseKindButton(int tab, qint64 type) { m_tabs->chooseKind(tab, type); }

void AppDelegate::selectTabFromMenu(int index)
{
    {
        const QSignalBlocker block(m_window->tabviewMain);
        m_window->tabviewMain->setCurrentIndex(index);
    }
    tabViewDidSelect(index);
}

void AppDelegate::OnBtnBurn()
{
    // The eight burns in kind order (DiscKinds: kind 1 is the audio CD).
    static void (AppDelegate::*const burns[])() = {
        &AppDelegate::Burn_Audio_CD,  &AppDelegate::Burn_Audio_MP3_CD, &AppDelegate::Burn_Audio_MP3_DVD,
        &AppDelegate::Burn_Video_DVD, &AppDelegate::Burn_Video_Bluray, &AppDelegate::Burn_Data_CD,
        &AppDelegate::Burn_Data_DVD,  &AppDelegate::Burn_Data_Bluray};
    const DiscKind *kind = DiscKinds::forBurnTitle(m_window->btnBurn->text());
    if (!kind)
        return;
    beginOperation(kind->burnTitle);
    (this->*burns[kind->kind - 1])();
}

void AppDelegate::openPage(const QUrl &page)
{
    if (m_context.openUrl)
        m_context.openUrl(page);
    else
        QDesktopServices::openUrl(page);
}

void AppDelegate::OnMenuHelpAppHomePage() { openPage(HelpPages::AppHomePage); }
void AppDelegate::OnMenuHelpCompanyHomePage() { openPage(HelpPages::CompanyHomePage); }
void AppDelegate::OnMenuHelpSubmitTicket() { openPage(HelpPages::SubmitTicket); }
void AppDelegate::OnMenuHelpPrivacyPolicy() { openPage(HelpPages::PrivacyPolicy); }

void AppDelegate::OnMenuHelpShowLogs()
{
    QDir().mkpath(m_log->folder());
    openPage(QUrl::fromLocalFile(m_log->folder()));
}

void AppDelegate::OnMenuDebugMode()
{
    m_b_Debug_Mode = !m_b_Debug_Mode;
    m_window->menuitemDebugMode->setChecked(m_b_Debug_Mode);
}

void AppDelegate::OnMenuVerifyAfterWriting()
{
    m_settings.setFlag(SettingsKeys::VerifyAfterWriting, m_window->menuitemVerifyAfterWriting->isChecked());
}

// ---------------------------------------------------------------- burns

void AppDelegate::burnMedia(BurnOperation operation)
{
    MediaBurnContext c;
    c.ffmpeg = sffmpegPath;
    c.audioFolder = folders.s_Audio_Folder;
    c.videoFolder = folders.s_Video_Folder;
    c.videoFormat = s_Video_Output_Format;
    c.audioFormat = s_Audio_Output_Format;
    c.currentDrive = currentDrive();
    c.debugMode = m_b_Debug_Mode;
    c.verifyAfterWriting = m_settings.verifyAfterWriting();
    m_mediaBurn->burn(operation, arrayMediaFiles->records(), c);
}

void AppDelegate::Burn_Audio_CD() { burnMedia(BurnOperation::AudioCD); }
void AppDelegate::Burn_Audio_MP3_CD() { burnMedia(BurnOperation::MP3CD); }
void AppDelegate::Burn_Audio_MP3_DVD() { burnMedia(BurnOperation::MP3DVD); }
void AppDelegate::Burn_Video_DVD() { burnMedia(BurnOperation::VideoDVD); }
void AppDelegate::Burn_Video_Bluray() { burnMedia(BurnOperation::VideoBluray); }
void AppDelegate::Burn_Data_CD() { m_dataBurn->burn(ImageMessages::DataDisc::CD, arrayDataFolders->records()); }
void AppDelegate::Burn_Data_DVD() { m_dataBurn->burn(ImageMessages::DataDisc::DVD, arrayDataFolders->records()); }
void AppDelegate::Burn_Data_Bluray() { m_dataBurn->burn(ImageMessages::DataDisc::Bluray, arrayDataFolders->records()); }

// ---------------------------------------------------------- status sheets

void AppDelegate::Show_Window_Performing_Operation() { m_sheets->showWorking(); }
void AppDelegate::Show_Window_Operation_Complete() { m_sheets->showCompletion(QString()); }
void AppDelegate::Close_Window_Operation_Complete() { m_sheets->closeCompletion(); }
void AppDelegate::Show_Window_Verifying() { m_sheets->showVerifying(); }
void AppDelegate::Show_Window_Operation_Verified() { m_sheets->showCompletion(DiscVerify::VerifiedMessage); }
void AppDelegate::Show_Window_Operation_Failed(const OperationFailure &failure) { m_sheets->showFailure(failure); }
void AppDelegate::Show_Window_Data_Copy_Folders() { m_sheets->showStaging(); }
void AppDelegate::Close_Window_Data_Copy_Folders() { m_sheets->closeStaging(); }

void AppDelegate::beginOperation(const QString &title)
{
    m_log->beginOperation(title);
    m_notice->begin(title);
}

// ------------------------------------------------------------------ drives

Object_Optical_Drive AppDelegate::currentDrive() const { return m_drives->current(); }
const DriveMenuState &AppDelegate::driveMenu() const { return m_drives->state(); }
void AppDelegate::Load_List_Of_Optical_Drives() { m_drives->load([this] { emit drivesListed(); }); }
void AppDelegate::OnMenuDriveSlot(int item) { m_drives->choose(item); }
void AppDelegate::OnToolsEjectDisc() { m_backend->ejectTray(currentDrive()); }
void AppDelegate::OnToolsLoadDisc() { m_backend->closeTray(currentDrive()); }

void AppDelegate::OnToolsFormatRWMedia()
{
    m_window->popupmenuErase->popup(QCursor::pos());
}

void AppDelegate::erase(bool full)
{
    if (m_erase->isBusy())
        return;
    beginOperation(full ? QStringLiteral("Erase Completely") : QStringLiteral("Erase Quickly"));
    m_erase->erase(full);
}

void AppDelegate::cancelOperation()
{
    m_log->note(QStringLiteral("Cancel pressed."));
    for (Operation *operation : std::as_const(m_operations)) {
        if (operation->isBusy()) {
            operation->cancel();
            return;
        }
    }
}

void AppDelegate::OnToolsDiscInfo() { m_discInfo->show(); }

// ------------------------------------------------------------ compilation

void AppDelegate::OnActionAudioAddFiles() { m_adding->addFiles(CompilationActions::AudioTab); }
void AppDelegate::OnActionAudioAddFolder() { m_adding->addFolder(CompilationActions::AudioTab); }
void AppDelegate::OnActionVideoAddFiles() { m_adding->addFiles(CompilationActions::VideoTab); }
void AppDelegate::OnActionVideoAddFolder() { m_adding->addFolder(CompilationActions::VideoTab); }
void AppDelegate::OnActionDataAddFolder() { m_adding->addFolder(CompilationActions::DataTab); }

void AppDelegate::OnActionAudioDelete() { m_tabs->deleteSelected(CompilationTabs::Audio); }
void AppDelegate::OnActionVideoDelete() { m_tabs->deleteSelected(CompilationTabs::Video); }
void AppDelegate::OnActionDataDelete() { m_tabs->deleteSelected(CompilationTabs::Data); }
void AppDelegate::OnActionAudioClear() { m_tabs->clear(CompilationTabs::Audio); }
void AppDelegate::OnActionVideoClear() { m_tabs->clear(CompilationTabs::Video); }
void AppDelegate::OnActionDataClear() { m_tabs->clear(CompilationTabs::Data); }
void AppDelegate::refreshTableAudioFiles() { m_tabs->refresh(CompilationTabs::Audio); }
void AppDelegate::refreshTableVideoFiles() { m_tabs->refresh(CompilationTabs::Video); }
void AppDelegate::refreshTableDataFolders() { m_tabs->refresh(CompilationTabs::Data); }
void AppDelegate::sortTable(int tab, int column) { m_tabs->sort(tab, column); }
void AppDelegate::PaintSpaceOccupiedControl() { m_tabs->paintGauge(); }
void AppDelegate::Show_Window_New_Disc() { m_tabs->showNewDisc(); }
void AppDelegate::Close_Window_New_Disc() { m_tabs->closeNewDisc(); }

// ---------------------------------------------------------- video settings

void AppDelegate::Show_Window_Video_Settings()
{
    if (windowVideoSettings)
        return;
    auto *sheet = new Window_Video_Settings(s_Video_Output_Format, s_Audio_Output_Format, m_settings, m_window.get());
    connect(sheet, &Window_Video_Settings::stored, this, [this](const QString &video, const QString &audio) {
        s_Video_Output_Format = video;
        s_Audio_Output_Format = audio;
    });
    connect(sheet, &QDialog::finished, this, &AppDelegate::Close_Window_Video_Settings);
    SheetOutlet::open(windowVideoSettings, sheet);
}

void AppDelegate::Close_Window_Video_Settings() { SheetOutlet::close(windowVideoSettings); }

// ------------------------------------------------------- images and copies

void AppDelegate::OnActionISOCreate()
{
    beginOperation(QStringLiteral("Create ISO"));
    m_isoCreation->start();
}
void AppDelegate::OnActionISOBurn()
{
    beginOperation(QStringLiteral("Burn Image"));
    m_imageBurn->start();
}
void AppDelegate::DuplicateMedia()
{
    beginOperation(QStringLiteral("Copy Disc"));
    m_duplication->start();
}

// ----------------------------------------------------------------- colours

void AppDelegate::OnToolsColors() { m_colours->showSheet(); }
void AppDelegate::OK_Window_Colors() { m_colours->ok(); }
void AppDelegate::Cancel_Window_Colors() { m_colours->cancel(); }
void AppDelegate::TimerSetAlternatingRowsRoutine() { m_colours->setAlternatingRows(); }
void AppDelegate::TimerForceColorsAtStartupRoutine() { m_colours->forceColours(); }

// ----------------------------------------------------------------- preview

void AppDelegate::play(int tab)
{
    CompilationTable *table = tab == 0 ? m_window->tableviewAudioFiles : m_window->tableviewVideoFiles;
    const int row = PreviewSelection::rowToPlay(table->selectedRows(), *m_context.alerts);
    if (row < 0 || row >= arrayMediaFiles->count())
        return;
    if (windowPlayer)
        windowPlayer->close();
    windowPlayer = new AVSPDocument(arrayMediaFiles->at(row).s_File_URL, *m_context.alerts, m_window.get());
    windowPlayer->setAttribute(Qt::WA_DeleteOnClose);
    windowPlayer->setWindowModality(Qt::ApplicationModal);
    windowPlayer->show();
}
