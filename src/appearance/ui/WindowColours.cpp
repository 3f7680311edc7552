#include "appearance/ui/WindowColours.h"

#include <QAbstractItemView>

#include "appearance/DarkMode.h"
#include "appearance/ThemeWriting.h"
#include "appearance/ui/TableLookApplier.h"
#include "appearance/ui/Window_Colors.h"
#include "platform/StepTimer.h"
#include "platform/ui/SheetOutlet.h"

WindowColours::WindowColours(const ColourTargets &targets, const ColourState &state, AppSettings &settings,
                             std::function<bool()> systemIsDark, QObject *parent)
    : QObject(parent), m_targets(targets), m_state(state), m_settings(settings),
      m_systemIsDark(systemIsDark ? std::move(systemIsDark) : [] { return DarkMode::systemIsDark(); })
{
}

void WindowColours::applyAtStartup()
{
    m_targets.gaugeColour(m_state.theme.colorSpaceOccupiedBar);
    applyTableLook(false);
    startTimers();
}

void WindowColours::startTimers()
{
    m_state.alternatingRows.start([this] { setAlternatingRows(); });
    m_state.forceColours.start([this] { forceColours(); });
}

void WindowColours::applyTableLook(bool okRule)
{
    const TableLook look = ThemeWriting::tableLook(m_state.theme, m_systemIsDark(), okRule);
    for (QAbstractItemView *t : std::as_const(m_targets.tables))
        TableLookApplier::applyBackground(t, look);
    m_targets.listText(look.cellText);
}

void WindowColours::showSheet()
{
    if (m_state.sheet)
        return;
    auto *sheet = new Window_Colors(m_state.theme, m_settings, m_targets.window);
    connect(sheet, &Window_Colors::accepted, this, [this](const Theme &chosen) {
        m_state.theme = chosen;
        ok();
    });
    connect(sheet, &Window_Colors::cancelled, this, &WindowColours::cancel);
    connect(sheet, &Window_Colors::originalsRestored, this, [this](const Theme &defaults) {
        for (ThemeColor c : ThemeDefaults::all)
            m_state.theme[c] = defaults[c];
    });
    SheetOutlet::open(m_state.sheet, sheet);
}

void WindowColours::ok()
{
    cancel();  // ends the sheet
    ThemeWriting::writeAfterOk(m_settings, m_state.theme);
    applyTableLook(true);
    startTimers();
}

void WindowColours::cancel()
{
    SheetOutlet::close(m_state.sheet);
}

void WindowColours::setAlternatingRows()
{
    const bool on = m_state.theme.b_List_Alternating_Rows == 1;
    for (QAbstractItemView *t : std::as_const(m_targets.tables))
        TableLookApplier::applyAlternatingRows(t, on);
}

void WindowColours::forceColours()
{
    m_targets.gaugeColour(m_state.theme.colorSpaceOccupiedBar);
    for (QWidget *v : std::as_const(m_targets.repainted))
        v->update();
}
