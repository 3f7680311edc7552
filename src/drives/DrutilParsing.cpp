#include "drives/DrutilParsing.h"

#include <QRegularExpression>
#include <QStringList>

namespace DrutilParsing {

DriveList parseList(const QString &text)
{
    DriveList drives;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i) {
        const QString &line = lines.at(i);
        if (line.isEmpty())
            break;
        if (i == 0)
            continue;  // column header
        if (line.size() < 30)
            continue;
        if (!line.at(0).isDigit() || line.at(1).isDigit())
            continue;
        Object_Optical_Drive drive;
        drive.s_Drive_Number = line.mid(0, 1);
        drive.sManufacturer = line.mid(3, 9).trimmed();
        drive.sModel = line.mid(12, 18).trimmed();
        drives.append(drive);
    }
    return drives;
}

QString statusSearchText(const QString &text)
{
    const int hit = text.indexOf(QLatin1String("Type:"));
    if (hit < 0)
        return text;
    const int lineStart = text.lastIndexOf(QLatin1Char('\n'), hit) + 1;
    return text.mid(lineStart);
}

MediaAnswers answers(const QString &text)
{
    const QString s = statusSearchText(text);
    MediaAnswers a;
    a.driveEmpty = s.contains(QLatin1String("No Media Inserted"));
    a.oneTimeWritable = s.contains(QLatin1String("overwritable"));
    a.reWritable = s.contains(QLatin1String("erasable"));
    if (s.contains(QLatin1String("DVD")))
        a.family = QStringLiteral("DVD");
    else if (s.contains(QLatin1String("CD")))
        a.family = QStringLiteral("CD");
    else if (s.contains(QLatin1String("BD")))
        a.family = QStringLiteral("BD");
    else
        a.family = QStringLiteral("Other");
    return a;
}

std::optional<qint64> spaceFreeSectors(const QString &text)
{
    const QString s = statusSearchText(text);
    for (const QString &line : s.split(QLatin1Char('\n'))) {
        const int label = line.indexOf(QLatin1String("Space Free:"));
        if (label < 0)
            continue;
        const QString value = line.mid(label + 11);
        static const QRegularExpression blocks(QStringLiteral(R"(blocks:\s*(\d+))"));
        const QRegularExpressionMatch b = blocks.match(value);
        bool ok = false;
        if (b.hasMatch()) {
            const qint64 n = b.captured(1).toLongLong(&ok);
            if (ok)
                return n;
        }
        // Minutes of at most nine digits: the count then stays far inside
        // the integer's range.
        static const QRegularExpression msf(QStringLiteral(R"(^\s*(\d{1,9}):(\d\d):(\d\d)\b)"));
        const QRegularExpressionMatch t = msf.match(value);
        if (t.hasMatch())
            return t.captured(1).toLongLong() * 60 * 75 + t.captured(2).toLongLong() * 75 + t.captured(3).toLongLong();
        return std::nullopt;
    }
    return std::nullopt;
}

} // namespace DrutilParsing
