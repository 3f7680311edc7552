#pragma once
#include <QDialog>
#include <QPointer>

// A sheet kept in a controller's outlet: shown window-modal on its parent,
// and closed by hiding it, deleting it later and emptying the outlet.
namespace SheetOutlet {

template <class Sheet>
void open(QPointer<Sheet> &outlet, Sheet *sheet)
{
    outlet = sheet;
    sheet->setWindowFlag(Qt::Sheet, true);
    sheet->setWindowModality(Qt::WindowModal);
    sheet->open();
}

template <class Sheet>
void close(QPointer<Sheet> &outlet)
{
    if (outlet) {
        outlet->hide();
        outlet->deleteLater();
    }
    outlet = nullptr;
}

} // namespace SheetOutlet
