// The image burns' and disc copies' recorder reports: ImageProgress::parse,
// both kinds, as text and as bytes.
#include "FuzzSupport.h"
#include "images/ImageProgress.h"

FUZZ_QUIET_QT_MESSAGES

static void check(const QByteArray &raw)
{
    using ImageProgress::Kind;
    const QString text = QString::fromUtf8(raw);

    // xorriso: a percentage for the bar, from one of its reports.
    const auto record = ImageProgress::parse(Kind::XorrisoRecordPercent, text);
    if (record) {
        FUZZ_CHECK(Fuzz::isPercent(*record));
        FUZZ_CHECK(text.contains(QLatin1String("MB written")) || text.contains(QLatin1String("Writing:"))
                   || text.contains(QLatin1String("% done")) || text.contains(QLatin1String("completed successfully")));
    }
    FUZZ_CHECK(Fuzz::same(record, ImageProgress::parse(Kind::XorrisoRecordPercent, raw)));

    // hdiutil: the recorder's fraction x 100, never above 100 (its -1, "no
    // estimate yet", reads -100 and leaves the bar empty).
    const auto disc = ImageProgress::parse(Kind::DiscRecordingPercent, text);
    if (disc) {
        FUZZ_CHECK(std::isfinite(*disc) && *disc <= 100.0);
        FUZZ_CHECK(text.contains(QLatin1String("DRStatusPercentCompleteKey:")));
    }
    FUZZ_CHECK(Fuzz::same(disc, ImageProgress::parse(Kind::DiscRecordingPercent, raw)));
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Fuzz::withWidenedDigits(data, size, check);
    return 0;
}
