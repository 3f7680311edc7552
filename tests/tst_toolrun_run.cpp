#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "drives/DriveQuery.h"
#include "support/Files.h"
#include "support/TestMain.h"
#include "toolrun/ProgressParsers.h"
#include "toolrun/RunLog.h"
#include "toolrun/ToolMessages.h"
#include "toolrun/ToolRun.h"

static ToolCommand sh(const QString &script)
{
    return {QStringLiteral("/bin/sh"), {QStringLiteral("-c"), script}};
}

static ToolRun::ProgressParser transcoder(qint64 seconds)
{
    return [seconds](const QString &text) -> std::optional<double> {
        if (const auto p = ProgressParsers::transcoderPercent(text, seconds))
            return double(*p);
        return std::nullopt;
    };
}

// Runs to the end and answers the verdict and every progress value.
struct Ran {
    ToolVerdict verdict;
    QList<double> progress;
    int ends = 0;
};

static Ran runToVerdict(const ToolCommand &command, ToolRun::Options options, int waitMs = 30000)
{
    Ran r;
    ToolRun run(command, options);
    QObject::connect(&run, &ToolRun::progress, [&](double v) { r.progress << v; });
    QObject::connect(&run, &ToolRun::finished, [&](const ToolVerdict &v) {
        r.verdict = v;
        ++r.ends;
    });
    run.start();
    QElapsedTimer clock;
    clock.start();
    while (r.ends == 0 && clock.elapsed() < waitMs)
        QTest::qWait(10);
    QTest::qWait(50);  // a second end would show now
    return r;
}

class TestToolrunRun : public QObject {
    Q_OBJECT
private:
    QString m_ffmpeg;
    QString m_xorriso;

private slots:
    void initTestCase()
    {
        m_ffmpeg = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
        m_xorriso = QStandardPaths::findExecutable(QStringLiteral("xorriso"));
        QVERIFY2(!m_ffmpeg.isEmpty(), "ffmpeg must be installed");
        QVERIFY2(!m_xorriso.isEmpty(), "xorriso must be installed");
    }

    void realTranscodeSucceedsWithProgress()
    {
        QTemporaryDir dir;
        ToolRun::Options o;
        o.purpose = ToolRun::Purpose::Transcode;
        o.progress = transcoder(3);
        const Ran r = runToVerdict({m_ffmpeg, {"-f", "lavfi", "-i", "sine=duration=3", dir.filePath("o.wav")}}, o);
        QCOMPARE(r.ends, 1);
        QCOMPARE(r.verdict.outcome, ToolVerdict::Outcome::Succeeded);
        QCOMPARE(r.verdict.exitCode, 0);
        QVERIFY(r.verdict.errorLines.isEmpty());
        QVERIFY(!r.progress.isEmpty());
        QCOMPARE(r.progress.last(), 100.0);
        QVERIFY(ToolRun::running().isEmpty());
    }

    void reportsCutAnywhereGiveTheWholeReportsValues()
    {
        qputenv("TAMBLO_FAKE_PAUSE", "0.002");
        ToolRun::Options o;
        o.progress = transcoder(600);
        const Ran r = runToVerdict(
            {fake("burn-chunked-tool"), {fixture("ffmpeg-transcode-mp3-10min-to-wav.txt"), "7", "err"}}, o);
        qunsetenv("TAMBLO_FAKE_PAUSE");
        QCOMPARE(r.verdict.outcome, ToolVerdict::Outcome::Succeeded);
        QVERIFY(!r.progress.isEmpty());
        // Only values that whole reports carry: never a piece of a report.
        const QList<double> reports{0.0, 68.0, 100.0};
        for (double v : r.progress)
            QVERIFY2(reports.contains(v), qPrintable(QString::number(v)));
        QCOMPARE(r.progress.last(), 100.0);
        QCOMPARE(r.verdict.output, fixtureText("ffmpeg-transcode-mp3-10min-to-wav.txt"));
    }

