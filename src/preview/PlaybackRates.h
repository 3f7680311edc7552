#pragma once
#include <QString>

// The player's transport rules. A rate is a speed as a multiple of normal
// playback: 0 paused, 1 playing, 2/4/6 fast forward, -2/-4/-6 rewind.
namespace PlaybackRates {

// Below 2: 2; otherwise two more (2, 4, 6 ...).
double fastForward(double rate);
// Above -2: -2; otherwise two less (-2, -4, -6 ...).
double rewind(double rate);

// The play/pause button reads "Pause" only at exactly normal speed.
QString playPauseTitle(double rate);

// What the play/pause button does at this rate and position.
enum class PlayPauseAction { Pause, Play, RestartThenPlay };
PlayPauseAction playPauseAction(double rate, double currentTime, double duration);

// Where a rewind at `rate` (negative) that began at `startTime` seconds is
// after `elapsedSeconds`; never before 0.
double rewoundPosition(double startTime, double rate, double elapsedSeconds);

} // namespace PlaybackRates
