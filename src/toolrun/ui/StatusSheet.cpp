#include "toolrun/ui/StatusSheet.h"

#include <QCloseEvent>
#include <QKeyEvent>

StatusSheet::StatusSheet(QWidget *mainWindow) : QDialog(mainWindow)
{
    setWindowFlag(Qt::Sheet, true);
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose, false);
    setWindowTitle(QStringLiteral("Tamblo"));  // each sheet names what it is for
}

void StatusSheet::begin()
{
    show();
    raise();
}

void StatusSheet::endSheet()
{
    hide();
}

void StatusSheet::closeEvent(QCloseEvent *e)
{
    e->ignore();
}

void StatusSheet::keyPressEvent(QKeyEvent *e)
{
    if (e->key() == Qt::Key_Escape) {
        e->accept();
        return;
    }
    QDialog::keyPressEvent(e);
}
