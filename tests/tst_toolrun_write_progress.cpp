// The writing tools' reports: one parser per format on single lines and on
// the recorded outputs, whole or cut anywhere by the reads; the rate
// estimator; and the readout the working sheet shows.
#include <QFile>
#include <cmath>

#include "images/ImageProgress.h"
#include "support/Files.h"
#include "support/TestMain.h"
#include "toolrun/ChunkAssembler.h"
#include "toolrun/WriteProgress.h"
#include "toolrun/WriteReadout.h"

using namespace WriteProgress;

// The reports of a whole output, read at once.
static QList<WriteReport> wholeReports(const QByteArray &bytes)
{
    ChunkAssembler a;
    QString text = a.take(bytes);
    text += a.flush();
    return parseReports(text);
}

// The reports as a reader gets them: the output cut in two at `at`, each
// piece through the assembler, each complete part parsed on its own.
static QList<WriteReport> cutReports(const QByteArray &bytes, qsizetype at)
{
    ChunkAssembler a;
    QList<WriteReport> out;
    out += parseReports(a.take(bytes.left(at)));
    out += parseReports(a.take(bytes.mid(at)));
    out += parseReports(a.flush());
    return out;
}

static QList<double> percents(const QList<WriteReport> &reports)
{
    QList<double> out;
    for (const WriteReport &r : reports)
        if (r.percent)
            out << std::round(*r.percent * 100.0) / 100.0;
    return out;
}

static QList<double> written(const QList<WriteReport> &reports)
{
    QList<double> out;
    for (const WriteReport &r : reports)
        if (r.writtenMB)
            out << *r.writtenMB;
    return out;
}

static WriteReport report(double percent, std::optional<double> writtenMB = {}, std::optional<double> totalMB = {},
                          std::optional<double> speed = {}, int track = 0)
{
    WriteReport r;
    r.percent = percent;
    r.writtenMB = writtenMB;
    r.totalMB = totalMB;
    r.speed = speed;
    r.track = track;
    return r;
}

static WriteReport runTotal(double mb)
{
    WriteReport r;
    r.totalMB = mb;
    r.runTotal = true;
    return r;
}

class TestToolrunWriteProgress : public QObject {
    Q_OBJECT
private slots:
    // ------------------------------------------------------------ one line

    void xorrisoWritingLine()
    {
        const auto first = xorrisoWriting(u"xorriso : UPDATE : Writing:       8192s   31.8%   fifo 100%  buf  50%");
        QVERIFY(first);
        QCOMPARE(*first->percent, 31.8);
        QCOMPARE(*first->writtenMB, 16.0);  // 8192 sectors of 2048 bytes
        QCOMPARE(std::round(*first->totalMB * 10) / 10, 50.3);
        QVERIFY(!first->speed);  // the first report has none
        QCOMPARE(first->track, 0);

        const auto later = xorrisoWriting(u"xorriso : UPDATE : Writing:      16384s   63.5%   fifo 100%  buf  50%   12.1xD ");
        QVERIFY(later);
        QCOMPARE(*later->speed, 12.1);
        QCOMPARE(*later->writtenMB, 32.0);
        QCOMPARE(*xorrisoWriting(u"Writing:        512s    5.1%   fifo 100%  buf  50%    4.2xC")->speed, 4.2);

        // Nothing written yet: no total can be worked out.
        const auto start = xorrisoWriting(u"Writing:          0s    0.0%   fifo   0%  buf   0%");
        QVERIFY(start);
        QCOMPARE(*start->percent, 0.0);
        QVERIFY(!start->totalMB);
    }

    void cdrecordLine()
    {
        const auto r = cdrecordWritten(u"xorriso : UPDATE :   11 of   50 MB written (fifo 74%) [buf  50%]   4.5x.");
        QVERIFY(r);
        QCOMPARE(*r, report(22.0, 11.0, 50.0, 4.5));

        const auto first = cdrecordWritten(u"xorriso : UPDATE :    0 of   50 MB written (fifo  0%) [buf  50%]");
        QVERIFY(first);
        QCOMPARE(*first, report(0.0, 0.0, 50.0));

        const auto track = cdrecordWritten(u"Track 02:    3 of   40 MB written (fifo 100%) [buf  50%]   4.2x.");
        QVERIFY(track);
        QCOMPARE(*track, report(7.5, 3.0, 40.0, 4.2, 2));

        // cdrskin's announcement of a track is no report.
        QVERIFY(!parseLine(u"Track 01: data    50 MB        "));
    }

