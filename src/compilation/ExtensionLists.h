#pragma once
#include <QString>
#include <QStringList>

#include "platform/FilePicker.h"

// The extensions the Audio and Video tabs accept, and the open panels of the
// five add actions.
namespace ExtensionLists {

// "wma", "wav", "cda", "mp3", "mp2", "mpga", "m4a"
const QStringList &audio();
// "wmv", "mov", "mpg", "mpeg", "mpe", "avi", "asf", "asx", "qt", "mp4",
// "mpeg-4", "flv", "ts", "3gp", "fli", "m1v", "m2v", "mjpg"
const QStringList &video();

// The names of the folder's direct children (not folders themselves, hidden
// ones included) whose extension is in the list, compared exactly: Song.MP3
// is not "mp3". Kept in the order the file system lists them. An unreadable
// or missing folder gives an empty list.
QStringList filterFolder(const QString &folderPath, const QStringList &extensions);

// Full path of a kept name: "folder/name".
QString childPath(const QString &folderPath, const QString &name);

// Panels: add files offers many files of the tab's list (the panel matches
// extensions whatever their case); add folder offers one folder. Each is
// titled after what it adds.
PickRequest addFilesRequest(const QStringList &extensions);
PickRequest audioAddFilesRequest();  // "Add Audio Files", "Audio files (*.wma *.wav …)"
PickRequest videoAddFilesRequest();  // "Add Video Files", "Video files (*.wmv *.mov …)"
PickRequest addFolderRequest();
PickRequest audioAddFolderRequest();  // "Add a Folder of Audio Files"
PickRequest videoAddFolderRequest();  // "Add a Folder of Video Files"
PickRequest dataAddFolderRequest();   // "Add a Data Folder"

} // namespace ExtensionLists
