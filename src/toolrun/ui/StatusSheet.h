#pragma once
#include <QDialog>
#include <QList>
#include <QPointer>

class QAction;
class QPushButton;

// The common shape of the status windows: a small sheet on the main window,
// shown without blocking the caller. While any sheet is up, the main window
// takes no input but Quit: its content and every menu item but Quit are
// disabled. The sheet itself is not modal, so Quit, its shortcut and the
// main window's close box still work while a long operation runs.
class StatusSheet : public QDialog {
    Q_OBJECT
public:
    explicit StatusSheet(QWidget *mainWindow);
    ~StatusSheet() override;
    void begin();     // shows it as a sheet of the main window
    void endSheet();  // hides it; harmless when already ended

    // Gives the sheet a Cancel button at its foot (once); Escape then
    // presses it. The owner decides what a cancel does: the button only
    // asks, through cancelRequested.
    QPushButton *addCancelButton();
    QPushButton *btnCancel = nullptr;

signals:
    void cancelRequested();

protected:
    void closeEvent(QCloseEvent *e) override;  // sheets are ended by their owner only
    void keyPressEvent(QKeyEvent *e) override; // Escape does not dismiss a progress sheet

private:
    void holdMainWindow(bool hold);
    bool m_holding = false;
    QPointer<class QMainWindow> m_main;
};
