#include "drives/XorrisoParsing.h"

#include <QRegularExpression>

namespace XorrisoParsing {

namespace {

struct Profile {
    const char *name;
    const char *family;
    bool rewritable;
};

// The media profiles libburn names, whole. Prefixes would mislead: "BD-R" is
// the start of "BD-RE" and "BD-ROM", "CD-R" of "CD-RW", "DVD+R" of "DVD+RW".
const Profile kProfiles[] = {
    {"CD-ROM", "CD", false},
    {"CD-R", "CD", false},
    {"CD-RW", "CD", true},
    {"DVD-ROM", "DVD", false},
    {"DVD-R sequential recording", "DVD", false},
    {"DVD-RAM", "DVD", true},
    {"DVD-RW restricted overwrite", "DVD", true},
    {"DVD-RW sequential recording", "DVD", true},
    {"DVD-R/DL sequential recording", "DVD", false},
    {"DVD-R/DL layer jump recording", "DVD", false},
    {"DVD+RW", "DVD", true},
    {"DVD+R", "DVD", false},
    {"DVD+RW/DL", "DVD", true},
    {"DVD+R/DL", "DVD", false},
    {"BD-ROM", "BD", false},
    {"BD-R sequential recording", "BD", false},
    {"BD-R random recording", "BD", false},
    {"BD-RE", "BD", true},
};

QString firstValue(const QString &text, const QString &label)
{
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString &raw : lines) {
        QString line = raw;
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        if (line.startsWith(label))
            return line.mid(label.size()).trimmed();
    }
    return QString();
}

} // namespace

DriveList parseDevices(const QString &text)
{
    static const QRegularExpression row(QStringLiteral(
        R"(^\s*\d+\s+-dev\s+'([^']*)'\s+\S*\s*:\s*'([^']*)'\s+'([^']*)')"));
    DriveList drives;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const QRegularExpressionMatch m = row.match(line);
        if (!m.hasMatch() || m.captured(1).isEmpty())
            continue;
        Object_Optical_Drive drive;
        drive.s_Drive_Number = QString::number(drives.size() + 1);
        drive.s_Device_Path = m.captured(1);
        drive.sManufacturer = m.captured(2).trimmed();
        drive.sModel = m.captured(3).trimmed();
        drives.append(drive);
    }
    return drives;
}

ToolCommand statusCommand(const QString &xorriso, const QString &device)
{
    return ToolCommand{xorriso,
                       {QStringLiteral("-drive_access"), QStringLiteral("shared:readonly"),
                        QStringLiteral("-outdev"), device, QStringLiteral("-toc")}};
}

ToolCommand spaceCommand(const QString &xorriso, const QString &device)
{
    return ToolCommand{xorriso,
                       {QStringLiteral("-drive_access"), QStringLiteral("shared:readonly"),
                        QStringLiteral("-outdev"), device, QStringLiteral("-tell_media_space")}};
}

std::optional<qint64> mediaSpaceSectors(const QString &text)
{
    static const QRegularExpression line(QStringLiteral(R"(^Media space\s*:\s*(\d+)s\s*$)"),
                                         QRegularExpression::MultilineOption);
    const QRegularExpressionMatch m = line.match(text);
    if (!m.hasMatch())
        return std::nullopt;
    bool ok = false;
    const qint64 sectors = m.captured(1).toLongLong(&ok);
    if (!ok)
        return std::nullopt;
    return sectors;
}

ToolCommand eraseCommand(const QString &xorriso, const QString &device, bool full)
{
    return ToolCommand{xorriso,
                       {QStringLiteral("-outdev"), device, QStringLiteral("-blank"),
                        full ? QStringLiteral("all") : QStringLiteral("fast")}};
}

ToolCommand devicesCommand(const QString &xorriso)
{
    return ToolCommand{xorriso, {QStringLiteral("-devices")}};
}

QStringList deniedDevices(const QString &text)
{
    static const QRegularExpression denied(
        QStringLiteral(R"(Failed to open device '([^']+)' : Permission denied)"));
    QStringList devices;
    QRegularExpressionMatchIterator it = denied.globalMatch(text);
    while (it.hasNext()) {
        const QString device = it.next().captured(1);
        if (!devices.contains(device))
            devices.append(device);
    }
    return devices;
}

QString mediaProfile(const QString &text)
{
    const QString value = firstValue(text, QStringLiteral("Media current:"));
    const int comma = value.indexOf(QLatin1Char(','));
    return (comma < 0 ? value : value.left(comma)).trimmed();
}

QString mediaStatus(const QString &text)
{
    return firstValue(text, QStringLiteral("Media status :"));
}

MediaAnswers answers(const QString &text)
{
    MediaAnswers a;
    const QString status = mediaStatus(text);
    if (status.isEmpty() || status.startsWith(QLatin1String("is not present"))) {
        a.driveEmpty = true;
        return a;
    }

    const bool blank = status.startsWith(QLatin1String("is blank"));
    const bool appendable = status.contains(QLatin1String("is appendable"));
    const bool blocked = status.contains(QLatin1String("but next track is damaged"))
        || status.contains(QLatin1String("but no writable address"));
    a.oneTimeWritable = (blank || appendable) && !blocked;

    const QString profile = mediaProfile(text);
    if (profile == QLatin1String("stdio file")) {
        const QString current = firstValue(text, QStringLiteral("Media current:"));
        a.reWritable = current.contains(QLatin1String("overwriteable"));
        return a;
    }
    for (const Profile &p : kProfiles) {
        if (profile == QLatin1String(p.name)) {
            a.family = QLatin1String(p.family);
            a.reWritable = p.rewritable;
            break;
        }
    }
    return a;
}

} // namespace XorrisoParsing
