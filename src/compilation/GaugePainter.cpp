#include "compilation/GaugePainter.h"

#include <QLinearGradient>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace GaugePainter {

QColor gradientStart()
{
    return QColor::fromRgbF(2.0 / 3.0, 2.0 / 3.0, 2.0 / 3.0);
}

QColor gradientEnd()
{
    return QColor(0, 0, 0);
}

QColor overflowColor()
{
    return QColor(255, 0, 0);
}

static qint64 truncatedShare(qint64 width, qint64 numerator)
{
    // Far outside any view, a share is only ever clipped: keep it where the
    // conversion back to an integer is defined.
    constexpr double limit = 1e15;
    return qint64(std::trunc(std::clamp(double(numerator) * double(width) / 100.0, -limit, limit)));
}

qint64 barWidth(qint64 width, qint64 percentage)
{
    if (hasRedPart(percentage))
        return truncatedShare(width, 90);
    return truncatedShare(width, percentage);
}

bool hasRedPart(qint64 percentage)
{
    return percentage > 89;
}

qint64 redX(qint64 width)
{
    return truncatedShare(width, 90);
}

qint64 redWidth(qint64 width, qint64 percentage)
{
    if (!hasRedPart(percentage))
        return 0;
    return truncatedShare(width, percentage - 90);
}

void paint(QPainter &painter, const QSize &size, qint64 percentage, const QColor &barColor)
{
    const qint64 w = size.width();
    const qint64 h = size.height();
    painter.save();
    painter.setPen(Qt::NoPen);

    QLinearGradient gradient(QPointF(0, double(h)), QPointF(0, 0));
    gradient.setColorAt(0.0, gradientStart());
    gradient.setColorAt(1.0, gradientEnd());
    painter.fillRect(QRectF(0, 0, double(w), double(h)), gradient);

    // A rectangle of no width (or, for an impossible negative share, less)
    // paints nothing.
    const qint64 bar = barWidth(w, percentage);
    if (bar > 0)
        painter.fillRect(QRectF(0, 0, double(bar), double(h)), barColor);
    if (hasRedPart(percentage)) {
        const qint64 red = redWidth(w, percentage);
        if (red > 0)
            painter.fillRect(QRectF(double(redX(w)), 0, double(red), double(h)), overflowColor());
    }
    painter.restore();
}

QImage render(const QSize &size, qint64 percentage, const QColor &barColor)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paint(painter, size, percentage, barColor);
    painter.end();
    return image;
}

} // namespace GaugePainter