    void cdrskinTotalSizeLine()
    {
        const auto r = cdrskinTotalSize(u"Total size:       50 MB (05:45.78) = 25784 sectors");
        QVERIFY(r);
        QCOMPARE(*r, runTotal(50.0));
        QVERIFY(!r->percent);
        QVERIFY(!cdrskinTotalSize(u"Total size:        0 MB (00:00.00) = 0 sectors"));
        QVERIFY(!cdrskinTotalSize(u"Lout start:       50 MB (05:47/78) = 25934 sectors"));
    }

    void mkisofsLine()
    {
        const auto plain = mkisofsDone(u"xorriso : UPDATE :  1.99% done");
        QVERIFY(plain);
        QCOMPARE(*plain->percent, 1.99);
        QVERIFY(!plain->finishAt);
        QVERIFY(!plain->writtenMB);

        const auto estimate = mkisofsDone(u"xorriso : UPDATE :  23.83% done, estimate finish Sun Nov 22 14:48:11 2026");
        QVERIFY(estimate);
        QCOMPARE(*estimate->percent, 23.83);
        QVERIFY(estimate->finishAt);
        QCOMPARE(*estimate->finishAt, QDateTime(QDate(2026, 11, 22), QTime(14, 48, 11)));
        // A day below 10 is padded with a blank.
        QCOMPARE(*mkisofsDone(u" 5.47% done, estimate finish Mon Nov  2 09:05:01 2026")->finishAt,
                 QDateTime(QDate(2026, 11, 2), QTime(9, 5, 1)));
        // An estimate that is no date leaves the percentage.
        const auto odd = mkisofsDone(u" 5.47% done, estimate finish soon");
        QVERIFY(odd);
        QVERIFY(!odd->finishAt);
    }

    void completedLine()
    {
        const auto r = xorrisoCompleted(u"Writing to 'stdio:/tmp/fixtures-work/c2.iso' completed successfully.");
        QVERIFY(r);
        QCOMPARE(*r, report(100.0));
        QVERIFY(!parseLine(u"Writing to 'stdio:/tmp/c2.iso' failed."));
    }

    void hdiutilLine()
    {
        QCOMPARE(std::round(*hdiutilPercent(u"DRStatusPercentCompleteKey: 0.05")->percent * 1000) / 1000, 5.0);
        QCOMPARE(std::round(*hdiutilPercent(u"DRStatusPercentCompleteKey: 0.1234568")->percent * 1000) / 1000, 12.346);
        QCOMPARE(*hdiutilPercent(u"DRStatusPercentCompleteKey: 1")->percent, 100.0);
        QCOMPARE(*hdiutilPercent(u"DRStatusPercentCompleteKey: 0")->percent, 0.0);
        QVERIFY(!hdiutilPercent(u"DRStatusPercentCompleteKey: -1"));  // no estimate yet
        QVERIFY(!hdiutilPercent(u"DRStatusPercentCompleteKey: 1.5"));
        QVERIFY(!hdiutilPercent(u"DRStatusStateKey: DRStatusStateTrackWrite"));
    }

    void oddFiguresAreNoReports()
    {
        const QString huge(309, QLatin1Char('9'));
        QVERIFY(!parseLine(u"   3 of    0 MB written"));
        QVERIFY(!parseLine(u"  60 of   50 MB written"));
        QVERIFY(!parseLine(QString(huge + " of " + huge + " MB written")));
        QVERIFY(!parseLine(QString("5 of " + huge + " MB written")));
        QVERIFY(!parseLine(QString(huge + "% done")));
        QVERIFY(!parseLine(u" 250% done"));
        QVERIFY(!parseLine(QString("Writing:   8192s   " + huge + "%")));
        QVERIFY(!parseLine(QString("Writing:   " + huge + "s   31.8%")));
        QVERIFY(!parseLine(u"Writing:   8192s  131.8%"));
        QVERIFY(!parseLine(u"xorriso : UPDATE :      17 files added in 1 seconds"));
        QVERIFY(!parseLine(u"Thank you for being patient. Working since 12 seconds."));
        QVERIFY(!parseLine(u""));
        // A report is one line: its halves are none.
        QVERIFY(parseReports(QStringLiteral("  11 of\n   50 MB written")).isEmpty());
        QVERIFY(parseReports(QStringLiteral("Writing:\r 8192s   31.8%")).isEmpty());
        QCOMPARE(parseReports(QStringLiteral("  11\tof\t50 MB written")).size(), 1);
    }

