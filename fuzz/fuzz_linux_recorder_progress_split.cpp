// The Linux recorders' reports cut by a read: the input in two pieces through
// the ChunkAssembler, read by ProgressParsers::linuxRecorderPercent, against
// the input in one piece.
#include "FuzzSupport.h"
#include "toolrun/ProgressParsers.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider provider(data, size);
    const auto feeding = Fuzz::splitFeeding(data, size, provider);
    if (!feeding)
        return 0;
    const auto parse = [](const QString &chunk) { return ProgressParsers::linuxRecorderPercent(chunk); };
    Fuzz::forEachChunk(*feeding, [&](const QString &chunk) {
        if (const auto v = parse(chunk))
            FUZZ_CHECK(Fuzz::isPercent(*v));
    });
    // A report is one line and the last one that can be read wins.
    Fuzz::checkLastReportWins(*feeding, parse);
    return 0;
}
