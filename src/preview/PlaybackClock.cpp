#include "preview/PlaybackClock.h"

#include <cmath>

namespace PlaybackClock {

static QString format(qint64 whole, bool withHours)
{
    const qint64 h = whole / 3600;
    const qint64 m = (whole % 3600) / 60;
    const qint64 s = whole % 60;
    if (withHours || h > 0)
        return QStringLiteral("%1:%2:%3").arg(h).arg(m, 2, 10, QLatin1Char('0')).arg(s, 2, 10, QLatin1Char('0'));
    return QStringLiteral("%1:%2").arg(m).arg(s, 2, 10, QLatin1Char('0'));
}

static qint64 wholeSeconds(double seconds, bool rounded)
{
    if (!std::isfinite(seconds) || seconds <= 0.0)
        return 0;
    return qint64(rounded ? std::llround(seconds) : std::floor(seconds));
}

QString elapsed(double seconds, bool withHours)
{
    return format(wholeSeconds(seconds, false), withHours);
}

QString total(double seconds, bool withHours)
{
    return format(wholeSeconds(seconds, true), withHours);
}

QString text(double elapsedSeconds, double totalSeconds)
{
    const bool known = std::isfinite(totalSeconds) && totalSeconds > 0.0;
    const bool hours = (known && totalSeconds >= 3599.5) || elapsedSeconds >= 3600.0;
    const QString length = known ? total(totalSeconds, hours) : QStringLiteral("--:--");
    return elapsed(elapsedSeconds, hours) + QStringLiteral(" / ") + length;
}

} // namespace PlaybackClock
