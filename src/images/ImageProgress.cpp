#include "images/ImageProgress.h"

#include <QRegularExpression>

#include "toolrun/ProgressParsers.h"

namespace ImageProgress {

static std::optional<double> parseXorrisoRecord(const QString &text)
{
    static const QRegularExpression report(QStringLiteral("(\\d+)\\s+of\\s+(\\d+)\\s+MB written"));
    std::optional<double> last;
    auto it = report.globalMatch(text);
    while (it.hasNext()) {
        const auto m = it.next();
        const double written = m.captured(1).toDouble();
        const double total = m.captured(2).toDouble();
        if (total <= 0.0)
            continue;
        const double percent = written * 100.0 / total;
        if (percent > 100.0)
            continue;
        last = percent;
    }
    return last;
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
