#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <cmath>

#include "burn/TranscodeArguments.h"
#include "burn/TranscodeSequence.h"
#include "toolrun/ToolRun.h"
#include "toolrun/ToolVerdict.h"
#include "support/TestMain.h"
#include "support/Tools.h"
#include "support/Files.h"

// What ffprobe says about a file.
struct Probe {
    QString format;
    double duration = 0;
    QList<QJsonObject> streams;

    QList<QJsonObject> ofType(const QString &type) const
    {
        QList<QJsonObject> out;
        for (const QJsonObject &s : streams)
            if (s.value(QStringLiteral("codec_type")).toString() == type)
                out << s;
        return out;
    }
};

class TestBurnTranscode : public QObject {
    Q_OBJECT
private:
    QString m_ffmpeg;
    QString m_ffprobe;
    QTemporaryDir m_media;
    QTemporaryDir m_out;

    Probe probe(const QString &path)
    {
        QProcess p;
        p.start(m_ffprobe, {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-show_entries"),
                            QStringLiteral("format=format_name,duration:stream=codec_name,codec_type,sample_rate,"
                                           "channels,bit_rate,width,height,r_frame_rate"),
                            QStringLiteral("-of"), QStringLiteral("json"), path});
        p.waitForFinished(30000);
        const QJsonObject root = QJsonDocument::fromJson(p.readAllStandardOutput()).object();
        Probe r;
        r.format = root.value(QStringLiteral("format")).toObject().value(QStringLiteral("format_name")).toString();
        r.duration =
            root.value(QStringLiteral("format")).toObject().value(QStringLiteral("duration")).toString().toDouble();
        for (const QJsonValue &v : root.value(QStringLiteral("streams")).toArray())
            r.streams << v.toObject();
        return r;
    }

    static QString field(const QJsonObject &s, const char *name)
    {
        const QJsonValue v = s.value(QLatin1String(name));
        return v.isString() ? v.toString() : QString::number(v.toInt());
    }

    // Runs the burn's transcodes of `sources` into the output folder, as a
    // burn does, and answers the upper bar values of each file the bar
    // showed (a file that ended before the bar came to it is not shown).
    QMap<int, QList<float>> transcode(BurnOperation op, const QStringList &sources, const QList<qint64> &durations,
                                      const QString &video = QStringLiteral("0"),
                                      const QString &audio = QStringLiteral("0"))
    {
        TranscodeSequence seq;
        QList<TranscodeSequence::Step> steps;
        const QStringList outputs = TranscodeArguments::outputPaths(op, m_out.path(), sources);
        for (int i = 0; i < sources.size(); ++i)
            steps << TranscodeSequence::Step{
                TranscodeArguments::commandTo(op, m_ffmpeg, sources.at(i), outputs.at(i), video, audio),
                durations.at(i), outputs.at(i)};
        QMap<int, QList<float>> bars;
        int shown = -1;
        QList<int> done;
        connect(&seq, &TranscodeSequence::fileStarted, this, [&](int index, qint64) {
            if (index <= shown)
                qWarning("the upper bar went back");
            shown = index;
            bars[index];
        });
        connect(&seq, &TranscodeSequence::upperBar, this, [&](float p) { bars[shown] << p; });
        connect(&seq, &TranscodeSequence::filesDone, this, [&](int n) { done << n; });
        QSignalSpy finished(&seq, &TranscodeSequence::finished);
        seq.start(steps);
        if (!finished.wait(60000))
            qWarning("transcodes did not finish");
        QList<int> expected;
        for (int i = 1; i <= sources.size(); ++i)
            expected << i;
        if (done != expected)
            qWarning("files done out of order");
        return bars;
    }

    // A step of the gated fake transcoder (tests/fakes/gated-transcoder).
    TranscodeSequence::Step gated(const QString &name, qint64 duration, const QString &status,
                                  const QStringList &times = {})
    {
        const QString output = m_out.filePath(name);
        return TranscodeSequence::Step{
            ToolCommand{fake("gated-transcoder"), QStringList{output, status} + times},
            duration, output};
    }
    bool ready(const QString &name) const { return QFileInfo::exists(m_out.filePath(name) + ".ready"); }
    void open(const QString &name)
    {
        QFile gate(m_out.filePath(name) + ".go");
        QVERIFY(gate.open(QIODevice::WriteOnly));
    }

