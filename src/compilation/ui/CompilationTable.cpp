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
    if (!selectionModel())
        return rows;
    for (const QModelIndex &i : selectionModel()->selectedRows())
        rows.append(i.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}
