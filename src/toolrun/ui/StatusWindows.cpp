#include "toolrun/ui/StatusWindows.h"

#include <QHBoxLayout>
#include <QPlainTextEdit>

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
    pgAnimation = new DoubleProgressBar(this);
    pgAnimation->setMinDouble(0.0);
    pgAnimation->setMaxDouble(0.0);  // busy indicator: animates as soon as it is shown
    pgAnimation->setAccessibleName(QStringLiteral("Working"));
    lay->addWidget(labelDescription);
    lay->addWidget(pgAnimation);
    // Hidden until the tool's first report; each is then read as it shows.
    auto readoutLine = [this, lay](const char *objectName, const QString &name) {
        auto *l = new QLabel(this);
        l->setObjectName(QLatin1String(objectName));
        l->setAccessibleName(name);
        l->hide();
        lay->addWidget(l);
        return l;
    };
    labelPercent = readoutLine("labelPercent", QStringLiteral("Percentage done"));
    labelWritten = readoutLine("labelWritten", QStringLiteral("Amount written"));
    labelSpeed = readoutLine("labelSpeed", QStringLiteral("Write speed"));
    labelTimeLeft = readoutLine("labelTimeLeft", QStringLiteral("Time left"));
    setMinimumWidth(360);
    m_clock.start();
}

void Window_Performing_Operation::showWriteReport(const WriteReport &report)
{
    showWriteReport(report, m_clock.elapsed(), QDateTime::currentDateTime());
}

void Window_Performing_Operation::showWriteReport(const WriteReport &report, qint64 ms, const QDateTime &now)
{
    m_readout.add(report, ms, now);
    if (!m_readout.isDeterminate())
        return;
    if (pgAnimation->isBusy()) {
        pgAnimation->setAccessibleName(QStringLiteral("Writing progress"));
        pgAnimation->setMaxDouble(100.0);
    }
    pgAnimation->setDoubleValue(m_readout.percent());
    const WriteReadout::Texts texts = m_readout.texts();
    const QList<QPair<QLabel *, QString>> lines{{labelPercent, texts.percent},
                                                {labelWritten, texts.amount},
                                                {labelSpeed, texts.speed},
                                                {labelTimeLeft, texts.timeLeft}};
    for (const auto &[label, text] : lines) {
        label->setText(text);
        // Read as it shows; screen readers hear the new figure.
        if (!text.isEmpty())
            label->setAccessibleName(text);
        label->setVisible(!text.isEmpty());
    }
    emit readoutChanged();
}

void Window_Performing_Operation::beginCheck()
{
    m_readout = WriteReadout();
    for (QLabel *label : {labelPercent, labelWritten, labelSpeed, labelTimeLeft})
        label->hide();
    pgAnimation->setMinDouble(0.0);
    pgAnimation->setMaxDouble(0.0);
    pgAnimation->setAccessibleName(QStringLiteral("Working"));
}

void Window_Performing_Operation::showCheckProgress(double percent)
{
    if (pgAnimation->isBusy()) {
        pgAnimation->setAccessibleName(QStringLiteral("Reading back"));
        pgAnimation->setMaxDouble(100.0);
    }
    pgAnimation->setDoubleValue(qBound(0.0, percent, 100.0));
    const QString text = QStringLiteral("%1%").arg(qRound(qBound(0.0, percent, 100.0)));
    labelPercent->setText(text);
    labelPercent->setAccessibleName(text);
    labelPercent->show();
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

void Window_Operation_Terminated::showFailure(const OperationFailure &failure)
{
    setWindowTitle(failure.cancelled ? QStringLiteral("Tamblo — Cancelled") : QStringLiteral("Tamblo — Failed"));
    labelMessage->setText(failure.message);
    labelMessage->setAccessibleName(failure.message);
    QFont bold = labelMessage->font();
    bold.setBold(true);
    labelMessage->setFont(bold);
    auto *lay = static_cast<QVBoxLayout *>(layout());

    labelInformative = new QLabel(failure.informative, this);
    labelInformative->setObjectName(QStringLiteral("labelInformative"));
    labelInformative->setWordWrap(true);
    labelInformative->setTextInteractionFlags(Qt::TextSelectableByMouse);
    labelInformative->setAccessibleName(QStringLiteral("What the tool said"));
    labelInformative->setAccessibleDescription(failure.informative);
    lay->insertWidget(1, labelInformative);

    textDetails = new QPlainTextEdit(failure.details, this);
    textDetails->setObjectName(QStringLiteral("textDetails"));
    textDetails->setReadOnly(true);
    textDetails->setAccessibleName(QStringLiteral("The whole output of the tool"));
    textDetails->setMinimumSize(520, 220);
    textDetails->hide();
    lay->insertWidget(2, textDetails);

    btnDetails = new QPushButton(QStringLiteral("Details"), this);
    btnDetails->setVisible(!failure.details.isEmpty());  // nothing ran: nothing to show
    btnDetails->setObjectName(QStringLiteral("btnDetails"));
    btnDetails->setAccessibleName(QStringLiteral("Details"));
    btnDetails->setCheckable(true);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(btnDetails);
    buttons->addStretch(1);
    lay->removeWidget(btnOK);
    buttons->addWidget(btnOK);
    lay->addLayout(buttons);
    connect(btnDetails, &QPushButton::toggled, this, [this](bool on) {
        textDetails->setVisible(on);
        adjustSize();
    });
    setMinimumWidth(420);
}