    void standardOutputIsNotTheProgressChannel()
    {
        ToolRun::Options o;
        o.progress = transcoder(60);
        const Ran r = runToVerdict(sh("printf 'time=00:00:30.00 bitrate=1\\r'"), o);
        QVERIFY(r.progress.isEmpty());
        QVERIFY(r.verdict.output.contains("time=00:00:30.00"));
    }

    void aReportWithoutLineEndIsReadAtTheEnd()
    {
        ToolRun::Options o;
        o.progress = transcoder(90);
        const Ran r = runToVerdict(sh("printf 'time=00:00:45.00 bitrate=1' >&2"), o);
        QCOMPARE(r.progress, QList<double>{50.0});
    }

    void nullDeviceAsStandardInput()
    {
        ToolRun::Options o;
        o.channels = ToolRun::Channels::Merged;
        const Ran r = runToVerdict({fake("burn-stdin-probe"), {}}, o);
        QVERIFY2(r.verdict.output.contains("stdin is /dev/null"), qPrintable(r.verdict.output));
        QVERIFY(r.verdict.output.contains("stdin at end"));
    }

    void aRunOnOneChannelEndsWithoutAWarning()
    {
        // Both streams on one channel: nothing is read from the other at the end.
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
        ToolRun::Options o;
        o.channels = ToolRun::Channels::Merged;
        const Ran r = runToVerdict(sh("echo out; echo err >&2"), o);
        QCOMPARE(r.verdict.outcome, ToolVerdict::Outcome::Succeeded);
        QVERIFY2(r.verdict.output.contains("out") && r.verdict.output.contains("err"), qPrintable(r.verdict.output));
    }

    void aFailingToolIsFailedWithItsOwnWords()
    {
        // An existing output and no terminal: ffmpeg gives up at once, exit 1.
        QTemporaryDir dir;
        const QString out = dir.filePath("o.wav");
        QVERIFY(writeFile(out, "old"));
        const Ran r = runToVerdict({m_ffmpeg, {"-f", "lavfi", "-i", "sine=duration=1", out}}, {});
        QCOMPARE(r.verdict.outcome, ToolVerdict::Outcome::Failed);
        QCOMPARE(r.verdict.exitCode, 1);
        QVERIFY2(r.verdict.errorLines.join('\n').contains("Not overwriting - exiting"),
                 qPrintable(r.verdict.errorLines.join('\n')));
        QCOMPARE(QFileInfo(out).size(), qint64(3));
    }

    void aMissingProgramEndsOnceFromTheEventLoop()
    {
        ToolRun run({"/nonexistent/xorriso", {"-version"}}, {});
        int ends = 0;
        ToolVerdict verdict;
        connect(&run, &ToolRun::finished, this, [&](const ToolVerdict &v) {
            verdict = v;
            ++ends;
        });
        run.start();
        QCOMPARE(ends, 0);  // never inside start()
        QTRY_COMPARE(ends, 1);
        QTest::qWait(50);
        QCOMPARE(ends, 1);
        QCOMPARE(verdict.outcome, ToolVerdict::Outcome::FailedToStart);
        QCOMPARE(verdict.toolName(), QStringLiteral("xorriso"));
        const AlertRequest alert = ToolMessages::notStarted(verdict);
        QCOMPARE(alert.messageText, QStringLiteral("xorriso could not be started."));
        QVERIFY2(alert.informativeText.contains("sudo apt install xorriso"), qPrintable(alert.informativeText));
    }

    void noProgramAtAllIsFailedToStartToo()
    {
        const Ran r = runToVerdict(ToolCommand{}, {});
        QCOMPARE(r.ends, 1);
        QCOMPARE(r.verdict.outcome, ToolVerdict::Outcome::FailedToStart);
    }

    void aCrashIsACrash()
    {
        const Ran r = runToVerdict(sh("kill -SEGV $$"), {});
        QCOMPARE(r.verdict.outcome, ToolVerdict::Outcome::Crashed);
        QVERIFY(!r.verdict.ok());
    }

