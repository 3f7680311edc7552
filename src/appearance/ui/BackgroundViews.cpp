#include "appearance/ui/BackgroundViews.h"

#include <QPainter>

// The platform's light grey (two thirds white).
static const QColor kLightGray = QColor::fromRgbF(2.0 / 3.0, 2.0 / 3.0, 2.0 / 3.0);

void View_Toolbar_BG_Color::paintEvent(QPaintEvent *e)
{
    QWidget::paintEvent(e);
    QPainter(this).fillRect(rect(), kLightGray);
}

void View_Bottom_Bar_BG_Color::paintEvent(QPaintEvent *e)
{
    QWidget::paintEvent(e);
    QPainter(this).fillRect(rect(), kLightGray);
}
