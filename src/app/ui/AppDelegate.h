#pragma once
#include <QObject>
#include <QPointer>
#include <QString>
#include <memory>

#include "platform/AppSettings.h"
#include "platform/WorkingFolders.h"
#include "app/ui/AppContext.h"
#include "appearance/Theme.h"
#include "burn/BurnMessages.h"
#include "platform/StepTimer.h"
#include "toolrun/Operation.h"
#include "compilation/ListSorting.h"
#include "drives/DriveSelection.h"
#include "drives/Object_Optical_Drive.h"

class StatusSheet;
class AVSPDocument;
class AwayNotice;
class CompilationActions;
class CompilationTabs;
class DriveMenu;
class WindowColours;
class DataBurnFlow;
class DataFolderModel;
class DriveBackend;
class DuplicationFlow;
class EraseFlow;
class DiscInfoFlow;
class ImageBurnFlow;
class IsoCreationFlow;
class MainWindow;
class OperationSheets;
class MediaBurn;
class MediaListModel;
class MediaQuestions;
class QTimer;
class Recorder;
class ToolRun;
class SheetFlow;
class RunLog;
struct OperationFailure;
class Window_Colors;
class Window_Data_Copy_Folders;
class Window_New_Disc;
class Window_Operation_Terminated;
class Window_Performing_Operation;
class Window_Progress;
class Window_Unique_Progress;
class Window_Video_Settings;

// The application controller: the one long-lived object. It owns the lists,
// the drives, the settings in memory, the operations and every sheet's
// outlet, and turns each command of the main window into a call of the
// subsystem that does the work (the operations, CompilationTabs, DriveMenu,
// WindowColours). Nothing here blocks: tool runs, status queries, disk
// walks and media probes all answer later.
class AppDelegate : public QObject {
    Q_OBJECT
public:
    // Ends of operations longer than this are told to a user who is elsewhere.
    static constexpr qint64 NotifyAfterMs = 30000;

    explicit AppDelegate(const AppContext &context, QObject *parent = nullptr);
    ~AppDelegate() override;

    // Start-up. False when a working folder could not be made: the fatal
    // alert was shown and the process asked to end.
    bool applicationDidFinishLaunching();
    void Terminate_App();

    MainWindow *mainWindow() const { return m_window.get(); }

    // Tabs, kinds, Burn button, menus
    void tabViewDidSelect(int index);
    void OnMenuTabAudio() { selectTabFromMenu(0); }
    void OnMenuTabVideo() { selectTabFromMenu(1); }
    void OnMenuTabData() { selectTabFromMenu(2); }
    void OnMenuTabISO() { selectTabFromMenu(3); }
    void OnMenuTabTools() { selectTabFromMenu(4); }
    void OnActionAudioCD() { chooseKindButton(0, 0); }
    void OnActionMP3CD() { chooseKindButton(0, 1); }
    void OnActionMP3DVD() { chooseKindButton(0, 2); }
    void OnActionVideoDVD() { chooseKindButton(1, 0); }
    void OnActionVideoBluray() { chooseKindButton(1, 1); }
    void OnActionDataCD() { chooseKindButton(2, 0); }
    void OnActionDataDVD() { chooseKindButton(2, 1); }
    void OnActionDataBluray() { chooseKindButton(2, 2); }
    void OnBtnBurn();
    void OnMenuHelpAppHomePage();
    void OnMenuHelpCompanyHomePage();
    void OnMenuHelpSubmitTicket();
    void OnMenuHelpPrivacyPolicy();
    void OnMenuQuit() { Terminate_App(); }
    void OnMenuHelpShowLogs();
    void OnMenuDebugMode();
    void OnMenuVerifyAfterWriting();  // the Drive menu's check: the setting follows it

    // The eight burns (virtual so a test can see which one the Burn button reaches).
    virtual void Burn_Audio_CD();
    virtual void Burn_Audio_MP3_CD();
    virtual void Burn_Audio_MP3_DVD();
    virtual void Burn_Video_DVD();
    virtual void Burn_Video_Bluray();
    virtual void Burn_Data_CD();
    virtual void Burn_Data_DVD();
    virtual void Burn_Data_Bluray();

    // Status sheets
    void Show_Window_Performing_Operation();
    void Show_Window_Operation_Complete();
    void Close_Window_Operation_Complete();
    void Show_Window_Operation_Failed(const OperationFailure &failure);
    // Verifying after writing: the sheet up says "Verifying the disc…" (the
    // working sheet is shown when none is up); the completion sheet that
    // says "The disc was written and verified."
    void Show_Window_Verifying();
    void Show_Window_Operation_Verified();

    // Drives and disc tools
    void Load_List_Of_Optical_Drives();
    void OnMenuDriveSlot(int item);  // 1..6
    Object_Optical_Drive currentDrive() const;
    void OnToolsEjectDisc();
    void OnToolsLoadDisc();
    void OnToolsFormatRWMedia();
    void OnToolsFormatFull() { erase(true); }
    void OnToolsFormatQuick() { erase(false); }
    void OnToolsDiscInfo();

