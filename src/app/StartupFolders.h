#pragma once
#include <QString>

#include "platform/WorkingFolders.h"

class AppSettings;

// What the working folders looked like at start-up.
struct FolderSetup {
    bool ok = true;
    QString fatalText;     // the alert's informative text when a folder could not be made
    bool firstRun = false; // the main folder was created now: the format defaults were written
};

// The four working folders at start-up, in order main, audio, video, data:
// each is created when nothing of its name exists (a plain file of that name
// counts as present and is left alone). Creating the main folder marks the
// first run, which stores "0" as the video standard and the audio codec. A
// folder that cannot be made is fatal, with its own code:
//   main  "Error #0008. Application will exit."   audio "Error #0009. ..."
//   video "Error #000a. Application will exit."   data  "Error #000b. ..."
// When all four are there, each is emptied (main, audio, video, data).
FolderSetup setUpWorkingFolders(const WorkingFolders &folders, AppSettings &settings);

namespace StartupTexts {
inline const QString FatalMessage = QStringLiteral("Error");
inline const QString FatalButton = QStringLiteral("Close");
QString fatalText(int folderIndex);  // 0 main, 1 audio, 2 video, 3 data
} // namespace StartupTexts