    // ---------------------------------------------------- recorded outputs

    void xorrisoCommitThrottled()
    {
        const QList<WriteReport> r = wholeReports(fixtureBytes("xorriso-commit-stdio-50mb-throttled-speed4d.txt"));
        QCOMPARE(percents(r), (QList<double>{31.8, 31.8, 31.8, 31.8, 63.5, 63.5, 63.5, 95.3, 95.3, 95.3, 100.0}));
        QCOMPARE(written(r), (QList<double>{16, 16, 16, 16, 32, 32, 32, 48, 48, 48}));
        QVERIFY(!r.first().speed);
        QCOMPARE(*r.at(1).speed, 0.0);
        QCOMPARE(*r.at(4).speed, 12.1);
        QCOMPARE(r.last(), report(100.0));
        const QList<WriteReport> synced = wholeReports(fixtureBytes("xorriso-commit-stdio-50mb-throttled-speed4d-sync1m.txt"));
        QVERIFY(synced.size() > 5);
        QCOMPARE(*synced.last().percent, 100.0);
        // An unthrottled write into a file is over before the first look.
        QCOMPARE(percents(wholeReports(fixtureBytes("xorriso-commit-stdio-50mb.txt"))), QList<double>{100.0});
    }

    void xorrisoAsCdrecordThrottled()
    {
        const QList<WriteReport> r = wholeReports(fixtureBytes("xorriso-as-cdrecord-v-stdio-50mb-throttled.txt"));
        QCOMPARE(written(r), (QList<double>{0, 5, 11, 16, 21, 27, 32, 37, 42, 48}));
        QCOMPARE(r.at(0), report(0.0, 0.0, 50.0));
        QCOMPARE(r.at(1), report(10.0, 5.0, 50.0, 4.2));
        QCOMPARE(r.at(2), report(22.0, 11.0, 50.0, 4.5));
        QCOMPARE(r.last(), report(100.0));
        QCOMPARE(r.size(), 11);
    }

    void cdrskinOutputs()
    {
        const QList<WriteReport> r = wholeReports(fixtureBytes("cdrskin-v-stdio-50mb-throttled-speed4-sync1m.stdout.txt"));
        QCOMPARE(r.size(), 51);
        QCOMPARE(r.first(), runTotal(50.0));
        QCOMPARE(r.at(1), report(2.0, 1.0, 50.0, 36.3, 1));
        QCOMPARE(r.at(2), report(4.0, 2.0, 50.0, 4.2, 1));
        QCOMPARE(r.last(), report(100.0, 50.0, 50.0, 4.2, 1));
        // Both channels in one pipe (another run of the same burn): the same MB figures.
        const QList<WriteReport> merged = wholeReports(fixtureBytes("cdrskin-v-stdio-50mb-throttled-speed4-sync1m.txt"));
        QCOMPARE(merged.size(), r.size());
        QCOMPARE(written(merged), written(r));
        QCOMPARE(written(wholeReports(fixtureBytes("cdrskin-v-stdio-50mb.stdout.txt"))),
                 (QList<double>{5, 9, 15, 18, 23, 29, 32, 38, 43, 48}));
        const QList<WriteReport> bd = wholeReports(fixtureBytes("cdrskin-v-burn-bdr-terminal-copy-1.5.6.txt"));
        QCOMPARE(bd, (QList<WriteReport>{runTotal(22514), report(100.0, 22514, 22514, 0.1, 1)}));
    }

