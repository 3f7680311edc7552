#pragma once
#include <QList>
#include <QString>

#include "compilation/NodeDataFolder.h"
#include "compilation/NodeMediaFile.h"

// Direction of the next sort, one flag per column position, shared by the
// three tables. The first click on the first column sorts ascending, the
// first click on any other column descending; each sort inverts the flag of
// its column.
struct ColumnSortFlags {
    bool m_b_Col1_Ascenging = true;
    bool m_b_Col2_Ascenging = false;
    bool m_b_Col3_Ascenging = false;
    bool m_b_Col4_Ascenging = false;

    bool &at(int position);  // 1..4
    bool at(int position) const;
    bool operator==(const ColumnSortFlags &o) const;
};

namespace ListSorting {

// File-browser order: letters without regard to case, runs of digits by
// their value ("Track 1" < "track 2" < "Track 10"). Negative, 0 or positive.
int naturalCompare(const QString &a, const QString &b);

// Sorts the media list by the clicked column: 0 file name, 1 duration text,
// 2 size text, 3 full path (the column shows the folder). The direction is
// the column's flag; afterwards that flag is inverted and the other three
// are cleared. Any other column sorts nothing and changes no flag; the
// return value says whether a sort happened. Equal rows keep their order.
bool sortMediaFiles(QList<NodeMediaFile> &list, int column, ColumnSortFlags &flags);

// Sorts the data list: 0 by path (flag 1), 1 by size text (flag 2). The used
// flag is inverted and the other of the two cleared; flags 3 and 4 stay.
bool sortDataFolders(QList<NodeDataFolder> &list, int column, ColumnSortFlags &flags);

} // namespace ListSorting
