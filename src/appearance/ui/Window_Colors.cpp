#include "appearance/ui/Window_Colors.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include "appearance/ThemeWriting.h"

Window_Colors::Window_Colors(const Theme &theme, AppSettings &settings, QWidget *parent)
    : QDialog(parent), m_theme(theme), m_settings(settings)
{
    setObjectName(QStringLiteral("Window_Colors"));
    setWindowTitle(QStringLiteral("Colors"));
    setAccessibleName(QStringLiteral("Colors"));
    // A sheet on the main window where the platform has sheets; window-modal everywhere.
    setWindowFlag(Qt::Sheet, true);
    setWindowModality(Qt::WindowModal);

    auto *grid = new QGridLayout;
    grid->setColumnStretch(0, 1);
    int row = 0;
    auto addRow = [&](QLabel *&label, ColorWell *&well, const QString &text, const QString &name) {
        label = new QLabel(text, this);
        well = new ColorWell(this);
        well->setObjectName(name);
        const QString what = QString(text).remove(QLatin1Char(':'));
        well->setAccessibleName(what + QStringLiteral(" color"));  // "List background color"
        label->setBuddy(well);
        label->setAccessibleName(what);
        grid->addWidget(label, row, 0, Qt::AlignRight | Qt::AlignVCenter);
        grid->addWidget(well, row, 1);
        ++row;
    };
    addRow(labelBG, colorListBackground, QStringLiteral("List background:"), QStringLiteral("colorListBackground"));
    addRow(labelFR, colorListForeground, QStringLiteral("List text:"), QStringLiteral("colorListForeground"));
    addRow(labelToolbar, colorToolbar, QStringLiteral("Toolbar:"), QStringLiteral("colorToolbar"));
    addRow(labelBottomBar, colorBottomBar, QStringLiteral("Bottom bar:"), QStringLiteral("colorBottomBar"));
    addRow(labelSpaceOccupied, colorSpaceOccupied, QStringLiteral("Space occupied bar:"),
           QStringLiteral("colorSpaceOccupied"));

    check_Alternating_Rows = new QCheckBox(QStringLiteral("Alternating rows in the lists"), this);
    check_Alternating_Rows->setObjectName(QStringLiteral("check_Alternating_Rows"));
    check_Alternating_Rows->setAccessibleName(QStringLiteral("Alternating rows in the lists"));
    grid->addWidget(check_Alternating_Rows, row, 0, 1, 2);

    btnOriginal = new QPushButton(QStringLiteral("Original"), this);
    btnOriginal->setObjectName(QStringLiteral("btnOriginal"));
    btnOriginal->setAccessibleName(QStringLiteral("Original"));
    btnOriginal->setAutoDefault(false);
    btnCancel = new QPushButton(QStringLiteral("Cancel"), this);
    btnCancel->setObjectName(QStringLiteral("btnCancel"));
    btnCancel->setAccessibleName(QStringLiteral("Cancel"));
    btnCancel->setAutoDefault(false);
    btnOK = new QPushButton(QStringLiteral("OK"), this);
    btnOK->setObjectName(QStringLiteral("btnOK"));
    btnOK->setAccessibleName(QStringLiteral("OK"));
    btnOK->setDefault(true);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(btnOriginal);
    buttons->addStretch(1);
    buttons->addWidget(btnCancel);
    buttons->addWidget(btnOK);

    auto *outer = new QVBoxLayout(this);
    outer->addLayout(grid);
    outer->addSpacing(12);
    outer->addLayout(buttons);
    outer->setSizeConstraint(QLayout::SetFixedSize);

    connect(btnOK, &QPushButton::clicked, this, &Window_Colors::OnOK);
    connect(btnCancel, &QPushButton::clicked, this, &Window_Colors::OnCancel);
    connect(btnOriginal, &QPushButton::clicked, this, &Window_Colors::OnOriginal);

    windowDidLoad();
}

void Window_Colors::setColorPicker(const ColorWell::Picker &picker)
{
    for (ColorWell *w : {colorListBackground, colorListForeground, colorToolbar, colorBottomBar,
                         colorSpaceOccupied})
        w->setPicker(picker);
}

void Window_Colors::windowDidLoad()
{
    showTheme(m_theme);
    check_Alternating_Rows->setChecked(m_theme.b_List_Alternating_Rows == 1);
}

void Window_Colors::showTheme(const Theme &theme)
{
    colorListBackground->setColor(theme.colorTableBackground);
    colorListForeground->setColor(theme.colorTableForeground);
    colorToolbar->setColor(theme.colorToolbar);
    colorBottomBar->setColor(theme.colorBottomBar);
    colorSpaceOccupied->setColor(theme.colorSpaceOccupiedBar);
}

Theme Window_Colors::chosenTheme() const
{
    Theme t;
    t.b_List_Alternating_Rows = check_Alternating_Rows->isChecked() ? 1 : 0;
    t.colorTableBackground = colorListBackground->color();
    t.colorTableForeground = colorListForeground->color();
    t.colorToolbar = colorToolbar->color();
    t.colorBottomBar = colorBottomBar->color();
    t.colorSpaceOccupiedBar = colorSpaceOccupied->color();
    return t;
}

void Window_Colors::OnOK()
{
    QPointer<Window_Colors> self(this);
    emit accepted(chosenTheme());
    if (self)
        done(QDialog::Accepted);
}

void Window_Colors::OnCancel()
{
    QPointer<Window_Colors> self(this);
    emit cancelled();
    if (self)
        done(QDialog::Rejected);
}

void Window_Colors::reject()
{
    OnCancel();
}

void Window_Colors::OnOriginal()
{
    // Stored at once; the tables change only when OK is pressed.
    const Theme defaults = ThemeWriting::restoreOriginals(m_settings);
    for (ThemeColor c : ThemeDefaults::all)
        m_theme[c] = defaults[c];
    showTheme(defaults);
    check_Alternating_Rows->setChecked(true);
    emit originalsRestored(defaults);
}
