// drutil status: DrutilParsing::statusSearchText and answers.
#include "FuzzSupport.h"
#include "drives/DrutilParsing.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = Fuzz::text(data, size);
    const QString searched = DrutilParsing::statusSearchText(text);
    // The part looked at is the end of the text, from the start of a line.
    FUZZ_CHECK(text.endsWith(searched));
    const qsizetype start = text.size() - searched.size();
    FUZZ_CHECK(start == 0 || text.at(start - 1) == QLatin1Char('\n'));
    if (start > 0)
        FUZZ_CHECK(searched.contains(QLatin1String("Type:")));

    const MediaAnswers a = DrutilParsing::answers(text);
    static const QStringList families{QStringLiteral("DVD"), QStringLiteral("CD"), QStringLiteral("BD"),
                                      QStringLiteral("Other")};
    FUZZ_CHECK(families.contains(a.family));
    // Each answer comes from its own words in the part looked at.
    FUZZ_CHECK(a.driveEmpty == searched.contains(QLatin1String("No Media Inserted")));
    FUZZ_CHECK(a.oneTimeWritable == searched.contains(QLatin1String("overwritable")));
    FUZZ_CHECK(a.reWritable == searched.contains(QLatin1String("erasable")));
    FUZZ_CHECK(a.family == QLatin1String("Other") || searched.contains(a.family));
    return 0;
}
