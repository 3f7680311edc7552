#pragma once
#include <QList>
#include <QTableView>

// One of the three list tables (Audio, Video, Data): a view over a list
// model, rows selected whole and several at a time. A click on a column
// header asks for a sort by that column (sortRequested) instead of sorting
// through the header's own indicator: the direction comes from the shared
// column flags.
class CompilationTable : public QTableView {
    Q_OBJECT
public:
    explicit CompilationTable(const QString &accessibleName, QWidget *parent = nullptr);

    // The selected rows, ascending.
    QList<int> selectedRows() const;
    // The column whose header was clicked last; -1 before any click.
    int clickedColumn() const { return m_clickedColumn; }

signals:
    void sortRequested(int column);

private:
    int m_clickedColumn = -1;
};
