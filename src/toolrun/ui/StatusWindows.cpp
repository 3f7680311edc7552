#include "toolrun/ui/StatusWindows.h"

#include <QVBoxLayout>

static QLabel *caption(const QString &text, QWidget *parent)
{
    auto *l = new QLabel(text, parent);
    l->setAccessibleName(text);
    l->setWordWrap(true);
    return l;
}

Window_Progress::Window_Progress(QWidget *mainWindow) : StatusSheet(mainWindow)
{
    setObjectName(QStringLiteral("Window_Progress"));
    setWindowTitle(QStringLiteral("Converting Files"));
    auto *lay = new QVBoxLayout(this);
    labelDescription = caption(QStringLiteral("Converting the files for the disc…"), this);
    progressBar = new DoubleProgressBar(this);
    progressBar->setAccessibleName(QStringLiteral("Current file progress"));
    progressOverall = new DoubleProgressBar(this);
    progressOverall->setAccessibleName(QStringLiteral("Files converted"));
    lay->addWidget(labelDescription);
    lay->addWidget(progressBar);
    lay->addWidget(progressOverall);
    setMinimumWidth(420);
}

Window_Unique_Progress::Window_Unique_Progress(QWidget *mainWindow) : StatusSheet(mainWindow)
{
    setObjectName(QStringLiteral("Window_Unique_Progress"));
    setWindowTitle(QStringLiteral("Working"));  // the caller names what is done
    auto *lay = new QVBoxLayout(this);
    labelDescription = caption(QStringLiteral("Working…"), this);
    progressBar = new DoubleProgressBar(this);
    progressBar->setAccessibleName(QStringLiteral("Progress"));
    lay->addWidget(labelDescription);
    lay->addWidget(progressBar);
    setMinimumWidth(420);
}

Window_Performing_Operation::Window_Performing_Operation(QWidget *mainWindow) : StatusSheet(mainWindow)
{
    setObjectName(QStringLiteral("Window_Performing_Operation"));
    setWindowTitle(QStringLiteral("Operation in Progress"));
    auto *lay = new QVBoxLayout(this);
    labelDescription = caption(QStringLiteral("Performing the operation. Please wait…"), this);
    pgAnimation = new QProgressBar(this);
    pgAnimation->setRange(0, 0);  // busy indicator: animates as soon as it is shown
    pgAnimation->setTextVisible(false);
    pgAnimation->setAccessibleName(QStringLiteral("Working"));
    lay->addWidget(labelDescription);
    lay->addWidget(pgAnimation);
    setMinimumWidth(360);
}

Window_Operation_Terminated::Window_Operation_Terminated(QWidget *mainWindow) : StatusSheet(mainWindow)
{
    setObjectName(QStringLiteral("Window_Operation_Terminated"));
    setWindowTitle(QStringLiteral("Operation Complete"));
    auto *lay = new QVBoxLayout(this);
    labelMessage = caption(QStringLiteral("The operation is complete."), this);
    btnOK = new QPushButton(QStringLiteral("OK"), this);
    btnOK->setAccessibleName(QStringLiteral("OK"));
    btnOK->setDefault(true);
    lay->addWidget(labelMessage);
    lay->addWidget(btnOK, 0, Qt::AlignRight);
    connect(btnOK, &QPushButton::clicked, this, &Window_Operation_Terminated::OnOK);
    setMinimumWidth(300);
}
