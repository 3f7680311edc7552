#include "compilation/ui/SpaceOccupiedView.h"

#include <QPainter>

#include "compilation/GaugePainter.h"

SpaceOccupiedView::SpaceOccupiedView(QWidget *parent) : QWidget(parent)
{
    setAccessibleName(QStringLiteral("Space occupied"));
    setAccessibleDescription(QStringLiteral("0 %"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void SpaceOccupiedView::setI_Percentage(qint64 percentage)
{
    m_percentage = percentage;
    setAccessibleDescription(QStringLiteral("%1 %").arg(percentage));
    update();
}

void SpaceOccupiedView::setBarColor(const QColor &color)
{
    m_barColor = color;
    update();
}

QSize SpaceOccupiedView::sizeHint() const
{
    return QSize(300, 18);
}

void SpaceOccupiedView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    GaugePainter::paint(painter, size(), m_percentage, m_barColor);
}
