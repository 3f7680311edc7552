#pragma once
#include <QLabel>
#include <QProgressBar>

#include "toolrun/ui/StatusSheet.h"

// The data disc's staging sheet: the listed folders are being copied into
// the working folder before the burn. It animates from its first frame.
class Window_Data_Copy_Folders : public StatusSheet {
    Q_OBJECT
public:
    explicit Window_Data_Copy_Folders(QWidget *mainWindow);
    QLabel *labelDescription;
    QProgressBar *pgAnimation;
};
