#pragma once
#include <QList>
#include <QString>
#include <QStringList>
#include <QtGlobal>

// The eight disc kinds, the tab each belongs to, the per-tab type value its
// button sets, the Burn button's title and the fixed capacity the gauge
// measures against (seconds for audio and video, kilobytes for data).
struct DiscKind {
    qint64 kind = 0;         // 1..8 (i_Type_of_New_Disc)
    QString name;            // "Audio CD", ... as the new-disc dialog shows it
    int tabIndex = -1;       // 0 Audio, 1 Video, 2 Data
    QString tabId;           // "1", "2", "3"
    qint64 typeValue = 0;    // value of i_Audio_Type / i_Video_Type / i_Data_Type
    QString buttonName;      // "btnAudioCD", ...
    QString burnTitle;       // "Burn Audio CD", ...
    quint64 capacity = 0;    // 4440 seconds, ..., 26214400 kilobytes
};

// What closing the new-disc dialog does with the kind it left behind.
struct NewDiscResult {
    qint64 i_Type_of_New_Disc = 1;  // the kind to keep afterwards
    bool emptyLists = false;        // empty the data list, then the media list (and refresh)
    bool setsType = false;          // kind 1..8: the per-tab type below is set
    int typeTab = -1;               // which per-tab type: 0 audio, 1 video, 2 data
    qint64 typeValue = 0;
    int selectTab = -1;             // tab index to select, -1 none
    QString borderedButton;         // the kind's button on that tab
    QStringList borderlessButtons;  // the tab's other kind buttons
    QString burnTitle;              // new Burn button title, empty: unchanged
};

namespace DiscKinds {

constexpr qint64 Cancelled = 99;

// The eight rows in kind order.
const QList<DiscKind> &all();
// The row of a kind; null outside 1..8.
const DiscKind *find(qint64 kind);
// The row a tab's kind button stands for: tab 0 with type 0..2, tab 1 with
// 0..1, tab 2 with 0..2; null otherwise.
const DiscKind *forTabType(int tabIndex, qint64 typeValue);
// The row whose Burn title this is ("Burn Audio CD" is kind 1); null for
// any other text.
const DiscKind *forBurnTitle(const QString &burnTitle);
// The kind buttons of a tab, in order ("btnAudioCD", "btnMP3CD", "btnMP3DVD" ...).
QStringList tabButtons(int tabIndex);
// The Burn title of a tab's type; empty when the type is outside the tab's
// row (the title then stays as it is).
QString burnTitleFor(int tabIndex, qint64 typeValue);

// The gauge's percentage for the selected tab ("1" Audio, "2" Video, "3"
// Data; any other gives 0): total × 100 ÷ capacity of the tab's type,
// truncated, not clamped at 100. It never wraps: a total below 0 gives 0,
// and a percentage too large for a qint64 stops at the largest one. A type
// outside its row gives 0.
quint64 percentage(const QString &tabId, qint64 audioTotalSeconds, qint64 videoTotalSeconds,
                   qint64 dataTotalKBytes, qint64 i_Audio_Type, qint64 i_Video_Type,
                   qint64 i_Data_Type);

// Closing the dialog: 99 (cancel) falls back to kind 1 and changes nothing
// else; 1..8 set the tab's type, empty all lists, select the kind's tab,
// border its button and title the Burn button; any other kind only empties
// the lists.
NewDiscResult applyNewDisc(qint64 kind);

} // namespace DiscKinds
