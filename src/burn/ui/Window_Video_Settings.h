#pragma once
#include <QDialog>
#include <QString>

#include "burn/VideoSettings.h"

class AppSettings;
class QPushButton;
class QRadioButton;

// The video settings sheet: NTSC or PAL, Dolby Digital or MPEG-2 audio.
// The two pairs of radio buttons are not grouped: each button's handler
// turns the other one of its pair off when its own button is on after the
// click. OK stores the choice (properties and preferences, video first) and
// closes; Cancel closes and stores nothing.
class Window_Video_Settings : public QDialog {
    Q_OBJECT
public:
    Window_Video_Settings(const QString &s_Video_Output_Format, const QString &s_Audio_Output_Format,
                          AppSettings &settings, QWidget *parent = nullptr);

    QRadioButton *radioVideoNTSC;
    QRadioButton *radioVideoPal;
    QRadioButton *radioAudioDolbyDigital;
    QRadioButton *radioAudioMPEG2;
    QPushButton *btnOK;
    QPushButton *btnCancel;

    // The two values: as given until OK, as stored after it.
    VideoSettings result() const { return m_values; }
    bool wasStored() const { return m_stored; }

    void OnVideoNTSC();
    void OnVideoPal();
    void OnAudioDolbyDigital();
    void OnAudioMPEG2();
    void OnOK();
    void OnCancel();

signals:
    // After OK: the values the controller keeps as its two properties.
    void stored(const QString &s_Video_Output_Format, const QString &s_Audio_Output_Format);

private:
    void windowDidLoad();

    AppSettings &m_settings;
    VideoSettings m_values;
    bool m_stored = false;
};
