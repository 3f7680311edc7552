#include "images/ui/Window_Data_Copy_Folders.h"

#include <QVBoxLayout>

Window_Data_Copy_Folders::Window_Data_Copy_Folders(QWidget *mainWindow) : StatusSheet(mainWindow)
{
    setObjectName(QStringLiteral("Window_Data_Copy_Folders"));
    setWindowTitle(QStringLiteral("Copying Folders"));
    auto *lay = new QVBoxLayout(this);
    labelDescription = new QLabel(QStringLiteral("Copying the folders for the disc…"), this);
    labelDescription->setAccessibleName(labelDescription->text());
    pgAnimation = new QProgressBar(this);
    pgAnimation->setRange(0, 0);
    pgAnimation->setTextVisible(false);
    pgAnimation->setAccessibleName(QStringLiteral("Copying"));
    lay->addWidget(labelDescription);
    lay->addWidget(pgAnimation);
    setMinimumWidth(360);
}