    void aHangIsStoppedAtItsTimeLimit()
    {
        ToolRun::Options o;
        o.channels = ToolRun::Channels::Merged;
        o.timeoutMs = 300;
        QElapsedTimer clock;
        clock.start();
        const Ran r = runToVerdict({fake("hang-tool"), {}}, o);
        QCOMPARE(r.verdict.outcome, ToolVerdict::Outcome::TimedOut);
        QVERIFY(clock.elapsed() < 10000);
        QVERIFY(r.verdict.output.contains("Media status"));
    }

    void stopTerminatesThenKills()
    {
        // A tool that ignores the polite request is killed after the grace time.
        ToolRun run(sh("trap '' TERM; echo ready; sleep 30"), {});
        ToolVerdict verdict;
        int ends = 0;
        connect(&run, &ToolRun::finished, this, [&](const ToolVerdict &v) {
            verdict = v;
            ++ends;
        });
        connect(&run, &ToolRun::outputReports, &run, [&run](const QString &) { run.stop(); });
        run.start();
        QTRY_COMPARE_WITH_TIMEOUT(ends, 1, ToolRun::StopGraceMs + 5000);
        QCOMPARE(verdict.outcome, ToolVerdict::Outcome::Stopped);
        QVERIFY(verdict.elapsedMs >= ToolRun::StopGraceMs - 100);
    }

    void runningRunsAreListedAndWritingIsKnown()
    {
        ToolRun::Options o;
        o.purpose = ToolRun::Purpose::Write;
        ToolRun writer(sh("sleep 30"), o);
        ToolRun query(sh("sleep 30"), {});
        QVERIFY(!ToolRun::anyWriting());
        query.start();
        QVERIFY(!ToolRun::anyWriting());
        writer.start();
        QVERIFY(ToolRun::anyWriting());
        QCOMPARE(ToolRun::running().size(), 2);
        QSignalSpy ended(&writer, &ToolRun::finished);
        writer.stop();
        QVERIFY(ended.wait(5000));
        QVERIFY(!ToolRun::anyWriting());
        QCOMPARE(ToolRun::running().size(), 1);
    }

    void stoppingAllToolsToldOnceWhenTheLastHasGone()
    {
        int told = 0;
        ToolRun::stopAllThen(this, [&told] { ++told; });
        QCOMPARE(told, 1);  // nothing running: at once

        ToolRun polite(sh("sleep 30"), {});
        ToolRun stubborn(sh("trap '' TERM; echo ready; sleep 30"), {});
        QSignalSpy ready(&stubborn, &ToolRun::outputReports);
        polite.start();
        stubborn.start();
        QVERIFY(ready.wait(5000));
        told = 0;
        ToolRun::stopAllThen(this, [&told] { ++told; });
        QTRY_VERIFY_WITH_TIMEOUT(polite.hasEnded(), 2000);
        QCOMPARE(told, 0);  // the stubborn one is still there until its kill
        QTRY_COMPARE_WITH_TIMEOUT(told, 1, ToolRun::StopGraceMs + 5000);
        QVERIFY(stubborn.hasEnded());
        QTest::qWait(ToolRun::StopGraceMs + 2500);  // past the last-resort timer: still told once
        QCOMPARE(told, 1);
    }

    void destroyingARunKillsItsTool()
    {
        QTemporaryDir dir;
        const QString mark = dir.filePath("still-here");
        {
            ToolRun run(sh(QStringLiteral("sleep 1; touch '%1'").arg(mark)), {});
            run.start();
            QTest::qWait(100);
        }
        QTest::qWait(1500);
        QVERIFY(!QFile::exists(mark));
    }

