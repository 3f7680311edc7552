#include "compilation/DataFolderModel.h"

#include "compilation/Measurements.h"

DataFolderModel::DataFolderModel(QObject *parent)
    : RecordListModel({QStringLiteral("Folder"), QStringLiteral("Size")}, parent)
{
}

QVariant DataFolderModel::cellText(const NodeDataFolder &node, int column) const
{
    switch (column) {
    case ColumnFolder: return node.s_Path;
    case ColumnSize: return node.s_Size;
    default: return QVariant();
    }
}

bool DataFolderModel::sortByClickedColumn(int column, ColumnSortFlags &flags)
{
    return sortRecords([&](QList<NodeDataFolder> &records) { return ListSorting::sortDataFolders(records, column, flags); });
}

qint64 DataFolderModel::totalKBytes() const
{
    qint64 total = 0;
    for (const NodeDataFolder &n : m_records)
        total = Measurements::saturatingAdd(total, qint64(qMin<quint64>(n.i_Size_in_KBytes, quint64(INT64_MAX))));
    return total;
}
