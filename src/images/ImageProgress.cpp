#include "images/ImageProgress.h"

#include "toolrun/ProgressParsers.h"
#include "toolrun/WriteProgress.h"

namespace ImageProgress {

static std::optional<double> parseXorrisoRecord(const QString &text)
{
    // One line a report; the last readable one counts.
    std::optional<double> last;
    for (const WriteReport &r : reports(Kind::XorrisoRecordPercent, text))
        if (r.percent)
            last = r.percent;
    return last;
}

QList<WriteReport> reports(Kind kind, const QString &text)
{
    const QLatin1String hdiutilKey(ProgressParsers::RecorderPercentKey);
    QList<WriteReport> out;
    WriteProgress::forEachLine(text, [&](QStringView report) {
        std::optional<WriteReport> r;
        if (kind == Kind::DiscRecordingPercent)
            r = WriteProgress::hdiutilPercent(report);
        else if (!report.contains(hdiutilKey))
            r = WriteProgress::parseLine(report);
        if (r)
            out << *r;
    });
    return out;
}

std::optional<double> parse(Kind kind, const QString &chunk)
{
    switch (kind) {
    case Kind::DiscRecordingPercent:
        return ProgressParsers::recorderPercent(chunk);
    case Kind::XorrisoRecordPercent:
        return parseXorrisoRecord(chunk);
    }
    return std::nullopt;
}

std::optional<double> parse(Kind kind, const QByteArray &chunk)
{
    return parse(kind, QString::fromUtf8(chunk));
}

} // namespace ImageProgress
