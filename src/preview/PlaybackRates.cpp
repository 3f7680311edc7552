#include "preview/PlaybackRates.h"

#include <QtGlobal>
#include <cmath>

namespace PlaybackRates {

double fastForward(double rate)
{
    return rate < 2.0 ? 2.0 : rate + 2.0;
}

double rewind(double rate)
{
    return rate > -2.0 ? -2.0 : rate - 2.0;
}

QString playPauseTitle(double rate)
{
    return rate == 1.0 ? QStringLiteral("Pause") : QStringLiteral("Play");
}

PlayPauseAction playPauseAction(double rate, double currentTime, double duration)
{
    if (rate == 1.0)
        return PlayPauseAction::Pause;
    // At the very end, playing starts over from the beginning.
    if (currentTime >= duration)
        return PlayPauseAction::RestartThenPlay;
    return PlayPauseAction::Play;
}

double rewoundPosition(double startTime, double rate, double elapsedSeconds)
{
    const double back = std::fabs(rate) * qMax(0.0, elapsedSeconds);
    return qMax(0.0, startTime - back);
}

} // namespace PlaybackRates
