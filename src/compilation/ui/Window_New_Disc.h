#pragma once
#include <QDialog>
#include <QList>

class QRadioButton;
class QPushButton;

// The new-disc dialog: eight kinds, one of which may be on. The eight
// buttons keep to one choice by hand: turning one on turns the seven others
// off, turning one off leaves all off. OK keeps the last kind on (in kind
// order), or the kind it opened with when none is on; Cancel gives 99.
class Window_New_Disc : public QDialog {
    Q_OBJECT
public:
    explicit Window_New_Disc(qint64 i_Type_of_New_Disc, QWidget *parent = nullptr);

    // After OK or Cancel: the kind to hand to Close_Window_New_Disc (1..8,
    // the unchanged kind, or 99 for Cancel).
    qint64 chosenKind() const { return m_kind; }

    QRadioButton *radio1;
    QRadioButton *radio2;
    QRadioButton *radio3;
    QRadioButton *radio4;
    QRadioButton *radio5;
    QRadioButton *radio6;
    QRadioButton *radio7;
    QRadioButton *radio8;
    QPushButton *btnOK;
    QPushButton *btnCancel;

    QList<QRadioButton *> radios() const;

public slots:
    void OnRadio(int number);  // 1..8
    void OnOK();
    void OnCancel();
    void reject() override;

signals:
    // Emitted by OK and Cancel with the kind to apply.
    void closeRequested(qint64 kind);

private:
    qint64 m_kind;
};
