#include "images/XorrisoImageTool.h"
#include "toolrun/XorrisoPacing.h"

#include <QDir>
#include <QFileInfo>

static constexpr int VolumeIdBytes = 32;

QString XorrisoImageTool::folderName(const QString &folder)
{
    return QFileInfo(QDir::cleanPath(folder)).fileName();
}

QString XorrisoImageTool::volumeIdFor(const QString &name)
{
    QString out;
    int bytes = 0;
    // Walk whole characters (a surrogate pair is one).
    for (int i = 0; i < name.size();) {
        const int len = (name.at(i).isHighSurrogate() && i + 1 < name.size()) ? 2 : 1;
        const QString ch = name.mid(i, len);
        const int chBytes = int(ch.toUtf8().size());
        if (bytes + chBytes > VolumeIdBytes)
            break;
        out += ch;
        bytes += chBytes;
        i += len;
    }
    if (out.trimmed().isEmpty())
        return QStringLiteral("ISOIMAGE");
    return out;
}

ToolCommand XorrisoImageTool::makeImageCommand(const QString &destIso, const QString &sourceFolder) const
{
    QStringList args = xorrisoPacing();
    args << QStringLiteral("-as") << QStringLiteral("mkisofs") << QStringLiteral("-J") << QStringLiteral("-R")
         << QStringLiteral("-V") << volumeIdFor(folderName(sourceFolder)) << QStringLiteral("-o") << destIso
         << sourceFolder;
    return ToolCommand{m_xorriso, args};
}

ToolCommand XorrisoImageTool::burnImageCommand(const Object_Optical_Drive &drive, const QString &image,
                                               bool) const
{
    QStringList args = xorrisoPacing();
    args << QStringLiteral("-as") << QStringLiteral("cdrecord") << QStringLiteral("-v") << QStringLiteral("-nopad")
         << QStringLiteral("dev=") + drive.s_Device_Path << image;
    return ToolCommand{m_xorriso, args};
}
