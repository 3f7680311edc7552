#pragma once
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <array>

#include "compilation/ListSorting.h"

class CompilationTable;
class DataFolderModel;
class MediaListModel;
class QAction;
class QPushButton;
class QTabWidget;
class QWidget;
class SpaceOccupiedView;
class Window_New_Disc;

// The parts of the main window the compilation tabs act on.
struct CompilationWidgets {
    QWidget *window = nullptr;  // holds the kind buttons (found by name); the New Disc sheet sits on it
    QTabWidget *tabs = nullptr;
    std::array<CompilationTable *, 3> tables{};  // audio, video, data
    SpaceOccupiedView *gauge = nullptr;
    QWidget *burnBar = nullptr;  // the bar around the Burn button
    QPushButton *burnButton = nullptr;
    QList<QAction *> tabItems;   // the menu's tab items, in tab order
};

// The controller's compilation state, read and changed here.
struct CompilationState {
    qint64 &audioType;
    qint64 &videoType;
    qint64 &dataType;
    qint64 &newDiscKind;
    ColumnSortFlags &sortFlags;
    qint64 &audioSeconds;
    qint64 &videoSeconds;
    qint64 &dataKBytes;
    QPointer<Window_New_Disc> &newDiscSheet;
};

// The three compilation tabs: deleting, clearing and sorting their lists,
// the totals and the capacity gauge, the chosen kind of disc (its button
// bordered, the Burn button's title) and the New Disc sheet. Going to a
// compilation tab starts a new compilation: both lists empty.
class CompilationTabs : public QObject {
    Q_OBJECT
public:
    enum Tab { Audio = 0, Video = 1, Data = 2 };

    CompilationTabs(const CompilationWidgets &widgets, const CompilationState &state, MediaListModel *media,
                    DataFolderModel *data, QObject *parent = nullptr);

    // The identifier of the tab at `index`: "1" Audio ... "5" Tools.
    static QString tabIdentifier(const QTabWidget *tabs, int index);
    // A kind button drawn bordered (the chosen kind) or borderless.
    static void setBordered(QPushButton *button, bool bordered);
    static bool isBordered(const QPushButton *button);

    // The tabs as a new start shows them: the Audio tab, the first kind of
    // each tab chosen, "Burn Audio CD", no sort, an empty gauge.
    void startAfresh();
    void tabSelected(int index);
    void chooseKind(int tab, qint64 type);
    void setBurnTitle(const QString &title);

    void deleteSelected(int tab);
    void clear(int tab);
    void refresh(int tab);  // the table repainted, its total and the gauge brought up to date
    void sort(int tab, int column);
    void paintGauge();

    void showNewDisc();
    void closeNewDisc();  // applies the kind the sheet left in the state

private:
    void emptyBothLists();
    qint64 &typeOf(int tab);

    CompilationWidgets m_w;
    CompilationState m_state;
    MediaListModel *m_media;
    DataFolderModel *m_data;
};
