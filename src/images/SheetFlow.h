#pragma once
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <functional>
#include <optional>

#include "drives/DiscVerification.h"
#include "images/ImageFlowContext.h"
#include "images/ImageProgress.h"
#include "toolrun/ToolCommand.h"
#include "toolrun/ToolMessages.h"
#include "toolrun/ToolRun.h"

// A multi-step operation that shows its state in sheets on the main window.
// The window side connects these signals to its sheets; the operation itself
// never touches a widget and never blocks the UI thread.
class SheetFlow : public QObject {
    Q_OBJECT
public:
    explicit SheetFlow(const ImageFlowContext &context, QObject *parent = nullptr);

    bool isBusy() const { return m_busy; }

    // Cancel on the flow's sheets. A tool that writes a disc is stopped only
    // once the user has said so (Stop / Continue); any other tool at once,
    // and so is a step that is not a tool (cancelSteps). The flow then ends
    // through its usual path, whose last sheet says it was cancelled.
    void cancel();
    const ImageFlowContext &context() const { return m_context; }

signals:
    void showPerformingOperation();    // the working sheet: busy until the tool's first report
    void writeProgress(const WriteReport &report);  // a report of the tool that writes, for the working sheet
    void closePerformingOperation();
    void showStagingSheet();           // the data disc's copy sheet
    void closeStagingSheet();
    void checkProgress(double percent); // the share of the disc read back, 0 to 100
    void operationComplete();          // the completion sheet
    void verifying();                  // the working (or single-bar) sheet says "Verifying the disc…"
    void operationVerified();          // the completion sheet: "The disc was written and verified."
    void operationFailed(const OperationFailure &failure);  // the last sheet of a failure
    void toolStarted(const QString &program, const QStringList &arguments);
    void toolFinished(int exitCode);
    void ended();                      // idle again, whatever the outcome

protected:
    void begin()
    {
        m_busy = true;
        m_cancelling = false;
        m_stoppedWhileWriting = false;
    }
    void finish();

    // A cancel asked while no tool runs: stops the flow's own steps (a
    // staging copy) and answers whether there was one to stop.
    virtual bool cancelSteps() { return false; }
    // Whether the tool running now writes a disc (asked before it is stopped).
    virtual bool runWritesDisc() const { return true; }
    // The last sheet of a cancelled flow; `stoppedRun` is the tool stopped.
    virtual OperationFailure cancelledFailure(const ToolVerdict *stoppedRun) const;
    bool isCancelling() const { return m_cancelling; }
    bool stoppedWhileWriting() const { return m_stoppedWhileWriting; }

    // Starts the flow's tool run: toolStarted, the run, and when it ends
    // toolFinished and then `terminated` with the run's verdict. With a
    // progress kind, each complete report of the tool's progress channel
    // (its error output, or the merged output) that carries a percentage
    // moves the single bar, and every report goes out as writeProgress.
    void startToolRun(const ToolCommand &command, ToolRun::Channels channels,
                      std::function<void(const ToolVerdict &)> terminated,
                      std::optional<ImageProgress::Kind> progress = std::nullopt,
                      ToolRun::Purpose purpose = ToolRun::Purpose::Write);

    // The end of a tool run that did not succeed, told to the user: a tool
    // that could not be started gets its alert; a tool the user stopped the
    // cancelled sheet; any other failure the last sheet with `message` and
    // the tool's own words.
    void tellFailure(const QString &message, const ToolVerdict &verdict);

    // Whether a tool of this flow is running now.
    bool toolRunning() const { return m_run && m_run->isRunning(); }
    // Reading back a disc this flow wrote: verifying() first (the sheet says
    // "Verifying the disc…"), then xorriso's checksum check of its files,
    // or its first bytes compared with an image on a worker (the single bar
    // follows from 0). `done` gets what was found, on this thread.
    void readBackFiles(const ToolCommand &check, std::function<void(const VerifyResult &)> done);
    void readBackImage(const QString &image, const QString &drive, std::function<void(const VerifyResult &)> done);
    // Whether a read-back of this flow is under way.
    bool readingBack() const { return m_readBack && m_readBack->isRunning(); }

    // While the run just started goes on, the first report saying the tool
    // has begun reading back what it wrote (DiscVerify::saysVerifying) emits
    // verifying(): the recorders that check their own writing (hdiutil,
    // drutil).
    void tellWhenToolVerifies();

    ImageFlowContext m_context;

private:
    DiscVerification *startReadBack(std::function<void(const VerifyResult &)> done);

    bool m_busy = false;
    bool m_cancelling = false;
    bool m_stoppedWhileWriting = false;
    QPointer<ToolRun> m_run;
    QPointer<DiscVerification> m_readBack;
};
