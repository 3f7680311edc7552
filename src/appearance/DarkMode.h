#pragma once
#include <QPalette>

// Whether the platform draws in dark mode: the one place that decides it.
// Linux: the palette's window colour is dark. macOS: the palette follows the
// system appearance, so the same test holds there.
namespace DarkMode {
bool isDark(const QPalette &palette);
bool systemIsDark();  // the application's palette; needs a QGuiApplication
} // namespace DarkMode
