#pragma once
#include <QString>

// The player's clock text: elapsed and total time of the file, as
// "0:07 / 3:25", or "1:02:03 / 1:30:00" once the file runs an hour or more.
// A total that is not known yet (0, or a stream that does not say) reads
// "--:--".
namespace PlaybackClock {

// "m:ss", or "h:mm:ss" from an hour on (or when asked, to line up with a
// total of an hour or more). The elapsed time counts whole seconds gone
// (2.9 s is "0:02"); a length is rounded to the nearest second (a 2.94 s
// clip is "0:03").
QString elapsed(double seconds, bool withHours);
QString total(double seconds, bool withHours);

QString text(double elapsedSeconds, double totalSeconds);

} // namespace PlaybackClock
