// The image burns' and disc copies' recorder reports cut by a read: the input
// in two pieces through the ChunkAssembler, read by ImageProgress::parse, against
// the input in one piece.
#include <QtGlobal>

#include "FuzzSupport.h"
#include "images/ImageProgress.h"

static void quiet(QtMsgType, const QMessageLogContext &, const QString &) {}

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    qInstallMessageHandler(quiet);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using ImageProgress::Kind;
    FuzzedDataProvider provider(data, size);
    const auto feeding = Fuzz::splitFeeding(data, size, provider);
    if (!feeding)
        return 0;

    // xorriso -as cdrecord: the last report that can be read wins, whatever the cut.
    const auto record = [](const QString &chunk) { return ImageProgress::parse(Kind::XorrisoRecordPercent, chunk); };
    for (const auto *chunks : {&feeding->whole, &feeding->split}) {
        for (const QString &chunk : *chunks) {
            if (const auto v = record(chunk))
                FUZZ_CHECK(Fuzz::isPercent(*v));
            FUZZ_CHECK(Fuzz::same(record(chunk), Fuzz::lastLineValue(chunk, record)));
        }
    }
    FUZZ_CHECK(Fuzz::same(Fuzz::lastValue(feeding->whole, record), Fuzz::lastValue(feeding->split, record)));

    // hdiutil: the same reader as the tool runner's, first key of a chunk
    // (fuzz_recorder_progress_split holds its cut properties).
    const auto disc = [](const QString &chunk) { return ImageProgress::parse(Kind::DiscRecordingPercent, chunk); };
    for (const auto *chunks : {&feeding->whole, &feeding->split}) {
        for (const QString &chunk : *chunks) {
            if (const auto v = disc(chunk))
                FUZZ_CHECK(std::isfinite(*v) && *v <= 100.0);
        }
    }
    return 0;
}
