#include <QElapsedTimer>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>
#include <cmath>

#include "support/TestMain.h"
#include "toolrun/ToolRunner.h"

static QString fake(const char *name)
{
    return QStringLiteral(TAMBLO_FAKES_DIR "/") + QLatin1String(name);
}

static QString fixture(const char *name)
{
    return QStringLiteral(TAMBLO_FIXTURES_DIR "/") + QLatin1String(name);
}

static ToolCommand sh(const QString &script)
{
    return {QStringLiteral("/bin/sh"), {QStringLiteral("-c"), script}};
}

class TestToolrunRunner : public QObject {
    Q_OBJECT
private:
    QString m_ffmpeg;

private slots:
    void initTestCase()
    {
        m_ffmpeg = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
        QVERIFY2(!m_ffmpeg.isEmpty(), "ffmpeg must be installed");
    }

    void waitedRunWithRealTranscoder()
    {
        QTemporaryDir dir;
        ToolRunner runner;
        QList<float> bar;
        int done = 0;
        bool terminatedDuringRun = true;
        const ToolCommand cmd{m_ffmpeg,
                              {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                               QStringLiteral("sine=frequency=440:duration=3"), QStringLiteral("-acodec"),
                               QStringLiteral("pcm_s16le"), QStringLiteral("-ar"), QStringLiteral("44100"),
                               QStringLiteral("-ac"), QStringLiteral("2"), dir.filePath(QStringLiteral("o.wav"))}};
        runner.runWaited(
            cmd, ToolRunner::AudioTranscode, 3,
            [&](float p) {
                bar << p;
                terminatedDuringRun = runner.terminated();
            },
            [&] { ++done; });
        QCOMPARE(runner.terminated(), false);
        QCOMPARE(runner.u_Type_Progress(), 1u);
        QCOMPARE(runner.i_Orig_Duration_in_Seconds(), qint64(3));
        QCOMPARE(done, 0);  // never inside the call
        QTRY_COMPARE_WITH_TIMEOUT(done, 1, 20000);
        QVERIFY(runner.terminated());
        QVERIFY(!bar.isEmpty());
        QCOMPARE(bar.last(), 100.0f);
        QCOMPARE(terminatedDuringRun, false);
        QVERIFY(QFileInfo(dir.filePath(QStringLiteral("o.wav"))).size() > 500000);
        QCOMPARE(runner.runningCount(), 0);
    }

    void waitedRunReadsReportsCutAnywhere()
    {
        qputenv("TAMBLO_FAKE_PAUSE", "0.002");
        ToolRunner runner;
        QList<float> bar;
        bool done = false;
        runner.runWaited({fake("burn-chunked-tool"),
                          {fixture("ffmpeg-transcode-mp3-10min-to-wav.txt"), QStringLiteral("7"), QStringLiteral("err")}},
                         ToolRunner::AudioTranscode, 600, [&](float p) { bar << p; }, [&] { done = true; });
        QTRY_VERIFY_WITH_TIMEOUT(done, 30000);
        qunsetenv("TAMBLO_FAKE_PAUSE");
        QVERIFY(!bar.isEmpty());
        QCOMPARE(bar.last(), 100.0f);
        const QList<float> reports{0.0f, 68.0f, 100.0f};
        for (float v : bar)
            QVERIFY2(reports.contains(v), qPrintable(QString::number(v)));
        QVERIFY(std::is_sorted(bar.begin(), bar.end()));
    }

    void videoKindParsesTimeToo()
    {
        ToolRunner runner;
        QList<float> bar;
        bool done = false;
        runner.runWaited(sh(QStringLiteral("printf 'frame=1 time=00:00:30.00 bitrate=1\\r' >&2")),
                         ToolRunner::VideoTranscode, 60, [&](float p) { bar << p; }, [&] { done = true; });
        QTRY_VERIFY(done);
        QCOMPARE(runner.u_Type_Progress(), 0u);
        QCOMPARE(bar, QList<float>{50.0f});
    }

    void standardOutputIsNotParsed()
    {
        ToolRunner runner;
        QList<float> bar;
        bool done = false;
        runner.runWaited(sh(QStringLiteral("printf 'time=00:00:30.00 bitrate=1\\r'")), ToolRunner::AudioTranscode,
                         60, [&](float p) { bar << p; }, [&] { done = true; });
        QTRY_VERIFY(done);
        QVERIFY(bar.isEmpty());
    }

    void reportWithoutLineEndIsReadAtTheEnd()
    {
        ToolRunner runner;
        QList<float> bar;
        bool done = false;
        runner.runWaited(sh(QStringLiteral("printf 'time=00:00:45.00 bitrate=1' >&2")), ToolRunner::AudioTranscode,
                         60, [&](float p) { bar << p; }, [&] { done = true; });
        QTRY_VERIFY(done);
        QCOMPARE(bar, QList<float>{75.0f});
    }

