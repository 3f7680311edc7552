#pragma once
#include <QColor>

// How the three list tables look for a given theme: the table background,
// whether rows alternate, and the colour of the cell text.
struct TableLook {
    bool on = false;              // alternating rows count as on for the background and text
    QColor background;            // black (dark) or white (light) when on, else the table background
    bool alternatingRows = false; // the row banding itself: only when the flag is exactly 1
    QColor cellText;              // on: white under dark, black under light; off: the table foreground
};
