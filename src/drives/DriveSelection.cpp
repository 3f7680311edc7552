#include "drives/DriveSelection.h"

DriveMenuState DriveSelection::afterListing(const DriveList &drives, const QString &savedLabel,
                                            const QString &currentNumber, const DriveAccess &access)
{
    DriveMenuState state;
    state.currentDriveNumber = currentNumber;

    QString saved = savedLabel;
    bool found = false;
    for (int i = 0; i < drives.size(); ++i) {
        const Object_Optical_Drive &drive = drives.at(i);
        const QString label = drive.label();
        if (saved.isEmpty()) {
            // First run: the first drive listed is the one to remember.
            saved = label;
            state.storeLabel = true;
            state.labelToStore = label;
        }
        if (saved == label) {
            found = true;
            state.currentDriveNumber = drive.s_Drive_Number;
            state.currentDriveIndex = i;
            if (i < DriveMenuState::ItemCount)
                state.checked[i] = true;
        }
    }

    if (!drives.isEmpty()) {
        state.titles[0] = drives.first().label();
        if (!found) {
            state.currentDriveNumber = drives.first().s_Drive_Number;
            state.currentDriveIndex = 0;
            state.storeLabel = true;
            state.labelToStore = drives.first().label();
            state.checked[0] = true;
        }
    }
    for (int n = 2; n <= DriveMenuState::ItemCount; ++n) {
        if (drives.size() >= n)
            state.titles[n - 1] = drives.at(n - 1).label();
    }
    state.visible[0] = true;
    for (int n = 2; n <= DriveMenuState::ItemCount; ++n)
        state.visible[n - 1] = drives.size() >= n;

    const int note = drives.size();  // index of the first item without a drive
    if (access.denied() && note < DriveMenuState::ItemCount) {
        state.titles[note] = access.menuTitle();
        state.visible[note] = true;
    }
    return state;
}

bool DriveSelection::chooseItem(const DriveList &drives, int item, DriveMenuState &state)
{
    if (item < 1 || item > DriveMenuState::ItemCount || item > drives.size())
        return false;
    const Object_Optical_Drive &drive = drives.at(item - 1);
    state.currentDriveNumber = drive.s_Drive_Number;
    state.currentDriveIndex = item - 1;
    state.storeLabel = true;
    state.labelToStore = drive.label();
    for (int n = 0; n < DriveMenuState::ItemCount; ++n)
        state.checked[n] = (n == item - 1);
    return true;
}
