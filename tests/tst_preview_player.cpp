#include "support/TestMain.h"
#include "support/FakeAlerts.h"
#include "support/PreviewMedia.h"

#include "preview/ui/AVSPDocument.h"

#include <QFileInfo>
#include <QLabel>
#include <QPointer>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>
#include <QVideoFrame>
#include <QVideoSink>
#include <QVideoWidget>
#include <memory>

// How long a check waits for the media backend. Each wait ends as soon as
// it is met; the margin is for a machine busy with other tests, where the
// backend's threads may get little time.
constexpr int MediaWaitMs = 30000;

// The preview player on short media made here with ffmpeg: an mp3, an mp4
// with sound, a silent mp4 and a text file named .mp4.
class TestPreviewPlayer : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    PreviewMedia m_files;

    std::unique_ptr<AVSPDocument> open(const QString &path, FakeAlerts &alerts)
    {
        auto doc = std::make_unique<AVSPDocument>(QUrl::fromLocalFile(path), alerts);
        doc->show();
        return doc;
    }

    // What the player says of itself, for a check that failed.
    static QString playerState(const AVSPDocument &d)
    {
        if (!d.player)
            return QStringLiteral("no player");
        const QMediaPlayer &p = *d.player;
        return QStringLiteral("media status %1, playback state %2, position %3 ms of %4 ms, error \"%5\", rate %6")
            .arg(int(p.mediaStatus()))
            .arg(int(p.playbackState()))
            .arg(p.position())
            .arg(p.duration())
            .arg(p.errorString())
            .arg(d.rate());
    }

    static bool transportEnabled(const AVSPDocument &d)
    {
        return d.playPauseButton->isEnabled() && d.fastForwardButton->isEnabled() && d.rewindButton->isEnabled();
    }
    static bool transportDisabled(const AVSPDocument &d)
    {
        return !d.playPauseButton->isEnabled() && !d.fastForwardButton->isEnabled() && !d.rewindButton->isEnabled();
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(!QStandardPaths::findExecutable("ffmpeg").isEmpty(), "ffmpeg must be installed for the tests");
        QVERIFY(m_dir.isValid());
        QVERIFY(m_files.make(m_dir.path()));
    }

    void transportWaitsUntilTheFileIsReady()
    {
        FakeAlerts alerts;
        auto doc = open(m_files.mp4, alerts);
        // Straight after opening nothing is loaded yet.
        QVERIFY(transportDisabled(*doc));
        QVERIFY(!doc->loadingSpinner->isHidden());
        QCOMPARE(doc->loadingSpinner->maximum(), 0);  // busy
        QCOMPARE(doc->duration(), 0.0);
        QCOMPARE(doc->playPauseButton->text(), QStringLiteral("Play"));
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), MediaWaitMs);
        QVERIFY(transportEnabled(*doc));
        QVERIFY(qAbs(doc->duration() - 3.0) < 0.2);
        QCOMPARE(doc->timeSlider->maximum(), int(doc->player->duration()));
    }

    void audioOnlyFileShowsNoVideoLabel()
    {
        FakeAlerts alerts;
        auto doc = open(m_files.mp3, alerts);
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), MediaWaitMs);
        QVERIFY(!doc->noVideoLabel->isHidden());
        QVERIFY(doc->playerLayer == nullptr);  // no picture at all
        QVERIFY(doc->loadingSpinner->isHidden());
        QVERIFY(doc->unplayableLabel->isHidden());
        QVERIFY(transportEnabled(*doc));
        QVERIFY(qAbs(doc->duration() - 3.0) < 0.2);
        QTest::qWait(200);
        QCOMPARE(alerts.shown.size(), 0);
    }

    void videoFileShowsItsPicture_data()
    {
        QTest::addColumn<QString>("which");
        QTest::newRow("with sound") << "mp4";
        QTest::newRow("silent") << "silent";
    }
    void videoFileShowsItsPicture()
    {
        QFETCH(QString, which);
        FakeAlerts alerts;
        auto doc = open(which == "mp4" ? m_files.mp4 : m_files.silent, alerts);
        QTRY_VERIFY_WITH_TIMEOUT(doc->playerLayer && !doc->playerLayer->isHidden(), MediaWaitMs);
        QVERIFY(doc->loadingSpinner->isHidden());
        QVERIFY(doc->noVideoLabel->isHidden());
        QVERIFY(doc->unplayableLabel->isHidden());
        QVERIFY(transportEnabled(*doc));
        // The first picture is there without pressing Play.
        const QVideoFrame frame = doc->playerLayer->videoSink()->videoFrame();
        QVERIFY(frame.isValid());
        QCOMPARE(frame.size(), QSize(320, 240));
        QCOMPARE(doc->rate(), 0.0);
        QCOMPARE(doc->playPauseButton->text(), QStringLiteral("Play"));
        QCOMPARE(alerts.shown.size(), 0);
    }

    void unplayableFileSaysSo_data()
    {
        QTest::addColumn<bool>("missing");
        QTest::newRow("text named .mp4") << false;
        QTest::newRow("missing file") << true;
    }
    void unplayableFileSaysSo()
    {
        QFETCH(bool, missing);
        FakeAlerts alerts;
        auto doc = open(missing ? m_dir.filePath("gone.mp4") : m_files.text, alerts);
        QTRY_VERIFY_WITH_TIMEOUT(!doc->unplayableLabel->isHidden(), MediaWaitMs);
        QTRY_COMPARE(alerts.shown.size(), 1);
        QCOMPARE(alerts.shown[0].messageText, QStringLiteral("Video could not be played."));
        // The reason is the player's own: what the media backend said.
        const QString reason = alerts.shown[0].informativeText;
        QVERIFY(!reason.trimmed().isEmpty());
        QVERIFY2(reason != QStringLiteral("Video could not be played."), qPrintable(reason));
        QVERIFY2(doc->unplayableLabel->text().contains(reason), qPrintable(doc->unplayableLabel->text()));
        QCOMPARE(alerts.shown[0].buttons, QStringList{"Close"});
        QVERIFY(doc->loadingSpinner->isHidden());
        QVERIFY(doc->noVideoLabel->isHidden());
        QVERIFY(doc->playerLayer == nullptr);
        QVERIFY(transportDisabled(*doc));
        QCOMPARE(doc->duration(), 0.0);
        QTest::qWait(300);
        QCOMPARE(alerts.shown.size(), 1);  // told once
    }

    // Every kind of file the Video and Audio tabs take, as a camera, a DVD
    // recorder or a music library makes it: it loads, shows its picture (or
    // says it has none) and plays, without an alert.
    void everyListedKindPlays_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("encode");
        QTest::addColumn<bool>("picture");
        const QStringList pictureAndSound{"-f", "lavfi", "-i", "testsrc=duration=3:size=320x240:rate=25",
                                          "-f", "lavfi", "-i", "sine=frequency=440:duration=3", "-shortest"};
        const QStringList pictureOnly{"-f", "lavfi", "-i", "testsrc=duration=3:size=320x240:rate=25"};
        const QStringList sound{"-f", "lavfi", "-i", "sine=frequency=440:duration=3"};
        auto row = [](const char *name, const QStringList &in, const QStringList &codecs, bool picture) {
            QTest::newRow(name) << QString::fromLatin1(name) << (in + codecs) << picture;
        };
        row("program stream.mpg", pictureAndSound, {"-c:v", "mpeg2video", "-c:a", "mp2", "-f", "vob"}, true);
        row("mpeg-1 system.mpeg", pictureAndSound, {"-c:v", "mpeg1video", "-c:a", "mp2", "-f", "mpeg"}, true);
        row("mpeg-1 system.mpe", pictureAndSound, {"-c:v", "mpeg1video", "-c:a", "mp2", "-f", "mpeg"}, true);
        row("transport stream.ts", pictureAndSound, {"-c:v", "mpeg2video", "-c:a", "mp2", "-f", "mpegts"}, true);
        row("h264 aac.mp4", pictureAndSound, {"-c:v", "libx264", "-pix_fmt", "yuv420p", "-c:a", "aac"}, true);
        row("camera.mov", pictureAndSound, {"-c:v", "libx264", "-pix_fmt", "yuv420p", "-c:a", "aac"}, true);
        row("old camera.avi", pictureAndSound, {"-c:v", "mpeg4", "-c:a", "libmp3lame"}, true);
        row("windows.wmv", pictureAndSound, {"-c:v", "wmv2", "-c:a", "wmav2"}, true);
        row("windows.asf", pictureAndSound, {"-c:v", "wmv2", "-c:a", "wmav2", "-f", "asf"}, true);
        row("flash.flv", pictureAndSound, {"-c:v", "flv1", "-c:a", "libmp3lame", "-ar", "44100"}, true);
        row("phone.3gp", QStringList{"-f", "lavfi", "-i", "testsrc=duration=3:size=176x144:rate=25", "-f", "lavfi",
                                     "-i", "sine=frequency=440:duration=3", "-shortest"},
            {"-c:v", "h263", "-c:a", "aac", "-ar", "8000", "-ac", "1"}, true);
        row("elementary.m1v", pictureOnly, {"-c:v", "mpeg1video", "-f", "mpeg1video"}, true);
        row("elementary.m2v", pictureOnly, {"-c:v", "mpeg2video", "-f", "mpeg2video"}, true);
        row("motion jpeg.mjpg", pictureOnly, {"-c:v", "mjpeg", "-f", "mjpeg"}, true);
        row("song.wma", sound, {"-c:a", "wmav2"}, false);
        row("song.mp2", sound, {"-c:a", "mp2"}, false);
        row("song.m4a", sound, {"-c:a", "aac"}, false);
        row("song.wav", sound, {}, false);
    }
    void everyListedKindPlays()
    {
        QFETCH(QString, name);
        QFETCH(QStringList, encode);
        QFETCH(bool, picture);
        const QString path = m_dir.filePath(name);
        if (!QFileInfo::exists(path))
            QVERIFY2(makeMedia(encode + QStringList{path}), qPrintable(name));
        FakeAlerts alerts;
        auto doc = open(path, alerts);
        QTRY_VERIFY2_WITH_TIMEOUT(doc->isReadyToPlay() || !alerts.shown.isEmpty(), qPrintable(name), MediaWaitMs);
        QVERIFY2(alerts.shown.isEmpty(), qPrintable(alerts.texts().join('\n')));
        if (picture) {
            QVERIFY(doc->playerLayer);  // found to have a picture
            QVERIFY(doc->noVideoLabel->isHidden());
        } else {
            QVERIFY(!doc->noVideoLabel->isHidden());
            QVERIFY(doc->playerLayer == nullptr);
        }
        QVERIFY(doc->unplayableLabel->isHidden());
        QVERIFY(transportEnabled(*doc));
        const double from = doc->currentTime();
        int frames = 0;
        if (picture)
            connect(doc->findChild<QVideoWidget *>(QStringLiteral("playerLayer"))->videoSink(),
                    &QVideoSink::videoFrameChanged, this, [&](const QVideoFrame &f) { frames += f.isValid(); });
        doc->playPauseToggle();
        QCOMPARE(doc->rate(), 1.0);
        if (picture && name.startsWith(QLatin1String("elementary"))) {
            // A bare MPEG video stream carries no clock: the backend shows
            // its pictures as fast as it decodes them and is at the end at
            // once. It still shows a picture and says nothing is wrong.
            QTRY_VERIFY_WITH_TIMEOUT((frames >= 1 && doc->rate() == 0.0) || !alerts.shown.isEmpty(), MediaWaitMs);
            QTRY_VERIFY_WITH_TIMEOUT(doc->playerLayer && !doc->playerLayer->isHidden(), MediaWaitMs);
        } else if (picture) {
            // Moving pictures: frame after frame reaches the picture.
            QTRY_VERIFY_WITH_TIMEOUT(frames >= 10 || !alerts.shown.isEmpty(), MediaWaitMs);
            QTRY_VERIFY_WITH_TIMEOUT(doc->playerLayer && !doc->playerLayer->isHidden(), MediaWaitMs);
            QVERIFY(doc->noVideoLabel->isHidden());
        } else {
            // Sound only: the position moves on. Where no sound device can be
            // opened (a test machine), the backend plays into a stand-in
            // that sometimes does not keep time with a bare MPEG audio
            // stream, which then runs to its end at once: decoded to the
            // end without a word, the file still plays.
            QTRY_VERIFY2_WITH_TIMEOUT(doc->currentTime() > from + 0.5
                                          || doc->player->mediaStatus() == QMediaPlayer::EndOfMedia
                                          || !alerts.shown.isEmpty(),
                                      qPrintable(playerState(*doc)), MediaWaitMs);
            QVERIFY2(doc->player->error() == QMediaPlayer::NoError, qPrintable(playerState(*doc)));
        }
        QVERIFY2(alerts.shown.isEmpty(), qPrintable(alerts.texts().join('\n')));
        QVERIFY(doc->unplayableLabel->isHidden());
        QVERIFY(doc->loadingSpinner->isHidden());
    }

    // Opened afresh again and again, the same good file never fails: the
    // backend's streaming thread hands each picture to this thread and waits
    // for it at most 300 ms, so nothing slow may run inside that hand-over.
    void aGoodFileNeverFailsWhenOpenedAgainAndAgain()
    {
        for (int i = 0; i < 20; ++i) {
            FakeAlerts alerts;
            auto doc = open(m_files.mp4, alerts);
            QTRY_VERIFY2_WITH_TIMEOUT((doc->playerLayer && !doc->playerLayer->isHidden()) || !alerts.shown.isEmpty(),
                                      qPrintable(QString::number(i)), MediaWaitMs);
            QTest::qWait(100);
            QVERIFY2(alerts.shown.isEmpty(), qPrintable(QString("start %1: %2").arg(i).arg(alerts.texts().join(' '))));
            QVERIFY(doc->isReadyToPlay());
        }
    }

    // The picture is made visible after the first frame's hand-over has
    // returned, not inside it (showing it builds its drawing surface, which
    // can take longer than the backend waits).
    void pictureIsShownAfterTheFrameHandOver()
    {
        FakeAlerts alerts;
        auto doc = open(m_files.silent, alerts);
        auto *picture = doc->findChild<QVideoWidget *>(QStringLiteral("playerLayer"));
        QVERIFY(picture);
        QVERIFY(picture->isHidden());
        QList<bool> hiddenDuringHandOver;
        connect(picture->videoSink(), &QVideoSink::videoFrameChanged, this, [&](const QVideoFrame &f) {
            if (f.isValid())
                hiddenDuringHandOver << picture->isHidden();
        });
        QTRY_VERIFY_WITH_TIMEOUT(!picture->isHidden(), MediaWaitMs);
        QVERIFY(!hiddenDuringHandOver.isEmpty());
        QCOMPARE(hiddenDuringHandOver.first(), true);
        QCOMPARE(doc->playerLayer, picture);
        // Paused, the picture keeps showing a frame.
        QTest::qWait(500);
        QVERIFY(picture->videoSink()->videoFrame().isValid());
        QCOMPARE(alerts.shown.size(), 0);
    }

    void windowShowsTheNameAndTheClock()
    {
        FakeAlerts alerts;
        auto doc = open(m_files.mp4, alerts);
        QCOMPARE(doc->fileNameLabel->text(), QStringLiteral("bars with sound.mp4"));
        QCOMPARE(doc->fileNameLabel->toolTip(), m_files.mp4);
        QCOMPARE(doc->timeLabel->text(), QStringLiteral("0:00 / --:--"));
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), MediaWaitMs);
        QTRY_COMPARE(doc->timeLabel->text(), QStringLiteral("0:00 / 0:03"));
        doc->setCurrentTime(2.5);
        QTRY_COMPARE(doc->timeLabel->text(), QStringLiteral("0:02 / 0:03"));
        QVERIFY(!doc->timeLabel->accessibleName().isEmpty());
    }

    void fastForwardThreeTimesThenPlay()
    {
        FakeAlerts alerts;
        auto doc = open(m_files.mp4, alerts);
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), MediaWaitMs);
        QSignalSpy rates(doc.get(), &AVSPDocument::rateChanged);
        QStringList titles;
        for (int i = 0; i < 3; ++i) {
            QTest::mouseClick(doc->fastForwardButton, Qt::LeftButton);
            titles << doc->playPauseButton->text();
        }
        QCOMPARE(rates.size(), 3);
        QCOMPARE(rates[0][0].toDouble(), 2.0);
        QCOMPARE(rates[1][0].toDouble(), 4.0);
        QCOMPARE(rates[2][0].toDouble(), 6.0);
        QCOMPARE(titles, (QStringList{"Play", "Play", "Play"}));
        QCOMPARE(doc->player->playbackRate(), 6.0);
        QCOMPARE(doc->player->playbackState(), QMediaPlayer::PlayingState);

        doc->setCurrentTime(0.0);
        QTest::mouseClick(doc->playPauseButton, Qt::LeftButton);
        QCOMPARE(doc->rate(), 1.0);
        QCOMPARE(doc->playPauseButton->text(), QStringLiteral("Pause"));
        QCOMPARE(doc->player->playbackRate(), 1.0);
        QCOMPARE(doc->player->playbackState(), QMediaPlayer::PlayingState);

        QTest::mouseClick(doc->playPauseButton, Qt::LeftButton);
        QCOMPARE(doc->rate(), 0.0);
        QCOMPARE(doc->playPauseButton->text(), QStringLiteral("Play"));
        QTRY_COMPARE(doc->player->playbackState(), QMediaPlayer::PausedState);
    }

    void fastForwardRunsFaster()
    {
        FakeAlerts alerts;
        auto doc = open(m_files.mp3, alerts);
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), MediaWaitMs);
        doc->fastForward();
        doc->fastForward();  // 4x: 3 s of sound in well under 3 s
        QElapsedTimer clock;
        clock.start();
        QTRY_VERIFY_WITH_TIMEOUT(doc->rate() == 0.0, MediaWaitMs);  // stopped at the end
        QVERIFY2(clock.elapsed() < 2500, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(doc->playPauseButton->text(), QStringLiteral("Play"));
    }

    void rewindStepsBackToTheStart()
    {
        FakeAlerts alerts;
        auto doc = open(m_files.mp4, alerts);
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), MediaWaitMs);
        doc->setCurrentTime(2.5);
        QTRY_VERIFY(qAbs(doc->currentTime() - 2.5) < 0.05);

        QTest::mouseClick(doc->rewindButton, Qt::LeftButton);
        QCOMPARE(doc->rate(), -2.0);
        QCOMPARE(doc->playPauseButton->text(), QStringLiteral("Play"));
        QVERIFY(doc->player->playbackState() != QMediaPlayer::PlayingState);
        QElapsedTimer clock;
        clock.start();
        QTRY_VERIFY(doc->currentTime() < 1.7);
        const double at = doc->currentTime();
        const qint64 ms = clock.elapsed();
        // Two seconds back per second: never faster, and behind by no more than a step or two.
        const double back = 2.5 - at, expected = 2.0 * ms / 1000.0;
        const QByteArray seen = QString("%1 s back after %2 ms").arg(back).arg(ms).toLatin1();
        QVERIFY2(back <= expected + 0.05, seen.constData());
        QVERIFY2(back >= expected - 0.45, seen.constData());

        QTest::mouseClick(doc->rewindButton, Qt::LeftButton);
        QTest::mouseClick(doc->rewindButton, Qt::LeftButton);
        QCOMPARE(doc->rate(), -6.0);
        QCOMPARE(doc->playPauseButton->text(), QStringLiteral("Play"));
        // At the start it comes to rest.
        QTRY_COMPARE_WITH_TIMEOUT(doc->rate(), 0.0, 3000);
        QTRY_COMPARE(doc->currentTime(), 0.0);
        QCOMPARE(doc->timeSlider->value(), 0);

        // Rewinding, then play: normal speed forwards.
        doc->setCurrentTime(1.0);
        doc->rewind();
        doc->playPauseToggle();
        QCOMPARE(doc->rate(), 1.0);
        QCOMPARE(doc->playPauseButton->text(), QStringLiteral("Pause"));
        const double from = doc->currentTime();
        QTRY_VERIFY(doc->currentTime() > from + 0.2);
    }

    void playAtTheEndRestartsFromZero()
    {
        FakeAlerts alerts;
        auto doc = open(m_files.mp3, alerts);
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), MediaWaitMs);
        doc->setCurrentTime(doc->duration() - 0.3);
        doc->playPauseToggle();
        QCOMPARE(doc->playPauseButton->text(), QStringLiteral("Pause"));
        QTRY_COMPARE_WITH_TIMEOUT(doc->rate(), 0.0, MediaWaitMs);
        QCOMPARE(doc->playPauseButton->text(), QStringLiteral("Play"));
        QCOMPARE(doc->currentTime(), doc->duration());
        QVERIFY(transportEnabled(*doc));

        QSignalSpy moved(doc.get(), &AVSPDocument::currentTimeChanged);
        doc->playPauseToggle();
        QCOMPARE(doc->rate(), 1.0);
        QCOMPARE(doc->playPauseButton->text(), QStringLiteral("Pause"));
        QTRY_VERIFY(!moved.isEmpty());
        QVERIFY2(moved.first().first().toDouble() < 0.5, qPrintable(moved.first().first().toString()));
        QTRY_VERIFY(doc->currentTime() > 0.2 && doc->currentTime() < 1.5);
        QCOMPARE(doc->player->playbackState(), QMediaPlayer::PlayingState);
    }

    void rewindFromTheEnd()
    {
        FakeAlerts alerts;
        auto doc = open(m_files.silent, alerts);
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), MediaWaitMs);
        doc->setCurrentTime(doc->duration() - 0.2);
        doc->playPauseToggle();
        QTRY_COMPARE_WITH_TIMEOUT(doc->rate(), 0.0, MediaWaitMs);
        QCOMPARE(doc->currentTime(), doc->duration());
        doc->rewind();
        QCOMPARE(doc->rate(), -2.0);
        QTRY_VERIFY(doc->currentTime() < doc->duration() - 0.5);
        QTRY_COMPARE_WITH_TIMEOUT(doc->rate(), 0.0, 3000);
        QCOMPARE(doc->currentTime(), 0.0);
    }

    void sliderFollowsThePosition()
    {
        FakeAlerts alerts;
        auto doc = open(m_files.mp3, alerts);
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), MediaWaitMs);
        QCOMPARE(doc->timeSlider->minimum(), 0);
        QCOMPARE(doc->timeSlider->maximum(), int(doc->player->duration()));
        QVERIFY(doc->timeObserverToken);
        QCOMPARE(doc->timeObserverToken->interval(), 100);
        doc->playPauseToggle();
        QTRY_VERIFY(doc->timeSlider->value() > 500);
        QVERIFY2(qAbs(doc->timeSlider->value() - doc->player->position()) < 250,
                 qPrintable(QString("%1 vs %2").arg(doc->timeSlider->value()).arg(doc->player->position())));
        doc->playPauseToggle();

        // Moving the slider moves the playback position.
        doc->timeSlider->setSliderPosition(1500);
        QTRY_VERIFY(qAbs(doc->currentTime() - 1.5) < 0.05);
    }

    void propertiesReadTheirValues()
    {
        FakeAlerts alerts;
        auto doc = open(m_files.mp4, alerts);
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), MediaWaitMs);
        QSignalSpy volume(doc.get(), &AVSPDocument::volumeChanged);
        doc->setVolume(0.25f);
        QCOMPARE(doc->volume(), 0.25f);
        QCOMPARE(doc->property("volume").toFloat(), 0.25f);
        QCOMPARE(volume.size(), 1);
        QVERIFY(doc->setProperty("currentTime", 1.25));
        QTRY_VERIFY(qAbs(doc->property("currentTime").toDouble() - 1.25) < 0.02);
        QCOMPARE(doc->property("duration").toDouble(), doc->player->duration() / 1000.0);
        QCOMPARE(doc->property("rate").toDouble(), 0.0);
    }

    void controlsAreNamed()
    {
        FakeAlerts alerts;
        auto doc = open(m_files.mp3, alerts);
        const QList<QWidget *> controls{doc->playPauseButton, doc->fastForwardButton, doc->rewindButton,
                                        doc->timeSlider, doc->loadingSpinner, doc->noVideoLabel,
                                        doc->unplayableLabel, doc->playerView};
        for (QWidget *c : controls)
            QVERIFY2(!c->accessibleName().isEmpty(), qPrintable(c->objectName()));
        QVERIFY(doc->isModal());
        QCOMPARE(doc->windowTitle(), QStringLiteral("tone.mp3"));
        QCOMPARE(doc->s_File_URL, QUrl::fromLocalFile(m_files.mp3));
        QCOMPARE(doc->playerView->palette().color(QPalette::Window), QColor(Qt::black));
    }

    void closingWhilePlayingTearsDown()
    {
        FakeAlerts alerts;
        QPointer<AVSPDocument> doc = new AVSPDocument(QUrl::fromLocalFile(m_files.mp4), alerts);
        doc->setAttribute(Qt::WA_DeleteOnClose);
        doc->show();
        QTRY_VERIFY_WITH_TIMEOUT(doc->playerLayer && !doc->playerLayer->isHidden(), MediaWaitMs);
        doc->playPauseToggle();
        QTRY_VERIFY(doc->currentTime() > 0.3);
        // The player cuts its own connections when it goes, so follow it by pointer.
        QPointer<QMediaPlayer> player = doc->player;
        QPointer<QVideoWidget> picture = doc->playerLayer;
        QSignalSpy finished(doc.data(), &QDialog::finished);
        QVERIFY(doc->close());
        QCOMPARE(finished.size(), 1);
        QCOMPARE(finished[0][0].toInt(), 1);
        QTRY_VERIFY(doc.isNull());
        QVERIFY(player.isNull());
        QVERIFY(picture.isNull());
        QTest::qWait(300);  // nothing left running that could call back
        QCOMPARE(alerts.shown.size(), 0);
    }

    void closeStopsEverything()
    {
        FakeAlerts alerts;
        auto doc = open(m_files.mp3, alerts);
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), MediaWaitMs);
        doc->setCurrentTime(2.0);
        doc->rewind();
        QCOMPARE(doc->rate(), -2.0);
        doc->close();
        QVERIFY(doc->timeObserverToken == nullptr);
        QCOMPARE(doc->player->playbackState(), QMediaPlayer::StoppedState);
        QCOMPARE(doc->rate(), 0.0);
        const qint64 at = doc->player->position();
        QTest::qWait(300);
        QCOMPARE(doc->player->position(), at);  // the rewind steps ended too
        // The buttons do nothing once closed.
        doc->playPauseToggle();
        doc->fastForward();
        QCOMPARE(doc->player->playbackState(), QMediaPlayer::StoppedState);
    }

    void execEndsWithCodeOne()
    {
        FakeAlerts alerts;
        AVSPDocument doc(QUrl::fromLocalFile(m_files.mp4), alerts);
        QTimer::singleShot(0, &doc, [&] {
            QTimer::singleShot(1500, &doc, [&] { doc.close(); });
            doc.playPauseToggle();
        });
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(doc.exec(), 1);
        QVERIFY(clock.elapsed() >= 1400);
    }

    void droppingWhileStillLoadingIsSafe()
    {
        FakeAlerts alerts;
        for (const QString &path : {m_files.mp4, m_files.mp3, m_files.text}) {
            auto doc = open(path, alerts);
            doc.reset();
        }
        QTest::qWait(500);
        QCOMPARE(alerts.shown.size(), 0);
    }
};

TAMBLO_TEST_MAIN(TestPreviewPlayer)
#include "tst_preview_player.moc"
