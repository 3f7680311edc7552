#pragma once
#include <QLabel>
#include <QPushButton>

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

// The operation is over; OK closes it.
class Window_Operation_Terminated : public StatusSheet {
    Q_OBJECT
public:
    explicit Window_Operation_Terminated(QWidget *mainWindow);
    QLabel *labelMessage;
    QPushButton *btnOK;
signals:
    void OnOK();
};
