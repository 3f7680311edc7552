#pragma once
#include <QDialog>

#include "platform/AppSettings.h"
#include "appearance/Theme.h"
#include "appearance/ui/ColorWell.h"

class QCheckBox;
class QLabel;
class QPushButton;

// The colour dialog, shown as a sheet on the main window: five colour wells
// and the alternating-rows checkbox. "Original" stores the default colours at
// once; OK hands the chosen theme to the controller, which stores and applies
// it; Cancel changes nothing. Either button closes the dialog after its
// signal; a receiver that drops the dialog does so with deleteLater().
class Window_Colors : public QDialog {
    Q_OBJECT
public:
    Window_Colors(const Theme &theme, AppSettings &settings, QWidget *parent = nullptr);

    // Replaces the colour picker of all five wells (tests answer without a modal loop).
    void setColorPicker(const ColorWell::Picker &picker);

    // Fills the wells from the theme; the checkbox is on when the flag is exactly 1.
    void windowDidLoad();

    // The dialog's current choice: the five wells and the checkbox (1 or 0).
    Theme chosenTheme() const;

    ColorWell *colorListBackground = nullptr;
    ColorWell *colorListForeground = nullptr;
    ColorWell *colorToolbar = nullptr;
    ColorWell *colorBottomBar = nullptr;
    ColorWell *colorSpaceOccupied = nullptr;
    QCheckBox *check_Alternating_Rows = nullptr;
    QPushButton *btnOriginal = nullptr;
    QPushButton *btnOK = nullptr;
    QPushButton *btnCancel = nullptr;
    QLabel *labelBG = nullptr;
    QLabel *labelFR = nullptr;
    QLabel *labelToolbar = nullptr;
    QLabel *labelBottomBar = nullptr;
    QLabel *labelSpaceOccupied = nullptr;

signals:
    void accepted(const Theme &theme);
    void cancelled();
    // The defaults were just stored; the controller takes the five colours.
    void originalsRestored(const Theme &theme);

public slots:
    void OnOK();
    void OnCancel();
    void OnOriginal();
    void reject() override;  // Escape and the close box cancel

private:
    void showTheme(const Theme &theme);

    Theme m_theme;
    AppSettings &m_settings;
};
