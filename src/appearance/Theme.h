#pragma once
#include <QColor>

#include "platform/AppSettings.h"

// The theme in memory: five colours and the alternating-rows flag.
struct Theme {
    QColor colorTableBackground;
    QColor colorTableForeground;
    QColor colorToolbar;
    QColor colorBottomBar;
    QColor colorSpaceOccupiedBar;
    qint64 b_List_Alternating_Rows = 1;

    QColor &operator[](ThemeColor c);
    const QColor &operator[](ThemeColor c) const;
};

namespace ThemeSettings {

// Start-up reading: the flag (empty or absent means 1, which is then stored
// as "1"; otherwise its integer value), then each colour in table order: its
// stored value when the "_String" companion has a length, otherwise the
// default, which is stored along with "Recorded" in the companion.
Theme loadAtStartup(AppSettings &settings);

} // namespace ThemeSettings
