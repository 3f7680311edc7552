#include "compilation/MediaListModel.h"

#include "compilation/Measurements.h"

MediaListModel::MediaListModel(QObject *parent)
    : RecordListModel({QStringLiteral("File"), QStringLiteral("Duration"), QStringLiteral("Size"),
                       QStringLiteral("Path")},
                      parent)
{
}

QVariant MediaListModel::cellText(const NodeMediaFile &node, int column) const
{
    switch (column) {
    case ColumnFile: return node.s_File_Name_With_Extension;
    case ColumnDuration: return node.s_Duration;
    case ColumnSize: return node.s_File_Size;
    case ColumnPath: return node.s_Folder_Path;
    default: return QVariant();
    }
}

bool MediaListModel::sortByClickedColumn(int column, ColumnSortFlags &flags)
{
    return sortRecords([&](QList<NodeMediaFile> &records) { return ListSorting::sortMediaFiles(records, column, flags); });
}

qint64 MediaListModel::totalDurationSeconds() const
{
    qint64 total = 0;
    for (const NodeMediaFile &n : m_records)
        total = Measurements::saturatingAdd(total, n.i_Duration_in_Seconds);
    return total;
}
