#include "platform/AppSettings.h"

#include <QVariant>

namespace ThemeDefaults {

QString key(ThemeColor c)
{
    switch (c) {
    case ThemeColor::TableBackground: return SettingsKeys::ColorTableBackground;
    case ThemeColor::TableForeground: return SettingsKeys::ColorTableForeground;
    case ThemeColor::Toolbar: return SettingsKeys::ColorToolbar;
    case ThemeColor::BottomBar: return SettingsKeys::ColorBottomBar;
    case ThemeColor::SpaceOccupiedBar: return SettingsKeys::ColorSpaceOccupiedBar;
    }
    return {};
}

QColor color(ThemeColor c)
{
    switch (c) {
    case ThemeColor::TableBackground:
        return QColor::fromRgbF(82.0f / 255.0f, 82.0f / 255.0f, 82.0f / 255.0f, 1.0f);
    case ThemeColor::TableForeground:
        return QColor::fromRgbF(1.0f, 1.0f, 1.0f, 1.0f);
    case ThemeColor::Toolbar:
    case ThemeColor::BottomBar:
        return QColor::fromRgbF(75.0f / 255.0f, 105.0f / 255.0f, 141.0f / 255.0f, 1.0f);
    case ThemeColor::SpaceOccupiedBar:
        return QColor::fromRgbF(0.0f, 0.0f, 1.0f, 1.0f);
    }
    return {};
}

} // namespace ThemeDefaults

QString AppSettings::string(const QString &key) const
{
    const QVariant v = m_store.value(key);
    if (!v.isValid() || !v.canConvert<QString>())
        return QString();
    return v.toString();
}

void AppSettings::setString(const QString &key, const QString &value)
{
    m_store.setValue(key, value);
    m_store.sync();
}

QColor AppSettings::color(const QString &key) const
{
    const QVariant v = m_store.value(key);
    if (v.metaType() == QMetaType::fromType<QColor>())
        return v.value<QColor>();
    return QColor();
}

void AppSettings::setColor(const QString &key, const QColor &value)
{
    m_store.setValue(key, QVariant::fromValue(value));
    m_store.sync();
}

bool AppSettings::flag(const QString &key, bool absent) const
{
    const QString value = string(key);
    if (value == QLatin1String("1"))
        return true;
    if (value == QLatin1String("0"))
        return false;
    return absent;
}

void AppSettings::setFlag(const QString &key, bool value)
{
    setString(key, value ? QStringLiteral("1") : QStringLiteral("0"));
}
