#pragma once
#include <QAbstractTableModel>
#include <QColor>
#include <QList>
#include <QStringList>
#include <algorithm>

// A compilation list as a table model: the records in list order, one row
// each, text cells in one colour. A subclass names its columns and says what
// each cell of a record reads.
template <typename Node>
class RecordListModel : public QAbstractTableModel {
public:
    // headerData(section, Horizontal, ColumnIdentifierRole): "key1", "key2" ...
    static constexpr int ColumnIdentifierRole = Qt::UserRole + 1;
    // More runs of neighbouring rows than this are removed with one reset.
    static constexpr qsizetype MaxSeparateRemovals = 16;

    explicit RecordListModel(const QStringList &columnTitles, QObject *parent = nullptr)
        : QAbstractTableModel(parent), m_titles(columnTitles)
    {
    }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : int(m_records.size());
    }
    int columnCount(const QModelIndex &parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : int(m_titles.size());
    }

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override
    {
        if (!index.isValid() || index.row() < 0 || index.row() >= m_records.size())
            return QVariant();
        switch (role) {
        case Qt::DisplayRole:
        case Qt::ToolTipRole:
        case Qt::AccessibleTextRole:
            return cellText(m_records.at(index.row()), index.column());
        case Qt::ForegroundRole:
            return m_textColor.isValid() ? QVariant(m_textColor) : QVariant();
        default:
            return QVariant();
        }
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override
    {
        if (orientation != Qt::Horizontal || section < 0 || section >= m_titles.size())
            return QAbstractTableModel::headerData(section, orientation, role);
        if (role == Qt::DisplayRole || role == Qt::AccessibleTextRole)
            return m_titles.at(section);
        if (role == ColumnIdentifierRole)
            return QStringLiteral("key%1").arg(section + 1);
        return QVariant();
    }

    const QList<Node> &records() const { return m_records; }
    const Node &at(int row) const { return m_records.at(row); }
    int count() const { return int(m_records.size()); }

    void append(const Node &record)
    {
        const int row = int(m_records.size());
        beginInsertRows(QModelIndex(), row, row);
        m_records.append(record);
        endInsertRows();
    }

    void append(const QList<Node> &records)
    {
        if (records.isEmpty())
            return;
        const int row = int(m_records.size());
        beginInsertRows(QModelIndex(), row, row + int(records.size()) - 1);
        m_records.append(records);
        endInsertRows();
    }

    // Removes the records at these rows in one go (unknown rows are ignored,
    // repeats count once). Returns how many went.
    int removeRowsAt(const QList<int> &rows)
    {
        QList<int> sorted;
        sorted.reserve(rows.size());
        for (int r : rows)
            if (r >= 0 && r < m_records.size())
                sorted.append(r);
        std::sort(sorted.begin(), sorted.end());
        sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
        if (sorted.isEmpty())
            return 0;
        qsizetype runs = 1;
        for (qsizetype i = 1; i < sorted.size(); ++i)
            if (sorted.at(i) != sorted.at(i - 1) + 1)
                ++runs;
        if (runs > MaxSeparateRemovals) {
            // Every other row of a long list, say: one removal per run would
            // move the list's tail and re-lay every view out once per run.
            // One pass and one reset instead.
            beginResetModel();
            QList<Node> kept;
            kept.reserve(m_records.size() - sorted.size());
            qsizetype next = 0;
            for (qsizetype row = 0; row < m_records.size(); ++row) {
                if (next < sorted.size() && sorted.at(next) == row)
                    ++next;
                else
                    kept.append(std::move(m_records[row]));
            }
            m_records = std::move(kept);
            endResetModel();
            return int(sorted.size());
        }
        // From the end, one run of neighbouring rows at a time.
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

    void clear()
    {
        beginResetModel();
        m_records.clear();
        endResetModel();
    }

    void setRecords(const QList<Node> &records)
    {
        beginResetModel();
        m_records = records;
        endResetModel();
    }

    // Colour of every cell's text; invalid means the view's own.
    void setTextColor(const QColor &color)
    {
        if (m_textColor == color)
            return;
        m_textColor = color;
        if (!m_records.isEmpty())
            emit dataChanged(index(0, 0), index(int(m_records.size()) - 1, int(m_titles.size()) - 1),
                             {Qt::ForegroundRole});
    }
    QColor textColor() const { return m_textColor; }

protected:
    // What the cell of `node` in `column` reads.
    virtual QVariant cellText(const Node &node, int column) const = 0;

    // Sorts the records in place, telling the views the rows moved.
    template <typename Sort>
    bool sortRecords(Sort sort)
    {
        emit layoutAboutToBeChanged();
        const bool sorted = sort(m_records);
        emit layoutChanged();
        return sorted;
    }

    QList<Node> m_records;

private:
    QStringList m_titles;
    QColor m_textColor;
};
