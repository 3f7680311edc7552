#include "toolrun/ui/StatusSheet.h"

#include <QAction>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// What the sheets of one main window hold: a child of that window, so it
// goes with it.
class SheetHold : public QObject {
public:
    static constexpr const char *Name = "tambloSheetHold";
    explicit SheetHold(QObject *parent) : QObject(parent) { setObjectName(QLatin1String(Name)); }
    int count = 0;
    QList<QPointer<QAction>> disabled;
    bool centralWasEnabled = true;
};

void collectActions(QWidget *menuOwner, QList<QAction *> &out)
{
    for (QAction *a : menuOwner->actions()) {
        out << a;
        if (QMenu *m = a->menu())
            collectActions(m, out);
    }
}

} // namespace

StatusSheet::StatusSheet(QWidget *mainWindow) : QDialog(mainWindow)
{
    setWindowFlag(Qt::Sheet, true);
    setWindowModality(Qt::NonModal);
    setAttribute(Qt::WA_DeleteOnClose, false);
    setWindowTitle(QStringLiteral("Tamblo"));  // each sheet names what it is for
}

StatusSheet::~StatusSheet()
{
    // A sheet still up when its main window closes goes with the window's
    // children, after the window has stopped being a main window: there is
    // nothing left to give back then.
    if (qobject_cast<QMainWindow *>(parentWidget()))
        holdMainWindow(false);
}

void StatusSheet::holdMainWindow(bool hold)
{
    if (hold == m_holding)
        return;
    if (hold)
        m_main = qobject_cast<QMainWindow *>(parentWidget());
    QMainWindow *main = m_main;
    if (!main)
        return;
    m_holding = hold;
    auto *h = static_cast<SheetHold *>(
        main->findChild<QObject *>(QLatin1String(SheetHold::Name), Qt::FindDirectChildrenOnly));
    if (hold) {
        if (!h)
            h = new SheetHold(main);
        if (h->count++ > 0)
            return;
        if (QWidget *c = main->centralWidget()) {
            h->centralWasEnabled = c->isEnabled();
            c->setEnabled(false);
        }
        QList<QAction *> actions;
        collectActions(main->menuBar(), actions);
        for (QAction *a : actions) {
            if (a->menuRole() == QAction::QuitRole || a->menu() || !a->isEnabled())
                continue;
            a->setEnabled(false);
            h->disabled << a;
        }
        return;
    }
    if (!h || --h->count > 0)
        return;
    if (QWidget *c = main->centralWidget())
        c->setEnabled(h->centralWasEnabled);
    for (const QPointer<QAction> &a : std::as_const(h->disabled))
        if (a)
            a->setEnabled(true);
    delete h;
}

void StatusSheet::begin()
{
    holdMainWindow(true);
    show();
    raise();
}

void StatusSheet::endSheet()
{
    hide();
    holdMainWindow(false);
}

QPushButton *StatusSheet::addCancelButton()
{
    if (btnCancel)
        return btnCancel;
    btnCancel = new QPushButton(QStringLiteral("Cancel"), this);
    btnCancel->setObjectName(QStringLiteral("btnCancel"));
    btnCancel->setAccessibleName(QStringLiteral("Cancel"));
    if (auto *lay = qobject_cast<QBoxLayout *>(layout()))
        lay->addWidget(btnCancel, 0, Qt::AlignRight);
    connect(btnCancel, &QPushButton::clicked, this, &StatusSheet::cancelRequested);
    return btnCancel;
}

void StatusSheet::closeEvent(QCloseEvent *e)
{
    e->ignore();
}

void StatusSheet::keyPressEvent(QKeyEvent *e)
{
    if (QKeySequence(e->keyCombination()) == QKeySequence(Qt::CTRL | Qt::Key_Q)) {
        // Quit typed into a sheet quits, as it does in the main window.
        if (auto *main = qobject_cast<QMainWindow *>(parentWidget())) {
            QList<QAction *> actions;
            collectActions(main->menuBar(), actions);
            for (QAction *a : actions) {
                if (a->menuRole() == QAction::QuitRole) {
                    e->accept();
                    a->trigger();
                    return;
                }
            }
        }
    }
    if (e->key() == Qt::Key_Escape) {
        // A progress sheet is not dismissed; one that can be cancelled
        // asks for it, as its button does.
        e->accept();
        if (btnCancel && btnCancel->isVisible() && btnCancel->isEnabled())
            btnCancel->click();
        return;
    }
    QDialog::keyPressEvent(e);
}
