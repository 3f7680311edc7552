#include "appearance/ThemeWriting.h"

namespace ThemeWriting {

QList<SettingWrite> originalsWrites()
{
    QList<SettingWrite> w;
    for (ThemeColor c : ThemeDefaults::all) {
        w.append({ThemeDefaults::key(c), QVariant::fromValue(ThemeDefaults::color(c))});
        // The flag goes back to "1" right after the foreground colour.
        if (c == ThemeColor::TableForeground)
            w.append({SettingsKeys::AlternatingRows, QVariant(QStringLiteral("1"))});
    }
    return w;
}

QList<SettingWrite> afterOkWrites(const Theme &theme)
{
    QList<SettingWrite> w;
    w.append({SettingsKeys::AlternatingRows,
              QVariant(QString::asprintf("%lld", static_cast<long long>(theme.b_List_Alternating_Rows)))});
    for (ThemeColor c : ThemeDefaults::all)
        w.append({ThemeDefaults::key(c), QVariant::fromValue(theme[c])});
    w.append({SettingsKeys::AlternatingRows,
              QVariant(theme.b_List_Alternating_Rows == 1 ? QStringLiteral("1") : QStringLiteral("0"))});
    return w;
}

void apply(AppSettings &settings, const QList<SettingWrite> &writes)
{
    for (const SettingWrite &w : writes) {
        if (w.value.metaType() == QMetaType::fromType<QColor>())
            settings.setColor(w.key, w.value.value<QColor>());
        else
            settings.setString(w.key, w.value.toString());
    }
}

Theme restoreOriginals(AppSettings &settings)
{
    apply(settings, originalsWrites());
    Theme t;
    for (ThemeColor c : ThemeDefaults::all)
        t[c] = ThemeDefaults::color(c);
    t.b_List_Alternating_Rows = 1;
    return t;
}

void writeAfterOk(AppSettings &settings, const Theme &theme)
{
    apply(settings, afterOkWrites(theme));
}

TableLook tableLook(const Theme &theme, bool systemDark, bool okRule)
{
    TableLook look;
    const qint64 flag = theme.b_List_Alternating_Rows;
    look.on = okRule ? flag == 1 : flag != 0;
    look.alternatingRows = flag == 1;
    if (look.on) {
        look.background = systemDark ? QColor(Qt::black) : QColor(Qt::white);
        look.cellText = systemDark ? QColor(Qt::white) : QColor(Qt::black);
    } else {
        look.background = theme.colorTableBackground;
        look.cellText = theme.colorTableForeground;
    }
    return look;
}

} // namespace ThemeWriting
