#include "burn/DrutilRecorder.h"

ToolCommand DrutilRecorder::burnAudioCommand(const Object_Optical_Drive &drive, const QString &folder,
                                             const QStringList &) const
{
    return {m_drutil,
            {QStringLiteral("burn"), QStringLiteral("-audio"), folder, QStringLiteral("-drive"),
             drive.s_Drive_Number}};
}

ToolCommand DrutilRecorder::burnFolderCommand(const Object_Optical_Drive &drive, const QString &folder,
                                              bool verify) const
{
    QStringList args{QStringLiteral("burn")};
    if (!verify)
        args << QStringLiteral("-noverify");
    args << folder << QStringLiteral("-drive") << drive.s_Drive_Number;
    return {m_drutil, args};
}
