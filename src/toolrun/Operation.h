#pragma once
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <functional>

#include "toolrun/ToolCommand.h"
#include "toolrun/ToolMessages.h"
#include "toolrun/ToolRun.h"
#include "toolrun/WriteProgress.h"

class Alerts;
struct AlertAnswer;
struct AlertRequest;

// The sheets an operation asks the window to show.
enum class OperationSheet {
    Working,          // "Performing operation": busy until the recorder's first report
    Transcoding,      // two bars: the file in hand (File) and the files done (Overall)
    MeasuringFiles,   // one bar counting the files probed (Single)
    MeasuringFolder,  // one busy bar while a folder is walked
    Staging,          // the data disc's copy of its folders
    Verifying,        // the working sheet, now saying "Verifying the disc…" (Check)
};

// The bars on those sheets.
enum class OperationBar { Overall, File, Single, Check };

// How an operation ended, for its last sheet.
struct OperationEnd {
    enum Kind { Complete, Verified, Failed };
    Kind kind = Complete;
    OperationFailure failure;  // Failed: what the sheet says

    static OperationEnd complete() { return {}; }
    static OperationEnd verified() { return {Verified, {}}; }
    static OperationEnd failed(const OperationFailure &f) { return {Failed, f}; }
};

// One operation the user started (a burn, an image, a copy, an erase, the
// disc information, an add): it never touches a widget and never blocks. It
// speaks to the window side in four ways, the same for every operation:
//   - show a sheet (sheetShown / sheetClosed);
//   - move a bar (barRanged / barMoved, and writeReported for the
//     recorder's figures);
//   - ask a question (ask(): a modal alert through the Alerts seam, whose
//     answer comes back at once);
//   - end with a verdict: lastSheet (complete, verified, or failed with the
//     tool's words) when there is a last sheet, then ended() once idle. An
//     operation refused by an alert (no disc, empty list) ends with ended()
//     alone: the alert was its verdict.
// Cancel (the sheets' Cancel button, or Escape) calls cancel(): a tool that
// writes a disc is stopped only once the user has said so; any other tool at
// once; a step that is not a tool through cancelSteps().
class Operation : public QObject {
    Q_OBJECT
public:
    // `alerts` may be null for an operation that never asks (adding files).
    explicit Operation(Alerts *alerts, QObject *parent = nullptr);

    bool isBusy() const { return m_busy; }
    virtual void cancel();

signals:
    void sheetShown(OperationSheet sheet, double maximum = 0.0);  // maximum of its bar; 0: busy
    void sheetClosed(OperationSheet sheet);
    void barRanged(OperationBar bar, double maximum);  // from 0
    void barMoved(OperationBar bar, double value);
    void writeReported(const WriteReport &report);     // the recorder's figures, for the working sheet
    void lastSheet(const OperationEnd &end);
    void toolStarted(const QString &program, const QStringList &arguments);
    void toolFinished(int exitCode);
    void ended();  // idle again, whatever the outcome

protected:
    void begin();
    void finish();

    AlertAnswer ask(const AlertRequest &request);
    void tell(const AlertRequest &request);

    // Reached while no tool runs: stops the operation's own steps (a
    // transcode, a staging copy, a pause) and answers whether there was one.
    virtual bool cancelSteps() { return false; }
    // Whether the tool running now writes a disc (asked before it is stopped).
    virtual bool runWritesDisc() const { return true; }
    // What the last sheet of a cancelled operation says: `message` ("The
    // burn was cancelled."), then "Writing was stopped before the disc was
    // finished. ..." when a disc was being written, else `untouched`
    // ("Nothing was written to the disc.").
    void setCancelTexts(const QString &message, const QString &untouched);
    // That sheet; `stoppedRun` is the tool stopped, for Details.
    OperationFailure cancelledFailure(const ToolVerdict *stoppedRun) const;
    bool isCancelling() const { return m_cancelling; }
    void setCancelling() { m_cancelling = true; }
    bool stoppedWhileWriting() const { return m_stoppedWhileWriting; }

    // Starts the operation's tool: toolStarted, the run, and when it ends
    // toolFinished and then `terminated` with the run's verdict. Every
    // report of the run goes out as writeReported.
    ToolRun *startToolRun(const ToolCommand &command, const ToolRun::Options &options,
                          std::function<void(const ToolVerdict &)> terminated);
    bool toolRunning() const { return m_run && m_run->isRunning(); }

    // While the run just started goes on, the first report for which
    // `saysVerifying` holds (the tool has begun reading back what it wrote:
    // hdiutil, drutil) shows the Verifying sheet.
    void tellWhenToolVerifies(std::function<bool(const QString &)> saysVerifying);

    // A tool run that did not succeed, told: a tool that could not be
    // started gets its alert; a tool the user stopped the cancelled sheet;
    // any other failure the last sheet with `message` and the tool's words.
    void tellFailure(const QString &message, const ToolVerdict &verdict);

    // Reached first by a cancel: stops a step that needs no question (reading
    // back a disc already written) and answers whether there was one. The
    // step then ends its own way, seeing isCancelling().
    virtual bool stopWithoutAsking() { return false; }

    Alerts &alerts() const { return *m_alerts; }

private:
    Alerts *m_alerts;
    QString m_cancelMessage = ToolMessages::BurnCancelled;
    QString m_cancelUntouched = ToolMessages::NothingWritten;
    bool m_busy = false;
    bool m_cancelling = false;
    bool m_stoppedWhileWriting = false;
    QPointer<ToolRun> m_run;
};
