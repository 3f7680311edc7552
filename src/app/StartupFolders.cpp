#include "app/StartupFolders.h"

#include "platform/AppSettings.h"

namespace StartupTexts {
QString fatalText(int folderIndex)
{
    static const char *const codes[] = {"0008", "0009", "000a", "000b"};
    return QStringLiteral("Error #%1. Application will exit.").arg(QLatin1String(codes[folderIndex & 3]));
}
} // namespace StartupTexts

FolderSetup setUpWorkingFolders(const WorkingFolders &folders, AppSettings &settings)
{
    FolderSetup result;
    const QString paths[] = {folders.s_Output_Folder, folders.s_Audio_Folder, folders.s_Video_Folder,
                             folders.s_Data_Folder};
    for (int i = 0; i < 4; ++i) {
        const FolderOps::Presence p = FolderOps::ensureFolder(paths[i]);
        if (p == FolderOps::Presence::Failed) {
            result.ok = false;
            result.fatalText = StartupTexts::fatalText(i);
            return result;
        }
        if (i == 0 && p == FolderOps::Presence::Created) {
            result.firstRun = true;
            settings.setString(SettingsKeys::VideoFormat, QStringLiteral("0"));
            settings.setString(SettingsKeys::AudioFormat, QStringLiteral("0"));
        }
    }
    for (const QString &path : paths)
        FolderOps::RemoveAllContentInFolder(path);
    return result;
}
