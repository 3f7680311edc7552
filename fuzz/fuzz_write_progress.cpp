// The writing tools' reports with all their figures (xorriso's three kinds
// of write, cdrskin, hdiutil burn): WriteProgress::parseReports, and the
// readout the working sheet builds from them.
#include <QDateTime>

#include "FuzzSupport.h"
#include "toolrun/WriteProgress.h"
#include "toolrun/WriteReadout.h"

FUZZ_QUIET_QT_MESSAGES

static bool finiteOrNone(const std::optional<double> &v)
{
    return !v || std::isfinite(*v);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Fuzz::withWidenedDigits(data, size, [](const QByteArray &raw) {
        const QString text = QString::fromUtf8(raw);
        const QList<WriteReport> reports = WriteProgress::parseReports(text);
        WriteReadout readout;
        qint64 ms = 0;
        const QDateTime now(QDate(2026, 1, 1), QTime(12, 0));
        for (const WriteReport &r : reports) {
            FUZZ_CHECK(!r.percent || Fuzz::isPercent(*r.percent));
            FUZZ_CHECK(finiteOrNone(r.writtenMB) && finiteOrNone(r.totalMB) && finiteOrNone(r.speed));
            FUZZ_CHECK(!r.totalMB || *r.totalMB >= 0.0);
            FUZZ_CHECK(r.percent || r.runTotal);
            readout.add(r, ms += 250, now);
            FUZZ_CHECK(Fuzz::isPercent(readout.percent()));
            const WriteReadout::Texts t = readout.texts();
            FUZZ_CHECK(!readout.isDeterminate() || t.percent.endsWith(QLatin1Char('%')));
        }
    });
    return 0;
}
