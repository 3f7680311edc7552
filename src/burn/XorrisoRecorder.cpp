#include "burn/XorrisoRecorder.h"
#include "drives/DiscVerify.h"
#include "toolrun/XorrisoPacing.h"

#include <QDir>
#include <QFileInfo>

ToolCommand XorrisoRecorder::burnAudioCommand(const Object_Optical_Drive &drive, const QString &,
                                              const QStringList &wavsInCompilationOrder) const
{
    const QString device = drive.s_Device_Path;
    if (device.isEmpty())
        return {};
    QStringList args{QStringLiteral("-v")};
    if (device.startsWith(QLatin1String("stdio:")))
        args << QStringLiteral("--allow_emulated_drives");
    args << QStringLiteral("dev=") + device << QStringLiteral("-audio");
    args << wavsInCompilationOrder;
    return {m_cdrskin, args};
}

ToolCommand XorrisoRecorder::burnFolderCommand(const Object_Optical_Drive &drive, const QString &folder,
                                               bool verify) const
{
    const QString device = drive.s_Device_Path;
    if (device.isEmpty())
        return {};
    QStringList args = xorrisoPacing();
    if (verify)
        args << QStringLiteral("-md5") << QStringLiteral("on");
    // A Joliet tree beside Rock Ridge, as on data discs: readers without Rock
    // Ridge (Windows, car stereos) see the whole names, not "D_1V10.MP3".
    args << QStringLiteral("-dev") << device << QStringLiteral("-joliet") << QStringLiteral("on")
         << QStringLiteral("-volid") << volumeName(folder)
         << QStringLiteral("-map") << folder << QStringLiteral("/") << QStringLiteral("-commit");
    return {m_xorriso, args};
}

ToolCommand XorrisoRecorder::verifyFolderCommand(const Object_Optical_Drive &drive) const
{
    if (drive.s_Device_Path.isEmpty())
        return {};
    return DiscVerify::md5CheckCommand(m_xorriso, drive.s_Device_Path, {QStringLiteral("/")});
}

QString XorrisoRecorder::volumeName(const QString &folder)
{
    const QString name = QFileInfo(QDir::cleanPath(folder)).fileName();
    return name.left(32);
}
