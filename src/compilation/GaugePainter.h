#pragma once
#include <QColor>
#include <QImage>
#include <QSize>
#include <QtGlobal>

class QPainter;

// The capacity gauge: a light-grey-to-black background (light at the bottom,
// black at the top), the bar in its colour up to the percentage, and from 90 %
// of the width on a red part that marks the disc's last tenth and any
// overflow. Widths are whole points, truncated; nothing is clamped, so past
// 100 % the red part runs beyond the right edge.
namespace GaugePainter {

QColor gradientStart();  // light grey, at the bottom
QColor gradientEnd();    // black, at the top
QColor overflowColor();  // red

// Width of the part in the bar colour.
qint64 barWidth(qint64 width, qint64 percentage);
// Start and width of the red part (width 0 at exactly 90 %; no red part at 89 % or less).
bool hasRedPart(qint64 percentage);
qint64 redX(qint64 width);
qint64 redWidth(qint64 width, qint64 percentage);

// Paints the gauge over (0, 0, size) with the painter's current clip.
void paint(QPainter &painter, const QSize &size, qint64 percentage, const QColor &barColor);

// Convenience for tests and previews: the gauge as an image.
QImage render(const QSize &size, qint64 percentage, const QColor &barColor);

} // namespace GaugePainter
