#pragma once
#include <QString>

// The four working folders, siblings directly inside Documents. Every burn
// writes its intermediate files there; they are emptied at each start and
// after each burn.
struct WorkingFolders {
    QString s_Output_Folder;  // Documents/Tamblo
    QString s_Audio_Folder;   // Documents/TambloAudio
    QString s_Video_Folder;   // Documents/TambloVideo
    QString s_Data_Folder;    // Documents/TambloData

    static WorkingFolders inside(const QString &documents);
};

namespace FolderOps {

enum class Presence { Existed, Created, Failed };

// Something (a folder, or even a plain file) at `path` counts as present and
// is left alone; otherwise the folder is created with its parents.
Presence ensureFolder(const QString &path);

// Deletes everything below `path`, sub-folders included, and keeps the folder
// itself. A removal that fails is logged as "oops: <reason>" and skipped.
void RemoveAllContentInFolder(const QString &path);

} // namespace FolderOps
