#include "appearance/DarkMode.h"

#include <QGuiApplication>

namespace DarkMode {

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() < 128;
}

bool systemIsDark()
{
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return false;
    return isDark(QGuiApplication::palette());
}

} // namespace DarkMode
