#include "app/ui/MainWindow.h"

#include "compilation/ui/CompilationTabs.h"

#include <QAction>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include "appearance/ui/BackgroundViews.h"
#include "compilation/ui/CompilationTable.h"
#include "compilation/ui/SpaceOccupiedView.h"

namespace {

QPushButton *button(const QString &title, const QString &objectName, QWidget *parent,
                    const QString &accessible = QString())
{
    auto *b = new QPushButton(title, parent);
    b->setObjectName(objectName);
    b->setAccessibleName(accessible.isEmpty() ? title : accessible);
    b->setAutoDefault(false);
    return b;
}

// A toolbar strip: its buttons left to right, then room.
View_Toolbar_BG_Color *strip(QWidget *parent, const QString &name, const QString &accessible,
                             const QList<QPushButton *> &buttons)
{
    auto *v = new View_Toolbar_BG_Color(parent);
    v->setObjectName(name);
    v->setAccessibleName(accessible);
    auto *lay = new QHBoxLayout(v);
    lay->setContentsMargins(8, 6, 8, 6);
    for (QPushButton *b : buttons) {
        b->setParent(v);
        lay->addWidget(b);
    }
    lay->addStretch(1);
    return v;
}

QAction *menuItem(QMenu *menu, const QString &title, const QString &name, bool checkable = false)
{
    QAction *a = menu->addAction(title);
    a->setObjectName(name);
    a->setCheckable(checkable);
    return a;
}

// A button's tooltip: what its menu item says, and the item's shortcut.
QString hint(const QAction *item)
{
    QString text = item->text();
    text.remove(QLatin1Char('&')).remove(QStringLiteral("…"));
    if (item->shortcut().isEmpty())
        return text;
    return QStringLiteral("%1 (%2)").arg(text, item->shortcut().toString(QKeySequence::NativeText));
}

} // namespace

