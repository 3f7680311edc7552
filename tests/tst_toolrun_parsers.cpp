#include <QFile>
#include <QRandomGenerator>
#include <cmath>

#include "support/Files.h"
#include "support/TestMain.h"
#include "toolrun/ChunkAssembler.h"
#include "toolrun/ProgressParsers.h"

using namespace ProgressParsers;

// Every report line of a text, parsed on its own.
static QList<float> lineValues(const QByteArray &bytes, qint64 duration)
{
    QList<float> out;
    const QString text = QString::fromUtf8(bytes);
    for (const QString &line : text.split(QRegularExpression(QStringLiteral("[\r\n]")))) {
        if (const auto v = transcoderPercent(line, duration))
            out << *v;
    }
    return out;
}

// Feeds the pieces through an assembler as a reader would receive them.
static QList<float> fedValues(const QList<QByteArray> &pieces, qint64 duration)
{
    ChunkAssembler assembler;
    QList<float> out;
    for (const QByteArray &piece : pieces) {
        if (const auto v = transcoderPercent(assembler.take(piece), duration))
            out << *v;
    }
    if (const auto v = transcoderPercent(assembler.flush(), duration))
        out << *v;
    return out;
}

class TestToolrunParsers : public QObject {
    Q_OBJECT
private slots:
    void secondsFromDuration_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qint64>("seconds");
        QTest::newRow("01:02:03") << QStringLiteral("01:02:03") << qint64(3723);
        QTest::newRow("zero") << QStringLiteral("00:00:00") << qint64(0);
        QTest::newRow("largest") << QStringLiteral("99:59:59") << qint64(99 * 3600 + 59 * 60 + 59);
        QTest::newRow("separators not checked") << QStringLiteral("01-02x03") << qint64(3723);
        QTest::newRow("leading blank") << QStringLiteral(" 1:02:03") << qint64(3723);
        QTest::newRow("digit then colon") << QStringLiteral("1::2::3:") << qint64(3600 + 120 + 3);
        QTest::newRow("N/A report") << QStringLiteral("N/A bitr") << qint64(0);
        // The 8 characters after "time=" of a report from before the output
        // header exists: "-5" hours, "70" minutes, "4:" seconds.
        QTest::newRow("negative hours") << QStringLiteral("-577014:") << qint64(-5 * 3600 + 70 * 60 + 4);
        QTest::newRow("short text") << QStringLiteral("01") << qint64(3600);
        QTest::newRow("empty") << QString() << qint64(0);
    }
    void secondsFromDuration()
    {
        QFETCH(QString, text);
        QFETCH(qint64, seconds);
        QCOMPARE(Return_Seconds_From_VOB_Duration_Str(text), seconds);
    }

    void leadingNumbers()
    {
        QCOMPARE(leadingInteger(QStringLiteral("  42abc")), qint64(42));
        QCOMPARE(leadingInteger(QStringLiteral("+7")), qint64(7));
        QCOMPARE(leadingInteger(QStringLiteral("x9")), qint64(0));
        QCOMPARE(leadingFloat(QStringLiteral("0.45")), 0.45f);
        QCOMPARE(leadingFloat(QStringLiteral(" 0.5x")), 0.5f);
        QCOMPARE(leadingFloat(QStringLiteral(".5")), 0.5f);
        QCOMPARE(leadingFloat(QStringLiteral("1e2")), 100.0f);
        QCOMPARE(leadingFloat(QStringLiteral("1e\nD")), 1.0f);
        QCOMPARE(leadingFloat(QStringLiteral("-1\nD")), -1.0f);
        QCOMPARE(leadingFloat(QStringLiteral("-.")), 0.0f);
        QCOMPARE(leadingFloat(QStringLiteral("nan")), 0.0f);
        QCOMPARE(leadingFloat(QString()), 0.0f);
    }

    void halfOfA130SecondFile()
    {
        const auto v = transcoderPercent(QStringLiteral("size=  10kB time=00:01:05.20 bitrate=1.0kbits/s"), 130);
        QVERIFY(v.has_value());
        QCOMPARE(*v, 50.0f);
    }

    void laterReportWins()
    {
        const auto v = transcoderPercent(
            QStringLiteral("time=00:00:10.00 bitrate=1\rsize=2 time=00:00:30.00 bitrate=2\r"), 60);
        QVERIFY(v.has_value());
        QCOMPARE(*v, 50.0f);
    }

    void cutReportUsesTheEarlierOne()
    {
        const auto v = transcoderPercent(QStringLiteral("time=00:00:15.00 bitrate=1\rsize=2 time=00:0"), 60);
        QVERIFY(v.has_value());
        QCOMPARE(*v, 25.0f);
    }

    void cutReportAloneGivesNothing()
    {
        QVERIFY(!transcoderPercent(QStringLiteral("size=2 time=00:0"), 60).has_value());
        QVERIFY(!transcoderPercent(QStringLiteral("time=00:00:1"), 60).has_value());
    }

    void exactlyEightCharactersAreEnough()
    {
        const auto v = transcoderPercent(QStringLiteral("time=00:00:30"), 60);
        QVERIFY(v.has_value());
        QCOMPARE(*v, 50.0f);
    }

    void markerCase()
    {
        // The first marker is looked for with case...
        auto v = transcoderPercent(QStringLiteral("TIME=00:00:06.00 x time=00:00:12.00 y"), 60);
        QVERIFY(v.has_value());
        QCOMPARE(*v, 20.0f);
        QVERIFY(!transcoderPercent(QStringLiteral("TIME=00:00:06.00 bitrate"), 60).has_value());
        // ...the later ones without.
        v = transcoderPercent(QStringLiteral("time=00:00:06.00 x TIME=00:00:12.00 y"), 60);
        QVERIFY(v.has_value());
        QCOMPARE(*v, 20.0f);
    }

    void noMarkerNoValue()
    {
        QVERIFY(!transcoderPercent(QString(), 60).has_value());
        QVERIFY(!transcoderPercent(QStringLiteral("Press [q] to stop, [?] for help\n"), 60).has_value());
    }

    void noClamp()
    {
        const auto v = transcoderPercent(QStringLiteral("time=00:03:20.00 bitrate"), 100);
        QVERIFY(v.has_value());
        QCOMPARE(*v, 200.0f);
    }

    void zeroDurationDividesByZero()
    {
        auto v = transcoderPercent(QStringLiteral("time=00:00:05.00 bitrate"), 0);
        QVERIFY(v.has_value());
        QVERIFY(std::isinf(*v));
        v = transcoderPercent(QStringLiteral("time=00:00:00.00 bitrate"), 0);
        QVERIFY(v.has_value());
        QVERIFY(std::isnan(*v));
    }

    void negativeTimeGoesThroughUnsigned()
    {
        const QByteArray bytes = fixtureBytes("ffmpeg-progress-negative-time-before-header-2020-excerpt.txt");
        const QString text = QString::fromUtf8(bytes);
        const qsizetype at = text.indexOf(QStringLiteral("time=-577014"));
        QVERIFY(at > 0);
        const QString report = text.mid(at, text.indexOf(QLatin1Char('\r'), at) - at);
        const auto v = transcoderPercent(report, 5);
        QVERIFY(v.has_value());
        const qint64 seconds = -5 * 3600 + 70 * 60 + 4;
        const float expected = float(quint64(seconds)) * 100.0f / 5.0f;
        QCOMPARE(*v, expected);
        QVERIFY(*v > 1e18f);
    }

    void notAvailableTimeReadsAsZero()
    {
        const QByteArray bytes = fixtureBytes("ffmpeg-progress-time-NA-ffmpeg6.1-excerpt.txt");
        const QString first = QString::fromUtf8(bytes).section(QLatin1Char('\n'), 0, 0);
        QVERIFY(first.contains(QStringLiteral("time=N/A")));
        const auto v = transcoderPercent(first, 4);
        QVERIFY(v.has_value());
        QCOMPARE(*v, 0.0f);
        // The whole excerpt: its last report, 3 s of 4.
        const auto last = transcoderPercent(QString::fromUtf8(bytes), 4);
        QVERIFY(last.has_value());
        QCOMPARE(*last, 75.0f);
    }

    void fixturesWhole_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<qint64>("duration");
        QTest::addColumn<QList<float>>("perLine");
        QTest::newRow("10 min mp3 to wav") << QStringLiteral("ffmpeg-transcode-mp3-10min-to-wav.txt") << qint64(600)
                                           << QList<float>{0.0f, 408.0f * 100.0f / 600.0f, 100.0f};
        QTest::newRow("mp3 to wav") << QStringLiteral("ffmpeg-transcode-mp3-to-wav.txt") << qint64(30)
                                    << QList<float>{0.0f, 100.0f};
        QTest::newRow("mp4 to pal dvd") << QStringLiteral("ffmpeg-transcode-mp4-to-pal-dvd.txt") << qint64(60)
                                        << QList<float>{0.0f, 25.0f, 50.0f, 46.0f * 100.0f / 60.0f, 100.0f};
        QTest::newRow("refused overwrite") << QStringLiteral("ffmpeg-transcode-output-exists-no-stdin.txt")
                                           << qint64(30) << QList<float>{};
    }
    void fixturesWhole()
    {
        QFETCH(QString, name);
        QFETCH(qint64, duration);
        QFETCH(QList<float>, perLine);
        const QByteArray bytes = fixtureBytes(name.toLatin1().constData());
        QCOMPARE(lineValues(bytes, duration), perLine);
        const auto whole = transcoderPercent(QString::fromUtf8(bytes), duration);
        QCOMPARE(whole.has_value(), !perLine.isEmpty());
        if (whole)
            QCOMPARE(*whole, perLine.last());
    }

    void splitAtEveryPosition_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<qint64>("duration");
        QTest::newRow("10 min") << QStringLiteral("ffmpeg-transcode-mp3-10min-to-wav.txt") << qint64(600);
        QTest::newRow("pal dvd") << QStringLiteral("ffmpeg-transcode-mp4-to-pal-dvd.txt") << qint64(60);
        QTest::newRow("crlf 2020") << QStringLiteral("ffmpeg-progress-negative-time-before-header-2020-excerpt.txt")
                                   << qint64(5);
    }
    void splitAtEveryPosition()
    {
        QFETCH(QString, name);
        QFETCH(qint64, duration);
        const QByteArray bytes = fixtureBytes(name.toLatin1().constData());
        const QList<float> lines = lineValues(bytes, duration);
        QVERIFY(!lines.isEmpty());
        for (qsizetype k = 0; k <= bytes.size(); ++k) {
            const QList<float> got = fedValues({bytes.left(k), bytes.mid(k)}, duration);
            QVERIFY2(!got.isEmpty(), qPrintable(QStringLiteral("split at %1").arg(k)));
            QVERIFY2(got.last() == lines.last(), qPrintable(QStringLiteral("split at %1").arg(k)));
            for (float v : got)
                QVERIFY2(lines.contains(v), qPrintable(QStringLiteral("split at %1: %2").arg(k).arg(v)));
        }
    }

    void byteByByte()
    {
        const QByteArray bytes = fixtureBytes("ffmpeg-transcode-mp3-10min-to-wav.txt");
        QList<QByteArray> pieces;
        for (char c : bytes)
            pieces << QByteArray(1, c);
        // Every report arrives whole, one at a time.
        QCOMPARE(fedValues(pieces, 600), lineValues(bytes, 600));
    }

    void randomThreeWaySplits()
    {
        const QByteArray bytes = fixtureBytes("ffmpeg-transcode-mp4-to-pal-dvd.txt");
        const QList<float> lines = lineValues(bytes, 60);
        QRandomGenerator rng(20240611);
        for (int round = 0; round < 300; ++round) {
            qsizetype a = rng.bounded(int(bytes.size() + 1));
            qsizetype b = rng.bounded(int(bytes.size() + 1));
            if (a > b)
                std::swap(a, b);
            const QList<float> got = fedValues({bytes.left(a), QByteArray(), bytes.mid(a, b - a), bytes.mid(b)}, 60);
            QVERIFY(!got.isEmpty());
            QCOMPARE(got.last(), lines.last());
        }
    }

    void withoutAssemblingACutReportIsLost()
    {
        // What the assembler is for: a read ending inside the last report.
        const QByteArray bytes = fixtureBytes("ffmpeg-transcode-mp3-10min-to-wav.txt");
        const qsizetype cut = bytes.lastIndexOf("time=00:10:0") + int(strlen("time=00:10:0"));
        const auto first = transcoderPercent(QString::fromUtf8(bytes.left(cut)), 600);
        const auto second = transcoderPercent(QString::fromUtf8(bytes.mid(cut)), 600);
        QVERIFY(first.has_value());
        QCOMPARE(*first, 68.0f);
        QVERIFY(!second.has_value());
        QCOMPARE(fedValues({bytes.left(cut), bytes.mid(cut)}, 600).last(), 100.0f);
    }

    void carriageReturnsOnly()
    {
        ChunkAssembler a;
        QCOMPARE(a.take("time=00:00:01.00 x\rtime=00:00:0"), QStringLiteral("time=00:00:01.00 x\r"));
        QVERIFY(a.hasTail());
        QCOMPARE(a.take("2.00 y\r"), QStringLiteral("time=00:00:02.00 y\r"));
        QVERIFY(!a.hasTail());
        QCOMPARE(a.take(QByteArray()), QString());
        QCOMPARE(a.flush(), QString());
    }

    void tailIsNotHeldForever()
    {
        ChunkAssembler a;
        const QByteArray endless(ChunkAssembler::MaxTail + 10, 'x');
        QCOMPARE(a.take(endless).size(), endless.size());
        QVERIFY(!a.hasTail());
    }

    void invalidUtf8()
    {
        const QByteArray good("size= 1kB time=00:00:30.00 bitrate=1\r");
        const QByteArray junk("\xff\xfe\xc3\x28\xa0\xa1\xf0\x28\x8c\x28", 10);
        for (qsizetype k = 0; k <= good.size(); ++k) {
            QByteArray bytes = good;
            bytes.insert(k, junk);
            const QString text = ChunkAssembler().take(bytes);
            // Junk inside the report may eat it; nothing may crash.
            const auto v = transcoderPercent(text, 60);
            if (k <= good.indexOf("time=") || k >= good.indexOf(" bitrate"))
                QVERIFY2(v.has_value() && *v == 50.0f, qPrintable(QString::number(k)));
        }
        QVERIFY(!transcoderPercent(QString::fromUtf8(junk), 60).has_value());
        QVERIFY(!recorderPercent(QString::fromUtf8(junk)).has_value());
        QVERIFY(!linuxRecorderPercent(QString::fromUtf8(junk)).has_value());
    }

    void multiByteCharacterSplitAcrossReads()
    {
        const QByteArray bytes = QStringLiteral("Ausgabe \u00e9t\u00e9 time=00:00:30.00 \u2026\r").toUtf8();
        for (qsizetype k = 0; k <= bytes.size(); ++k) {
            ChunkAssembler a;
            QString text = a.take(bytes.left(k));
            text += a.take(bytes.mid(k));
            QCOMPARE(text, QString::fromUtf8(bytes));
        }
    }

    // The disk image tool's key.

    void recorderFraction()
    {
        QTest::ignoreMessage(QtInfoMsg, "0.45");
        const auto v = recorderPercent(QStringLiteral("DRStatusPercentCompleteKey: 0.45\nDRStatusStateKey: x"));
        QVERIFY(v.has_value());
        QCOMPARE(*v, double(0.45f * 100.0f));
        QVERIFY(std::fabs(*v - 45.0) < 1e-4);
    }

    void recorderKeyAtTheVeryEnd()
    {
        QVERIFY(!recorderPercent(QStringLiteral("DRStatusPercentCompleteKey: 1.00")).has_value());
        QVERIFY(!recorderPercent(QStringLiteral("xx DRStatusPercentCompleteKey: 0.5")).has_value());
        QTest::ignoreMessage(QtInfoMsg, "1.00");
        const auto v = recorderPercent(QStringLiteral("DRStatusPercentCompleteKey: 1.00\n"));
        QVERIFY(v.has_value());
        QCOMPARE(*v, 100.0);
    }

    void recorderAboveHundredDropped()
    {
        QTest::ignoreMessage(QtInfoMsg, "1.50");
        QVERIFY(!recorderPercent(QStringLiteral("DRStatusPercentCompleteKey: 1.50\n")).has_value());
        QTest::ignoreMessage(QtInfoMsg, "1e10");
        QVERIFY(!recorderPercent(QStringLiteral("DRStatusPercentCompleteKey: 1e10\n")).has_value());
    }

    void recorderOnlyFirstKeyCounts()
    {
        QTest::ignoreMessage(QtInfoMsg, "0.20");
        const auto v = recorderPercent(
            QStringLiteral("DRStatusPercentCompleteKey: 0.20\nDRStatusPercentCompleteKey: 0.90\n"));
        QVERIFY(v.has_value());
        QVERIFY(std::fabs(*v - 20.0) < 1e-4);
        // The first key without room: the later one is not looked at.
        QVERIFY(!recorderPercent(QStringLiteral("DRStatusPercentCompleteKey: 0")).has_value());
        QVERIFY(!recorderPercent(QStringLiteral("drstatuspercentcompletekey: 0.50\n")).has_value());
    }

    void recorderFixtureLineByLine()
    {
        const QString text = QString::fromUtf8(fixtureBytes("synthetic-hdiutil-burn-verbose-progress.txt"));
        QList<double> got;
        QStringList logged;
        const QStringList lines = text.split(QLatin1Char('\n'));
        // Each key line with the line end and the start of the next line, as
        // one read of the tool's output would hold it.
        for (int i = 0; i + 1 < lines.size(); ++i) {
            const QString chunk = lines.at(i) + QLatin1Char('\n') + lines.at(i + 1);
            if (!lines.at(i).startsWith(QStringLiteral("DRStatusPercentCompleteKey")))
                continue;
            const QString fraction = recorderFractionText(chunk);
            logged << fraction;
            QTest::ignoreMessage(QtInfoMsg, qPrintable(fraction));
            if (const auto v = recorderPercent(chunk))
                got << std::round(*v * 100.0) / 100.0;
        }
        QCOMPARE(logged, (QStringList{QStringLiteral("-1\nO"), QStringLiteral("0\nDR"), QStringLiteral("0.05"),
                                      QStringLiteral("0.12"), QStringLiteral("0.5\n"), QStringLiteral("0.99"),
                                      QStringLiteral("1\nVe"), QStringLiteral("0.25"), QStringLiteral("1\nBu")}));
        QCOMPARE(got, (QList<double>{-100.0, 0.0, 5.0, 12.0, 50.0, 99.0, 100.0, 25.0, 100.0}));
    }

    // Linux recorders.

    void xorrisoNative()
    {
        const QByteArray bytes = fixtureBytes("xorriso-commit-stdio-50mb-throttled-speed4d.txt");
        QList<double> perLine;
        for (const QString &line : QString::fromUtf8(bytes).split(QLatin1Char('\n')))
            if (const auto v = linuxRecorderPercent(line))
                perLine << *v;
        QCOMPARE(perLine.first(), 31.8);
        QCOMPARE(perLine.last(), 95.3);
        QCOMPARE(perLine.size(), 10);
        QCOMPARE(*linuxRecorderPercent(QString::fromUtf8(bytes)), 95.3);
    }

    void xorrisoAsCdrecordAndCdrskin()
    {
        QCOMPARE(*linuxRecorderPercent(QString::fromUtf8(fixtureBytes("xorriso-as-cdrecord-v-stdio-50mb-throttled.txt"))),
                 48.0 * 100.0 / 50.0);
        const QByteArray cdrskin = fixtureBytes("cdrskin-v-stdio-50mb-throttled-speed4-sync1m.stdout.txt");
        QCOMPARE(*linuxRecorderPercent(QString::fromUtf8(cdrskin)), 100.0);
        // Fed in pieces, '\r' separated: rising figures only.
        ChunkAssembler a;
        QList<double> got;
        for (qsizetype at = 0; at < cdrskin.size(); at += 37)
            if (const auto v = linuxRecorderPercent(a.take(cdrskin.mid(at, 37))))
                got << *v;
        QVERIFY(got.size() > 10);
        QVERIFY(std::is_sorted(got.begin(), got.end()));
        QCOMPARE(got.last(), 100.0);
        QCOMPARE(*linuxRecorderPercent(QStringLiteral("Track 01:   11 of   50 MB written (fifo 100%)")), 22.0);
    }

    void xorrisoAsMkisofs()
    {
        QCOMPARE(*linuxRecorderPercent(QString::fromUtf8(fixtureBytes("xorriso-as-mkisofs-JR-50mb-throttled.txt"))), 97.30);
        QCOMPARE(*linuxRecorderPercent(QStringLiteral("xorriso : UPDATE :  23.83% done, estimate finish")), 23.83);
    }

    void linuxOddFigures()
    {
        QVERIFY(!linuxRecorderPercent(QStringLiteral("   3 of    0 MB written")).has_value());
        QVERIFY(!linuxRecorderPercent(QStringLiteral("  60 of   50 MB written")).has_value());
        QVERIFY(!linuxRecorderPercent(QStringLiteral("xorriso : UPDATE :      17 files added in 1 seconds")).has_value());
        QVERIFY(!linuxRecorderPercent(QString()).has_value());
    }

    void linuxFiguresTooLongForANumber()
    {
        // 309 digits and more read as infinity; written / total was NaN,
        // which slipped past the "above 100" test onto the bar.
        const QString huge(309, QLatin1Char('9'));
        QVERIFY(!linuxRecorderPercent(huge + " of " + huge + " MB written").has_value());
        QVERIFY(!linuxRecorderPercent("5 of " + huge + " MB written").has_value());
        QVERIFY(!linuxRecorderPercent(huge + " of 50 MB written").has_value());
        QVERIFY(!linuxRecorderPercent(huge + "% done").has_value());
        QVERIFY(!linuxRecorderPercent("Writing:   8192s   " + huge + "%").has_value());
        // The report before such a one stands.
        const auto v = linuxRecorderPercent("  25 of   50 MB written\r" + huge + " of " + huge + " MB written\r");
        QVERIFY(v.has_value());
        QCOMPARE(*v, 50.0);
    }

    void linuxReportAboveOneHundredLeavesTheOneBefore()
    {
        const QString text = QStringLiteral("  49 of   50 MB written\r  60 of   50 MB written\r");
        QCOMPARE(*linuxRecorderPercent(text), 98.0);
        // As if the two reports had come in two reads.
        QCOMPARE(*linuxRecorderPercent(text.left(24)), 98.0);
        QVERIFY(!linuxRecorderPercent(text.mid(24)).has_value());
        QCOMPARE(*linuxRecorderPercent(QStringLiteral(" 99.5% done\n 250% done\n")), 99.5);
    }

    void linuxReportIsOneLine()
    {
        QVERIFY(!linuxRecorderPercent(QStringLiteral("  11 of\n   50 MB written")).has_value());
        QVERIFY(!linuxRecorderPercent(QStringLiteral("  11\rof   50 MB written")).has_value());
        QVERIFY(!linuxRecorderPercent(QStringLiteral("Writing:\n 8192s   31.8%")).has_value());
        QCOMPARE(*linuxRecorderPercent(QStringLiteral("  11\tof\t50 MB written")), 22.0);
    }

    void linuxCutAtEveryPositionEndsAtTheWholeValue()
    {
        const QByteArray bytes = fixtureBytes("cdrskin-v-stdio-50mb-throttled-speed4-sync1m.stdout.txt");
        const auto whole = linuxRecorderPercent(ChunkAssembler().take(bytes));
        QVERIFY(whole.has_value());
        for (qsizetype k = 0; k <= bytes.size(); ++k) {
            ChunkAssembler a;
            std::optional<double> last;
            for (const QString &chunk : {a.take(bytes.left(k)), a.take(bytes.mid(k)), a.flush()})
                if (const auto v = linuxRecorderPercent(chunk))
                    last = v;
            QVERIFY2(last == whole, qPrintable(QString::number(k)));
        }
    }

    void byteOrderMarkInsideTheOutputIsKept()
    {
        // Decoded piece by piece as if at once: only a mark that opens the
        // whole output is dropped.
        const QByteArray bytes("\xef\xbb\xbfxorriso 1.5.4\n\xef\xbb\xbf  11 of   50 MB written\n");
        for (qsizetype k = 0; k <= bytes.size(); ++k) {
            ChunkAssembler a;
            QString text = a.take(bytes.left(k));
            text += a.take(bytes.mid(k));
            text += a.flush();
            QCOMPARE(text, QString::fromUtf8(bytes));
            QCOMPARE(text.count(QChar(0xfeff)), 1);
        }
    }
};

TAMBLO_TEST_MAIN(TestToolrunParsers)
#include "tst_toolrun_parsers.moc"