    void everyEndIsToldToTheObserver()
    {
        QList<ToolVerdict> told;
        ToolRun::setObserver([&](const ToolVerdict &v) { told << v; });
        runToVerdict(sh("echo hello; exit 3"), {});
        ToolRun::setObserver({});
        QCOMPARE(told.size(), 1);
        QCOMPARE(told.first().exitCode, 3);
        QCOMPARE(told.first().outcome, ToolVerdict::Outcome::Failed);
        QCOMPARE(told.first().errorLines, QStringList{"hello"});
    }

    // ------------------------------------------------ each tool's rules

    void xorrisoOnAFullDeviceFailsWithItsOwnWords()
    {
        // A real xorriso writing a session onto a device with no room left.
        ToolRun::Options o;
        o.channels = ToolRun::Channels::Merged;
        const Ran r = runToVerdict({m_xorriso, {"-outdev", "stdio:/dev/full", "-map", m_xorriso, "/x", "-commit"}}, o);
        QCOMPARE(r.verdict.outcome, ToolVerdict::Outcome::Failed);
        QVERIFY(r.verdict.exitCode != 0);
        const QString words = r.verdict.errorLines.join('\n');
        QVERIFY2(words.contains("No space left on device"), qPrintable(r.verdict.output));
        QVERIFY2(words.contains("xorriso : FAILURE : "), qPrintable(words));
    }

    void xorrisoFailureMarkersAreItsWords()
    {
        ToolVerdict v;
        v.command.program = "/usr/bin/xorriso";
        v.exitCode = 32;
        v.output = fixtureText("xorriso-toc-dvdplusr-damaged-toc-failure-excerpt.txt");
        ToolVerdicts::judge(v);
        QCOMPARE(v.outcome, ToolVerdict::Outcome::Failed);
        QCOMPARE(v.errorLines, QStringList{"xorriso : SORRY : Cannot obtain Table Of Content"});
        // A FAILURE event fails a run even with exit code 0.
        ToolVerdict zero;
        zero.command.program = "xorriso";
        zero.output = "xorriso : FAILURE : Image size 1234s exceeds free space on media 512s\n";
        ToolVerdicts::judge(zero);
        QCOMPARE(zero.outcome, ToolVerdict::Outcome::Failed);
        // A SORRY event with exit code 0 was tolerated: success.
        ToolVerdict tolerated;
        tolerated.command.program = "xorriso";
        tolerated.output = "xorriso : SORRY : something tolerated\n";
        ToolVerdicts::judge(tolerated);
        QCOMPARE(tolerated.outcome, ToolVerdict::Outcome::Succeeded);
        QVERIFY(tolerated.errorLines.isEmpty());
    }

    void cdrskinRefusalIsItsWords()
    {
        ToolVerdict v;
        v.command.program = "cdrskin";
        v.exitCode = 1;
        v.output = fixtureText("cdrskin-audio-stdio-refused.txt");
        ToolVerdicts::judge(v);
        QCOMPARE(v.outcome, ToolVerdict::Outcome::Failed);
        QCOMPARE(v.errorLines, (QStringList{"cdrskin: SORRY : Drive offers no suitable write mode with this job",
                                            "cdrskin: Reason: audio track prohibited by non-CD,",
                                            "cdrskin: FATAL : burning failed.", "cdrskin: burning failed"}));
    }

    void hdiutilFailureIsSeenEvenWithoutAnExitCode()
    {
        ToolVerdict v;
        v.command.program = "/usr/bin/hdiutil";
        v.exitCode = 0;
        v.output = fixtureText("hdiutil-burn-verbose-failure-2005.txt");
        ToolVerdicts::judge(v);
        QCOMPARE(v.outcome, ToolVerdict::Outcome::Failed);
        QVERIFY2(v.errorLines.last().startsWith("*** malloc"), qPrintable(v.errorLines.join('\n')));
        // A successful burn is a success.
        ToolVerdict ok;
        ok.command.program = "/usr/bin/hdiutil";
        ok.output = fixtureText("hdiutil-burn-iso-success-2023.txt");
        ToolVerdicts::judge(ok);
        QCOMPARE(ok.outcome, ToolVerdict::Outcome::Succeeded);
    }

