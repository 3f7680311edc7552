#pragma once
#include <QObject>
#include <QStringList>

#include "images/ImageFlowContext.h"

// A multi-step operation that shows its state in sheets on the main window.
// The window side connects these signals to its sheets; the operation itself
// never touches a widget and never blocks the UI thread.
class SheetFlow : public QObject {
    Q_OBJECT
public:
    explicit SheetFlow(const ImageFlowContext &context, QObject *parent = nullptr);

    bool isBusy() const { return m_busy; }
    const ImageFlowContext &context() const { return m_context; }

signals:
    void showPerformingOperation();    // the indeterminate working sheet
    void closePerformingOperation();
    void showUniqueProgress();         // the single bar, 0 to 100, at 0
    void uniqueProgress(double value);
    void closeUniqueProgress();
    void showStagingSheet();           // the data disc's copy sheet
    void closeStagingSheet();
    void operationComplete();          // the completion sheet
    void toolStarted(const QString &program, const QStringList &arguments);
    void toolFinished(int exitCode);
    void ended();                      // idle again, whatever the outcome

protected:
    void begin() { m_busy = true; }
    void finish();

    ImageFlowContext m_context;

private:
    bool m_busy = false;
};