    // Everything a sequence says, in order.
    static void record(TranscodeSequence &seq, QStringList &events)
    {
        connect(&seq, &TranscodeSequence::fileStarted, &seq,
                [&events](int i, qint64 d) { events << QStringLiteral("start %1 %2").arg(i).arg(d); });
        connect(&seq, &TranscodeSequence::upperBar, &seq,
                [&events](float p) { events << QStringLiteral("bar %1").arg(double(p)); });
        connect(&seq, &TranscodeSequence::filesDone, &seq,
                [&events](int n) { events << QStringLiteral("done %1").arg(n); });
        connect(&seq, &TranscodeSequence::finished, &seq, [&events] { events << QStringLiteral("finished"); });
        connect(&seq, &TranscodeSequence::failed, &seq, [&events](int i, const ToolVerdict &v) {
            events << QStringLiteral("failed %1 %2").arg(i).arg(v.outcome == ToolVerdict::Outcome::Stopped
                                                                     ? QStringLiteral("stopped")
                                                                     : QStringLiteral("failed"));
        });
    }

private slots:
    void initTestCase()
    {
        m_ffmpeg = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
        m_ffprobe = QStandardPaths::findExecutable(QStringLiteral("ffprobe"));
        QVERIFY(!m_ffmpeg.isEmpty());
        QVERIFY(!m_ffprobe.isEmpty());
        const QString d = m_media.path();
        // A mono 22.05 kHz MP3 at 128 kbit/s carrying a cover picture.
        makeMedia({"-f", "lavfi", "-i", "sine=frequency=440:duration=3", "-f", "lavfi", "-i", "color=c=red:s=64x64:d=1",
              "-map", "0:a", "-map", "1:v", "-c:a", "libmp3lame", "-b:a", "128k", "-ar", "22050", "-ac", "1", "-c:v",
              "mjpeg", "-frames:v", "1", "-disposition:v", "attached_pic", "-id3v2_version", "3", d + "/cover.mp3"});
        makeMedia({"-f", "lavfi", "-i", "sine=frequency=660:duration=1", "-ac", "1", d + "/other.flac"});
        makeMedia({"-f", "lavfi", "-i", "sine=frequency=330:duration=2", "-ar", "8000", d + "/a.mp3"});
        makeMedia({"-f", "lavfi", "-i", "sine=frequency=550:duration=1", d + "/a.flac"});
        makeMedia({"-f", "lavfi", "-i", "testsrc=duration=2:size=320x240:rate=25", "-f", "lavfi", "-i", "sine=duration=2",
              "-c:v", "libx264", "-preset", "ultrafast", "-c:a", "aac", "-shortest", d + "/clip.mov"});
        makeMedia({"-f", "lavfi", "-i", "testsrc=duration=2:size=320x240:rate=25", "-c:v", "libx264", "-preset",
              "ultrafast", "-pix_fmt", "yuv420p", d + "/no sound.mp4"});
    }

    void init()
    {
        QDir(m_out.path()).removeRecursively();
        QDir().mkpath(m_out.path());
    }

    void wavForTheAudioCD()
    {
        const QStringList sources{m_media.filePath("cover.mp3"), m_media.filePath("other.flac")};
        const auto bars = transcode(BurnOperation::AudioCD, sources, {3, 1});
        QVERIFY(bars.contains(0));
        for (const QList<float> &values : bars)
            QCOMPARE(values.last(), 100.0f);
        for (const char *name : {"cover.wav", "other.wav"}) {
            const Probe p = probe(m_out.filePath(QLatin1String(name)));
            QCOMPARE(p.format, QStringLiteral("wav"));
            QCOMPARE(p.streams.size(), 1);
            const QJsonObject a = p.streams.first();
            QCOMPARE(field(a, "codec_name"), QStringLiteral("pcm_s16le"));
            QCOMPARE(field(a, "sample_rate"), QStringLiteral("44100"));
            QCOMPARE(field(a, "channels"), QStringLiteral("2"));
        }
        QVERIFY(std::fabs(probe(m_out.filePath("cover.wav")).duration - 3.0) < 0.1);
    }