MainWindow::MainWindow(QWidget *parent) : QMainWindow(parent)
{
    setObjectName(QStringLiteral("MainWindow"));
    setWindowTitle(QStringLiteral("Tamblo"));
    setAccessibleName(QStringLiteral("Tamblo"));
    setMinimumSize(700, 400);
    resize(900, 560);

    auto *central = new QWidget(this);
    auto *outer = new QVBoxLayout(central);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);

    tabviewMain = new QTabWidget(central);
    tabviewMain->setObjectName(QStringLiteral("tabviewMain"));
    tabviewMain->setAccessibleName(QStringLiteral("Compilation tabs"));
    tabviewMain->setDocumentMode(true);

    // Audio
    auto *audio = new QWidget;
    {
        toolbar_btn_Audio_New_Disc = button(QStringLiteral("New Disc"), QStringLiteral("toolbar_btn_Audio_New_Disc"), audio);
        toolbar_btn_Audio_Add_Files = button(QStringLiteral("Add Files"), QStringLiteral("toolbar_btn_Audio_Add_Files"), audio);
        toolbar_btn_Audio_Add_Folder = button(QStringLiteral("Add Folder"), QStringLiteral("toolbar_btn_Audio_Add_Folder"), audio);
        toolbar_btn_Audio_Delete = button(QStringLiteral("Delete"), QStringLiteral("toolbar_btn_Audio_Delete"), audio);
        toolbar_btn_Audio_Clear = button(QStringLiteral("Clear"), QStringLiteral("toolbar_btn_Audio_Clear"), audio);
        toolbar_btn_Audio_Play = button(QStringLiteral("Play"), QStringLiteral("toolbar_btn_Audio_Play"), audio);
        toolbar_btn_Audio_Copy_Disc = button(QStringLiteral("Copy Disc"), QStringLiteral("toolbar_btn_Audio_Copy_Disc"), audio);
        btnAudioCD = button(QStringLiteral("Audio CD"), QStringLiteral("btnAudioCD"), audio);
        btnMP3CD = button(QStringLiteral("MP3 CD"), QStringLiteral("btnMP3CD"), audio);
        btnMP3DVD = button(QStringLiteral("MP3 DVD"), QStringLiteral("btnMP3DVD"), audio);
        view_Toolbar_Audio_BG = strip(audio, QStringLiteral("view_Toolbar_Audio_BG"), QStringLiteral("Audio toolbar"),
                                      {toolbar_btn_Audio_New_Disc, toolbar_btn_Audio_Add_Files,
                                       toolbar_btn_Audio_Add_Folder, toolbar_btn_Audio_Delete,
                                       toolbar_btn_Audio_Clear, toolbar_btn_Audio_Play,
                                       toolbar_btn_Audio_Copy_Disc});
        view_Toolbar_Audio_Sub_BG = strip(audio, QStringLiteral("view_Toolbar_Audio_Sub_BG"), QStringLiteral("Audio disc kind"),
                                          {btnAudioCD, btnMP3CD, btnMP3DVD});
        tableviewAudioFiles = new CompilationTable(QStringLiteral("Audio files"), audio);
        tableviewAudioFiles->setObjectName(QStringLiteral("tableviewAudioFiles"));
        auto *lay = new QVBoxLayout(audio);
        lay->setContentsMargins(0, 0, 0, 0);
        lay->setSpacing(0);
        lay->addWidget(view_Toolbar_Audio_BG);
        lay->addWidget(view_Toolbar_Audio_Sub_BG);
        lay->addWidget(tableviewAudioFiles, 1);
    }

    // Video
    auto *video = new QWidget;
    {
        toolbar_btn_Video_New_Disc = button(QStringLiteral("New Disc"), QStringLiteral("toolbar_btn_Video_New_Disc"), video);
        toolbar_btn_Video_Add_Files = button(QStringLiteral("Add Files"), QStringLiteral("toolbar_btn_Video_Add_Files"), video);
        toolbar_btn_Video_Add_Folder = button(QStringLiteral("Add Folder"), QStringLiteral("toolbar_btn_Video_Add_Folder"), video);
        toolbar_btn_Video_Delete = button(QStringLiteral("Delete"), QStringLiteral("toolbar_btn_Video_Delete"), video);
        toolbar_btn_Video_Clear = button(QStringLiteral("Clear"), QStringLiteral("toolbar_btn_Video_Clear"), video);
        toolbar_btn_Video_Play = button(QStringLiteral("Play"), QStringLiteral("toolbar_btn_Video_Play"), video);
        toolbar_btn_Video_Copy_Disc = button(QStringLiteral("Copy Disc"), QStringLiteral("toolbar_btn_Video_Copy_Disc"), video);
        toolbar_btn_Video_Settings = button(QStringLiteral("Settings"), QStringLiteral("toolbar_btn_Video_Settings"), video,
                                            QStringLiteral("Video Settings"));
        btnVideoDVD = button(QStringLiteral("Video DVD"), QStringLiteral("btnVideoDVD"), video);
        btnVideoBluray = button(QStringLiteral("Video Blu-ray"), QStringLiteral("btnVideoBluray"), video);
        view_Toolbar_Video_BG = strip(video, QStringLiteral("view_Toolbar_Video_BG"), QStringLiteral("Video toolbar"),
                                      {toolbar_btn_Video_New_Disc, toolbar_btn_Video_Add_Files,
                                       toolbar_btn_Video_Add_Folder, toolbar_btn_Video_Delete,
                                       toolbar_btn_Video_Clear, toolbar_btn_Video_Play,
                                       toolbar_btn_Video_Copy_Disc, toolbar_btn_Video_Settings});
        view_Toolbar_Video_Sub_BG = strip(video, QStringLiteral("view_Toolbar_Video_Sub_BG"), QStringLiteral("Video disc kind"),
                                          {btnVideoDVD, btnVideoBluray});
        tableviewVideoFiles = new CompilationTable(QStringLiteral("Video files"), video);
        tableviewVideoFiles->setObjectName(QStringLiteral("tableviewVideoFiles"));
        auto *lay = new QVBoxLayout(video);
        lay->setContentsMargins(0, 0, 0, 0);
        lay->setSpacing(0);
        lay->addWidget(view_Toolbar_Video_BG);
        lay->addWidget(view_Toolbar_Video_Sub_BG);
        lay->addWidget(tableviewVideoFiles, 1);
    }

    // Data
    auto *data = new QWidget;
    {
        toolbar_btn_Data_New_Disc = button(QStringLiteral("New Disc"), QStringLiteral("toolbar_btn_Data_New_Disc"), data);
        toolbar_btn_Data_Add_Folder = button(QStringLiteral("Add Folder"), QStringLiteral("toolbar_btn_Data_Add_Folder"), data);
        toolbar_btn_Data_Delete = button(QStringLiteral("Delete"), QStringLiteral("toolbar_btn_Data_Delete"), data);
        toolbar_btn_Data_Clear = button(QStringLiteral("Clear"), QStringLiteral("toolbar_btn_Data_Clear"), data);
        toolbar_btn_Data_Copy_Disc = button(QStringLiteral("Copy Disc"), QStringLiteral("toolbar_btn_Data_Copy_Disc"), data);
        btnDataCD = button(QStringLiteral("Data CD"), QStringLiteral("btnDataCD"), data);
        btnDataDVD = button(QStringLiteral("Data DVD"), QStringLiteral("btnDataDVD"), data);
        btnDataBluray = button(QStringLiteral("Data Blu-ray"), QStringLiteral("btnDataBluray"), data);
        view_Toolbar_Data_BG = strip(data, QStringLiteral("view_Toolbar_Data_BG"), QStringLiteral("Data toolbar"),
                                     {toolbar_btn_Data_New_Disc, toolbar_btn_Data_Add_Folder,
                                      toolbar_btn_Data_Delete, toolbar_btn_Data_Clear,
                                      toolbar_btn_Data_Copy_Disc});
        view_Toolbar_Data_Sub_BG = strip(data, QStringLiteral("view_Toolbar_Data_Sub_BG"), QStringLiteral("Data disc kind"),
                                         {btnDataCD, btnDataDVD, btnDataBluray});
        tableviewDataFolders = new CompilationTable(QStringLiteral("Data folders"), data);
        tableviewDataFolders->setObjectName(QStringLiteral("tableviewDataFolders"));
        auto *lay = new QVBoxLayout(data);
        lay->setContentsMargins(0, 0, 0, 0);
        lay->setSpacing(0);
        lay->addWidget(view_Toolbar_Data_BG);
        lay->addWidget(view_Toolbar_Data_Sub_BG);
        lay->addWidget(tableviewDataFolders, 1);
    }

    // ISO
    auto *iso = new QWidget;
    {
        toolbar_btn_ISO_Create = button(QStringLiteral("Create ISO Image"), QStringLiteral("toolbar_btn_ISO_Create"), iso);
        toolbar_btn_ISO_Burn = button(QStringLiteral("Burn ISO Image"), QStringLiteral("toolbar_btn_ISO_Burn"), iso);
        view_Toolbar_ISO_BG = strip(iso, QStringLiteral("view_Toolbar_ISO_BG"), QStringLiteral("ISO toolbar"), {toolbar_btn_ISO_Create, toolbar_btn_ISO_Burn});
        auto *lay = new QVBoxLayout(iso);
        lay->setContentsMargins(0, 0, 0, 0);
        lay->addWidget(view_Toolbar_ISO_BG);
        lay->addStretch(1);
    }

    // Tools
    auto *tools = new QWidget;
    {
        toolbar_btn_Tools_Eject_Disc = button(QStringLiteral("Eject"), QStringLiteral("toolbar_btn_Tools_Eject_Disc"), tools,
                                              QStringLiteral("Eject Disc"));
        toolbar_btn_Tools_Load_Disc = button(QStringLiteral("Close Tray"), QStringLiteral("toolbar_btn_Tools_Load_Disc"), tools);
        toolbar_btn_Tools_Erase_Disc = button(QStringLiteral("Erase"), QStringLiteral("toolbar_btn_Tools_Erase_Disc"), tools,
                                              QStringLiteral("Erase Disc"));
        toolbar_btn_Tools_Disc_Info = button(QStringLiteral("Disc Info"), QStringLiteral("toolbar_btn_Tools_Disc_Info"), tools);
        toolbar_btn_Tools_Colors = button(QStringLiteral("Colors"), QStringLiteral("toolbar_btn_Tools_Colors"), tools);
        view_Toolbar_Tools_BG = strip(tools, QStringLiteral("view_Toolbar_Tools_BG"), QStringLiteral("Tools toolbar"),
                                      {toolbar_btn_Tools_Eject_Disc, toolbar_btn_Tools_Load_Disc,
                                       toolbar_btn_Tools_Erase_Disc, toolbar_btn_Tools_Disc_Info,
                                       toolbar_btn_Tools_Colors});
        popupmenuErase = new QMenu(QStringLiteral("Erase"), this);
        popupmenuErase->setObjectName(QStringLiteral("popupmenuErase"));
        menuitemEraseFull = menuItem(popupmenuErase, QStringLiteral("Erase &Completely"), QStringLiteral("menuitemEraseFull"));
        menuitemEraseQuick = menuItem(popupmenuErase, QStringLiteral("Erase &Quickly"), QStringLiteral("menuitemEraseQuick"));
        auto *lay = new QVBoxLayout(tools);
        lay->setContentsMargins(0, 0, 0, 0);
        lay->addWidget(view_Toolbar_Tools_BG);
        lay->addStretch(1);
    }

    const QList<QPair<QWidget *, QString>> tabs = {{audio, QStringLiteral("Audio")}, {video, QStringLiteral("Video")},
                                                   {data, QStringLiteral("Data")}, {iso, QStringLiteral("ISO")},
                                                   {tools, QStringLiteral("Tools")}};
    for (int i = 0; i < tabs.size(); ++i) {
        tabs[i].first->setAccessibleName(tabs[i].second);
        tabviewMain->addTab(tabs[i].first, tabs[i].second);
        tabviewMain->tabBar()->setTabData(i, QString::number(i + 1));
    }
    outer->addWidget(tabviewMain, 1);

    // Bottom bar: the gauge and the Burn button.
    auto *bottom = new QWidget(central);
    bottom->setObjectName(QStringLiteral("bottomBar"));
    auto *bl = new QHBoxLayout(bottom);
    bl->setContentsMargins(8, 6, 8, 6);
    spaceoccupiedviewControl = new SpaceOccupiedView(bottom);
    spaceoccupiedviewControl->setObjectName(QStringLiteral("customviewSpaceOccupied"));
    customviewButtonBurn = new View_Bottom_Bar_BG_Color(bottom);
    customviewButtonBurn->setObjectName(QStringLiteral("customviewButtonBurn"));
    auto *burnLay = new QHBoxLayout(customviewButtonBurn);
    burnLay->setContentsMargins(6, 4, 6, 4);
    btnBurn = button(QStringLiteral("Burn Audio CD"), QStringLiteral("btnBurn"), customviewButtonBurn);
    btnBurn->setMinimumWidth(170);
    burnLay->addWidget(btnBurn);
    bl->addWidget(spaceoccupiedviewControl, 1);
    bl->addWidget(customviewButtonBurn);
    outer->addWidget(bottom);
    setCentralWidget(central);

    // Menus. Every command of the toolbars that a keyboard user needs is here
    // too, with its shortcut; the List and Disc items act on the tab in view.
    QMenu *appMenu = menuBar()->addMenu(QStringLiteral("&Tamblo"));
    menuitemDebugMode = menuItem(appMenu, QStringLiteral("De&bug Mode"), QStringLiteral("menuitemDebugMode"), true);
    appMenu->addSeparator();
    menuitemQuit = menuItem(appMenu, QStringLiteral("&Quit Tamblo"), QStringLiteral("menuitemQuit"));
    // The platform's Quit keys, and Ctrl+Q (Cmd+Q on macOS) always: some
    // desktops' key schemes name none.
    QList<QKeySequence> quitKeys = QKeySequence::keyBindings(QKeySequence::Quit);
    if (!quitKeys.contains(QKeySequence(Qt::CTRL | Qt::Key_Q)))
        quitKeys.prepend(QKeySequence(Qt::CTRL | Qt::Key_Q));
    menuitemQuit->setShortcuts(quitKeys);
    // Quit is heard from every window of the application, a status sheet too.
    menuitemQuit->setShortcutContext(Qt::ApplicationShortcut);
    menuitemQuit->setMenuRole(QAction::QuitRole);

    QMenu *discMenu = menuBar()->addMenu(QStringLiteral("&Disc"));
    menuitemNewDisc = menuItem(discMenu, QStringLiteral("&New Disc…"), QStringLiteral("menuitemNewDisc"));
    menuitemNewDisc->setShortcut(QKeySequence::New);
    menuitemBurn = menuItem(discMenu, QStringLiteral("&Burn"), QStringLiteral("menuitemBurn"));
    menuitemBurn->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_B));
    discMenu->addSeparator();
    menuitemVideoSettings = menuItem(discMenu, QStringLiteral("&Video Settings…"), QStringLiteral("menuitemVideoSettings"));

    QMenu *listMenu = menuBar()->addMenu(QStringLiteral("&List"));
    menuitemAddFiles = menuItem(listMenu, QStringLiteral("Add &Files…"), QStringLiteral("menuitemAddFiles"));
    menuitemAddFiles->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_O));
    menuitemAddFolder = menuItem(listMenu, QStringLiteral("Add F&older…"), QStringLiteral("menuitemAddFolder"));
    menuitemAddFolder->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_O));
    listMenu->addSeparator();
    menuitemDeleteSelected = menuItem(listMenu, QStringLiteral("&Delete Selected"), QStringLiteral("menuitemDeleteSelected"));
    menuitemDeleteSelected->setShortcuts({QKeySequence(Qt::Key_Delete), QKeySequence(Qt::Key_Backspace)});
    menuitemClearList = menuItem(listMenu, QStringLiteral("&Clear List"), QStringLiteral("menuitemClearList"));
    menuitemClearList->setShortcuts({QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Delete),
                                     QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Backspace)});
    listMenu->addSeparator();
    menuitemPlay = menuItem(listMenu, QStringLiteral("&Play"), QStringLiteral("menuitemPlay"));
    menuitemPlay->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_P));

    QMenu *tabMenu = menuBar()->addMenu(QStringLiteral("T&ab"));
    submenuItemTabAudio = menuItem(tabMenu, QStringLiteral("&Audio"), QStringLiteral("submenuItemTabAudio"), true);
    submenuItemTabVideo = menuItem(tabMenu, QStringLiteral("&Video"), QStringLiteral("submenuItemTabVideo"), true);
    submenuItemTabData = menuItem(tabMenu, QStringLiteral("&Data"), QStringLiteral("submenuItemTabData"), true);
    submenuItemTabISO = menuItem(tabMenu, QStringLiteral("&ISO"), QStringLiteral("submenuItemTabISO"), true);
    submenuItemTabTools = menuItem(tabMenu, QStringLiteral("&Tools"), QStringLiteral("submenuItemTabTools"), true);
    submenuItemTabAudio->setChecked(true);
    const QList<QAction *> tabItems = tabMenuItems();
    for (int i = 0; i < tabItems.size(); ++i)
        tabItems[i]->setShortcut(QKeySequence(Qt::CTRL | (Qt::Key_1 + i)));

    QMenu *driveMenu = menuBar()->addMenu(QStringLiteral("D&rive"));
    for (int i = 0; i < 6; ++i) {
        submenuItemDriveSlot[i] = menuItem(driveMenu, i == 0 ? QStringLiteral("No Drive") : QStringLiteral("Drive %1").arg(i + 1),
                                           QStringLiteral("submenuItemDriveSlot%1").arg(i + 1), true);
        submenuItemDriveSlot[i]->setVisible(i == 0);
    }
    driveMenu->addSeparator();
    menuitemVerifyAfterWriting = menuItem(driveMenu, QStringLiteral("&Verify After Writing"),
                                          QStringLiteral("menuitemVerifyAfterWriting"), true);
    menuitemVerifyAfterWriting->setChecked(true);
    // A screen reader reads the item as its text without the mnemonic:
    // "Verify After Writing", checked or not.
    menuitemVerifyAfterWriting->setToolTip(QStringLiteral("Read each disc back after writing it and compare"));

    QMenu *helpMenu = menuBar()->addMenu(QStringLiteral("&Help"));
    menuitemHelpAppHomePage = menuItem(helpMenu, QStringLiteral("&Tamblo Home Page"), QStringLiteral("menuitemHelpAppHomePage"));
    menuitemHelpCompanyHomePage = menuItem(helpMenu, QStringLiteral("&Zendrova Home Page"), QStringLiteral("menuitemHelpCompanyHomePage"));
    menuitemHelpSubmitTicket = menuItem(helpMenu, QStringLiteral("&Submit a Support Ticket"), QStringLiteral("menuitemHelpSubmitTicket"));
    menuitemHelpPrivacyPolicy = menuItem(helpMenu, QStringLiteral("&Privacy Policy"), QStringLiteral("menuitemHelpPrivacyPolicy"));
    helpMenu->addSeparator();
    menuitemHelpShowLogs = menuItem(helpMenu, QStringLiteral("Show &Logs"), QStringLiteral("menuitemHelpShowLogs"));

    // The List and Disc items press the button of the tab in view, so they do
    // exactly what the button does; the toolbar buttons name their shortcut.
    for (const auto &f : forwardingItems()) {
        const ListCommand command = f.second;
        connect(f.first, &QAction::triggered, this, [this, command] {
            if (QPushButton *b = buttonFor(command, tabviewMain->currentIndex()))
                b->click();
        });
        for (int tab = 0; tab < tabviewMain->count(); ++tab)
            if (QPushButton *b = buttonFor(command, tab))
                b->setToolTip(hint(f.first));
    }
    for (QPushButton *b : {toolbar_btn_Audio_New_Disc, toolbar_btn_Video_New_Disc, toolbar_btn_Data_New_Disc})
        b->setToolTip(hint(menuitemNewDisc));
    // The tab bar tells of every change, also one made with the tab view's
    // own signals held back.
    connect(tabviewMain->tabBar(), &QTabBar::currentChanged, this, &MainWindow::updateMenusForTab);
    updateMenusForTab(tabviewMain->currentIndex());

    // The lists: the name and folder columns take the room left over.
    tableviewAudioFiles->setStretchColumn(3);
    tableviewVideoFiles->setStretchColumn(3);
    tableviewDataFolders->setStretchColumn(0);

    CompilationTabs::setBordered(btnAudioCD, true);
    CompilationTabs::setBordered(btnMP3CD, false);
    CompilationTabs::setBordered(btnMP3DVD, false);
    CompilationTabs::setBordered(btnVideoDVD, true);
    CompilationTabs::setBordered(btnVideoBluray, false);
    CompilationTabs::setBordered(btnDataCD, true);
    CompilationTabs::setBordered(btnDataDVD, false);
    CompilationTabs::setBordered(btnDataBluray, false);
}

