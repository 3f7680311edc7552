#include "burn/ui/Window_Video_Settings.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "platform/AppSettings.h"

static QRadioButton *radio(const QString &text, const QString &accessible, QWidget *parent)
{
    auto *r = new QRadioButton(text, parent);
    r->setAutoExclusive(false);  // the pairs are kept by hand
    r->setAccessibleName(accessible);
    return r;
}

Window_Video_Settings::Window_Video_Settings(const QString &videoFormat, const QString &audioFormat,
                                             AppSettings &settings, QWidget *parent)
    : QDialog(parent), m_settings(settings)
{
    m_values.s_Video_Output_Format = videoFormat;
    m_values.s_Audio_Output_Format = audioFormat;

    setObjectName(QStringLiteral("Window_Video_Settings"));
    setWindowTitle(tr("Video Settings"));
    setAccessibleName(tr("Video Settings"));
    setWindowModality(Qt::WindowModal);

    auto *videoBox = new QGroupBox(tr("Video standard"), this);
    videoBox->setAccessibleName(tr("Video standard"));
    radioVideoNTSC = radio(tr("NTSC"), tr("NTSC"), videoBox);
    radioVideoPal = radio(tr("PAL"), tr("PAL"), videoBox);
    auto *videoLay = new QVBoxLayout(videoBox);
    videoLay->addWidget(radioVideoNTSC);
    videoLay->addWidget(radioVideoPal);

    auto *audioBox = new QGroupBox(tr("Audio format"), this);
    audioBox->setAccessibleName(tr("Audio format"));
    radioAudioDolbyDigital = radio(tr("Dolby Digital (AC-3)"), tr("Dolby Digital"), audioBox);
    radioAudioMPEG2 = radio(tr("MPEG-2 Audio (MP2)"), tr("MPEG-2 Audio"), audioBox);
    auto *audioLay = new QVBoxLayout(audioBox);
    audioLay->addWidget(radioAudioDolbyDigital);
    audioLay->addWidget(radioAudioMPEG2);

    btnCancel = new QPushButton(tr("Cancel"), this);
    btnCancel->setAccessibleName(tr("Cancel"));
    btnCancel->setAutoDefault(false);
    btnOK = new QPushButton(tr("OK"), this);
    btnOK->setAccessibleName(tr("OK"));
    btnOK->setDefault(true);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(btnCancel);
    buttons->addWidget(btnOK);

    auto *lay = new QVBoxLayout(this);
    lay->addWidget(videoBox);
    lay->addWidget(audioBox);
    lay->addLayout(buttons);

    connect(radioVideoNTSC, &QRadioButton::clicked, this, [this] { OnVideoNTSC(); });
    connect(radioVideoPal, &QRadioButton::clicked, this, [this] { OnVideoPal(); });
    connect(radioAudioDolbyDigital, &QRadioButton::clicked, this, [this] { OnAudioDolbyDigital(); });
    connect(radioAudioMPEG2, &QRadioButton::clicked, this, [this] { OnAudioMPEG2(); });
    connect(btnOK, &QPushButton::clicked, this, [this] { OnOK(); });
    connect(btnCancel, &QPushButton::clicked, this, [this] { OnCancel(); });

    windowDidLoad();
}

void Window_Video_Settings::windowDidLoad()
{
    const bool ntsc = m_values.isNtsc();
    radioVideoNTSC->setChecked(ntsc);
    radioVideoPal->setChecked(!ntsc);
    const bool dolby = m_values.isDolbyDigital();
    radioAudioDolbyDigital->setChecked(dolby);
    radioAudioMPEG2->setChecked(!dolby);
}

void Window_Video_Settings::OnVideoNTSC()
{
    if (radioVideoNTSC->isChecked())
        radioVideoPal->setChecked(false);
}

void Window_Video_Settings::OnVideoPal()
{
    if (radioVideoPal->isChecked())
        radioVideoNTSC->setChecked(false);
}

void Window_Video_Settings::OnAudioDolbyDigital()
{
    if (radioAudioDolbyDigital->isChecked())
        radioAudioMPEG2->setChecked(false);
}

void Window_Video_Settings::OnAudioMPEG2()
{
    if (radioAudioMPEG2->isChecked())
        radioAudioDolbyDigital->setChecked(false);
}

void Window_Video_Settings::OnOK()
{
    m_values = VideoSettings::fromChoices(radioVideoNTSC->isChecked(), radioAudioDolbyDigital->isChecked());
    m_values.store(m_settings);
    m_stored = true;
    emit stored(m_values.s_Video_Output_Format, m_values.s_Audio_Output_Format);
    accept();
}

void Window_Video_Settings::OnCancel()
{
    reject();
}
