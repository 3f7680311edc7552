// ffmpeg's "time=" reports cut by a read: the input in two pieces through the
// ChunkAssembler, read by ProgressParsers::transcoderPercent, against the input
// in one piece.
#include "FuzzSupport.h"
#include "toolrun/ProgressParsers.h"

// Where the reading does not depend on how the reports were cut: every marker
// is written "time=" (a later marker of a chunk is also found as "TIME=", a
// first one is not), and the 8 characters read after a marker stay on its line.
static bool cutDoesNotMatter(const QString &text)
{
    const QLatin1String marker("time=");
    if (text.count(marker, Qt::CaseInsensitive) != text.count(marker, Qt::CaseSensitive))
        return false;
    for (qsizetype at = text.indexOf(marker); at >= 0; at = text.indexOf(marker, at + 1)) {
        for (qsizetype i = at + 5; i < qMin(at + 13, text.size()); ++i) {
            if (Fuzz::isLineEnd(text.at(i)))
                return false;
        }
    }
    return true;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider provider(data, size);
    const qint64 duration = provider.ConsumeIntegralInRange<qint64>(0, 99 * 3600 + 99 * 60 + 99);
    const auto feeding = Fuzz::splitFeeding(data, size, provider);
    if (!feeding)
        return 0;
    const auto parse = [duration](const QString &chunk) {
        return ProgressParsers::transcoderPercent(chunk, duration);
    };
    Fuzz::forEachChunk(*feeding, [&](const QString &chunk) {
        if (const auto v = parse(chunk); v && duration > 0)
            FUZZ_CHECK(std::isfinite(*v) && *v >= 0.0f);
    });
    if (!cutDoesNotMatter(QString::fromUtf8(feeding->input)))
        return 0;
    // The last report of a chunk wins.
    Fuzz::checkLastReportWins(*feeding, parse);
    return 0;
}
