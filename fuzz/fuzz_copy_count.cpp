// The copy count typed in answer to the duplication's question:
// Duplication::parseCopyCount and leadingInt.
#include "FuzzSupport.h"
#include "images/Duplication.h"

// The leading integer written out another way: digits kept as text, then
// compared with the int range.
static qint64 expected(const QString &text)
{
    qsizetype i = 0;
    while (i < text.size() && text.at(i).isSpace())
        ++i;
    bool negative = false;
    if (i < text.size() && (text.at(i) == QLatin1Char('+') || text.at(i) == QLatin1Char('-')))
        negative = text.at(i++) == QLatin1Char('-');
    QString digits;
    while (i < text.size() && text.at(i) >= QLatin1Char('0') && text.at(i) <= QLatin1Char('9'))
        digits += text.at(i++);
    while (digits.size() > 1 && digits.startsWith(QLatin1Char('0')))
        digits.remove(0, 1);
    if (digits.isEmpty())
        return 0;
    const qint64 value = digits.size() > 12 ? qint64(1) << 40 : digits.toLongLong();
    const qint64 signedValue = negative ? -value : value;
    return qBound(qint64(std::numeric_limits<int>::min()), signedValue, qint64(std::numeric_limits<int>::max()));
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider provider(data, size);
    const int previous = provider.ConsumeIntegral<int>();
    const QString answer = Fuzz::text(data, size);
    const int n = Duplication::leadingInt(answer);
    FUZZ_CHECK(qint64(n) == expected(answer));
    const int copies = Duplication::parseCopyCount(answer, previous);
    // At least one copy, or the count as it was.
    FUZZ_CHECK(copies == previous || copies >= 1);
    FUZZ_CHECK(copies == (n == 0 ? 1 : n > 0 ? n : previous));
    return 0;
}
