#pragma once
#include <QObject>
#include <QPointer>
#include <QString>
#include <functional>

#include "toolrun/Operation.h"

class QWidget;
class StatusSheet;
class Window_Data_Copy_Folders;
class Window_Operation_Terminated;
class Window_Performing_Operation;
class Window_Progress;
class Window_Unique_Progress;

// The controller's status-sheet outlets, which these sheets fill and empty.
struct SheetOutlets {
    QPointer<Window_Progress> &progress;
    QPointer<Window_Unique_Progress> &uniqueProgress;
    QPointer<Window_Performing_Operation> &performingOperation;
    QPointer<Window_Operation_Terminated> &operationCompleted;
    QPointer<Window_Data_Copy_Folders> &dataCopyFolders;
};

// The window side of the operation protocol: every operation followed here
// has its sheets shown on the main window, its bars moved and its last sheet
// shown. A long sheet carries Cancel (cancelRequested); the last sheet's
// verdict goes to `beforeLastSheet` first, while the window still has the
// focus it had.
class OperationSheets : public QObject {
    Q_OBJECT
public:
    OperationSheets(QWidget *mainWindow, const SheetOutlets &outlets, QObject *parent = nullptr);

    void follow(Operation *operation);
    void setBeforeLastSheet(std::function<void(const QString &verdict)> told) { m_beforeLastSheet = std::move(told); }

    void showWorking();
    void showVerifying();  // the working sheet (one is shown when none is up) says "Verifying the disc…"
    void showCompletion(const QString &message);  // empty: the sheet's own "complete" text
    void closeCompletion();
    void showFailure(const OperationFailure &failure);
    void showStaging();
    void closeStaging();

signals:
    void cancelRequested();

private:
    void showSheet(OperationSheet sheet, double maximum);
    void closeSheet(OperationSheet sheet);
    void rangeBar(OperationBar bar, double maximum);
    void moveBar(OperationBar bar, double value);
    void showLastSheet(const OperationEnd &end);
    void showUniqueProgress(const QString &title, const QString &caption, double maximum);
    void offerCancel(StatusSheet *sheet);

    QWidget *m_main;
    SheetOutlets m_outlets;
    std::function<void(const QString &)> m_beforeLastSheet;
};
