#pragma once
#include <QString>
#include <functional>

#include "platform/ToolPaths.h"
#include "drives/Object_Optical_Drive.h"

class Alerts;
class FilePicker;
class MediaQuestions;

// What the data-burn, image and duplication operations need from the
// application: its tools and folders, the alert and panel seams, the medium
// questions of the current drive, and the tray.
struct ImageFlowContext {
    bool verifies() const { return verifyAfterWriting && verifyAfterWriting(); }

    ToolPaths tools;
    QString dataFolder;   // s_Data_Folder
    QString homeFolder;   // the destination panel starts in its Documents
    Alerts *alerts = nullptr;
    FilePicker *picker = nullptr;
    MediaQuestions *media = nullptr;
    std::function<Object_Optical_Drive()> currentDrive;
    std::function<bool()> debugMode;
    std::function<void()> ejectDisc;  // the Tools menu's eject, for the current drive
    // Read a disc back after writing it (data burns, image burns, copies);
    // null reads as no. The controller answers from the setting.
    std::function<bool()> verifyAfterWriting;
    int stepMs = 100;                 // the pause between chained steps
    int stagingPollMs = 60000;        // how often a staging copy is measured
};
