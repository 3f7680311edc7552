#pragma once
#include <QDialog>

// The common shape of the status windows: a small window-modal sheet on the
// main window, shown without blocking the caller.
class StatusSheet : public QDialog {
    Q_OBJECT
public:
    explicit StatusSheet(QWidget *mainWindow);
    void begin();     // shows it as a sheet of the main window
    void endSheet();  // hides it; harmless when already ended

protected:
    void closeEvent(QCloseEvent *e) override;  // sheets are ended by their owner only
    void keyPressEvent(QKeyEvent *e) override; // Escape does not dismiss a progress sheet
};
