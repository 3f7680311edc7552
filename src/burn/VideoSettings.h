#pragma once
#include <QString>
#include <functional>

class AppSettings;

// The television standard and the sound codec of video discs, each kept as
// "0" or "1". Every reader asks only whether a value is "0": anything else
// counts as "1".
struct VideoSettings {
    QString s_Video_Output_Format = QStringLiteral("0");  // "0" NTSC, "1" PAL
    QString s_Audio_Output_Format = QStringLiteral("0");  // "0" Dolby Digital (AC-3), "1" MPEG-2 audio (MP2)

    bool isNtsc() const { return s_Video_Output_Format == QLatin1String("0"); }
    bool isDolbyDigital() const { return s_Audio_Output_Format == QLatin1String("0"); }

    // From the dialog's two deciding buttons: NTSC on gives "0", anything
    // else "1"; Dolby Digital on gives "0", anything else "1".
    static VideoSettings fromChoices(bool ntscOn, bool dolbyDigitalOn);

    // Writes the video key first, then the audio key.
    void store(AppSettings &settings) const;
    void store(const std::function<void(const QString &key, const QString &value)> &write) const;
};
