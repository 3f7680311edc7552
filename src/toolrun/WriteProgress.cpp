#include "toolrun/WriteProgress.h"

#include <QDebug>
#include <QLocale>
#include <QRegularExpression>
#include <cmath>

#include "toolrun/ProgressParsers.h"

bool WriteReport::operator==(const WriteReport &o) const
{
    return percent == o.percent && writtenMB == o.writtenMB && totalMB == o.totalMB && track == o.track
        && runTotal == o.runTotal && speed == o.speed && finishAt == o.finishAt;
}

QDebug operator<<(QDebug debug, const WriteReport &r)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "WriteReport(";
    if (r.percent)
        debug << *r.percent << "%";
    if (r.writtenMB)
        debug << " written " << *r.writtenMB;
    if (r.totalMB)
        debug << (r.runTotal ? " run total " : " of ") << *r.totalMB << " MB";
    if (r.track)
        debug << " track " << r.track;
    if (r.speed)
        debug << " " << *r.speed << "x";
    if (r.finishAt)
        debug << " finish " << r.finishAt->toString(Qt::ISODate);
    debug << ")";
    return debug;
}

namespace WriteProgress {

static constexpr double SectorBytes = 2048.0;
static constexpr double MiB = 1024.0 * 1024.0;

// A figure of the tool's text; nothing when it is too long to be a number.
static std::optional<double> figure(QStringView digits)
{
    bool ok = false;
    const double v = digits.toDouble(&ok);
    if (!ok || !std::isfinite(v))
        return std::nullopt;
    return v;
}

static bool isPercentage(double v)
{
    return std::isfinite(v) && v >= 0.0 && v <= 100.0;
}

std::optional<WriteReport> xorrisoWriting(QStringView line)
{
    // Only blanks and tabs between the words of a report.
    static const QRegularExpression re(QStringLiteral(
        "Writing:[ \\t]+(\\d+)s[ \\t]+(\\d+(?:\\.\\d+)?)%"
        "(?:[ \\t]+fifo[ \\t]+\\d+%[ \\t]+buf[ \\t]+\\d+%(?:[ \\t]+(\\d+(?:\\.\\d+)?)x[CDB]?)?)?"));
    const QRegularExpressionMatch m = re.match(line);
    if (!m.hasMatch())
        return std::nullopt;
    const auto sectors = figure(m.capturedView(1));
    const auto percent = figure(m.capturedView(2));
    if (!sectors || !percent || !isPercentage(*percent))
        return std::nullopt;
    WriteReport r;
    r.percent = *percent;
    r.writtenMB = *sectors * SectorBytes / MiB;
    if (*percent > 0.0) {
        const double total = *r.writtenMB * 100.0 / *percent;
        if (std::isfinite(total))
            r.totalMB = total;
    }
    if (m.hasCaptured(3))
        r.speed = figure(m.capturedView(3));
    return r;
}

std::optional<WriteReport> cdrecordWritten(QStringView line)
{
    static const QRegularExpression re(QStringLiteral(
        "(?:Track[ \\t]+(\\d+):[ \\t]+)?(\\d+)[ \\t]+of[ \\t]+(\\d+)[ \\t]+MB written"
        "(?:[ \\t]+\\(fifo[ \\t]+\\d+%\\)(?:[ \\t]+\\[buf[ \\t]+\\d+%\\])?[ \\t]+(\\d+(?:\\.\\d+)?)x)?"));
    const QRegularExpressionMatch m = re.match(line);
    if (!m.hasMatch())
        return std::nullopt;
    const auto written = figure(m.capturedView(2));
    const auto total = figure(m.capturedView(3));
    if (!written || !total || *total <= 0.0)
        return std::nullopt;
    const double percent = *written * 100.0 / *total;
    if (!isPercentage(percent))
        return std::nullopt;
    WriteReport r;
    r.percent = percent;
    r.writtenMB = *written;
    r.totalMB = *total;
    if (m.hasCaptured(1))
        r.track = int(std::min(m.capturedView(1).toLongLong(), qint64(999)));
    if (m.hasCaptured(4))
        r.speed = figure(m.capturedView(4));
    return r;
}

std::optional<WriteReport> cdrskinTotalSize(QStringView line)
{
    static const QRegularExpression re(QStringLiteral("^Total size:[ \\t]+(\\d+)[ \\t]+MB"));
    const QRegularExpressionMatch m = re.match(line);
    if (!m.hasMatch())
        return std::nullopt;
    const auto total = figure(m.capturedView(1));
    if (!total || *total <= 0.0)
        return std::nullopt;
    WriteReport r;
    r.totalMB = *total;
    r.runTotal = true;
    return r;
}

// "Sun Nov 22 14:48:11 2026", the day padded with a blank below 10.
static std::optional<QDateTime> finishTime(QStringView text)
{
    const QString simple = text.toString().simplified();
    const QDateTime t = QLocale::c().toDateTime(simple, QStringLiteral("ddd MMM d HH:mm:ss yyyy"));
    if (!t.isValid())
        return std::nullopt;
    return t;
}

std::optional<WriteReport> mkisofsDone(QStringView line)
{
    static const QRegularExpression re(QStringLiteral(
        "(?:^|[ \\t])(\\d+(?:\\.\\d+)?)% done(?:, estimate finish[ \\t]+(\\S.*))?"));
    const QRegularExpressionMatch m = re.match(line);
    if (!m.hasMatch())
        return std::nullopt;
    const auto percent = figure(m.capturedView(1));
    if (!percent || !isPercentage(*percent))
        return std::nullopt;
    WriteReport r;
    r.percent = *percent;
    if (m.hasCaptured(2))
        r.finishAt = finishTime(m.capturedView(2));
    return r;
}

std::optional<WriteReport> xorrisoCompleted(QStringView line)
{
    static const QRegularExpression re(QStringLiteral("^Writing to '.*' completed successfully\\."));
    if (!re.match(line).hasMatch())
        return std::nullopt;
    WriteReport r;
    r.percent = 100.0;
    return r;
}

std::optional<WriteReport> hdiutilPercent(QStringView line)
{
    const QString key = QString::fromLatin1(ProgressParsers::RecorderPercentKey);
    const qsizetype at = line.indexOf(key);
    if (at < 0)
        return std::nullopt;
    const auto percent = ProgressParsers::recorderValuePercent(line.mid(at + key.size()).toString());
    if (!percent || !isPercentage(*percent))
        return std::nullopt;
    WriteReport r;
    r.percent = *percent;
    return r;
}

std::optional<WriteReport> parseLine(QStringView line)
{
    if (line.isEmpty())
        return std::nullopt;
    // Each format has a marker no other one carries; the cheap look comes first.
    if (line.contains(u"Writing:"))
        return xorrisoWriting(line);
    if (line.contains(u"MB written"))
        return cdrecordWritten(line);
    if (line.contains(u"% done"))
        return mkisofsDone(line);
    if (line.startsWith(u"Total size:"))
        return cdrskinTotalSize(line);
    if (line.startsWith(u"Writing to '"))
        return xorrisoCompleted(line);
    if (line.contains(QLatin1String(ProgressParsers::RecorderPercentKey)))
        return hdiutilPercent(line);
    return std::nullopt;
}

QList<WriteReport> parseReports(const QString &text)
{
    QList<WriteReport> out;
    forEachLine(text, [&out](QStringView line) {
        if (auto r = parseLine(line))
            out << *r;
    });
    return out;
}

} // namespace WriteProgress
