#pragma once
#include <QColor>
#include <QWidget>

// The capacity gauge under the lists: how full the chosen disc would be.
class SpaceOccupiedView : public QWidget {
    Q_OBJECT
public:
    explicit SpaceOccupiedView(QWidget *parent = nullptr);

    // The percentage to draw; may exceed 100. Repaints.
    void setI_Percentage(qint64 percentage);
    qint64 i_Percentage() const { return m_percentage; }

    // The bar's colour (the theme's space-occupied colour). Repaints.
    void setBarColor(const QColor &color);
    QColor barColor() const { return m_barColor; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    qint64 m_percentage = 0;
    QColor m_barColor = QColor(0, 122, 255);
};
