#include "burn/DrutilRecorder.h"

ToolCommand DrutilRecorder::burnAudioCommand(const Object_Optical_Drive &drive, const QString &folder,
                                             const QStringList &) const
{
    return {m_drutil,
            {QStringLiteral("burn"), QStringLiteral("-audio"), folder, QStringLiteral("-drive"),
             drive.s_Drive_Number}};
}

ToolCommand DrutilRecorder::burnFolderCommand(const Object_Optical_Drive &drive, const QString &folder) const
{
    return {m_drutil, {QStringLiteral("burn"), folder, QStringLiteral("-drive"), drive.s_Drive_Number}};
}
