#pragma once
#include <QString>
#include <functional>

class QObject;

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

// The same on a worker thread, so a large tree never holds up the window;
// `then` runs on `receiver`'s thread once the folder is empty (not at all
// when the receiver is gone by then).
void emptyFolderThen(const QString &path, QObject *receiver, std::function<void()> then);

} // namespace FolderOps