    void mkisofsOutputs()
    {
        const QList<WriteReport> r = wholeReports(fixtureBytes("xorriso-as-mkisofs-JR-50mb-throttled.txt"));
        QCOMPARE(percents(r),
                 (QList<double>{1.99, 11.91, 23.83, 33.76, 43.69, 53.61, 65.53, 75.46, 85.39, 97.30, 100.0}));
        int estimates = 0;
        for (const WriteReport &one : r)
            estimates += one.finishAt ? 1 : 0;
        QCOMPARE(estimates, 7);
        QCOMPARE(*r.at(2).finishAt, QDateTime(QDate(2026, 11, 22), QTime(14, 48, 11)));
        QCOMPARE(wholeReports(fixtureBytes("xorriso-as-mkisofs-JR-4gb-unthrottled.txt")).size(), 20);
    }

    void blankingReportsNothing()
    {
        for (const char *name : {"xorriso-blank-all-stdio-written.txt", "xorriso-blank-fast-stdio-written.txt",
                                 "xorriso-blank-as_needed-stdio-written.txt",
                                 "xorriso-blank-as_needed-stdio-nonISO-closed.txt",
                                 "xorriso-blank-fast-stdio-already-blank.txt"})
            QVERIFY2(wholeReports(fixtureBytes(QLatin1String(name))).isEmpty(), name);
    }

    void hdiutilOutputs()
    {
        const QList<WriteReport> r = wholeReports(fixtureBytes("synthetic-hdiutil-burn-verbose-progress.txt"));
        QCOMPARE(percents(r), (QList<double>{0, 5, 12.35, 50, 99.99, 100, 25, 100}));  // "-1" is none
        for (const char *name : {"hdiutil-burn-dmg-success-2013.txt", "hdiutil-burn-iso-success-2023.txt",
                                 "hdiutil-burn-iso-success-german-locale-2012.txt",
                                 "hdiutil-burn-verbose-failure-2005.txt"})
            QVERIFY2(wholeReports(fixtureBytes(QLatin1String(name))).isEmpty(), name);
        // The image burn's kind reads the same lines.
        QCOMPARE(ImageProgress::reports(ImageProgress::Kind::DiscRecordingPercent,
                                        QString::fromUtf8(fixtureBytes("synthetic-hdiutil-burn-verbose-progress.txt"))),
                 r);
    }