    void silenceBeforeTheFirstReport()
    {
        // Reads that bring nothing (or nothing whole) do not stop the reading.
        ToolRunner runner;
        QList<float> bar;
        bool done = false;
        runner.runWaited(sh(QStringLiteral("sleep 0.3; printf 'time=00:0' >&2; sleep 0.2; "
                                           "printf '0:06.00 x\\r' >&2; sleep 0.2; printf 'time=00:00:12.00 x\\n' >&2")),
                         ToolRunner::AudioTranscode, 12, [&](float p) { bar << p; }, [&] { done = true; });
        QTRY_VERIFY_WITH_TIMEOUT(done, 10000);
        QCOMPARE(bar, (QList<float>{50.0f, 100.0f}));
    }

    void invalidUtf8FromTheTool()
    {
        ToolRunner runner;
        QList<float> bar;
        bool done = false;
        runner.runWaited(sh(QStringLiteral("printf '\\377\\376\\303 time=00:00:06.00 \\300x\\r' >&2; "
                                           "printf '\\360\\237' >&2; sleep 0.1; printf '\\230\\200 time=00:00:12.00\\r' >&2")),
                         ToolRunner::AudioTranscode, 24, [&](float p) { bar << p; }, [&] { done = true; });
        QTRY_VERIFY(done);
        QCOMPARE(bar, (QList<float>{25.0f, 50.0f}));
    }

    void zeroDurationDoesNotCrash()
    {
        ToolRunner runner;
        QList<float> bar;
        bool done = false;
        runner.runWaited(sh(QStringLiteral("printf 'time=00:00:05.00 x\\r' >&2")), ToolRunner::AudioTranscode, 0,
                         [&](float p) { bar << p; }, [&] { done = true; });
        QTRY_VERIFY(done);
        QCOMPARE(bar.size(), 1);
        QVERIFY(std::isinf(bar.first()));
    }

    void windowStaysLiveDuringAWaitedRun()
    {
        ToolRunner runner;
        int ticks = 0;
        QTimer ticker;
        connect(&ticker, &QTimer::timeout, this, [&] { ++ticks; });
        ticker.start(20);
        bool done = false;
        QElapsedTimer clock;
        clock.start();
        runner.runWaited(sh(QStringLiteral("sleep 0.6")), ToolRunner::AudioTranscode, 1, {}, [&] { done = true; });
        QVERIFY(clock.elapsed() < 500);
        int ticksAtEnd = -1;
        QTRY_VERIFY_WITH_TIMEOUT(done, 5000);
        ticksAtEnd = ticks;
        QVERIFY2(ticksAtEnd >= 5, qPrintable(QString::number(ticksAtEnd)));
    }

    void nullDeviceAsStandardInput()
    {
        ToolRunner runner;
        QStringList log;
        connect(&runner, &ToolRunner::logged, this, [&](const QString &l) { log << l; });
        bool ended = false;
        QElapsedTimer clock;
        clock.start();
        runner.runNotified({fake("burn-stdin-probe"), {}}, [&] { ended = true; });
        QTRY_VERIFY_WITH_TIMEOUT(ended, 5000);
        QVERIFY(clock.elapsed() < 4000);
        const QString all = log.join(QLatin1Char('\n'));
        QVERIFY2(all.contains(QStringLiteral("stdin is /dev/null")), qPrintable(all));
        QVERIFY(all.contains(QStringLiteral("stdin at end")));
    }

    void waitedTranscoderDoesNotWaitForAnAnswer()
    {
        // An existing output without an overwrite switch: the transcoder asks
        // and, with nothing to read, gives up at once.
        QTemporaryDir dir;
        const QString out = dir.filePath(QStringLiteral("o.wav"));
        QFile f(out);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("old");
        f.close();
        ToolRunner runner;
        bool done = false;
        QElapsedTimer clock;
        clock.start();
        runner.runWaited({m_ffmpeg,
                          {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                           QStringLiteral("sine=duration=1"), out}},
                         ToolRunner::AudioTranscode, 1, {}, [&] { done = true; });
        QTRY_VERIFY_WITH_TIMEOUT(done, 10000);
        QVERIFY(clock.elapsed() < 8000);
        QCOMPARE(QFileInfo(out).size(), qint64(3));
    }

