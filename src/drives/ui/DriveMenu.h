#pragma once
#include <QObject>
#include <QString>
#include <array>
#include <functional>

#include "drives/DriveSelection.h"
#include "drives/Object_Optical_Drive.h"

class AppSettings;
class DriveBackend;
class QAction;

// The controller's drive state, read and changed here.
struct DriveState {
    DriveList &drives;            // as the last listing found them
    QString &currentDriveNumber;  // passed after "-drive"
};

// The Drive menu: its six drive items filled from a listing, the choice of
// the current drive (remembered by its label in the settings), and the drive
// every operation asks for.
class DriveMenu : public QObject {
    Q_OBJECT
public:
    using Items = std::array<QAction *, DriveMenuState::ItemCount>;

    DriveMenu(DriveBackend &backend, AppSettings &settings, const DriveState &state, const Items &items,
              QObject *parent = nullptr);

    // Asks the backend for the drives; the menu is filled when they arrive,
    // then `listed` runs. Returns at once.
    void load(std::function<void()> listed);
    // Item 1..6 chosen; an item with no drive behind it keeps its state.
    void choose(int item);
    Object_Optical_Drive current() const;
    const DriveMenuState &state() const { return m_menu; }

private:
    void apply();

    DriveBackend &m_backend;
    AppSettings &m_settings;
    DriveState m_state;
    Items m_items;
    DriveMenuState m_menu;
};