    void ffmpegOutputExistsIsItsWords()
    {
        ToolVerdict v;
        v.command.program = "ffmpeg";
        v.exitCode = 1;
        v.output = fixtureText("ffmpeg-transcode-output-exists-no-stdin.txt");
        ToolVerdicts::judge(v);
        QVERIFY(v.errorLines.join('\n').contains("Not overwriting - exiting"));
    }

    void aFailureWithoutMarkedLinesQuotesTheLastLine()
    {
        ToolVerdict v;
        v.command.program = "eject";
        v.exitCode = 1;
        v.output = "eject: unable to find or open device for: 'cdrom'\n";
        ToolVerdicts::judge(v);
        QCOMPARE(v.errorLines, QStringList{"eject: unable to find or open device for: 'cdrom'"});
        const OperationFailure f = OperationFailure::fromVerdict("The disc could not be ejected.", v);
        QCOMPARE(f.informative, v.errorLines.first());
        QVERIFY(f.details.startsWith("$ eject"));
        QVERIFY(f.details.contains("exit code 1"));
    }

    // ------------------------------------------------ drive queries

    void aDriveQueryThatHangsIsNoAnswer()
    {
        QObject owner;
        ToolVerdict verdict;
        bool done = false;
        DriveQuery::run({fake("hang-tool"), {}}, 300, &owner, [&](const ToolVerdict &v) {
            verdict = v;
            done = true;
        });
        QVERIFY(!done);
        QTRY_VERIFY_WITH_TIMEOUT(done, 10000);
        QVERIFY(!DriveQuery::answered(verdict));
        const AlertRequest alert = ToolMessages::driveDidNotAnswer(verdict);
        QCOMPARE(alert.messageText, QStringLiteral("The drive does not answer."));
        QVERIFY(!alert.informativeText.contains("No disc"));
    }

    void aDriveQueryWithNoDriveIsAnEmptyAnswer()
    {
        QObject owner;
        ToolVerdict verdict;
        bool done = false;
        DriveQuery::run(ToolCommand{}, 300, &owner, [&](const ToolVerdict &v) {
            verdict = v;
            done = true;
        });
        QTRY_VERIFY(done);
        QVERIFY(DriveQuery::answered(verdict));
        QVERIFY(verdict.output.isEmpty());
    }

    // ------------------------------------------------ the log

    void theLogKeepsTheLastOperations()
    {
        QTemporaryDir dir;
        RunLog log(dir.filePath("logs"));
        for (int i = 0; i < RunLog::KeepOperations + 5; ++i) {
            log.beginOperation(QStringLiteral("Burn Data CD"));
            ToolVerdict v;
            v.command = {"/usr/bin/xorriso", {"-outdev", "stdio:/tmp/x y.iso"}};
            v.exitCode = 5;
            v.outcome = ToolVerdict::Outcome::Failed;
            v.output = QStringLiteral("xorriso : FAILURE : run %1\n").arg(i);
            v.errorLines = {v.output.trimmed()};
            log.record(v);
        }
        const QStringList files = QDir(dir.filePath("logs")).entryList({"*.log"}, QDir::Files, QDir::Name);
        QCOMPARE(files.size(), RunLog::KeepOperations);
        QFile last(dir.filePath("logs/") + files.last());
        QVERIFY(last.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(last.readAll());
        QVERIFY(text.startsWith("Burn Data CD"));
        QVERIFY(text.contains("$ /usr/bin/xorriso -outdev \"stdio:/tmp/x y.iso\""));
        QVERIFY(text.contains(QStringLiteral("xorriso : FAILURE : run %1").arg(RunLog::KeepOperations + 4)));
        QVERIFY(text.contains("xorriso: failed, exit code 5"));
        QVERIFY(text.contains(" s)"));
    }
};

TAMBLO_TEST_MAIN(TestToolrunRun)
#include "tst_toolrun_run.moc"
