#include "app/ui/OperationSheets.h"

#include "drives/DiscVerify.h"
#include "images/ui/Window_Data_Copy_Folders.h"
#include "toolrun/ui/StatusWindows.h"

namespace {

// Ends a sheet and lets its window go.
template <typename W>
void dropSheet(QPointer<W> &sheet)
{
    if (sheet) {
        sheet->endSheet();
        sheet->deleteLater();
    }
    sheet = nullptr;
}

} // namespace

OperationSheets::OperationSheets(QWidget *mainWindow, const SheetOutlets &outlets, QObject *parent)
    : QObject(parent), m_main(mainWindow), m_outlets(outlets)
{
}

void OperationSheets::follow(Operation *operation)
{
    connect(operation, &Operation::sheetShown, this, &OperationSheets::showSheet);
    connect(operation, &Operation::sheetClosed, this, &OperationSheets::closeSheet);
    connect(operation, &Operation::barRanged, this, &OperationSheets::rangeBar);
    connect(operation, &Operation::barMoved, this, &OperationSheets::moveBar);
    connect(operation, &Operation::writeReported, this, [this](const WriteReport &report) {
        if (m_outlets.performingOperation)
            m_outlets.performingOperation->showWriteReport(report);
    });
    connect(operation, &Operation::lastSheet, this, &OperationSheets::showLastSheet);
}

void OperationSheets::showSheet(OperationSheet sheet, double maximum)
{
    switch (sheet) {
    case OperationSheet::Working:
        showWorking();
        break;
    case OperationSheet::Transcoding:
        m_outlets.progress = new Window_Progress(m_main);
        offerCancel(m_outlets.progress);
        m_outlets.progress->begin();
        break;
    case OperationSheet::MeasuringFiles:
        showUniqueProgress(QStringLiteral("Adding Files"), QStringLiteral("Measuring the files…"), maximum);
        break;
    case OperationSheet::MeasuringFolder:
        showUniqueProgress(QStringLiteral("Adding a Folder"), QStringLiteral("Measuring the folder…"), 0);
        break;
    case OperationSheet::Staging:
        showStaging();
        break;
    case OperationSheet::Verifying:
        showVerifying();
        break;
    }
}

void OperationSheets::closeSheet(OperationSheet sheet)
{
    switch (sheet) {
    case OperationSheet::Working:
    case OperationSheet::Verifying:
        dropSheet(m_outlets.performingOperation);
        break;
    case OperationSheet::Transcoding:
        dropSheet(m_outlets.progress);
        break;
    case OperationSheet::MeasuringFiles:
    case OperationSheet::MeasuringFolder:
        dropSheet(m_outlets.uniqueProgress);
        break;
    case OperationSheet::Staging:
        closeStaging();
        break;
    }
}

// The two-bar sheet's upper (File) and lower (Overall) bars.
void OperationSheets::rangeBar(OperationBar bar, double maximum)
{
    Window_Progress *sheet = m_outlets.progress;
    if (!sheet)
        return;
    if (bar == OperationBar::Overall) {
        sheet->progressOverall->setMinDouble(0);
        sheet->progressOverall->setMaxDouble(maximum);
        sheet->progressOverall->setDoubleValue(0);
    } else if (bar == OperationBar::File) {
        sheet->progressBar->setMinDouble(0);
        sheet->progressBar->setMaxDouble(maximum);
    }
}

void OperationSheets::moveBar(OperationBar bar, double value)
{
    if (bar == OperationBar::Overall && m_outlets.progress)
        m_outlets.progress->progressOverall->setDoubleValue(value);
    else if (bar == OperationBar::File && m_outlets.progress)
        m_outlets.progress->progressBar->setDoubleValue(value);
    else if (bar == OperationBar::Single && m_outlets.uniqueProgress)
        m_outlets.uniqueProgress->progressBar->setDoubleValue(value);
    else if (bar == OperationBar::Check && m_outlets.performingOperation)
        m_outlets.performingOperation->showCheckProgress(value);
}

void OperationSheets::showLastSheet(const OperationEnd &end)
{
    if (end.kind == OperationEnd::Failed)
        showFailure(end.failure);
    else
        showCompletion(end.kind == OperationEnd::Verified ? DiscVerify::VerifiedMessage : QString());
}

// The single-bar sheet: from 0 of `maximum` (0: busy).
void OperationSheets::showUniqueProgress(const QString &title, const QString &caption, double maximum)
{
    dropSheet(m_outlets.uniqueProgress);
    auto *sheet = new Window_Unique_Progress(m_main);
    m_outlets.uniqueProgress = sheet;
    sheet->setWindowTitle(title);
    sheet->labelDescription->setText(caption);
    sheet->labelDescription->setAccessibleName(caption);
    sheet->progressBar->setMinDouble(0.0);
    sheet->progressBar->setMaxDouble(maximum);
    sheet->progressBar->setDoubleValue(0.0);
    offerCancel(sheet);
    sheet->begin();
}

void OperationSheets::offerCancel(StatusSheet *sheet)
{
    sheet->addCancelButton();
    connect(sheet, &StatusSheet::cancelRequested, this, &OperationSheets::cancelRequested);
}

void OperationSheets::showWorking()
{
    m_outlets.performingOperation = new Window_Performing_Operation(m_main);
    offerCancel(m_outlets.performingOperation);
    m_outlets.performingOperation->begin();
}

void OperationSheets::showVerifying()
{
    const QString caption = DiscVerify::VerifyingCaption;
    // The sheet that showed the writing goes on, saying what it does now.
    if (!m_outlets.performingOperation)
        showWorking();
    Window_Performing_Operation *sheet = m_outlets.performingOperation;
    sheet->beginCheck();
    sheet->setWindowTitle(DiscVerify::VerifyingTitle);
    sheet->labelDescription->setText(caption);
    sheet->labelDescription->setAccessibleName(caption);
}

void OperationSheets::showCompletion(const QString &message)
{
    auto *sheet = new Window_Operation_Terminated(m_main);
    m_outlets.operationCompleted = sheet;
    if (!message.isEmpty()) {
        sheet->labelMessage->setText(message);
        sheet->labelMessage->setAccessibleName(message);
    }
    connect(sheet, &Window_Operation_Terminated::OnOK, this, &OperationSheets::closeCompletion);
    if (m_beforeLastSheet)
        m_beforeLastSheet(sheet->labelMessage->text());  // before the sheet takes the focus
    sheet->begin();
}

void OperationSheets::closeCompletion() { dropSheet(m_outlets.operationCompleted); }

void OperationSheets::showFailure(const OperationFailure &failure)
{
    dropSheet(m_outlets.uniqueProgress);
    dropSheet(m_outlets.performingOperation);
    auto *sheet = new Window_Operation_Terminated(m_main);
    m_outlets.operationCompleted = sheet;
    sheet->showFailure(failure);
    connect(sheet, &Window_Operation_Terminated::OnOK, this, &OperationSheets::closeCompletion);
    if (m_beforeLastSheet)
        m_beforeLastSheet(failure.message);  // before the sheet takes the focus
    sheet->begin();
}

void OperationSheets::showStaging()
{
    m_outlets.dataCopyFolders = new Window_Data_Copy_Folders(m_main);
    offerCancel(m_outlets.dataCopyFolders);
    m_outlets.dataCopyFolders->begin();
}

void OperationSheets::closeStaging() { dropSheet(m_outlets.dataCopyFolders); }
