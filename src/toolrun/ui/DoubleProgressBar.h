#pragma once
#include <QProgressBar>

// A determinate bar that takes floating values, as the tools' progress comes
// in fractions. Values past the maximum are kept (doubleValue()) and drawn full.
class DoubleProgressBar : public QProgressBar {
    Q_OBJECT
public:
    explicit DoubleProgressBar(QWidget *parent = nullptr);

    void setMinDouble(double v);
    void setMaxDouble(double v);
    void setDoubleValue(double v);

    double minDouble() const { return m_min; }
    double maxDouble() const { return m_max; }
    double doubleValue() const { return m_value; }

private:
    void redraw();
    double m_min = 0.0;
    double m_max = 100.0;
    double m_value = 0.0;
};
