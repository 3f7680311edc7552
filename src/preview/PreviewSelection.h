#pragma once
#include <QList>
#include <QString>

class Alerts;
class QItemSelectionModel;

// Which list entry the Play buttons of the Audio and Video tabs open.
namespace PreviewSelection {

inline const QString NoFileSelected = QStringLiteral("There is no file selected.");

// The selected rows in row order, asking the selection about each row from
// 0 to rowCount - 1.
QList<int> selectedRows(const QItemSelectionModel *selection, int rowCount);

// The first selected row, or -1 when none is selected.
int rowToPlay(const QList<int> &selectedRows);

// As rowToPlay; when none is selected, tells the user so
// ("There is no file selected.", the same informative text, "Close").
int rowToPlay(const QList<int> &selectedRows, Alerts &alerts);

} // namespace PreviewSelection
