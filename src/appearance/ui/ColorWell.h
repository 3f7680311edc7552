#pragma once
#include <QColor>
#include <QPushButton>
#include <functional>

// A colour swatch button: shows its colour and, when clicked, opens the
// platform's colour picker. The picker is replaceable so a caller (or a test)
// can answer without a modal loop; an invalid answer means "cancelled".
class ColorWell : public QPushButton {
    Q_OBJECT
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
public:
    using Picker = std::function<QColor(const QColor &initial, QWidget *parent, const QString &title)>;

    explicit ColorWell(QWidget *parent = nullptr);

    QColor color() const { return m_color; }
    void setColor(const QColor &color);

    void setPicker(Picker picker) { m_picker = std::move(picker); }
    static QColor platformPicker(const QColor &initial, QWidget *parent, const QString &title);

    QSize sizeHint() const override;

signals:
    void colorChanged(const QColor &color);

public slots:
    void pick();

protected:
    void paintEvent(QPaintEvent *e) override;

private:
    QColor m_color;
    Picker m_picker;
};
