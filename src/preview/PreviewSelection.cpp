#include "preview/PreviewSelection.h"

#include <QItemSelectionModel>
#include <algorithm>

#include "platform/Alerts.h"

namespace PreviewSelection {

QList<int> selectedRows(const QItemSelectionModel *selection, int rowCount)
{
    QList<int> rows;
    if (!selection)
        return rows;
    for (int row = 0; row < rowCount; ++row) {
        if (selection->rowIntersectsSelection(row, QModelIndex()))
            rows.append(row);
    }
    return rows;
}

int rowToPlay(const QList<int> &selectedRows)
{
    if (selectedRows.isEmpty())
        return -1;
    return *std::min_element(selectedRows.cbegin(), selectedRows.cend());
}

int rowToPlay(const QList<int> &selectedRows, Alerts &alerts)
{
    const int row = rowToPlay(selectedRows);
    if (row < 0)
        alerts.close(NoFileSelected, NoFileSelected);
    return row;
}

} // namespace PreviewSelection
