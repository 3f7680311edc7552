#pragma once
#include <QColor>
#include <QList>
#include <QObject>
#include <QPointer>
#include <functional>

#include "appearance/Theme.h"

class AppSettings;
class QAbstractItemView;
class QWidget;
class StepTimer;
class Window_Colors;

// The parts of the main window the colours are put on.
struct ColourTargets {
    QWidget *window = nullptr;                       // the Colors sheet sits on it
    QList<QAbstractItemView *> tables;               // the three lists
    std::function<void(const QColor &)> listText;    // the lists' text colour
    std::function<void(const QColor &)> gaugeColour; // the capacity gauge's bar
    QList<QWidget *> repainted;                      // repainted once the colours are forced
};

// The controller's colour state, read and changed here.
struct ColourState {
    Theme &theme;
    QPointer<Window_Colors> &sheet;
    StepTimer &alternatingRows;  // switches the lists' row banding a moment after a change
    StepTimer &forceColours;     // repaints the bars and backgrounds a moment after a change
};

// The window's colours: the Colors sheet (OK writes the theme and puts it on
// the window, Cancel leaves everything as it was), the lists' background and
// text, their banding, and the repaint of the coloured bars.
class WindowColours : public QObject {
    Q_OBJECT
public:
    WindowColours(const ColourTargets &targets, const ColourState &state, AppSettings &settings,
                  std::function<bool()> systemIsDark, QObject *parent = nullptr);

    // The theme as loaded at start-up, put on the window.
    void applyAtStartup();

    void showSheet();
    void ok();      // the sheet's choice is already the theme
    void cancel();  // ends the sheet

    void setAlternatingRows();
    void forceColours();

private:
    void applyTableLook(bool okRule);
    void startTimers();

    ColourTargets m_targets;
    ColourState m_state;
    AppSettings &m_settings;
    std::function<bool()> m_systemIsDark;
};
