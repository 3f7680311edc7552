// The Linux recorders' reports (xorriso, xorriso -as cdrecord and -as mkisofs,
// cdrskin): ProgressParsers::linuxRecorderPercent.
#include "FuzzSupport.h"
#include "toolrun/ProgressParsers.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Fuzz::withWidenedDigits(data, size, [](const QByteArray &raw) {
        const QString text = QString::fromUtf8(raw);
        const std::optional<double> percent = ProgressParsers::linuxRecorderPercent(text);
        if (percent) {
            FUZZ_CHECK(Fuzz::isPercent(*percent));
            FUZZ_CHECK(text.contains(QLatin1Char('%')) || text.contains(QLatin1String("MB written")));
        }
    });
    return 0;
}