    void mp3IsTranscodedAgainWithoutItsPicture()
    {
        const QString source = m_media.filePath("cover.mp3");
        const Probe before = probe(source);
        QCOMPARE(before.ofType(QStringLiteral("video")).size(), 1);
        for (BurnOperation op : {BurnOperation::MP3CD, BurnOperation::MP3DVD}) {
            init();
            transcode(op, {source, m_media.filePath("clip.mov")}, {3, 2});
            for (const char *name : {"cover.mp3", "clip.mp3"}) {
                const Probe p = probe(m_out.filePath(QLatin1String(name)));
                QCOMPARE(p.format, QStringLiteral("mp3"));
                QCOMPARE(p.ofType(QStringLiteral("video")).size(), 0);
                QCOMPARE(p.streams.size(), 1);
                const QJsonObject a = p.streams.first();
                QCOMPARE(field(a, "codec_name"), QStringLiteral("mp3"));
                QCOMPARE(field(a, "bit_rate"), QStringLiteral("192000"));
                QCOMPARE(field(a, "sample_rate"), QStringLiteral("44100"));
                QCOMPARE(field(a, "channels"), QStringLiteral("2"));
            }
            // Not a copy of the source.
            QVERIFY(QFileInfo(m_out.filePath("cover.mp3")).size() != QFileInfo(source).size());
        }
    }

    void mpgForTheVideoDiscs_data()
    {
        QTest::addColumn<int>("op");
        QTest::addColumn<QString>("video");
        QTest::addColumn<QString>("audio");
        QTest::addColumn<QString>("size");
        QTest::addColumn<QString>("rate");
        QTest::addColumn<QString>("codec");
        QTest::newRow("DVD NTSC AC-3") << int(BurnOperation::VideoDVD) << "0" << "0" << "720x480" << "30000/1001"
                                       << "ac3";
        QTest::newRow("DVD PAL AC-3") << int(BurnOperation::VideoDVD) << "1" << "0" << "720x576" << "25/1" << "ac3";
        QTest::newRow("BD NTSC MP2") << int(BurnOperation::VideoBluray) << "0" << "1" << "720x480" << "30000/1001"
                                     << "mp2";
        QTest::newRow("BD PAL MP2") << int(BurnOperation::VideoBluray) << "1" << "1" << "720x576" << "25/1" << "mp2";
    }
    void mpgForTheVideoDiscs()
    {
        QFETCH(int, op);
        QFETCH(QString, video);
        QFETCH(QString, audio);
        QFETCH(QString, size);
        QFETCH(QString, rate);
        QFETCH(QString, codec);
        const auto bars = transcode(BurnOperation(op), {m_media.filePath("clip.mov")}, {2}, video, audio);
        QCOMPARE(bars.keys(), QList<int>{0});
        QVERIFY(!bars.first().isEmpty());
        QVERIFY(bars.first().last() >= 95.0f);
        const Probe p = probe(m_out.filePath("clip.mpg"));
        QCOMPARE(p.format, QStringLiteral("mpeg"));
        const auto videos = p.ofType(QStringLiteral("video"));
        const auto audios = p.ofType(QStringLiteral("audio"));
        QCOMPARE(videos.size(), 1);
        QCOMPARE(audios.size(), 1);
        QCOMPARE(field(videos.first(), "codec_name"), QStringLiteral("mpeg2video"));
        QCOMPARE(field(videos.first(), "width") + "x" + field(videos.first(), "height"), size);
        QCOMPARE(field(videos.first(), "r_frame_rate"), rate);
        QCOMPARE(field(audios.first(), "codec_name"), codec);
        QCOMPARE(field(audios.first(), "sample_rate"), QStringLiteral("48000"));
        QCOMPARE(field(audios.first(), "channels"), QStringLiteral("2"));
    }

