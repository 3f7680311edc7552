#pragma once
#include "compilation/ListSorting.h"
#include "compilation/NodeDataFolder.h"
#include "compilation/RecordListModel.h"

// The data compilation: folders, shown by the Data table. Columns: "Folder"
// (the path as chosen) and "Size" (size text of the tree).
class DataFolderModel : public RecordListModel<NodeDataFolder> {
    Q_OBJECT
public:
    enum Column { ColumnFolder = 0, ColumnSize, ColumnCount };

    explicit DataFolderModel(QObject *parent = nullptr);

    // The header click (see ListSorting::sortDataFolders).
    bool sortByClickedColumn(int column, ColumnSortFlags &flags);

    // Sum of the records' kilobytes, as the signed total the gauge reads;
    // stops at the largest qint64 instead of wrapping.
    qint64 totalKBytes() const;

protected:
    QVariant cellText(const NodeDataFolder &node, int column) const override;
};
