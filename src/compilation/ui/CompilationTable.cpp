#include "compilation/ui/CompilationTable.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QScrollBar>
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
    // "/home/me/Music/…/Live at the Hall": the start of a path and the name
    // at its end are what tell entries apart.
    setTextElideMode(Qt::ElideMiddle);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    verticalHeader()->setVisible(false);
    // Fixed row heights keep long lists cheap to lay out and scroll.
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    // Fitting a column to its contents measures a screenful of rows at
    // most. Qt's default measures a thousand, and a table that is not on
    // screen (the other tab's) every row, each time rows arrive: adding
    // thousands of files then held up the window. (0 would not do: to Qt it
    // means the rows on screen, and for a hidden table all of them.)
    horizontalHeader()->setResizeContentsPrecision(ContentsRowsMeasured);
    verticalHeader()->setResizeContentsPrecision(ContentsRowsMeasured);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    horizontalHeader()->setSortIndicatorShown(false);
    horizontalHeader()->setSectionsClickable(true);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    horizontalHeader()->setTextElideMode(Qt::ElideRight);
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int column) {
        m_clickedColumn = column;
        emit sortRequested(column);
    });
    // A width the user drags is kept; the ones set here while fitting are not his.
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int column, int, int size) {
        if (!m_fitting && column != m_stretchColumn && size > 0)
            m_userWidths.insert(column, size);
    });
}

void CompilationTable::setModel(QAbstractItemModel *model)
{
    if (this->model())
        disconnect(this->model(), nullptr, this, nullptr);
    QTableView::setModel(model);
    if (!model)
        return;
    applyColumnModes();
    // Rows arriving may need more room; a cleared list keeps the widths.
    connect(model, &QAbstractItemModel::rowsInserted, this, &CompilationTable::fitColumns);
    connect(model, &QAbstractItemModel::modelReset, this, &CompilationTable::fitColumns);
    connect(model, &QAbstractItemModel::layoutChanged, this, &CompilationTable::fitColumns);
    fitColumns();
}

void CompilationTable::setStretchColumn(int column)
{
    m_stretchColumn = column;
    applyColumnModes();
    fitColumns();
}

void CompilationTable::applyColumnModes()
{
    QHeaderView *header = horizontalHeader();
    const int columns = model() ? model()->columnCount() : 0;
    if (columns == 0)
        return;
    const bool stretchIsLast = m_stretchColumn == columns - 1;
    header->setStretchLastSection(m_stretchColumn < 0 || stretchIsLast);
    for (int c = 0; c < columns; ++c)
        header->setSectionResizeMode(c, c == m_stretchColumn && !stretchIsLast ? QHeaderView::Stretch
                                                                              : QHeaderView::Interactive);
}

void CompilationTable::fitColumns()
{
    if (!model())
        return;
    QHeaderView *header = horizontalHeader();
    const int columns = model()->columnCount();
    const int room = std::max(viewport()->width(), 200);
    m_fitting = true;
    for (int c = 0; c < columns; ++c) {
        if (c == m_stretchColumn || (m_stretchColumn < 0 && c == columns - 1))
            continue;
        const auto kept = m_userWidths.constFind(c);
        if (kept != m_userWidths.constEnd()) {
            if (header->sectionSize(c) != kept.value())
                header->resizeSection(c, kept.value());
            continue;
        }
        // A screenful of rows is measured, so a long list stays cheap.
        const int wanted = std::max(header->sectionSizeHint(c), sizeHintForColumn(c)) + 8;
        header->resizeSection(c, std::min(wanted, room / 2));
    }
    m_fitting = false;
}

void CompilationTable::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    fitColumns();
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