    void notifiedRunLogsAndEnds()
    {
        ToolRunner runner;
        QStringList log;
        QStringList order;
        connect(&runner, &ToolRunner::logged, this, [&](const QString &l) {
            log << l;
            order << QStringLiteral("log");
        });
        runner.runNotified(sh(QStringLiteral("echo hello; echo oops >&2; sleep 0.1; echo more; exit 3")),
                           [&] { order << QStringLiteral("end"); });
        QVERIFY(order.isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(order.contains(QStringLiteral("end")), 5000);
        QCOMPARE(order.last(), QStringLiteral("end"));
        QVERIFY(!log.filter(QRegularExpression(QStringLiteral("^Data Available : \\{"))).isEmpty());
        const QStringList ready = log.filter(QRegularExpression(QStringLiteral("^Data Ready : ")));
        QCOMPARE(ready.size(), 2);
        QVERIFY(ready.at(0).startsWith(QStringLiteral("Data Ready : {name = ReadCompletion;")));
        QCOMPARE(ready.at(1), QStringLiteral("Data Ready : hello\noops\nmore\n"));
        QCOMPARE(log.last(), ready.at(1));
    }

    void notifiedRunWithNothingPrinted()
    {
        ToolRunner runner;
        QStringList log;
        connect(&runner, &ToolRunner::logged, this, [&](const QString &l) { log << l; });
        bool ended = false;
        runner.runNotified(sh(QStringLiteral("exit 0")), [&] { ended = true; });
        QTRY_VERIFY(ended);
        QCOMPARE(log.size(), 1);
        QVERIFY(log.first().startsWith(QStringLiteral("Data Ready : {")));
    }

    void silentNotifiedRun()
    {
        ToolRunner runner;
        QStringList log;
        connect(&runner, &ToolRunner::logged, this, [&](const QString &l) { log << l; });
        bool ended = false;
        runner.runNotified(sh(QStringLiteral("echo discarded")), [&] { ended = true; },
                           ToolRunner::OutputLog::Silent);
        QTRY_VERIFY(ended);
        QVERIFY(log.isEmpty());
    }

    void combinedRunWithDiskImageStatus()
    {
        qputenv("TAMBLO_FAKE_PAUSE", "0.005");
        ToolRunner runner;
        QList<double> bar;
        QStringList log;
        QStringList order;
        connect(&runner, &ToolRunner::logged, this, [&](const QString &l) { log << l; });
        bool terminatedInHandler = true;
        bool terminatedAfter = false;
        runner.runCombined(
            {fake("burn-chunked-tool"), {fixture("synthetic-hdiutil-burn-verbose-progress.txt"), QStringLiteral("40"),
                                         QStringLiteral("err")}},
            ToolRunner::DiskImageStatus, [&](double p) { bar << p; },
            [&] {
                order << QStringLiteral("handler");
                terminatedInHandler = runner.terminated();
            },
            [&] {
                order << QStringLiteral("after");
                terminatedAfter = runner.terminated();
            });
        QCOMPARE(runner.u_Type_Progress(), 2u);
        QCOMPARE(runner.terminated(), false);
        QTRY_COMPARE_WITH_TIMEOUT(order.size(), 2, 10000);
        qunsetenv("TAMBLO_FAKE_PAUSE");
        QCOMPARE(order, (QStringList{QStringLiteral("handler"), QStringLiteral("after")}));
        QCOMPARE(terminatedInHandler, false);
        QCOMPARE(terminatedAfter, true);
        // Reads hold whole lines, so each key is seen; a read holding several
        // keys gives its first only.
        QVERIFY(!bar.isEmpty());
        for (double v : bar)
            QVERIFY2(v <= 100.0 && v >= -100.0, qPrintable(QString::number(v)));
        QVERIFY(bar.contains(-100.0));
        // The four characters of each read's first key went to the log.
        QVERIFY(log.contains(QStringLiteral("-1\nO")));
    }

    void combinedRunWatchingItsOutput()
    {
        ToolRunner runner;
        QStringList log;
        connect(&runner, &ToolRunner::logged, this, [&](const QString &l) { log << l; });
        bool after = false;
        runner.runCombined(sh(QStringLiteral("echo Preparing; printf 'DRStatusPercentCompleteKey: 0.50\\nx\\n' >&2")),
                           ToolRunner::DiskImageStatus, {}, {}, [&] { after = true; }, ToolRunner::OutputLog::Logged);
        QTRY_VERIFY(after);
        QVERIFY(!log.filter(QRegularExpression(QStringLiteral("^Data Available : \\{"))).isEmpty());
        QVERIFY(log.contains(QStringLiteral("0.50")));
    }

    void combinedRunForLinuxRecorders()
    {
        qputenv("TAMBLO_FAKE_PAUSE", "0.002");
        ToolRunner runner;
        QList<double> bar;
        bool after = false;
        runner.runCombined({fake("burn-chunked-tool"),
                            {fixture("xorriso-commit-stdio-50mb-throttled-speed4d.txt"), QStringLiteral("33"),
                             QStringLiteral("err")}},
                           ToolRunner::LinuxRecorder, [&](double p) { bar << p; }, {}, [&] { after = true; });
        QTRY_VERIFY_WITH_TIMEOUT(after, 10000);
        qunsetenv("TAMBLO_FAKE_PAUSE");
        QCOMPARE(runner.u_Type_Progress(), 3u);
        QVERIFY(!bar.isEmpty());
        QCOMPARE(bar.last(), 95.3);
        QVERIFY(std::is_sorted(bar.begin(), bar.end()));
    }

    void progressKindChoosesTheParser()
    {
        ToolRunner runner;
        QList<double> single;
        bool after = false;
        runner.runCombined(sh(QStringLiteral("printf 'time=00:00:30.00 bitrate\\r' >&2")),
                           ToolRunner::DiskImageStatus, [&](double p) { single << p; }, {}, [&] { after = true; });
        QTRY_VERIFY(after);
        QVERIFY(single.isEmpty());

        QList<float> upper;
        bool done = false;
        runner.runWaited(sh(QStringLiteral("printf 'DRStatusPercentCompleteKey: 0.50\\nx\\n' >&2")),
                         ToolRunner::AudioTranscode, 60, [&](float p) { upper << p; }, [&] { done = true; });
        QTRY_VERIFY(done);
        QVERIFY(upper.isEmpty());
    }

    void toolThatCannotStartStillEnds()
    {
        ToolRunner runner;
        int waited = 0, notified = 0, combinedHandler = 0, combinedAfter = 0;
        runner.runWaited({QStringLiteral("/nonexistent/ffmpeg"), {}}, ToolRunner::AudioTranscode, 5, {},
                         [&] { ++waited; });
        QCOMPARE(waited, 0);
        QTRY_COMPARE(waited, 1);
        QVERIFY(runner.terminated());

        runner.runNotified({QStringLiteral("/nonexistent/drutil"), {}}, [&] { ++notified; });
        QCOMPARE(notified, 0);
        QTRY_COMPARE(notified, 1);

        runner.runCombined(ToolCommand{}, ToolRunner::DiskImageStatus, {}, [&] { ++combinedHandler; },
                           [&] { ++combinedAfter; });
        QCOMPARE(combinedHandler, 0);
        QTRY_COMPARE(combinedAfter, 1);
        QCOMPARE(combinedHandler, 1);
        QVERIFY(runner.terminated());
        QTest::qWait(100);
        QCOMPARE(waited + notified + combinedAfter, 3);
        QCOMPARE(runner.runningCount(), 0);
    }

    void exitStatusIsNotRead()
    {
        ToolRunner runner;
        bool done = false, ended = false;
        runner.runWaited(sh(QStringLiteral("exit 7")), ToolRunner::AudioTranscode, 1, {}, [&] { done = true; });
        QTRY_VERIFY(done);
        runner.runNotified(sh(QStringLiteral("kill -9 $$")), [&] { ended = true; });
        QTRY_VERIFY(ended);
    }

    void aNewNotifiedRunDropsTheHandlersOfTheOneBefore()
    {
        ToolRunner runner;
        int first = 0, second = 0;
        runner.runNotified(sh(QStringLiteral("sleep 0.3")), [&] { ++first; });
        runner.runNotified(sh(QStringLiteral("sleep 0.1")), [&] { ++second; });
        QCOMPARE(runner.runningCount(), 2);
        QTRY_COMPARE_WITH_TIMEOUT(runner.runningCount(), 0, 5000);
        QCOMPARE(second, 1);
        QCOMPARE(first, 0);
    }

    void theEndOfAWaitedRunDropsEveryHandler()
    {
        ToolRunner runner;
        int notified = 0;
        bool done = false;
        runner.runNotified(sh(QStringLiteral("sleep 0.4")), [&] { ++notified; });
        runner.runWaited(sh(QStringLiteral("true")), ToolRunner::AudioTranscode, 1, {}, [&] { done = true; });
        QTRY_VERIFY(done);
        QTRY_COMPARE_WITH_TIMEOUT(runner.runningCount(), 0, 5000);
        QCOMPARE(notified, 0);
        // A run started afterwards is heard again.
        runner.runNotified(sh(QStringLiteral("true")), [&] { ++notified; });
        QTRY_COMPARE(notified, 1);
    }

    void doneMayStartTheNextRun()
    {
        ToolRunner runner;
        QList<int> ends;
        std::function<void(int)> chain = [&](int i) {
            runner.runWaited(sh(QStringLiteral("printf 'time=00:00:01.00 x\\r' >&2")), ToolRunner::AudioTranscode, 1,
                             {}, [&, i] {
                                 ends << i;
                                 if (i < 4)
                                     chain(i + 1);
                             });
        };
        chain(0);
        QTRY_COMPARE_WITH_TIMEOUT(ends.size(), 5, 10000);
        QCOMPARE(ends, (QList<int>{0, 1, 2, 3, 4}));
    }
};

TAMBLO_TEST_MAIN(TestToolrunRunner)
#include "tst_toolrun_runner.moc"
