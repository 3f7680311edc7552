// hdiutil's "DRStatusPercentCompleteKey:" reports cut by a read: the input in
// two pieces through the ChunkAssembler, read by ProgressParsers::recorderPercent,
// against the input in one piece.
#include "FuzzSupport.h"
#include "toolrun/ProgressParsers.h"

static const QLatin1String kKey("DRStatusPercentCompleteKey:");

FUZZ_QUIET_QT_MESSAGES

// Where the reading does not depend on how the lines were grouped: the six
// characters the reader needs after a key stay on the key's line.
static bool keysStayOnTheirLines(const QString &text)
{
    for (qsizetype at = text.indexOf(kKey); at >= 0; at = text.indexOf(kKey, at + 1)) {
        const qsizetype end = at + kKey.size();
        for (qsizetype i = end; i < qMin(end + 6, text.size()); ++i) {
            if (Fuzz::isLineEnd(text.at(i)))
                return false;
        }
    }
    return true;
}

// Only the first key of a chunk counts: a chunk reads as its first line with a key.
static std::optional<double> firstKeyLineValue(const QString &chunk)
{
    for (const QString &line : Fuzz::lines(chunk)) {
        if (line.contains(kKey))
            return ProgressParsers::recorderPercent(line);
    }
    return std::nullopt;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider provider(data, size);
    const auto feeding = Fuzz::splitFeeding(data, size, provider);
    if (!feeding)
        return 0;
    const auto parse = [](const QString &chunk) { return ProgressParsers::recorderPercent(chunk); };
    Fuzz::forEachChunk(*feeding, [&](const QString &chunk) {
        if (const auto v = parse(chunk))
            FUZZ_CHECK(std::isfinite(*v) && *v <= 100.0);
    });
    const QString text = QString::fromUtf8(feeding->input);
    if (!keysStayOnTheirLines(text))
        return 0;
    Fuzz::forEachChunk(*feeding, [&](const QString &chunk) { FUZZ_CHECK(Fuzz::same(parse(chunk), firstKeyLineValue(chunk))); });
    // With more than one key, which one a chunk shows depends on the cut by design.
    if (text.count(kKey) <= 1)
        FUZZ_CHECK(Fuzz::same(Fuzz::lastValue(feeding->whole, parse), Fuzz::lastValue(feeding->split, parse)));
    return 0;
}
