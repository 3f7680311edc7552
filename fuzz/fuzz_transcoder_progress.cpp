// ffmpeg's "time=" reports: ProgressParsers::transcoderPercent,
// Return_Seconds_From_VOB_Duration_Str and leadingInteger.
#include "FuzzSupport.h"
#include "toolrun/ProgressParsers.h"

using namespace ProgressParsers;

// The longest a probe's duration reads (99:99:99).
static constexpr qint64 kLongestDuration = 99 * 3600 + 99 * 60 + 99;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider provider(data, size);
    const qint64 duration = provider.ConsumeIntegralInRange<qint64>(0, kLongestDuration);
    const QString text = Fuzz::text(data, size);

    const std::optional<float> percent = transcoderPercent(text, duration);
    if (percent) {
        FUZZ_CHECK(text.contains(QLatin1String("time=")));
        // Not clamped (a report past the duration goes beyond 100) and not
        // guarded against a duration of 0; otherwise a number, never negative.
        if (duration > 0)
            FUZZ_CHECK(std::isfinite(*percent) && *percent >= 0.0f);
        else
            FUZZ_CHECK(!std::isfinite(*percent));
    }
    // The only chunk that gives nothing but has a marker: the first marker
    // has fewer than 8 characters after it.
    const qsizetype first = text.indexOf(QLatin1String("time="));
    if (!percent)
        FUZZ_CHECK(first < 0 || first + 13 > text.size());

    // Two characters a field: the sum stays small, whatever the text.
    for (qsizetype at = 0; at < qMin<qsizetype>(text.size(), 64); ++at) {
        const qint64 seconds = Return_Seconds_From_VOB_Duration_Str(text.mid(at, 8));
        FUZZ_CHECK(seconds >= -(9 * 3600 + 9 * 60 + 9) && seconds <= kLongestDuration);
    }

    const qint64 n = leadingInteger(text);
    FUZZ_CHECK(n > std::numeric_limits<qint64>::min() && n < std::numeric_limits<qint64>::max());
    FUZZ_CHECK(!std::isnan(leadingFloat(text)));
    return 0;
}
