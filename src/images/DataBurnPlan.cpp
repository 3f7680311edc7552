#include "images/DataBurnPlan.h"

#include <QDir>
#include <QFileInfo>

#include "images/XorrisoImageTool.h"
#include "toolrun/XorrisoPacing.h"

namespace {

bool taken(const QString &dataFolder, const QString &name, const QStringList &planned,
           Qt::CaseSensitivity cs)
{
    return QFileInfo::exists(dataFolder + QLatin1Char('/') + name) || planned.contains(name, cs);
}

} // namespace

DataBurnPlan DataBurnPlan::make(const QList<NodeDataFolder> &folders, const QString &dataFolder,
                                Qt::CaseSensitivity cs, bool skipMissing)
{
    DataBurnPlan plan;
    plan.m_dataFolder = QDir::cleanPath(dataFolder);
    QStringList planned;  // top-level names taken by earlier folders

    for (const NodeDataFolder &folder : folders) {
        const QString source = QDir::cleanPath(folder.s_Path);
        if (skipMissing && !QFileInfo(source).isDir()) {
            plan.m_skipped << folder.s_Path;
            continue;
        }
        const QString name = XorrisoImageTool::folderName(source);

        StagingEntry e;
        e.source = source;
        e.recordedKiB = folder.i_Size_in_KBytes;
        e.base = plan.m_dataFolder + QLatin1Char('/') + name;
        if (!taken(plan.m_dataFolder, name, planned, cs)) {
            e.destinationFolder = plan.m_dataFolder;
            e.discPath = QLatin1Char('/') + name;
            planned << name;
        } else {
            QString numbered;
            for (qint64 n = 1;; ++n) {
                numbered = name + QLatin1Char(' ') + QString::number(n);
                if (!taken(plan.m_dataFolder, numbered, planned, cs))
                    break;
            }
            e.destinationFolder = plan.m_dataFolder + QLatin1Char('/') + numbered;
            e.discPath = QLatin1Char('/') + numbered + QLatin1Char('/') + name;
            planned << numbered;
        }
        plan.m_entries << e;
    }
    return plan;
}

ToolCommand DataBurnPlan::drutilBurnCommand(const QString &drutil, const QString &driveNumber, bool verify) const
{
    QStringList args{QStringLiteral("burn")};
    if (!verify)
        args << QStringLiteral("-noverify");
    args << m_dataFolder << QStringLiteral("-drive") << driveNumber;
    return ToolCommand{drutil, args};
}

QStringList DataBurnPlan::discPaths() const
{
    QStringList paths;
    for (const StagingEntry &e : m_entries)
        paths << e.discPath;
    return paths;
}

QString DataBurnPlan::volumeId() const
{
    return XorrisoImageTool::volumeIdFor(XorrisoImageTool::folderName(m_dataFolder));
}

ToolCommand DataBurnPlan::xorrisoBurnCommand(const QString &xorriso, const QString &device, bool verify) const
{
    QStringList args = xorrisoPacing();
    if (verify)
        args << QStringLiteral("-md5") << QStringLiteral("on");
    args << QStringLiteral("-outdev") << device << QStringLiteral("-joliet") << QStringLiteral("on")
         << QStringLiteral("-volid") << volumeId();
    for (const StagingEntry &e : m_entries) {
        // A listed link to a folder puts the folder's contents on the disc,
        // not the link.
        const QString real = QFileInfo(e.source).canonicalFilePath();
        args << QStringLiteral("-map") << (real.isEmpty() ? e.source : real) << e.discPath;
    }
    args << QStringLiteral("-commit");
    return ToolCommand{xorriso, args};
}
