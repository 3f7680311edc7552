// The size text of the lists: Measurements::sizeText.
#include <QRegularExpression>

#include "FuzzSupport.h"
#include "compilation/Measurements.h"

// The byte count a size text stands for, and its unit's position.
static double bytesOf(const QString &sizeText, int *unit)
{
    static const QStringList units{QStringLiteral("bytes"), QStringLiteral("KB"), QStringLiteral("MB"),
                                   QStringLiteral("GB"), QStringLiteral("TB")};
    static const QRegularExpression form(QStringLiteral("^(\\d+\\.\\d\\d) (bytes|KB|MB|GB|TB)$"));
    const QRegularExpressionMatch m = form.match(sizeText);
    FUZZ_CHECK(m.hasMatch());
    *unit = int(units.indexOf(m.captured(2)));
    return m.captured(1).toDouble() * std::pow(1024.0, *unit);
}

static void check(quint64 bytes)
{
    const QString text = Measurements::sizeText(bytes);
    int unit = 0;
    const double shown = bytesOf(text, &unit);
    const double scale = std::pow(1024.0, unit);
    // Exact up to 1024 bytes; beyond, within the rounding of two decimals.
    if (bytes < 1025) {
        FUZZ_CHECK(unit == 0 && shown == double(bytes));
    } else {
        FUZZ_CHECK(unit > 0);
        FUZZ_CHECK(std::fabs(shown - double(bytes)) <= 0.005 * scale + double(bytes) * 1e-12);
        const double figure = shown / scale;
        FUZZ_CHECK(figure >= 1.0);
        FUZZ_CHECK(figure <= 1024.0 || unit == 4);
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider provider(data, size);
    const quint64 bytes = provider.ConsumeIntegral<quint64>();
    const int shift = provider.ConsumeIntegralInRange<int>(0, 63);
    check(bytes);
    check(bytes >> shift);  // small figures as often as large ones
    // One byte more never reads smaller (beyond the rounding).
    const quint64 b = bytes >> shift;
    if (b < std::numeric_limits<quint64>::max()) {
        int u1 = 0, u2 = 0;
        const double now = bytesOf(Measurements::sizeText(b), &u1);
        const double next = bytesOf(Measurements::sizeText(b + 1), &u2);
        FUZZ_CHECK(next + 0.005 * std::pow(1024.0, u2) >= now - 0.005 * std::pow(1024.0, u1));
    }
    return 0;
}
