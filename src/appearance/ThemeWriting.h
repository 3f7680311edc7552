#pragma once
#include <QList>
#include <QString>
#include <QVariant>

#include "platform/AppSettings.h"
#include "appearance/TableLook.h"
#include "appearance/Theme.h"

// What the colour dialog stores, and how the tables follow the theme.
namespace ThemeWriting {

// One value stored under one key: a QString or a QColor.
struct SettingWrite {
    QString key;
    QVariant value;
};

// "Original" resets to the defaults at once: table background, table
// foreground, "1" under the alternating-rows key, toolbar, bottom bar,
// space-occupied bar. The "_String" companions are never written.
QList<SettingWrite> originalsWrites();

// After OK: the flag as its decimal value, the five colours in table order,
// then the flag again as "1" when it is exactly 1, else "0".
QList<SettingWrite> afterOkWrites(const Theme &theme);

// Stores the writes in order, each at once.
void apply(AppSettings &settings, const QList<SettingWrite> &writes);

// Stores originalsWrites() and returns the five default colours, with the
// flag at 1 as the dialog's checkbox then shows it. The caller takes the
// colours; its own alternating-rows flag stays as it was until OK.
Theme restoreOriginals(AppSettings &settings);

// Stores afterOkWrites(theme).
void writeAfterOk(AppSettings &settings, const Theme &theme);

// The tables' look. okRule: the flag counts as on only when it is exactly 1
// (after OK); otherwise any non-zero flag is on (start-up). Row banding
// follows the flag being exactly 1 in both cases.
TableLook tableLook(const Theme &theme, bool systemDark, bool okRule);

} // namespace ThemeWriting
