#pragma once
#include <QWidget>

// The toolbar and bottom-bar backgrounds: a fixed light grey, whatever the
// stored toolbar and bottom-bar colours say.
class View_Toolbar_BG_Color : public QWidget {
    Q_OBJECT
public:
    explicit View_Toolbar_BG_Color(QWidget *parent = nullptr) : QWidget(parent) {}
protected:
    void paintEvent(QPaintEvent *e) override;
};

class View_Bottom_Bar_BG_Color : public QWidget {
    Q_OBJECT
public:
    explicit View_Bottom_Bar_BG_Color(QWidget *parent = nullptr) : QWidget(parent) {}
protected:
    void paintEvent(QPaintEvent *e) override;
};
