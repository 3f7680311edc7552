// The room left on a medium: DrutilParsing::spaceFreeSectors ("Space Free:")
// and XorrisoParsing::mediaSpaceSectors ("Media space  : Ns").
#include "FuzzSupport.h"
#include "drives/DrutilParsing.h"
#include "drives/XorrisoParsing.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = Fuzz::text(data, size);
    const std::optional<qint64> drutil = DrutilParsing::spaceFreeSectors(text);
    if (drutil) {
        // A count, from its own line of the part the medium questions read.
        FUZZ_CHECK(*drutil >= 0);
        FUZZ_CHECK(DrutilParsing::statusSearchText(text).contains(QLatin1String("Space Free:")));
    }
    const std::optional<qint64> xorriso = XorrisoParsing::mediaSpaceSectors(text);
    if (xorriso) {
        FUZZ_CHECK(*xorriso >= 0);
        FUZZ_CHECK(text.contains(QLatin1String("Media space")));
        // The figure is printed as it is read.
        FUZZ_CHECK(text.contains(QString::number(*xorriso) + QLatin1Char('s')));
    }
    return 0;
}
