#pragma once
#include <QProgressBar>

// A determinate bar that takes floating values, as the tools' progress comes
// in fractions. Values past the maximum are kept (doubleValue()) and drawn full.
// A range of 0 to 0 means the amount is not known: the bar is busy (it
// moves on its own) until a real range is set.
// Screen readers hear the range and value as set here (0 to 3 files, 0 to
// 100 %), whatever finer steps the bar draws with.
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
    bool isBusy() const { return m_min == 0.0 && m_max == 0.0; }

private:
    void redraw();
    double m_min = 0.0;
    double m_max = 100.0;
    double m_value = 0.0;
};
