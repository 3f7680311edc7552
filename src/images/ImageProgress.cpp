#include "images/ImageProgress.h"

#include <QRegularExpression>
#include <cmath>
#include <cstdlib>

namespace ImageProgress {

float leadingFloat(const QString &text)
{
    int i = 0;
    const int n = text.size();
    while (i < n && text.at(i).isSpace())
        ++i;
    const int start = i;
    if (i < n && (text.at(i) == QLatin1Char('+') || text.at(i) == QLatin1Char('-')))
        ++i;
    int digits = 0;
    while (i < n && text.at(i).unicode() >= '0' && text.at(i).unicode() <= '9') {
        ++i;
        ++digits;
    }
    if (i < n && text.at(i) == QLatin1Char('.')) {
        ++i;
        while (i < n && text.at(i).unicode() >= '0' && text.at(i).unicode() <= '9') {
            ++i;
            ++digits;
        }
    }
    if (digits == 0)
        return 0.0f;
    int end = i;
    // An exponent counts only when digits follow it.
    if (i < n && (text.at(i) == QLatin1Char('e') || text.at(i) == QLatin1Char('E'))) {
        int j = i + 1;
        if (j < n && (text.at(j) == QLatin1Char('+') || text.at(j) == QLatin1Char('-')))
            ++j;
        int expDigits = 0;
        while (j < n && text.at(j).unicode() >= '0' && text.at(j).unicode() <= '9') {
            ++j;
            ++expDigits;
        }
        if (expDigits > 0)
            end = j;
    }
    const QByteArray number = text.mid(start, end - start).toLatin1();
    return std::strtof(number.constData(), nullptr);
}

static std::optional<double> parseDiscRecording(const QString &text)
{
    static const QString key = QStringLiteral("DRStatusPercentCompleteKey:");
    if (text.isEmpty())
        return std::nullopt;
    const int at = text.indexOf(key);  // the first key only
    if (at < 0)
        return std::nullopt;
    const int end = at + key.size();
    if (!(end + 5 < text.size()))
        return std::nullopt;
    const float fraction = leadingFloat(text.mid(end + 1, 4));
    const float percent = fraction * 100.0f;
    if (!(100.0f >= percent))
        return std::nullopt;
    return double(percent);
}

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
        return parseDiscRecording(chunk);
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
