#include "appearance/ui/ColorWell.h"

#include <QColorDialog>
#include <QPainter>
#include <QStyleOptionButton>
#include <QStylePainter>

ColorWell::ColorWell(QWidget *parent)
    : QPushButton(parent), m_picker(&ColorWell::platformPicker)
{
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QPushButton::clicked, this, &ColorWell::pick);
}

void ColorWell::setColor(const QColor &color)
{
    if (color == m_color && color.isValid() == m_color.isValid())
        return;
    m_color = color;
    setToolTip(color.isValid() ? color.name(QColor::HexRgb).toUpper() : QString());
    update();
    emit colorChanged(m_color);
}

QColor ColorWell::platformPicker(const QColor &initial, QWidget *parent, const QString &title)
{
    // The native panel where the platform has one.
    return QColorDialog::getColor(initial.isValid() ? initial : QColor(Qt::white), parent, title);
}

void ColorWell::pick()
{
    if (!m_picker)
        return;
    const QColor chosen = m_picker(m_color, this, accessibleName());
    if (chosen.isValid())
        setColor(chosen);
}

QSize ColorWell::sizeHint() const
{
    return QSize(52, 28);
}

void ColorWell::paintEvent(QPaintEvent *)
{
    QStylePainter p(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text.clear();
    p.drawControl(QStyle::CE_PushButtonBevel, option);

    // The swatch: the colour inside a thin dark frame, inset from the bevel.
    const QRect swatch = rect().adjusted(7, 6, -7, -6);
    p.setPen(QColor(0, 0, 0, 160));
    p.setBrush(m_color.isValid() ? m_color : QColor(Qt::transparent));
    p.drawRect(swatch.adjusted(0, 0, -1, -1));
}