    void cutAtEveryPositionGivesTheSameReports_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name :
             {"xorriso-commit-stdio-50mb-throttled-speed4d.txt", "xorriso-commit-stdio-50mb-throttled-speed4d-sync1m.txt",
              "xorriso-commit-stdio-50mb.txt", "xorriso-as-cdrecord-v-stdio-50mb-throttled.txt",
              "xorriso-as-cdrecord-v-stdio-50mb.txt", "cdrskin-v-stdio-50mb-throttled-speed4-sync1m.stdout.txt",
              "cdrskin-v-stdio-50mb-throttled-speed4-sync1m.txt", "cdrskin-v-stdio-50mb.stdout.txt",
              "cdrskin-v-burn-bdr-terminal-copy-1.5.6.txt", "xorriso-as-mkisofs-JR-50mb-throttled.txt",
              "xorriso-as-mkisofs-JR-50mb.txt", "xorriso-as-mkisofs-JR-4gb-unthrottled.txt",
              "xorriso-blank-all-stdio-written.txt", "synthetic-hdiutil-burn-verbose-progress.txt",
              "hdiutil-burn-dmg-success-2013.txt"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void cutAtEveryPositionGivesTheSameReports()
    {
        QFETCH(QString, name);
        const QByteArray bytes = fixtureBytes(name);
        const QList<WriteReport> whole = wholeReports(bytes);
        for (qsizetype at = 0; at <= bytes.size(); ++at) {
            const QList<WriteReport> cut = cutReports(bytes, at);
            if (cut != whole)
                QFAIL(qPrintable(QStringLiteral("cut at %1: %2 reports, whole %3").arg(at).arg(cut.size()).arg(whole.size())));
        }
    }

    void olderReadersAgree()
    {
        // The single-bar value of a chunk and the Linux recorders' reading
        // come from the same parsers.
        const QString cdrecord = QString::fromUtf8(fixtureBytes("xorriso-as-cdrecord-v-stdio-50mb-throttled.txt"));
        QCOMPARE(*ImageProgress::parse(ImageProgress::Kind::XorrisoRecordPercent, cdrecord), 100.0);
        QCOMPARE(*ProgressParsers::linuxRecorderPercent(cdrecord), 96.0);
        QCOMPARE(ImageProgress::reports(ImageProgress::Kind::XorrisoRecordPercent, cdrecord), parseReports(cdrecord));
    }

    // ------------------------------------------------------------ estimator

    void rateNeedsTwoReportsApart()
    {
        RateEstimator e(20000, 1500);
        QVERIFY(!e.perSecond());
        e.add(0, 0.0);
        QVERIFY(!e.perSecond());
        e.add(1000, 5.0);
        QVERIFY(!e.perSecond());  // too close together
        e.add(2000, 10.0);
        QCOMPARE(*e.perSecond(), 5.0);
        QCOMPARE(*e.secondsLeft(100.0), qint64(18));
        e.add(2500, 10.0);  // a report without progress slows the rate down
        QCOMPARE(*e.perSecond(), 4.0);
        QCOMPARE(*e.secondsLeft(100.0), qint64(23));  // 90 / 4, rounded up
    }

    void rateFollowsTheRecentReports()
    {
        RateEstimator e(10000, 1000);
        e.add(0, 0.0);
        e.add(1000, 50.0);  // a fast start (a drive's buffer filling)
        for (qint64 s = 2; s <= 30; ++s)
            e.add(s * 1000, 50.0 + double(s - 1));
        // Only the last ten seconds count: 1 % a second.
        QCOMPARE(*e.perSecond(), 1.0);
        QCOMPARE(*e.secondsLeft(100.0), qint64(21));
    }

    void rateStartsAgainWhenTheAmountGoesBack()
    {
        RateEstimator e(20000, 1000);
        e.add(0, 0.0);
        e.add(2000, 80.0);
        QCOMPARE(*e.perSecond(), 40.0);
        e.add(3000, 10.0);  // a second phase of the tool
        QVERIFY(!e.perSecond());
        e.add(5000, 20.0);
        QCOMPARE(*e.perSecond(), 5.0);
    }

    void aStalledWriteHasNoEstimate()
    {
        RateEstimator e(20000, 1000);
        e.add(0, 31.8);
        e.add(3000, 31.8);
        QVERIFY(!e.perSecond());
        QVERIFY(!e.secondsLeft(100.0));
        e.add(4000, 63.5);
        QVERIFY(e.secondsLeft(100.0));
        QCOMPARE(*e.secondsLeft(63.5), qint64(0));
    }

    // -------------------------------------------------------------- readout

    void timeLeftTexts()
    {
        QCOMPARE(WriteReadout::timeLeftText(std::nullopt), QStringLiteral("Estimating the time left…"));
        QCOMPARE(WriteReadout::timeLeftText(0), QStringLiteral("Finishing…"));
        QCOMPARE(WriteReadout::timeLeftText(1), QStringLiteral("About 1 second left"));
        QCOMPARE(WriteReadout::timeLeftText(45), QStringLiteral("About 45 seconds left"));
        QCOMPARE(WriteReadout::timeLeftText(75), QStringLiteral("About 1 minute left"));
        QCOMPARE(WriteReadout::timeLeftText(150), QStringLiteral("About 3 minutes left"));
        QCOMPARE(WriteReadout::timeLeftText(3700), QStringLiteral("About 1 h 02 min left"));
        QCOMPARE(WriteReadout::percentText(99.9), QStringLiteral("99%"));
        QCOMPARE(WriteReadout::amountText(16.0, 50.3), QStringLiteral("16 MB of 50 MB written"));
        QCOMPARE(WriteReadout::amountText(16.0, std::nullopt), QStringLiteral("16 MB written"));
        QCOMPARE(WriteReadout::amountText(std::nullopt, 50.0), QString());
    }

    void readoutOfARecording()
    {
        WriteReadout r;
        QVERIFY(!r.isDeterminate());
        QCOMPARE(r.texts().percent, QString());
        const QDateTime now(QDate(2026, 1, 1), QTime(12, 0));
        r.add(runTotal(50), 0, now);
        QVERIFY(!r.isDeterminate());  // a size is no progress yet
        r.add(report(0.0, 0.0, 50.0), 0, now);
        QVERIFY(r.isDeterminate());
        WriteReadout::Texts t = r.texts();
        QCOMPARE(t.percent, QStringLiteral("0%"));
        QCOMPARE(t.amount, QStringLiteral("0 MB of 50 MB written"));
        QCOMPARE(t.speed, QString());
        QCOMPARE(t.timeLeft, QStringLiteral("Estimating the time left…"));
        r.add(report(10.0, 5.0, 50.0, 4.2), 1000, now);
        r.add(report(20.0, 10.0, 50.0, 0.0), 2000, now);  // a look without movement keeps the speed
        t = r.texts();
        QCOMPARE(t.percent, QStringLiteral("20%"));
        QCOMPARE(t.amount, QStringLiteral("10 MB of 50 MB written"));
        QCOMPARE(t.speed, QStringLiteral("Speed: 4.2x"));
        QCOMPARE(t.timeLeft, QStringLiteral("About 8 seconds left"));
        QCOMPARE(*r.secondsLeft(), qint64(8));
        r.add(report(100.0), 3000, now);  // "completed successfully"
        t = r.texts();
        QCOMPARE(t.percent, QStringLiteral("100%"));
        QCOMPARE(t.amount, QStringLiteral("50 MB of 50 MB written"));
        QCOMPARE(t.timeLeft, QStringLiteral("Finishing…"));
    }

    void readoutWithoutSpeedWorksItOut()
    {
        WriteReadout r;
        const QDateTime now(QDate(2026, 1, 1), QTime(12, 0));
        const QList<WriteReport> native = wholeReports(fixtureBytes("xorriso-commit-stdio-50mb-throttled-speed4d.txt"));
        r.add(native.at(0), 0, now);
        QCOMPARE(r.texts().amount, QStringLiteral("16 MB of 50 MB written"));
        QCOMPARE(r.texts().speed, QString());  // the first report has no speed, and no rate is known
        WriteReport noSpeed = native.at(4);
        noSpeed.speed.reset();
        r.add(noSpeed, 2000, now);
        // 31.7 % of 50.4 MB in 2 s.
        QCOMPARE(r.texts().speed, QStringLiteral("Speed: 8.0 MB/s"));
    }

    void tracksAddUp()
    {
        const QDateTime now(QDate(2026, 1, 1), QTime(12, 0));
        for (bool announced : {true, false}) {
            WriteReadout r;
            if (announced)
                r.add(runTotal(90), 0, now);
            r.add(report(50.0, 25.0, 50.0, 4.0, 1), 1000, now);
            QCOMPARE(r.texts().amount, announced ? QStringLiteral("25 MB of 90 MB written")
                                                 : QStringLiteral("25 MB of 50 MB written"));
            r.add(report(100.0, 50.0, 50.0, 4.0, 1), 2000, now);
            r.add(report(25.0, 10.0, 40.0, 4.0, 2), 3000, now);
            QCOMPARE(r.texts().amount, QStringLiteral("60 MB of 90 MB written"));
            QCOMPARE(r.texts().percent, QStringLiteral("66%"));
            r.add(report(100.0, 40.0, 40.0, 4.0, 2), 4000, now);
            QCOMPARE(r.texts().amount, QStringLiteral("90 MB of 90 MB written"));
            QCOMPARE(r.texts().percent, QStringLiteral("100%"));
        }
    }

    void theToolsOwnEstimateComesFirst()
    {
        WriteReadout r;
        const QList<WriteReport> m = wholeReports(fixtureBytes("xorriso-as-mkisofs-JR-50mb-throttled.txt"));
        const QDateTime now(QDate(2026, 11, 22), QTime(14, 48, 0));
        r.add(m.at(0), 0, now);
        QCOMPARE(r.texts().timeLeft, QStringLiteral("Estimating the time left…"));
        r.add(m.at(2), 500, now);  // "estimate finish Sun Nov 22 14:48:11 2026"
        WriteReadout::Texts t = r.texts();
        QCOMPARE(t.percent, QStringLiteral("23%"));
        QCOMPARE(t.amount, QString());  // mkisofs says no MB
        QCOMPARE(t.timeLeft, QStringLiteral("About 11 seconds left"));
        // An estimate already past is "finishing".
        r.add(m.at(3), 600, now.addSecs(20));
        QCOMPARE(r.texts().timeLeft, QStringLiteral("Finishing…"));
    }
};

TAMBLO_TEST_MAIN(TestToolrunWriteProgress)
#include "tst_toolrun_write_progress.moc"