    // Compilation lists
    void OnActionAudioAddFiles();
    void OnActionAudioAddFolder();
    void OnActionVideoAddFiles();
    void OnActionVideoAddFolder();
    void OnActionDataAddFolder();
    void OnActionAudioDelete();
    void OnActionVideoDelete();
    void OnActionDataDelete();
    void OnActionAudioClear();
    void OnActionVideoClear();
    void OnActionDataClear();
    void refreshTableAudioFiles();
    void refreshTableVideoFiles();
    void refreshTableDataFolders();
    void sortTable(int tab, int column);  // a header click on tab 0/1/2
    void PaintSpaceOccupiedControl();
    void ShowNewDiscWindow() { Show_Window_New_Disc(); }
    void Show_Window_New_Disc();
    void Close_Window_New_Disc();

    // Video settings
    void OnActionVideoSettings() { Show_Window_Video_Settings(); }
    void Show_Window_Video_Settings();
    void Close_Window_Video_Settings();

    // Images and copies
    void OnActionISOCreate();
    void OnActionISOBurn();
    void DuplicateMedia();
    void Show_Window_Data_Copy_Folders();
    void Close_Window_Data_Copy_Folders();

    // Colours
    void OnToolsColors();
    void OK_Window_Colors();
    void Cancel_Window_Colors();
    void TimerSetAlternatingRowsRoutine();
    void TimerForceColorsAtStartupRoutine();

    // Preview
    void OnActionAudioPlay() { play(0); }
    void OnActionVideoPlay() { play(1); }

    // State, as the rest of the program knows it
    bool m_b_Debug_Mode = false;
    QString s_Video_Output_Format;
    QString s_Audio_Output_Format;
    QString s_Current_Drive_Number = QStringLiteral("1");
    WorkingFolders folders;
    QString sffmpegPath;
    DriveList array_Optical_Media_Drives;
    qint64 i_Audio_Type = 0;
    qint64 i_Video_Type = 0;
    qint64 i_Data_Type = 0;
    qint64 i_Type_of_New_Disc = 1;
    ColumnSortFlags sortFlags;
    qint64 i_Audio_Total_Duration_in_Seconds = 0;
    qint64 i_Video_Total_Duration_in_Seconds = 0;
    qint64 i_Data_Total_Size_in_KBytes = 0;
    Theme theme;

    MediaListModel *arrayMediaFiles = nullptr;
    DataFolderModel *arrayDataFolders = nullptr;

    QPointer<Window_Progress> windowProgress;
    QPointer<Window_Unique_Progress> windowUniqueProgress;
    QPointer<Window_Performing_Operation> windowPerformingOperation;
    QPointer<Window_Operation_Terminated> windowOperationCompleted;
    QPointer<Window_New_Disc> windowNewDisc;
    QPointer<Window_Video_Settings> windowVideoSettings;
    QPointer<Window_Data_Copy_Folders> windowDataCopyFolders;
    QPointer<Window_Colors> windowColors;
    QPointer<AVSPDocument> windowPlayer;

    StepTimer timerSetAlternatingRows{this};
    StepTimer timerForceColorsAtStartup{this};

    // The subsystems, for tests that watch them.
    MediaQuestions *media() const { return m_media; }
    CompilationActions *compilationActions() const { return m_adding; }
    MediaBurn *mediaBurn() const { return m_mediaBurn; }
    DataBurnFlow *dataBurn() const { return m_dataBurn; }
    ImageBurnFlow *imageBurn() const { return m_imageBurn; }
    DuplicationFlow *duplication() const { return m_duplication; }
    const DriveMenuState &driveMenu() const;
    AppSettings &settings() { return m_settings; }

signals:
    // The drive listing has arrived and the Drive menu is filled.
    void drivesListed();

private:
    void createWindowParts();
    void connectWindow();
    void connectMenus();
    void connectLists();
    void createOperations();
    void selectTabFromMenu(int index);
    void chooseKindButton(int tab, qint64 type);
    void openPage(const QUrl &page);
    void erase(bool full);
    // Cancel pressed on a sheet (or Escape): the operation under way decides
    // what stopping means for it.
    void cancelOperation();
    // Every operation starts here: its log file, and the clock for telling
    // its end to a user who is elsewhere.
    void beginOperation(const QString &title);
    void play(int tab);
    void fatal(const QString &text);
    void burnMedia(BurnOperation operation);
    void exitProcess();  // with status 0, through the context's exit when it has one

    AppContext m_context;
    AppSettings m_settings;
    std::unique_ptr<MainWindow> m_window;
    DriveBackend *m_backend = nullptr;
    MediaQuestions *m_media = nullptr;
    std::unique_ptr<RunLog> m_log;
    bool m_quitting = false;
    std::unique_ptr<AwayNotice> m_notice;  // an operation longer than NotifyAfterMs told to a user elsewhere
    std::unique_ptr<Recorder> m_recorder;
    MediaBurn *m_mediaBurn = nullptr;
    CompilationActions *m_adding = nullptr;
    DataBurnFlow *m_dataBurn = nullptr;
    IsoCreationFlow *m_isoCreation = nullptr;
    ImageBurnFlow *m_imageBurn = nullptr;
    DuplicationFlow *m_duplication = nullptr;
    EraseFlow *m_erase = nullptr;
    DiscInfoFlow *m_discInfo = nullptr;
    OperationSheets *m_sheets = nullptr;
    QList<Operation *> m_operations;  // every operation, in the order a Cancel looks for the busy one
    DriveMenu *m_drives = nullptr;
    CompilationTabs *m_tabs = nullptr;
    WindowColours *m_colours = nullptr;
};
