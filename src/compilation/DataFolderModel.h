#pragma once
#include <QAbstractTableModel>
#include <QColor>
#include <QList>

#include "compilation/ListSorting.h"
#include "compilation/NodeDataFolder.h"

// The data compilation: folders, shown by the Data table. Columns: "Folder"
// (the path as chosen) and "Size" (size text of the tree).
class DataFolderModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { ColumnFolder = 0, ColumnSize, ColumnCount };
    // headerData(section, Horizontal, ColumnIdentifierRole): "key1", "key2".
    static constexpr int ColumnIdentifierRole = Qt::UserRole + 1;

    explicit DataFolderModel(QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    const QList<NodeDataFolder> &records() const { return m_records; }
    const NodeDataFolder &at(int row) const { return m_records.at(row); }
    int count() const { return int(m_records.size()); }

    void append(const NodeDataFolder &record);
    // Removes the records at these rows in one go (unknown rows are ignored,
    // repeats count once). Returns how many went.
    int removeRowsAt(const QList<int> &rows);
    void clear();
    void setRecords(const QList<NodeDataFolder> &records);

    // The header click (see ListSorting::sortDataFolders).
    bool sortByClickedColumn(int column, ColumnSortFlags &flags);

    void setTextColor(const QColor &color);
    QColor textColor() const { return m_textColor; }

    // Sum of the records' kilobytes, as the signed total the gauge reads.
    qint64 totalKBytes() const;

private:
    QList<NodeDataFolder> m_records;
    QColor m_textColor;
};
