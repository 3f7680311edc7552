#include "support/TestMain.h"
#include "support/FakeAlerts.h"
#include "support/PreviewMedia.h"

#include "preview/ui/AVSPDocument.h"

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
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), 10000);
        QVERIFY(transportEnabled(*doc));
        QVERIFY(qAbs(doc->duration() - 3.0) < 0.2);
        QCOMPARE(doc->timeSlider->maximum(), int(doc->player->duration()));
    }

    void audioOnlyFileShowsNoVideoLabel()
    {
        FakeAlerts alerts;
        auto doc = open(m_files.mp3, alerts);
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), 10000);
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
        QTRY_VERIFY_WITH_TIMEOUT(doc->playerLayer && !doc->playerLayer->isHidden(), 10000);
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
        QTRY_VERIFY_WITH_TIMEOUT(!doc->unplayableLabel->isHidden(), 10000);
        QTRY_COMPARE(alerts.shown.size(), 1);
        QCOMPARE(alerts.shown[0].messageText, QStringLiteral("Video could not be played."));
        QCOMPARE(alerts.shown[0].informativeText, QStringLiteral("Video could not be played."));
        QCOMPARE(alerts.shown[0].buttons, QStringList{"Close"});
        QVERIFY(doc->loadingSpinner->isHidden());
        QVERIFY(doc->noVideoLabel->isHidden());
        QVERIFY(doc->playerLayer == nullptr);
        QVERIFY(transportDisabled(*doc));
        QCOMPARE(doc->duration(), 0.0);
        QTest::qWait(300);
        QCOMPARE(alerts.shown.size(), 1);  // told once
    }

    void fastForwardThreeTimesThenPlay()
    {
        FakeAlerts alerts;
        auto doc = open(m_files.mp4, alerts);
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), 10000);
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
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), 10000);
        doc->fastForward();
        doc->fastForward();  // 4x: 3 s of sound in well under 3 s
        QElapsedTimer clock;
        clock.start();
        QTRY_VERIFY_WITH_TIMEOUT(doc->rate() == 0.0, 5000);  // stopped at the end
        QVERIFY2(clock.elapsed() < 2500, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(doc->playPauseButton->text(), QStringLiteral("Play"));
    }

    void rewindStepsBackToTheStart()
    {
        FakeAlerts alerts;
        auto doc = open(m_files.mp4, alerts);
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), 10000);
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
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), 10000);
        doc->setCurrentTime(doc->duration() - 0.3);
        doc->playPauseToggle();
        QCOMPARE(doc->playPauseButton->text(), QStringLiteral("Pause"));
        QTRY_COMPARE_WITH_TIMEOUT(doc->rate(), 0.0, 5000);
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
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), 10000);
        doc->setCurrentTime(doc->duration() - 0.2);
        doc->playPauseToggle();
        QTRY_COMPARE_WITH_TIMEOUT(doc->rate(), 0.0, 5000);
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
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), 10000);
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
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), 10000);
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
        QTRY_VERIFY_WITH_TIMEOUT(doc->playerLayer && !doc->playerLayer->isHidden(), 10000);
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
        QTRY_VERIFY_WITH_TIMEOUT(doc->isReadyToPlay(), 10000);
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
