#include "compilation/MediaListModel.h"

#include <algorithm>

MediaListModel::MediaListModel(QObject *parent) : QAbstractTableModel(parent) {}

int MediaListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_records.size());
}

int MediaListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant MediaListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() < 0 || index.row() >= m_records.size())
        return QVariant();
    const NodeMediaFile &node = m_records.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
        switch (index.column()) {
        case ColumnFile: return node.s_File_Name_With_Extension;
        case ColumnDuration: return node.s_Duration;
        case ColumnSize: return node.s_File_Size;
        case ColumnPath: return node.s_Folder_Path;
        default: return QVariant();
        }
    case Qt::ForegroundRole:
        return m_textColor.isValid() ? QVariant(m_textColor) : QVariant();
    default:
        return QVariant();
    }
}

QVariant MediaListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount)
        return QAbstractTableModel::headerData(section, orientation, role);
    static const char *const titles[] = {"File", "Duration", "Size", "Path"};
    if (role == Qt::DisplayRole || role == Qt::AccessibleTextRole)
        return QString::fromLatin1(titles[section]);
    if (role == ColumnIdentifierRole)
        return QStringLiteral("key%1").arg(section + 1);
    return QVariant();
}

void MediaListModel::append(const NodeMediaFile &record)
{
    const int row = int(m_records.size());
    beginInsertRows(QModelIndex(), row, row);
    m_records.append(record);
    endInsertRows();
}

void MediaListModel::append(const QList<NodeMediaFile> &records)
{
    if (records.isEmpty())
        return;
    const int row = int(m_records.size());
    beginInsertRows(QModelIndex(), row, row + int(records.size()) - 1);
    m_records.append(records);
    endInsertRows();
}

int MediaListModel::removeRowsAt(const QList<int> &rows)
{
    QList<int> sorted;
    for (int r : rows)
        if (r >= 0 && r < m_records.size())
            sorted.append(r);
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    // From the bottom up, one contiguous run at a time.
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

void MediaListModel::clear()
{
    beginResetModel();
    m_records.clear();
    endResetModel();
}

void MediaListModel::setRecords(const QList<NodeMediaFile> &records)
{
    beginResetModel();
    m_records = records;
    endResetModel();
}

bool MediaListModel::sortByClickedColumn(int column, ColumnSortFlags &flags)
{
    emit layoutAboutToBeChanged();
    const bool sorted = ListSorting::sortMediaFiles(m_records, column, flags);
    emit layoutChanged();
    return sorted;
}

void MediaListModel::setTextColor(const QColor &color)
{
    if (m_textColor == color)
        return;
    m_textColor = color;
    if (!m_records.isEmpty())
        emit dataChanged(index(0, 0), index(int(m_records.size()) - 1, ColumnCount - 1),
                         {Qt::ForegroundRole});
}

qint64 MediaListModel::totalDurationSeconds() const
{
    qint64 total = 0;
    for (const NodeMediaFile &n : m_records)
        total += n.i_Duration_in_Seconds;
    return total;
}
