// The batch probe's report: Measurements::durationTextsFromBatchReport and
// Return_Seconds_From_Duration_Str.
//
// The input chooses up to eight file names (any bytes: quotes, line breaks,
// whole fake "Input #N" and "Duration:" lines), a duration text for each and
// some metadata. The target writes the report ffmpeg would print for them and
// checks that every input gets back exactly its own duration, that a report
// cut short gives the first ones only, and that the rest of the input read as
// a report never yields more texts than inputs.
#include <fuzzer/FuzzedDataProvider.h>

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

// The eleven characters after "Duration:" as ffmpeg writes them (a blank,
// then ten of the kinds a duration holds), never a line break.
static QString durationText(FuzzedDataProvider &in)
{
    static const char kinds[] = "0123456789:.-+ N/A,";
    QString text(QLatin1Char(' '));
    for (int i = 1; i < 11; ++i)
        text += QLatin1Char(kinds[in.ConsumeIntegralInRange<int>(0, sizeof kinds - 2)]);
    return text;
}

static QString oneLine(QString text)
{
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    text.replace(QLatin1Char('\r'), QLatin1Char(' '));
    return text;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider in(data, size);
    const int count = in.ConsumeIntegralInRange<int>(0, 8);
    QStringList names;
    QStringList durations;
    QString report;
    for (int n = 0; n < count; ++n) {
        const QString name = Fuzz::text(in.ConsumeRandomLengthString(96));
        const QString duration = durationText(in);
        const QString metadata = oneLine(Fuzz::text(in.ConsumeRandomLengthString(48)));
        names << name;
        durations << duration;
        if (in.ConsumeBool())
            report += QStringLiteral("Guessed Channel Layout for Input Stream #%1.0 : mono\n").arg(n);
        report += QStringLiteral("Input #%1, mp3, from '%2':\n").arg(n).arg(nameAsPrinted(name));
        if (in.ConsumeBool())
            report += QStringLiteral("  Metadata:\n    title           : %1\n").arg(metadata);
        report += QStringLiteral("  Duration:%1, start: 0.025057, bitrate: 64 kb/s\n").arg(duration);
        report += QStringLiteral("  Stream #%1:0: Audio: mp3, 44100 Hz, mono, fltp, 64 kb/s\n").arg(n);
    }
    report += QStringLiteral("At least one output file must be specified\n");

    // Whole report: every input's own text, whatever the names hold.
    FUZZ_CHECK(durationTextsFromBatchReport(report, names) == durations);
    for (const QString &d : durations)
        checkSeconds(d);

    // Cut short (ffmpeg stopped at an input it could not open, or was
    // killed): the texts found are the first ones, in order.
    const qsizetype cut = in.ConsumeIntegralInRange<qsizetype>(0, report.size());
    const QStringList some = durationTextsFromBatchReport(report.left(cut), names);
    FUZZ_CHECK(some.size() <= durations.size());
    for (qsizetype i = 0; i < some.size(); ++i)
        FUZZ_CHECK(durations.at(i).startsWith(some.at(i)));

    // Whatever is left, read as a report of the same inputs.
    const QString rest = Fuzz::text(in.ConsumeRemainingBytesAsString());
    const QStringList found = durationTextsFromBatchReport(rest, names);
    FUZZ_CHECK(found.size() <= names.size());
    for (const QString &d : found) {
        FUZZ_CHECK(d.size() <= 11);
        checkSeconds(d);
    }
    for (qsizetype at = 0; at < qMin<qsizetype>(rest.size(), 48); ++at)
        checkSeconds(rest.mid(at, 11));
    return 0;
}
