#include "appearance/Theme.h"

QColor &Theme::operator[](ThemeColor c)
{
    switch (c) {
    case ThemeColor::TableBackground: return colorTableBackground;
    case ThemeColor::TableForeground: return colorTableForeground;
    case ThemeColor::Toolbar: return colorToolbar;
    case ThemeColor::BottomBar: return colorBottomBar;
    case ThemeColor::SpaceOccupiedBar: break;
    }
    return colorSpaceOccupiedBar;
}

const QColor &Theme::operator[](ThemeColor c) const
{
    return const_cast<Theme &>(*this)[c];
}

namespace ThemeSettings {

Theme loadAtStartup(AppSettings &settings)
{
    Theme t;
    const QString flag = settings.string(SettingsKeys::AlternatingRows);
    if (flag.isEmpty()) {
        t.b_List_Alternating_Rows = 1;
        settings.setString(SettingsKeys::AlternatingRows, QString::number(1));
    } else {
        t.b_List_Alternating_Rows = flag.toLongLong();  // "abc" reads as 0, as an integer value would
    }
    for (ThemeColor c : ThemeDefaults::all) {
        const QString key = ThemeDefaults::key(c);
        const QString companion = key + SettingsKeys::CompanionSuffix;
        if (!settings.string(companion).isEmpty()) {
            t[c] = settings.color(key);  // undecodable: stays invalid, as nothing checks it
        } else {
            t[c] = ThemeDefaults::color(c);
            settings.setColor(key, t[c]);
            settings.setString(companion, SettingsKeys::CompanionValue);
        }
    }
    return t;
}

} // namespace ThemeSettings
