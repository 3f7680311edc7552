#include "toolrun/ui/DoubleProgressBar.h"

#include <QAccessible>
#include <algorithm>
#include <cmath>

static constexpr int kSteps = 10000;

DoubleProgressBar::DoubleProgressBar(QWidget *parent) : QProgressBar(parent)
{
    setRange(0, kSteps);
    setTextVisible(false);
    redraw();
}

void DoubleProgressBar::setMinDouble(double v) { m_min = v; redraw(); }
void DoubleProgressBar::setMaxDouble(double v) { m_max = v; redraw(); }
void DoubleProgressBar::setDoubleValue(double v) { m_value = v; redraw(); }

void DoubleProgressBar::redraw()
{
    if (isBusy()) {
        setRange(0, 0);
    } else {
        setRange(0, kSteps);
        const double span = m_max - m_min;
        double fraction = 0.0;
        if (span > 0.0 && std::isfinite(m_value))
            fraction = (m_value - m_min) / span;
        else if (std::isinf(m_value) && m_value > 0)
            fraction = 1.0;
        fraction = std::clamp(fraction, 0.0, 1.0);
        setValue(int(std::lround(fraction * kSteps)));
    }
    update();
    QAccessibleValueChangeEvent changed(this, m_value);
    QAccessible::updateAccessibility(&changed);
}
