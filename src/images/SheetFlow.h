#pragma once
#include <QObject>
#include <QStringList>
#include <functional>
#include <optional>

#include "images/ImageFlowContext.h"
#include "images/ImageProgress.h"
#include "images/ImageToolRun.h"
#include "toolrun/ToolCommand.h"

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

    // Starts the flow's tool run: toolStarted, the run, and when it ends
    // toolFinished and then `terminated`. With a progress kind, the tool's
    // error output is cut into whole lines (ChunkAssembler) and each piece
    // that carries a percentage moves the single bar.
    void startToolRun(const ToolCommand &command, ImageToolRun::Channels channels, std::function<void()> terminated,
                      std::optional<ImageProgress::Kind> progress = std::nullopt);

    ImageFlowContext m_context;

private:
    bool m_busy = false;
};
