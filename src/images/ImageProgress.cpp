#include "images/ImageProgress.h"

#include <QRegularExpression>
#include <cmath>

#include "toolrun/ProgressParsers.h"

namespace ImageProgress {

static std::optional<double> parseXorrisoRecord(const QString &text)
{
    // One line a report: blanks and tabs only between its words.
    static const QRegularExpression report(QStringLiteral("(\\d+)[ \\t]+of[ \\t]+(\\d+)[ \\t]+MB written"));
    std::optional<double> last;
    auto it = report.globalMatch(text);
    while (it.hasNext()) {
        const auto m = it.next();
        const double written = m.captured(1).toDouble();
        const double total = m.captured(2).toDouble();
        // A figure too long for a double reads as infinity: not a report.
        if (!std::isfinite(total) || total <= 0.0)
            continue;
        const double percent = written * 100.0 / total;
        if (!std::isfinite(percent) || percent > 100.0)
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
