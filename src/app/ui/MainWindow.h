#pragma once
#include <QList>
#include <QMainWindow>
#include <array>

class CompilationTable;
class QAction;
class QMenu;
class QPushButton;
class QTabWidget;
class QToolButton;
class SpaceOccupiedView;
class View_Bottom_Bar_BG_Color;
class View_Toolbar_BG_Color;

// The main window: five tabs (Audio, Video, Data, ISO, Tools), each with its
// toolbar, the three list tables, the bottom bar with the capacity gauge and
// the Burn button, and the menus. It holds outlets only; AppDelegate
// connects them and decides everything.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(QWidget *parent = nullptr);

    // The identifier of the tab at `index` ("1" Audio ... "5" Tools), and of
    // the selected one.
    QString tabIdentifier(int index) const;
    QString selectedTabIdentifier() const;

    QTabWidget *tabviewMain;

    // Audio tab
    View_Toolbar_BG_Color *view_Toolbar_Audio_BG;
    View_Toolbar_BG_Color *view_Toolbar_Audio_Sub_BG;
    QPushButton *toolbar_btn_Audio_New_Disc;
    QPushButton *toolbar_btn_Audio_Add_Files;
    QPushButton *toolbar_btn_Audio_Add_Folder;
    QPushButton *toolbar_btn_Audio_Delete;
    QPushButton *toolbar_btn_Audio_Clear;
    QPushButton *toolbar_btn_Audio_Play;
    QPushButton *toolbar_btn_Audio_Copy_Disc;
    QPushButton *btnAudioCD;
    QPushButton *btnMP3CD;
    QPushButton *btnMP3DVD;
    CompilationTable *tableviewAudioFiles;

    // Video tab
    View_Toolbar_BG_Color *view_Toolbar_Video_BG;
    View_Toolbar_BG_Color *view_Toolbar_Video_Sub_BG;
    QPushButton *toolbar_btn_Video_New_Disc;
    QPushButton *toolbar_btn_Video_Add_Files;
    QPushButton *toolbar_btn_Video_Add_Folder;
    QPushButton *toolbar_btn_Video_Delete;
    QPushButton *toolbar_btn_Video_Clear;
    QPushButton *toolbar_btn_Video_Play;
    QPushButton *toolbar_btn_Video_Copy_Disc;
    QPushButton *toolbar_btn_Video_Settings;
    QPushButton *btnVideoDVD;
    QPushButton *btnVideoBluray;
    CompilationTable *tableviewVideoFiles;

    // Data tab
    View_Toolbar_BG_Color *view_Toolbar_Data_BG;
    View_Toolbar_BG_Color *view_Toolbar_Data_Sub_BG;
    QPushButton *toolbar_btn_Data_New_Disc;
    QPushButton *toolbar_btn_Data_Add_Folder;
    QPushButton *toolbar_btn_Data_Delete;
    QPushButton *toolbar_btn_Data_Clear;
    QPushButton *toolbar_btn_Data_Copy_Disc;
    QPushButton *btnDataCD;
    QPushButton *btnDataDVD;
    QPushButton *btnDataBluray;
    CompilationTable *tableviewDataFolders;

    // ISO tab
    View_Toolbar_BG_Color *view_Toolbar_ISO_BG;
    QPushButton *toolbar_btn_ISO_Create;
    QPushButton *toolbar_btn_ISO_Burn;

    // Tools tab
    View_Toolbar_BG_Color *view_Toolbar_Tools_BG;
    QPushButton *toolbar_btn_Tools_Eject_Disc;
    QPushButton *toolbar_btn_Tools_Load_Disc;
    QPushButton *toolbar_btn_Tools_Erase_Disc;
    QPushButton *toolbar_btn_Tools_Disc_Info;
    QPushButton *toolbar_btn_Tools_Colors;
    QMenu *popupmenuErase;
    QAction *menuitemEraseFull;
    QAction *menuitemEraseQuick;

    // Bottom bar
    View_Bottom_Bar_BG_Color *customviewButtonBurn;
    SpaceOccupiedView *spaceoccupiedviewControl;  // customviewSpaceOccupied
    QPushButton *btnBurn;

    // Menus
    QAction *menuitemNewDisc;
    QAction *menuitemBurn;            // presses the Burn button
    QAction *menuitemVideoSettings;   // the Video tab's Settings button
    QAction *menuitemAddFiles;        // List menu: the buttons of the tab in view
    QAction *menuitemAddFolder;
    QAction *menuitemDeleteSelected;  // Delete and Backspace
    QAction *menuitemClearList;
    QAction *menuitemPlay;
    QAction *menuitemDebugMode;
    QAction *menuitemQuit;
    QAction *submenuItemTabAudio;
    QAction *submenuItemTabVideo;
    QAction *submenuItemTabData;
    QAction *submenuItemTabISO;
    QAction *submenuItemTabTools;
    std::array<QAction *, 6> submenuItemDriveSlot{};  // items 1 to 6 at 0 to 5
    QAction *menuitemVerifyAfterWriting;  // Drive menu: read each disc back after writing it
    QAction *menuitemHelpAppHomePage;
    QAction *menuitemHelpCompanyHomePage;
    QAction *menuitemHelpSubmitTicket;
    QAction *menuitemHelpPrivacyPolicy;
    QAction *menuitemHelpShowLogs;

    QList<QAction *> tabMenuItems() const;

    // The commands that the menus forward to the buttons of a tab.
    enum class ListCommand { AddFiles, AddFolder, Delete, Clear, Play, Burn, VideoSettings };
    // The button of `tab` (0 Audio ... 4 Tools) that does `command`; none
    // where the tab has no such button.
    QPushButton *buttonFor(ListCommand command, int tab) const;
    // Enables the forwarding items that the tab has a button for.
    void updateMenusForTab(int tab);
    // The menu items that press a button of the tab in view, with their command.
    QList<QPair<QAction *, ListCommand>> forwardingItems() const;

signals:
    // The close box: the application ends.
    void windowWillClose();

protected:
    void closeEvent(QCloseEvent *event) override;
};
