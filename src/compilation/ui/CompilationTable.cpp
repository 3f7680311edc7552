#include "compilation/ui/CompilationTable.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <algorithm>

CompilationTable::CompilationTable(const QString &accessibleName, QWidget *parent) : QTableView(parent)
{
    setAccessibleName(accessibleName);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSortingEnabled(false);
    setWordWrap(false);
    setShowGrid(false);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    verticalHeader()->setVisible(false);
    // Fixed row heights keep long lists cheap to lay out and scroll.
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    horizontalHeader()->setSortIndicatorShown(false);
    horizontalHeader()->setSectionsClickable(true);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int column) {
        m_clickedColumn = column;
        emit sortRequested(column);
    });
}

QList<int> CompilationTable::selectedRows() const
{
    QList<int> rows;
    const QItemSelectionModel *selection = selectionModel();
    if (!selection || !model())
        return rows;
    // Straight from the selection's ranges: asking row by row whether it is
    // selected looks through every range each time, far too slow when
    // thousands of rows are picked one by one.
    const int columns = model()->columnCount(rootIndex());
    for (const QItemSelectionRange &range : selection->selection()) {
        if (!range.isValid() || range.parent() != rootIndex())
            continue;
        const bool wholeRows = range.left() == 0 && range.right() == columns - 1;
        for (int row = range.top(); row <= range.bottom(); ++row)
            if (wholeRows || selection->isRowSelected(row, rootIndex()))
                rows.append(row);
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}
