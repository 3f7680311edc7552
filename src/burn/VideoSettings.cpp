#include "burn/VideoSettings.h"

#include "platform/AppSettings.h"

VideoSettings VideoSettings::fromChoices(bool ntscOn, bool dolbyDigitalOn)
{
    VideoSettings v;
    v.s_Video_Output_Format = ntscOn ? QStringLiteral("0") : QStringLiteral("1");
    v.s_Audio_Output_Format = dolbyDigitalOn ? QStringLiteral("0") : QStringLiteral("1");
    return v;
}

void VideoSettings::store(const std::function<void(const QString &, const QString &)> &write) const
{
    write(SettingsKeys::VideoFormat, s_Video_Output_Format);
    write(SettingsKeys::AudioFormat, s_Audio_Output_Format);
}

void VideoSettings::store(AppSettings &settings) const
{
    store([&settings](const QString &key, const QString &value) { settings.setString(key, value); });
}
