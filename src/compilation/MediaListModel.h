#pragma once
#include "compilation/ListSorting.h"
#include "compilation/NodeMediaFile.h"
#include "compilation/RecordListModel.h"

// The media compilation (audio and video files), one list shown by both the
// Audio and the Video table. Columns: "File" (name with extension),
// "Duration" (duration text as it stands), "Size" (size text), "Path" (the
// folder that holds the file).
class MediaListModel : public RecordListModel<NodeMediaFile> {
    Q_OBJECT
public:
    enum Column { ColumnFile = 0, ColumnDuration, ColumnSize, ColumnPath, ColumnCount };

    explicit MediaListModel(QObject *parent = nullptr);

    // The header click: sorts by the column with the shared flags (see
    // ListSorting::sortMediaFiles). True when the list was sorted.
    bool sortByClickedColumn(int column, ColumnSortFlags &flags);

    // Sum of the records' whole seconds (negative ones count 0); stops at
    // the largest qint64 instead of wrapping.
    qint64 totalDurationSeconds() const;

protected:
    QVariant cellText(const NodeMediaFile &node, int column) const override;
};
