// hdiutil's "DRStatusPercentCompleteKey:" reports: ProgressParsers::recorderPercent,
// recorderFractionText and leadingFloat.
#include "FuzzSupport.h"
#include "toolrun/ProgressParsers.h"

using namespace ProgressParsers;

FUZZ_QUIET_QT_MESSAGES

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = Fuzz::text(data, size);
    const QString fraction = recorderFractionText(text);
    const std::optional<double> percent = recorderPercent(text);

    // The four characters after the first key and its blank, when more than
    // five follow the key.
    const qsizetype key = text.indexOf(QLatin1String("DRStatusPercentCompleteKey:"));
    if (!fraction.isNull())
        FUZZ_CHECK(key >= 0 && key + 32 < text.size() && fraction == text.mid(key + 28, 4));
    else
        FUZZ_CHECK(key < 0 || key + 32 >= text.size());
    if (percent) {
        FUZZ_CHECK(!fraction.isNull());
        // Four characters of fraction: a finite figure, never above 100; hdiutil's
        // -1 ("no estimate yet") reads -100, which the bar shows as empty.
        FUZZ_CHECK(std::isfinite(*percent) && *percent <= 100.0);
        FUZZ_CHECK(*percent == double(leadingFloat(fraction) * 100.0f));
    }

    const float f = leadingFloat(text);
    FUZZ_CHECK(!std::isnan(f));
    return 0;
}
