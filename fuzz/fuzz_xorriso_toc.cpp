// xorriso -toc: XorrisoParsing::mediaProfile, mediaStatus and answers.
#include "FuzzSupport.h"
#include "drives/XorrisoParsing.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = Fuzz::text(data, size);
    const QString profile = XorrisoParsing::mediaProfile(text);
    const QString status = XorrisoParsing::mediaStatus(text);
    // Values of one line, trimmed; the profile without its qualifiers.
    for (const QString *value : {&profile, &status}) {
        FUZZ_CHECK(*value == value->trimmed());
        FUZZ_CHECK(!value->contains(QLatin1Char('\n')));
        FUZZ_CHECK(value->isEmpty() || text.contains(*value));
    }
    FUZZ_CHECK(!profile.contains(QLatin1Char(',')));
    if (!profile.isEmpty())
        FUZZ_CHECK(text.contains(QLatin1String("Media current:")));
    if (!status.isEmpty())
        FUZZ_CHECK(text.contains(QLatin1String("Media status :")));

    const MediaAnswers a = XorrisoParsing::answers(text);
    static const QStringList families{QStringLiteral("DVD"), QStringLiteral("CD"), QStringLiteral("BD"),
                                      QStringLiteral("Other")};
    FUZZ_CHECK(families.contains(a.family));
    // No medium: nothing else can be said of it.
    if (a.driveEmpty)
        FUZZ_CHECK(!a.oneTimeWritable && !a.reWritable && a.family == QLatin1String("Other"));
    FUZZ_CHECK(a.driveEmpty == (status.isEmpty() || status.startsWith(QLatin1String("is not present"))));
    // A family only from a profile that names it.
    if (a.family != QLatin1String("Other"))
        FUZZ_CHECK(profile.startsWith(a.family));
    if (a.oneTimeWritable)
        FUZZ_CHECK(status.contains(QLatin1String("is blank")) || status.contains(QLatin1String("is appendable")));
    return 0;
}
