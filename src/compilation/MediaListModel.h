#pragma once
#include <QAbstractTableModel>
#include <QColor>
#include <QList>

#include "compilation/ListSorting.h"
#include "compilation/NodeMediaFile.h"

// The media compilation (audio and video files), one list shown by both the
// Audio and the Video table. Columns: "File" (name with extension),
// "Duration" (duration text as it stands), "Size" (size text), "Path" (the
// folder that holds the file).
class MediaListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { ColumnFile = 0, ColumnDuration, ColumnSize, ColumnPath, ColumnCount };
    // headerData(section, Horizontal, ColumnIdentifierRole): "key1".."key4".
    static constexpr int ColumnIdentifierRole = Qt::UserRole + 1;

    explicit MediaListModel(QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    const QList<NodeMediaFile> &records() const { return m_records; }
    const NodeMediaFile &at(int row) const { return m_records.at(row); }
    int count() const { return int(m_records.size()); }

    void append(const NodeMediaFile &record);
    void append(const QList<NodeMediaFile> &records);
    // Removes the records at these rows in one go (unknown rows are ignored,
    // repeats count once). Returns how many went.
    int removeRowsAt(const QList<int> &rows);
    void clear();
    void setRecords(const QList<NodeMediaFile> &records);

    // The header click: sorts by the column with the shared flags (see
    // ListSorting::sortMediaFiles). True when the list was sorted.
    bool sortByClickedColumn(int column, ColumnSortFlags &flags);

    // Colour of every cell's text; invalid means the view's own.
    void setTextColor(const QColor &color);
    QColor textColor() const { return m_textColor; }

    // Sum of the records' whole seconds.
    qint64 totalDurationSeconds() const;

private:
    QList<NodeMediaFile> m_records;
    QColor m_textColor;
};
