#pragma once
// Themes and colour settings for the appearance tests.
#include <QColor>
#include <QSettings>
#include <QtTest>

#include "appearance/Theme.h"
#include "platform/AppSettings.h"

// A theme whose every colour differs from the defaults, with the alternating
// rows flag `flag`.
inline Theme customTheme(qint64 flag)
{
    Theme t;
    t.colorTableBackground = QColor(10, 20, 30);
    t.colorTableForeground = QColor(200, 210, 220);
    t.colorToolbar = QColor(1, 2, 3);
    t.colorBottomBar = QColor(4, 5, 6);
    t.colorSpaceOccupiedBar = QColor(7, 8, 9);
    t.b_List_Alternating_Rows = flag;
    return t;
}

// A store as a previous run left it: the colours of `t`, each with its
// companion "Recorded", and the flag of `t`.
inline void fillStore(AppSettings &settings, const Theme &t)
{
    for (ThemeColor c : ThemeDefaults::all) {
        settings.setColor(ThemeDefaults::key(c), t[c]);
        settings.setString(ThemeDefaults::key(c) + "_String", "Recorded");
    }
    settings.setString(SettingsKeys::AlternatingRows, QString::number(t.b_List_Alternating_Rows));
}

// fillStore() with two companions out of line: the toolbar's missing and the
// bottom bar's "odd".
inline void fillStoreWithOddCompanions(QSettings &s, AppSettings &settings, const Theme &t)
{
    fillStore(settings, t);
    s.remove(SettingsKeys::ColorToolbar + "_String");                    // absent stays absent
    settings.setString(SettingsKeys::ColorBottomBar + "_String", "odd");  // odd stays odd
}

// After the originals were restored over fillStoreWithOddCompanions(): the
// default colours are stored and every companion is as it was.
inline void checkDefaultsStoredCompanionsKept(const QSettings &s, AppSettings &settings)
{
    for (ThemeColor c : ThemeDefaults::all)
        QCOMPARE(settings.color(ThemeDefaults::key(c)), ThemeDefaults::color(c));
    QCOMPARE(s.value(SettingsKeys::ColorTableBackground + "_String").toString(), QStringLiteral("Recorded"));
    QCOMPARE(s.value(SettingsKeys::ColorTableForeground + "_String").toString(), QStringLiteral("Recorded"));
    QVERIFY(!s.contains(SettingsKeys::ColorToolbar + "_String"));
    QCOMPARE(s.value(SettingsKeys::ColorBottomBar + "_String").toString(), QStringLiteral("odd"));
    QCOMPARE(s.value(SettingsKeys::ColorSpaceOccupiedBar + "_String").toString(), QStringLiteral("Recorded"));
}
