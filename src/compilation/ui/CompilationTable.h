#pragma once
#include <QHash>
#include <QList>
#include <QTableView>

// One of the three list tables (Audio, Video, Data): a view over a list
// model, rows selected whole and several at a time. A click on a column
// header asks for a sort by that column (sortRequested) instead of sorting
// through the header's own indicator: the direction comes from the shared
// column flags.
//
// Columns take the room they need: one column (the folder or path) takes
// whatever is left over; the others fit their contents, each at most half
// of the table, as rows arrive. Text too long for its cell is shortened in
// the middle (the start and the name at the end stay readable); the whole
// text is in the cell's tooltip. A column the user has resized keeps that
// width for as long as the application runs, whatever is added, removed or
// cleared.
class CompilationTable : public QTableView {
    Q_OBJECT
public:
    // How many rows a column's fit to its contents looks at.
    static constexpr int ContentsRowsMeasured = 64;
    explicit CompilationTable(const QString &accessibleName, QWidget *parent = nullptr);

    void setModel(QAbstractItemModel *model) override;

    // The column that takes the room left over (-1: none).
    void setStretchColumn(int column);
    int stretchColumn() const { return m_stretchColumn; }
    // The columns whose width the user has set, with that width.
    QHash<int, int> userWidths() const { return m_userWidths; }

    // The selected rows, ascending.
    QList<int> selectedRows() const;
    // The column whose header was clicked last; -1 before any click.
    int clickedColumn() const { return m_clickedColumn; }

signals:
    void sortRequested(int column);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void applyColumnModes();
    void fitColumns();

    int m_clickedColumn = -1;
    int m_stretchColumn = -1;
    bool m_fitting = false;
    QHash<int, int> m_userWidths;
};
