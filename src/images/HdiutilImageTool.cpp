#include "images/HdiutilImageTool.h"

ToolCommand HdiutilImageTool::makeImageCommand(const QString &destIso, const QString &sourceFolder) const
{
    return ToolCommand{m_hdiutil,
                       {QStringLiteral("makehybrid"), QStringLiteral("-o"), destIso, sourceFolder,
                        QStringLiteral("-iso"), QStringLiteral("-joliet")}};
}

ToolCommand HdiutilImageTool::burnImageCommand(const Object_Optical_Drive &drive, const QString &image,
                                               bool verify) const
{
    Q_UNUSED(drive)
    QStringList args{QStringLiteral("burn"), image, QStringLiteral("-verbose")};
    if (!verify)
        args << QStringLiteral("-noverifyburn");
    return ToolCommand{m_hdiutil, args};
}
