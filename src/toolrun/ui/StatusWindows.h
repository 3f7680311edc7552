#pragma once
#include <QDateTime>
#include <QElapsedTimer>
#include <QLabel>
#include <QPushButton>

class QPlainTextEdit;

#include "toolrun/ToolMessages.h"
#include "toolrun/WriteReadout.h"
#include "toolrun/ui/DoubleProgressBar.h"
#include "toolrun/ui/StatusSheet.h"

// Two bars: the upper one follows the file being transcoded, the lower one
// counts the files done.
class Window_Progress : public StatusSheet {
    Q_OBJECT
public:
    explicit Window_Progress(QWidget *mainWindow);
    QLabel *labelDescription;
    DoubleProgressBar *progressBar;
    DoubleProgressBar *progressOverall;
};

// One bar: file measuring, image burning, disc copies.
class Window_Unique_Progress : public StatusSheet {
    Q_OBJECT
public:
    explicit Window_Unique_Progress(QWidget *mainWindow);
    QLabel *labelDescription;
    DoubleProgressBar *progressBar;
};

// A tool is at work: the recorder, an eraser, an image maker. It spins from
// its first frame; once a writing tool reports, the bar shows the amount
// done and four lines below it the percentage, the MB written of the total,
// the speed and the time left, each as the reports come (a line the tool
// gives nothing for stays empty and hidden). A tool that reports nothing
// leaves it spinning to the end.
class Window_Performing_Operation : public StatusSheet {
    Q_OBJECT
public:
    explicit Window_Performing_Operation(QWidget *mainWindow);
    QLabel *labelDescription;
    DoubleProgressBar *pgAnimation;   // busy (0 to 0) until the first report, then 0 to 100
    QLabel *labelPercent;             // "31%"
    QLabel *labelWritten;             // "16 MB of 50 MB written"
    QLabel *labelSpeed;               // "Speed: 4.2x"
    QLabel *labelTimeLeft;            // "About 2 minutes left"

    // A report of the tool, timed by the sheet's own clocks.
    void showWriteReport(const WriteReport &report);
    // The same with the clocks given (ms since the sheet began, wall time).
    void showWriteReport(const WriteReport &report, qint64 ms, const QDateTime &now);
    const WriteReadout &readout() const { return m_readout; }

    // The disc is read back after the write: the write's lines go, the bar
    // spins until showCheckProgress gives it the share checked.
    void beginCheck();
    void showCheckProgress(double percent);

signals:
    void readoutChanged();  // the bar and the lines show a new report

private:
    WriteReadout m_readout;
    QElapsedTimer m_clock;
};

// The operation is over; OK closes it. After a failure it says what failed,
// quotes the tool, and shows the tool's whole output behind Details.
class Window_Operation_Terminated : public StatusSheet {
    Q_OBJECT
public:
    explicit Window_Operation_Terminated(QWidget *mainWindow);
    void showFailure(const OperationFailure &failure);
    QLabel *labelMessage;
    QPushButton *btnOK;
    QLabel *labelInformative = nullptr;    // failures only
    QPushButton *btnDetails = nullptr;     // failures only
    QPlainTextEdit *textDetails = nullptr; // failures only, hidden until Details
signals:
    void OnOK();
};