QString MainWindow::tabIdentifier(int index) const
{
    return CompilationTabs::tabIdentifier(tabviewMain, index);
}

QString MainWindow::selectedTabIdentifier() const
{
    return tabIdentifier(tabviewMain->currentIndex());
}

QPushButton *MainWindow::buttonFor(ListCommand command, int tab) const
{
    switch (command) {
    case ListCommand::AddFiles:
        return tab == 0 ? toolbar_btn_Audio_Add_Files : tab == 1 ? toolbar_btn_Video_Add_Files : nullptr;
    case ListCommand::AddFolder:
        return tab == 0   ? toolbar_btn_Audio_Add_Folder
               : tab == 1 ? toolbar_btn_Video_Add_Folder
               : tab == 2 ? toolbar_btn_Data_Add_Folder
                          : nullptr;
    case ListCommand::Delete:
        return tab == 0 ? toolbar_btn_Audio_Delete : tab == 1 ? toolbar_btn_Video_Delete : tab == 2 ? toolbar_btn_Data_Delete : nullptr;
    case ListCommand::Clear:
        return tab == 0 ? toolbar_btn_Audio_Clear : tab == 1 ? toolbar_btn_Video_Clear : tab == 2 ? toolbar_btn_Data_Clear : nullptr;
    case ListCommand::Play:
        return tab == 0 ? toolbar_btn_Audio_Play : tab == 1 ? toolbar_btn_Video_Play : nullptr;
    case ListCommand::Burn:
        return tab >= 0 && tab <= 2 ? btnBurn : nullptr;
    case ListCommand::VideoSettings:
        return tab == 1 ? toolbar_btn_Video_Settings : nullptr;
    }
    return nullptr;
}

QList<QPair<QAction *, MainWindow::ListCommand>> MainWindow::forwardingItems() const
{
    return {{menuitemAddFiles, ListCommand::AddFiles},   {menuitemAddFolder, ListCommand::AddFolder},
            {menuitemDeleteSelected, ListCommand::Delete}, {menuitemClearList, ListCommand::Clear},
            {menuitemPlay, ListCommand::Play},           {menuitemBurn, ListCommand::Burn},
            {menuitemVideoSettings, ListCommand::VideoSettings}};
}

void MainWindow::updateMenusForTab(int tab)
{
    for (const auto &item : forwardingItems())
        item.first->setEnabled(buttonFor(item.second, tab) != nullptr);
}

QList<QAction *> MainWindow::tabMenuItems() const
{
    return {submenuItemTabAudio, submenuItemTabVideo, submenuItemTabData, submenuItemTabISO, submenuItemTabTools};
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    // The controller decides: it ends the process, or (a disc being written,
    // and the user chose to go on) keeps the window.
    event->ignore();
    emit windowWillClose();
}