    // A film with no sound still becomes a DVD MPG: the picture alone.
    void videoWithoutSoundGivesAPictureOnlyMpg()
    {
        const auto bars = transcode(BurnOperation::VideoDVD, {m_media.filePath("no sound.mp4")}, {2}, "0", "0");
        QCOMPARE(bars.keys(), QList<int>{0});
        QVERIFY(!bars.first().isEmpty());
        const Probe p = probe(m_out.filePath("no sound.mpg"));
        QCOMPARE(p.format, QStringLiteral("mpeg"));
        QCOMPARE(p.ofType(QStringLiteral("video")).size(), 1);
        QCOMPARE(p.ofType(QStringLiteral("audio")).size(), 0);
        QCOMPARE(field(p.ofType(QStringLiteral("video")).first(), "codec_name"), QStringLiteral("mpeg2video"));
        QVERIFY(std::fabs(p.duration - 2.0) < 0.2);
    }

    void sameNameDifferentExtension()
    {
        // a.mp3 (2 s) and a.flac (1 s) would both be a.wav: the second gets
        // a name of its own, and both land, in list order.
        const auto bars =
            transcode(BurnOperation::AudioCD, {m_media.filePath("a.mp3"), m_media.filePath("a.flac")}, {2, 1});
        QVERIFY(bars.contains(0));
        QCOMPARE(QDir(m_out.path()).entryList(QDir::Files, QDir::Name),
                 (QStringList{QStringLiteral("a 1.wav"), QStringLiteral("a.wav")}));
        QVERIFY(std::fabs(probe(m_out.filePath("a.wav")).duration - 2.0) < 0.1);
        QVERIFY(std::fabs(probe(m_out.filePath("a 1.wav")).duration - 1.0) < 0.1);
    }

    void missingSourceStopsTheSequence()
    {
        TranscodeSequence seq;
        const QStringList sources{m_media.filePath("nowhere.mp3"), m_media.filePath("other.flac")};
        const QStringList outputs = TranscodeArguments::outputPaths(BurnOperation::AudioCD, m_out.path(), sources);
        QList<TranscodeSequence::Step> steps;
        for (int i = 0; i < sources.size(); ++i)
            steps << TranscodeSequence::Step{
                TranscodeArguments::commandTo(BurnOperation::AudioCD, m_ffmpeg, sources.at(i), outputs.at(i)), 5,
                outputs.at(i)};
        QSignalSpy started(&seq, &TranscodeSequence::fileStarted);
        QSignalSpy failed(&seq, &TranscodeSequence::failed);
        QSignalSpy finished(&seq, &TranscodeSequence::finished);
        seq.start(steps);
        QVERIFY(failed.wait(30000));
        QCOMPARE(failed.first().at(0).toInt(), 0);
        const ToolVerdict verdict = failed.first().at(1).value<ToolVerdict>();
        QCOMPARE(verdict.outcome, ToolVerdict::Outcome::Failed);
        QVERIFY(verdict.exitCode != 0);
        QVERIFY2(verdict.errorLines.join('\n').contains("No such file or directory"),
                 qPrintable(verdict.errorLines.join('\n')));
        QTest::qWait(300);
        // The second file ran beside the first and was stopped, or was done
        // first; the bar never moved on, and nothing else was made.
        QCOMPARE(started.count(), 1);
        QCOMPARE(failed.count(), 1);
        QCOMPARE(finished.count(), 0);
        QVERIFY(!seq.isRunning());
        const QStringList made = QDir(m_out.path()).entryList(QDir::Files);
        QVERIFY2(made.isEmpty() || made == QStringList{QStringLiteral("other.wav")}, qPrintable(made.join(' ')));
    }

    void corruptSourceFailsWithTheTranscodersWords()
    {
        const QString bad = m_media.filePath("corrupt.mp3");
        QVERIFY(writeFile(bad, QByteArray(4096, 'x')));
        TranscodeSequence seq;
        const QString out = m_out.filePath("corrupt.wav");
        QSignalSpy failed(&seq, &TranscodeSequence::failed);
        seq.start({TranscodeSequence::Step{
            TranscodeArguments::commandTo(BurnOperation::AudioCD, m_ffmpeg, bad, out), 5, out}});
        QVERIFY(failed.wait(30000));
        const ToolVerdict verdict = failed.first().at(1).value<ToolVerdict>();
        // ffmpeg names the file and says what is wrong with it.
        QVERIFY2(verdict.errorLines.join('\n').contains("corrupt.mp3: Invalid"), qPrintable(verdict.output.right(400)));
        QFile::remove(bad);
    }

