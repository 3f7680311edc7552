#pragma once
#include <QString>
#include <array>

#include "drives/DriveAccess.h"
#include "drives/Object_Optical_Drive.h"

// What the drive menu and the current drive look like after the listing at
// start-up, or after the user picks one of the six drive items.
struct DriveMenuState {
    static constexpr int ItemCount = 6;

    QString currentDriveNumber = QStringLiteral("1");  // passed after "-drive"
    int currentDriveIndex = -1;                         // index in the list; -1: no drive
    bool storeLabel = false;       // labelToStore must be written to the preferences
    QString labelToStore;          // "Vendor - Model" of the drive to remember
    std::array<QString, ItemCount> titles;    // empty: the item keeps its own title
    std::array<bool, ItemCount> checked{};
    std::array<bool, ItemCount> visible{};
};

// The choice of the current drive, as plain logic; the menu and the
// preferences are the caller's.
//
// The drive is remembered by its label, not by its number, so it stays
// chosen when the numbering changes; two drives with the same label cannot
// be told apart (both items get checked, the later drive is current).
class DriveSelection {
public:
    // After the listing. `savedLabel` is the remembered label (empty on a
    // first run); `currentNumber` the current drive number before the
    // listing ("1" at start-up).
    // - a first run takes the first drive and remembers it;
    // - the drive with the saved label becomes current, its item (1 to 6)
    //   checked; a seventh drive or later is current without an item;
    // - a saved drive no longer attached falls back to the first drive, whose
    //   label replaces the saved one;
    // - items 1 to 6 carry the labels of drives 1 to 6; items beyond the list
    //   are hidden, except item 1, which stays visible (keeping its own title)
    //   on an empty list, when the current number is left unchanged;
    // - when `access` names drives the user may not open, the first item
    //   without a drive (item 1 on an empty list) shows access.menuTitle(),
    //   unchecked; like any item without a drive, choosing it changes nothing.
    static DriveMenuState afterListing(const DriveList &drives, const QString &savedLabel,
                                       const QString &currentNumber = QStringLiteral("1"),
                                       const DriveAccess &access = DriveAccess{});

    // The user picked item `item` (1 to 6): its drive becomes current, its
    // label is to be remembered, the item is checked and the other five
    // unchecked. With no drive behind the item (empty list, item beyond the
    // list or outside 1 to 6) nothing changes and false is returned.
    static bool chooseItem(const DriveList &drives, int item, DriveMenuState &state);
};
