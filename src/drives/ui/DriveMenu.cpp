#include "drives/ui/DriveMenu.h"

#include <QAction>
#include <QPointer>

#include "drives/DriveBackend.h"
#include "platform/AppSettings.h"

DriveMenu::DriveMenu(DriveBackend &backend, AppSettings &settings, const DriveState &state, const Items &items,
                     QObject *parent)
    : QObject(parent), m_backend(backend), m_settings(settings), m_state(state), m_items(items)
{
}

Object_Optical_Drive DriveMenu::current() const
{
    const int i = m_menu.currentDriveIndex;
    if (i >= 0 && i < m_state.drives.size())
        return m_state.drives.at(i);
    Object_Optical_Drive none;
    none.s_Drive_Number = m_state.currentDriveNumber;
    return none;
}

void DriveMenu::load(std::function<void()> listed)
{
    QPointer<DriveMenu> self(this);
    m_backend.listDrives([self, listed = std::move(listed)](const DriveList &drives) {
        if (!self)
            return;
        self->m_state.drives = drives;
        self->m_menu = DriveSelection::afterListing(drives, self->m_settings.string(SettingsKeys::LastSelectedDrive),
                                                    self->m_state.currentDriveNumber, self->m_backend.access());
        self->apply();
        if (listed)
            listed();
    });
}

void DriveMenu::apply()
{
    if (m_menu.storeLabel)
        m_settings.setString(SettingsKeys::LastSelectedDrive, m_menu.labelToStore);
    m_menu.storeLabel = false;
    m_state.currentDriveNumber = m_menu.currentDriveNumber;
    for (int i = 0; i < DriveMenuState::ItemCount; ++i) {
        QAction *item = m_items[i];
        if (!m_menu.titles[i].isEmpty())
            item->setText(m_menu.titles[i]);
        item->setChecked(m_menu.checked[i]);
        item->setVisible(m_menu.visible[i]);
    }
}

void DriveMenu::choose(int item)
{
    if (!DriveSelection::chooseItem(m_state.drives, item, m_menu)) {
        // No drive behind the item: nothing changes, and the item keeps its state.
        if (item >= 1 && item <= DriveMenuState::ItemCount)
            m_items[item - 1]->setChecked(m_menu.checked[item - 1]);
        return;
    }
    apply();
}
