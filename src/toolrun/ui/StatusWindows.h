#pragma once
#include <QLabel>
#include <QPushButton>

class QPlainTextEdit;

#include "toolrun/ToolMessages.h"
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

// Indeterminate: the recorder (or another tool) is at work. It spins from
// its first frame.
class Window_Performing_Operation : public StatusSheet {
    Q_OBJECT
public:
    explicit Window_Performing_Operation(QWidget *mainWindow);
    QLabel *labelDescription;
    QProgressBar *pgAnimation;
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