    void zeroDurationRecord()
    {
        const auto bars = transcode(BurnOperation::AudioCD, {m_media.filePath("other.flac")}, {0});
        QCOMPARE(bars.keys(), QList<int>{0});
        QVERIFY(!bars.first().isEmpty());
        QVERIFY(std::isinf(bars.first().last()));
    }

    void emptySequenceStillFinishes()
    {
        TranscodeSequence seq;
        QSignalSpy finished(&seq, &TranscodeSequence::finished);
        seq.start({});
        QCOMPARE(finished.count(), 0);
        QVERIFY(finished.wait(2000));
        QVERIFY(!seq.isRunning());
    }

    // Side by side: the upper bar stays on the earliest unfinished file in
    // list order and shows only its percentages; when that file ends, the
    // bar moves to the next unfinished one (skipping those already done)
    // with its latest percentage; the lower bar counts files as they end.
    void barsFollowTheEarliestUnfinishedFile()
    {
        TranscodeSequence seq;
        seq.setMaxParallel(3);
        QStringList events;
        record(seq, events);
        seq.start({gated("a.wav", 10, "0", {"2"}), gated("b.wav", 20, "0", {"10"}), gated("c.wav", 40, "0", {"10"})});
        QTRY_VERIFY(ready("a.wav") && ready("b.wav") && ready("c.wav"));
        QTRY_COMPARE(events, (QStringList{"start 0 10", "bar 20"}));

        open("b.wav");
        QTRY_COMPARE(events.size(), 3);
        QCOMPARE(events.last(), QStringLiteral("done 1"));

        open("a.wav");
        QTRY_COMPARE(events.size(), 6);
        QCOMPARE(events.mid(3), (QStringList{"done 2", "start 2 40", "bar 25"}));

        open("c.wav");
        QTRY_VERIFY(events.contains(QStringLiteral("finished")));
        QCOMPARE(events.mid(6), (QStringList{"done 3", "finished"}));
        QVERIFY(!seq.isRunning());
        // Every output is there, each under its own name.
        for (const char *name : {"a.wav", "b.wav", "c.wav"})
            QVERIFY(QFileInfo(m_out.filePath(QLatin1String(name))).size() > 0);
    }

    // No more files run at once than allowed; the next starts when one ends.
    void noMoreAtOnceThanAllowed()
    {
        TranscodeSequence seq;
        seq.setMaxParallel(2);
        QCOMPARE(seq.maxParallel(), 2);
        QStringList events;
        record(seq, events);
        seq.start({gated("a.wav", 10, "0"), gated("b.wav", 10, "0"), gated("c.wav", 10, "0")});
        QTRY_VERIFY(ready("a.wav") && ready("b.wav"));
        QTest::qWait(200);
        QVERIFY(!ready("c.wav"));  // nothing ended, so nothing else started
        open("b.wav");
        QTRY_VERIFY(ready("c.wav"));
        open("a.wav");
        QTRY_VERIFY(events.contains(QStringLiteral("start 2 10")));  // a ended before c
        open("c.wav");
        QTRY_VERIFY(events.contains(QStringLiteral("finished")));
        QCOMPARE(events, (QStringList{"start 0 10", "done 1", "done 2", "start 2 10", "done 3", "finished"}));
    }

    // A failure stops the files still running; the one reported is the file
    // that failed, not a sibling stopped because of it.
    void aFailureStopsTheOthers_data()
    {
        QTest::addColumn<int>("failing");
        QTest::newRow("a later file fails") << 2;
        QTest::newRow("the first file fails") << 0;
    }
    void aFailureStopsTheOthers()
    {
        QFETCH(int, failing);
        TranscodeSequence seq;
        seq.setMaxParallel(3);
        QStringList events;
        record(seq, events);
        QList<ToolVerdict> verdicts;
        connect(&seq, &TranscodeSequence::failed, this, [&](int, const ToolVerdict &v) { verdicts << v; });
        const QStringList names{"a.wav", "b.wav", "c.wav", "d.wav"};
        QList<TranscodeSequence::Step> steps;
        for (int i = 0; i < names.size(); ++i)
            steps << gated(names.at(i), 10, i == failing ? QStringLiteral("1") : QStringLiteral("0"));
        seq.start(steps);
        QTRY_VERIFY(ready("a.wav") && ready("b.wav") && ready("c.wav"));
        open(names.at(failing));
        QTRY_VERIFY(!seq.isRunning());
        QTest::qWait(200);
        QCOMPARE(events, (QStringList{"start 0 10", QStringLiteral("failed %1 failed").arg(failing)}));
        QCOMPARE(verdicts.size(), 1);
        QCOMPARE(verdicts.first().outcome, ToolVerdict::Outcome::Failed);
        QCOMPARE(verdicts.first().exitCode, 1);
        QVERIFY(verdicts.first().errorLines.join('\n').contains(names.at(failing) + ": Invalid data"));
        // The fourth file never started, and no run is left behind.
        QVERIFY(!ready("d.wav"));
        QVERIFY(ToolRun::running().isEmpty());
    }

