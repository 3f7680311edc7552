#include "compilation/ui/Window_New_Disc.h"

#include <QRadioButton>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include "compilation/DiscKinds.h"

Window_New_Disc::Window_New_Disc(qint64 i_Type_of_New_Disc, QWidget *parent)
    : QDialog(parent), m_kind(i_Type_of_New_Disc)
{
    setWindowTitle(QStringLiteral("New Disc"));
    setAccessibleName(QStringLiteral("New Disc"));
    setModal(true);

    auto *layout = new QVBoxLayout(this);
    auto *label = new QLabel(QStringLiteral("Choose the kind of disc to make:"), this);
    layout->addWidget(label);

    QRadioButton **fields[] = {&radio1, &radio2, &radio3, &radio4, &radio5, &radio6, &radio7, &radio8};
    for (int i = 0; i < 8; ++i) {
        const DiscKind &k = DiscKinds::all().at(i);
        auto *box = new QRadioButton(k.name, this);
        // The grouping is ours, not the style's: a button clicked off stays off.
        box->setObjectName(QStringLiteral("radio%1").arg(i + 1));
        box->setAccessibleName(k.name);
        box->setAutoExclusive(false);
        box->setChecked(false);
        *fields[i] = box;
        layout->addWidget(box);
        const int number = i + 1;
        connect(box, &QRadioButton::clicked, this, [this, number] { OnRadio(number); });
    }

    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    btnCancel = new QPushButton(QStringLiteral("Cancel"), this);
    btnCancel->setObjectName(QStringLiteral("btnCancel"));
    btnCancel->setAccessibleName(QStringLiteral("Cancel"));
    btnOK = new QPushButton(QStringLiteral("OK"), this);
    btnOK->setObjectName(QStringLiteral("btnOK"));
    btnOK->setAccessibleName(QStringLiteral("OK"));
    btnOK->setDefault(true);
    buttons->addWidget(btnCancel);
    buttons->addWidget(btnOK);
    layout->addLayout(buttons);

    connect(btnOK, &QPushButton::clicked, this, &Window_New_Disc::OnOK);
    connect(btnCancel, &QPushButton::clicked, this, &Window_New_Disc::OnCancel);

    // Opens on the current kind, or with none on when it is not 1..8.
    if (i_Type_of_New_Disc >= 1 && i_Type_of_New_Disc <= 8)
        radios().at(int(i_Type_of_New_Disc - 1))->setChecked(true);
}

QList<QRadioButton *> Window_New_Disc::radios() const
{
    return {radio1, radio2, radio3, radio4, radio5, radio6, radio7, radio8};
}

void Window_New_Disc::OnRadio(int number)
{
    const QList<QRadioButton *> all = radios();
    if (number < 1 || number > all.size())
        return;
    if (!all.at(number - 1)->isChecked())
        return;
    for (int i = 0; i < all.size(); ++i)
        if (i != number - 1)
            all.at(i)->setChecked(false);
}

void Window_New_Disc::OnOK()
{
    const QList<QRadioButton *> all = radios();
    for (int i = 0; i < all.size(); ++i)
        if (all.at(i)->isChecked())
            m_kind = i + 1;
    emit closeRequested(m_kind);
    accept();
}

void Window_New_Disc::OnCancel()
{
    reject();
}

void Window_New_Disc::reject()
{
    // Cancel, Escape and the close box all end here.
    m_kind = DiscKinds::Cancelled;
    emit closeRequested(m_kind);
    QDialog::reject();
}
