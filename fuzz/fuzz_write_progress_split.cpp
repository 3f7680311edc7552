// The writing tools' reports cut by a read: the input in two pieces through
// the ChunkAssembler, read by WriteProgress::parseReports, against the input
// in one piece: the same reports in the same order.
#include "FuzzSupport.h"
#include "toolrun/WriteProgress.h"

FUZZ_QUIET_QT_MESSAGES

static QList<WriteReport> allReports(const std::vector<QString> &chunks)
{
    QList<WriteReport> out;
    for (const QString &c : chunks)
        out += WriteProgress::parseReports(c);
    return out;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider provider(data, size);
    const auto feeding = Fuzz::splitFeeding(data, size, provider);
    if (!feeding)
        return 0;
    FUZZ_CHECK(allReports(feeding->whole) == allReports(feeding->split));
    return 0;
}