    // A step that ends well but leaves no file fails like any other.
    void aStepWithoutItsOutputFails()
    {
        TranscodeSequence seq;
        seq.setMaxParallel(2);
        QStringList events;
        record(seq, events);
        seq.start({gated("a.wav", 10, "0"), gated("b.wav", 10, "empty")});
        QTRY_VERIFY(ready("a.wav") && ready("b.wav"));
        open("b.wav");
        QTRY_VERIFY(!seq.isRunning());
        QCOMPARE(events, (QStringList{"start 0 10", "failed 1 failed"}));
    }

    // stop() ends every run and answers with a Stopped verdict for the
    // earliest unfinished file.
    void stopEndsEveryRun()
    {
        TranscodeSequence seq;
        seq.setMaxParallel(3);
        QStringList events;
        record(seq, events);
        seq.start({gated("a.wav", 10, "0"), gated("b.wav", 10, "0"), gated("c.wav", 10, "0")});
        QTRY_VERIFY(ready("a.wav") && ready("b.wav") && ready("c.wav"));
        open("a.wav");
        QTRY_COMPARE(events, (QStringList{"start 0 10", "done 1", "start 1 10"}));
        seq.stop();
        QTRY_VERIFY(!seq.isRunning());
        QCOMPARE(events.mid(3), QStringList{"failed 1 stopped"});
        QVERIFY(ToolRun::running().isEmpty());

        // Stopped before the first file could start.
        TranscodeSequence early;
        QStringList earlyEvents;
        record(early, earlyEvents);
        early.start({gated("e.wav", 10, "0")});
        early.stop();
        QTRY_VERIFY(!early.isRunning());
        QCOMPARE(earlyEvents, QStringList{"failed 0 stopped"});
        QVERIFY(!ready("e.wav"));
    }

    // Real transcodes side by side: every output lands under its own name
    // whichever ends first.
    void realFilesSideBySide()
    {
        const QStringList sources{m_media.filePath("cover.mp3"), m_media.filePath("other.flac"),
                                  m_media.filePath("a.mp3"), m_media.filePath("a.flac")};
        const QStringList outputs = TranscodeArguments::outputPaths(BurnOperation::AudioCD, m_out.path(), sources);
        TranscodeSequence seq;
        seq.setMaxParallel(4);
        QList<TranscodeSequence::Step> steps;
        const QList<qint64> seconds{3, 1, 2, 1};
        for (int i = 0; i < sources.size(); ++i)
            steps << TranscodeSequence::Step{
                TranscodeArguments::commandTo(BurnOperation::AudioCD, m_ffmpeg, sources.at(i), outputs.at(i)),
                seconds.at(i), outputs.at(i)};
        QSignalSpy finished(&seq, &TranscodeSequence::finished);
        seq.start(steps);
        QVERIFY(finished.wait(60000));
        QCOMPARE(outputs, (QStringList{m_out.filePath("cover.wav"), m_out.filePath("other.wav"),
                                       m_out.filePath("a.wav"), m_out.filePath("a 1.wav")}));
        for (int i = 0; i < outputs.size(); ++i)
            QVERIFY2(std::fabs(probe(outputs.at(i)).duration - double(seconds.at(i))) < 0.1, qPrintable(outputs.at(i)));
    }
};

TAMBLO_TEST_MAIN(TestBurnTranscode)
#include "tst_burn_transcode.moc"
