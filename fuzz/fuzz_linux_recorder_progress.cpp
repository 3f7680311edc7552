// The Linux recorders' reports (xorriso, xorriso -as cdrecord and -as mkisofs,
// cdrskin): ProgressParsers::linuxRecorderPercent.
#include "FuzzSupport.h"
#include "toolrun/ProgressParsers.h"

static void check(const QString &text)
{
    const std::optional<double> percent = ProgressParsers::linuxRecorderPercent(text);
    if (percent) {
        FUZZ_CHECK(Fuzz::isPercent(*percent));
        FUZZ_CHECK(text.contains(QLatin1Char('%')) || text.contains(QLatin1String("MB written")));
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider provider(data, size);
    const int times = provider.ConsumeIntegralInRange<int>(2, 200);
    const QString text = Fuzz::text(data, size);
    check(text);
    if (text.size() <= 2048)
        check(Fuzz::widenDigits(text, times));
    return 0;
}
