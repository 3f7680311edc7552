#include "compilation/DataFolderModel.h"

#include <algorithm>

DataFolderModel::DataFolderModel(QObject *parent) : QAbstractTableModel(parent) {}

int DataFolderModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_records.size());
}

int DataFolderModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant DataFolderModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() < 0 || index.row() >= m_records.size())
        return QVariant();
    const NodeDataFolder &node = m_records.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
        switch (index.column()) {
        case ColumnFolder: return node.s_Path;
        case ColumnSize: return node.s_Size;
        default: return QVariant();
        }
    case Qt::ForegroundRole:
        return m_textColor.isValid() ? QVariant(m_textColor) : QVariant();
    default:
        return QVariant();
    }
}

QVariant DataFolderModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount)
        return QAbstractTableModel::headerData(section, orientation, role);
    static const char *const titles[] = {"Folder", "Size"};
    if (role == Qt::DisplayRole || role == Qt::AccessibleTextRole)
        return QString::fromLatin1(titles[section]);
    if (role == ColumnIdentifierRole)
        return QStringLiteral("key%1").arg(section + 1);
    return QVariant();
}

void DataFolderModel::append(const NodeDataFolder &record)
{
    const int row = int(m_records.size());
    beginInsertRows(QModelIndex(), row, row);
    m_records.append(record);
    endInsertRows();
}

int DataFolderModel::removeRowsAt(const QList<int> &rows)
{
    QList<int> sorted;
    for (int r : rows)
        if (r >= 0 && r < m_records.size())
            sorted.append(r);
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    int i = int(sorted.size()) - 1;
    while (i >= 0) {
        const int last = sorted.at(i);
        int first = last;
        while (i > 0 && sorted.at(i - 1) == first - 1)
            first = sorted.at(--i);
        --i;
        beginRemoveRows(QModelIndex(), first, last);
        m_records.remove(first, last - first + 1);
        endRemoveRows();
    }
    return int(sorted.size());
}

void DataFolderModel::clear()
{
    beginResetModel();
    m_records.clear();
    endResetModel();
}

void DataFolderModel::setRecords(const QList<NodeDataFolder> &records)
{
    beginResetModel();
    m_records = records;
    endResetModel();
}

bool DataFolderModel::sortByClickedColumn(int column, ColumnSortFlags &flags)
{
    emit layoutAboutToBeChanged();
    const bool sorted = ListSorting::sortDataFolders(m_records, column, flags);
    emit layoutChanged();
    return sorted;
}

void DataFolderModel::setTextColor(const QColor &color)
{
    if (m_textColor == color)
        return;
    m_textColor = color;
    if (!m_records.isEmpty())
        emit dataChanged(index(0, 0), index(int(m_records.size()) - 1, ColumnCount - 1),
                         {Qt::ForegroundRole});
}

qint64 DataFolderModel::totalKBytes() const
{
    qint64 total = 0;
    for (const NodeDataFolder &n : m_records)
        total += qint64(n.i_Size_in_KBytes);
    return total;
}
