// The probe's report: Measurements::durationTextFromProbe and
// Return_Seconds_From_Duration_Str.
#include <QRegularExpression>

#include "FuzzSupport.h"
#include "compilation/Measurements.h"

using namespace Measurements;

// Two characters a field: 99:99:99 at most.
static constexpr qint64 kLongest = 99 * 3600 + 99 * 60 + 99;

static void checkSeconds(const QString &durationText)
{
    const qint64 seconds = Return_Seconds_From_Duration_Str(durationText);
    // A playing time: never negative, and the sum of its fields cannot wrap.
    FUZZ_CHECK(seconds >= 0 && seconds <= kLongest);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = Fuzz::text(data, size);
    const QString duration = durationTextFromProbe(text);
    // The eleven characters after the first marker that opens a line (blanks
    // before it allowed), or none.
    static const QRegularExpression opening(QStringLiteral("(?:\\A|[\\r\\n])[ \\t]*Duration:(.)"),
                                            QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch m = opening.match(text);
    FUZZ_CHECK(duration.size() <= 11);
    if (m.hasMatch())
        FUZZ_CHECK(duration == text.mid(m.capturedStart(1), 11));
    else
        FUZZ_CHECK(duration.isEmpty());
    checkSeconds(duration);
    // Any eleven characters may stand after the marker.
    for (qsizetype at = 0; at < qMin<qsizetype>(text.size(), 48); ++at)
        checkSeconds(text.mid(at, 11));
    return 0;
}
