// The image burns' and disc copies' recorder reports cut by a read: the input
// in two pieces through the ChunkAssembler, read by ImageProgress::parse, against
// the input in one piece.
#include "FuzzSupport.h"
#include "images/ImageProgress.h"

FUZZ_QUIET_QT_MESSAGES

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using ImageProgress::Kind;
    FuzzedDataProvider provider(data, size);
    const auto feeding = Fuzz::splitFeeding(data, size, provider);
    if (!feeding)
        return 0;

    // xorriso: the last report that can be read wins, whatever the cut.
    const auto record = [](const QString &chunk) { return ImageProgress::parse(Kind::XorrisoRecordPercent, chunk); };
    // hdiutil: the tool runner's reader, first key of a chunk
    // (fuzz_recorder_progress_split holds its cut properties).
    const auto disc = [](const QString &chunk) { return ImageProgress::parse(Kind::DiscRecordingPercent, chunk); };
    Fuzz::forEachChunk(*feeding, [&](const QString &chunk) {
        if (const auto v = record(chunk))
            FUZZ_CHECK(Fuzz::isPercent(*v));
        if (const auto v = disc(chunk))
            FUZZ_CHECK(std::isfinite(*v) && *v <= 100.0);
    });
    Fuzz::checkLastReportWins(*feeding, record);
    return 0;
}
