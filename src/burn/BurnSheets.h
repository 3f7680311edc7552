#pragma once

struct OperationFailure;
struct WriteReport;

// What a media burn shows while it works, in this order: the two-bar
// progress sheet during the transcodes (the lower bar counts files, the
// upper bar follows the file in hand), the working sheet while the recorder
// runs, then the operation-complete sheet. The controller that owns the
// windows implements it.
class BurnSheets {
public:
    virtual ~BurnSheets() = default;

    virtual void beginProgress() = 0;                     // the two-bar sheet is begun
    virtual void setOverallRange(double maximum) = 0;     // lower bar: minimum 0
    virtual void setOverallValue(double value) = 0;
    virtual void setFileRange(double maximum) = 0;        // upper bar: minimum 0
    virtual void setFileValue(double value) = 0;
    virtual void endProgress() = 0;                       // ended and dropped

    virtual void showPerformingOperation() = 0;           // Show_Window_Performing_Operation
    virtual void endPerformingOperation() = 0;            // ended and dropped
    // A report of the recorder: the working sheet shows its figures.
    virtual void showWriteProgress(const WriteReport &) {}
    virtual void showOperationComplete() = 0;             // Show_Window_Operation_Complete
    virtual void showOperationFailed(const OperationFailure &failure) = 0;  // the last sheet of a failure

    // Verifying after writing: the working sheet says "Verifying the disc…"
    // (one is shown when none is up), and the last sheet of a disc that read
    // back right says "The disc was written and verified."
    virtual void showVerifying() = 0;
    virtual void showOperationVerified() = 0;
};
