#include "preview/ui/AVSPDocument.h"

#include <QAudioOutput>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSlider>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>
#include <QVideoFrame>
#include <QVideoSink>
#include <QVideoWidget>

#include "platform/Alerts.h"
#include "preview/PlaybackClock.h"
#include "preview/PlaybackRates.h"

namespace {

// The statuses in which the file can be played: the transport is usable.
bool isReady(QMediaPlayer::MediaStatus status)
{
    switch (status) {
    case QMediaPlayer::LoadedMedia:
    case QMediaPlayer::StalledMedia:
    case QMediaPlayer::BufferingMedia:
    case QMediaPlayer::BufferedMedia:
    case QMediaPlayer::EndOfMedia:
        return true;
    case QMediaPlayer::NoMedia:
    case QMediaPlayer::LoadingMedia:
    case QMediaPlayer::InvalidMedia:
        break;
    }
    return false;
}

constexpr int kObserverIntervalMs = 100;  // the slider follows the position ten times a second
constexpr int kRewindStepMs = 100;        // rewinding steps the position back this often
constexpr int kBlankPictureMs = 200;      // how long a paused picture may stay blank

QLabel *overlayLabel(const QString &text, const QString &name, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setAccessibleName(text);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    QPalette pal = label->palette();
    pal.setColor(QPalette::WindowText, Qt::white);
    label->setPalette(pal);
    QFont f = label->font();
    f.setPointSizeF(f.pointSizeF() * 1.3);
    label->setFont(f);
    label->hide();
    return label;
}

} // namespace

AVSPDocument::AVSPDocument(const QUrl &fileUrl, Alerts &alerts, QWidget *parent)
    : QDialog(parent), s_File_URL(fileUrl), m_alerts(alerts)
{
    setObjectName(QStringLiteral("AVSPDocument"));
    const QString name = fileUrl.isLocalFile() ? QFileInfo(fileUrl.toLocalFile()).fileName()
                                               : fileUrl.fileName();
    setWindowTitle(name.isEmpty() ? QStringLiteral("Preview") : name);
    setAccessibleName(QStringLiteral("Preview player"));
    setModal(true);

    playerView = new QWidget(this);
    playerView->setObjectName(QStringLiteral("playerView"));
    playerView->setAccessibleName(QStringLiteral("Picture"));
    playerView->setMinimumSize(480, 270);
    playerView->setAutoFillBackground(true);

    loadingSpinner = new QProgressBar(playerView);
    loadingSpinner->setObjectName(QStringLiteral("loadingSpinner"));
    loadingSpinner->setAccessibleName(QStringLiteral("Loading"));
    loadingSpinner->setTextVisible(false);
    loadingSpinner->setFixedWidth(140);
    loadingSpinner->setRange(0, 1);
    loadingSpinner->hide();

    noVideoLabel = overlayLabel(QStringLiteral("This file has no picture."), QStringLiteral("noVideoLabel"),
                                playerView);
    unplayableLabel = overlayLabel(QStringLiteral("This file cannot be played."),
                                   QStringLiteral("unplayableLabel"), playerView);

    auto *overlay = new QGridLayout(playerView);
    overlay->setContentsMargins(0, 0, 0, 0);
    overlay->addWidget(loadingSpinner, 0, 0, Qt::AlignCenter);
    overlay->addWidget(noVideoLabel, 0, 0);
    overlay->addWidget(unplayableLabel, 0, 0);

    rewindButton = new QPushButton(this);
    rewindButton->setObjectName(QStringLiteral("rewindButton"));
    rewindButton->setIcon(style()->standardIcon(QStyle::SP_MediaSeekBackward));
    rewindButton->setAccessibleName(QStringLiteral("Rewind"));
    rewindButton->setToolTip(QStringLiteral("Rewind"));
    rewindButton->setAutoDefault(false);

    playPauseButton = new QPushButton(PlaybackRates::playPauseTitle(0.0), this);
    playPauseButton->setObjectName(QStringLiteral("playPauseButton"));
    playPauseButton->setAccessibleName(playPauseButton->text());
    playPauseButton->setAutoDefault(false);
    playPauseButton->setMinimumWidth(80);

    fastForwardButton = new QPushButton(this);
    fastForwardButton->setObjectName(QStringLiteral("fastForwardButton"));
    fastForwardButton->setIcon(style()->standardIcon(QStyle::SP_MediaSeekForward));
    fastForwardButton->setAccessibleName(QStringLiteral("Fast forward"));
    fastForwardButton->setToolTip(QStringLiteral("Fast forward"));
    fastForwardButton->setAutoDefault(false);

    timeSlider = new QSlider(Qt::Horizontal, this);
    timeSlider->setObjectName(QStringLiteral("timeSlider"));
    timeSlider->setAccessibleName(QStringLiteral("Position"));
    timeSlider->setRange(0, 0);

    fileNameLabel = new QLabel(name, this);
    fileNameLabel->setObjectName(QStringLiteral("fileNameLabel"));
    fileNameLabel->setAccessibleName(QStringLiteral("File"));
    fileNameLabel->setAccessibleDescription(name);
    fileNameLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    fileNameLabel->setToolTip(fileUrl.isLocalFile() ? fileUrl.toLocalFile() : fileUrl.toString());

    timeLabel = new QLabel(PlaybackClock::text(0.0, 0.0), this);
    timeLabel->setObjectName(QStringLiteral("timeLabel"));
    timeLabel->setAccessibleName(QStringLiteral("Elapsed and total time"));
    timeLabel->setMinimumWidth(timeLabel->fontMetrics().horizontalAdvance(QStringLiteral("00:00:00 / 00:00:00")));
    timeLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    auto *transport = new QHBoxLayout;
    transport->addWidget(rewindButton);
    transport->addWidget(playPauseButton);
    transport->addWidget(fastForwardButton);
    transport->addWidget(timeSlider, 1);
    transport->addWidget(timeLabel);

    auto *outer = new QVBoxLayout(this);
    outer->addWidget(fileNameLabel);
    outer->addWidget(playerView, 1);
    outer->addLayout(transport);

    setTransportEnabled(false);

    connect(playPauseButton, &QPushButton::clicked, this, &AVSPDocument::playPauseToggle);
    connect(fastForwardButton, &QPushButton::clicked, this, &AVSPDocument::fastForward);
    connect(rewindButton, &QPushButton::clicked, this, &AVSPDocument::rewind);
    // Dragging or clicking the slider moves the playback position.
    connect(timeSlider, &QSlider::actionTriggered, this, [this](int) {
        setCurrentTime(timeSlider->sliderPosition() / 1000.0);
    });
    connect(this, &AVSPDocument::rateChanged, this, [this](double rate) {
        playPauseButton->setText(PlaybackRates::playPauseTitle(rate));
        playPauseButton->setAccessibleName(playPauseButton->text());
    });

    // The clock follows the position and learns the length once it is known.
    connect(this, &AVSPDocument::currentTimeChanged, this, &AVSPDocument::updateClock);
    connect(this, &AVSPDocument::durationChanged, this, &AVSPDocument::updateClock);

    m_rewindTimer = new QTimer(this);
    m_rewindTimer->setInterval(kRewindStepMs);
    connect(m_rewindTimer, &QTimer::timeout, this, &AVSPDocument::rewindTick);

    windowDidLoad();
}

AVSPDocument::~AVSPDocument()
{
    if (!m_closed)
        windowWillClose();
    // The player goes first, while the picture it draws into still exists.
    delete player;
    player = nullptr;
}

void AVSPDocument::windowDidLoad()
{
    QPalette pal = playerView->palette();
    pal.setColor(QPalette::Window, Qt::black);
    playerView->setPalette(pal);

    // Busy: a bar with no range keeps moving until stopped.
    loadingSpinner->setRange(0, 0);
    loadingSpinner->show();

    player = new QMediaPlayer(this);
    audioOutput = new QAudioOutput(this);
    player->setAudioOutput(audioOutput);

    // The picture output is in place before the file is opened: the media
    // backend builds its video branch once, instead of relinking it in the
    // middle of loading. It stays hidden, and is only published as
    // playerLayer, when the file turns out to have a picture.
    m_picture = new QVideoWidget(playerView);
    m_picture->setObjectName(QStringLiteral("playerLayer"));
    m_picture->setAccessibleName(QStringLiteral("Picture"));
    m_picture->setAspectRatioMode(Qt::KeepAspectRatio);
    m_picture->hide();
    if (auto *overlay = qobject_cast<QGridLayout *>(playerView->layout()))
        overlay->addWidget(m_picture, 0, 0);
    connect(m_picture->videoSink(), &QVideoSink::videoFrameChanged, this, &AVSPDocument::videoFrameChanged);
    player->setVideoOutput(m_picture);

    connect(player, &QMediaPlayer::mediaStatusChanged, this, &AVSPDocument::mediaStatusChanged);
    connect(player, &QMediaPlayer::playbackStateChanged, this, &AVSPDocument::playbackStateChanged);
    connect(player, &QMediaPlayer::errorOccurred, this, [this](QMediaPlayer::Error error, const QString &text) {
        if (error == QMediaPlayer::NoError)
            return;
        if (m_errorText.isEmpty())
            m_errorText = text;
        stopLoadingAnimationAndHandleError(true);
    });
    connect(player, &QMediaPlayer::durationChanged, this, [this](qint64 ms) {
        timeSlider->setRange(0, int(qMax<qint64>(0, ms)));
        if (m_readyToPlay)
            emit durationChanged(duration());
    });
    connect(player, &QMediaPlayer::positionChanged, this, [this](qint64) { emit currentTimeChanged(currentTime()); });
    connect(audioOutput, &QAudioOutput::volumeChanged, this, &AVSPDocument::volumeChanged);

    player->setSource(s_File_URL);
}

void AVSPDocument::mediaStatusChanged(QMediaPlayer::MediaStatus status)
{
    if (status == QMediaPlayer::InvalidMedia) {
        stopLoadingAnimationAndHandleError(true);
        return;
    }
    const bool ready = isReady(status) && !m_failed;
    if (ready != m_readyToPlay) {
        m_readyToPlay = ready;
        setTransportEnabled(ready);
        emit durationChanged(duration());
    }
    if (status == QMediaPlayer::LoadedMedia && !m_loaded && !m_failed) {
        m_loaded = true;
        assetLoaded();
    }
}

void AVSPDocument::assetLoaded()
{
    if (player->hasVideo()) {
        // The picture stays hidden until its first frame has arrived.
        // Paused, the player decodes the first picture without playing.
        playerLayer = m_picture;
        if (m_readyForDisplay)
            showPicture();
        else
            player->pause();
    } else {
        loadingSpinner->setRange(0, 1);
        loadingSpinner->hide();
        noVideoLabel->show();
    }

    timeSlider->setRange(0, int(qMax<qint64>(0, player->duration())));
    timeObserverToken = new QTimer(this);
    timeObserverToken->setInterval(kObserverIntervalMs);
    connect(timeObserverToken, &QTimer::timeout, this, &AVSPDocument::updateTimeSlider);
    timeObserverToken->start();
}

void AVSPDocument::videoFrameChanged(const QVideoFrame &frame)
{
    if (m_closed || m_failed)
        return;
    if (!frame.isValid()) {
        // The backend blanks its picture when it flushes (a seek, the pause
        // that decodes the first picture) and, paused, may send nothing
        // after it: a picture still blank a moment later gets the last frame
        // back instead of staying black. While playing or stepping back the
        // next frame comes anyway.
        if (m_lastFrame.isValid())
            QTimer::singleShot(kBlankPictureMs, this, [this] {
                if (!m_closed && !m_failed && m_picture && m_rate == 0.0 && !m_rewindTimer->isActive()
                    && !m_picture->videoSink()->videoFrame().isValid())
                    m_picture->videoSink()->setVideoFrame(m_lastFrame);
            });
        return;
    }
    m_lastFrame = frame;
    if (m_readyForDisplay)
        return;
    m_readyForDisplay = true;
    // Not from inside this signal: the backend's streaming thread waits for
    // this frame's delivery, and for no more than 300 ms. Showing the picture
    // makes its drawing surface (an OpenGL context, which takes a few hundred
    // milliseconds under a software renderer); done here, the wait runs out
    // and the stream stops with "Internal data stream error.".
    if (playerLayer)
        QTimer::singleShot(0, this, &AVSPDocument::showPicture);
}

void AVSPDocument::showPicture()
{
    if (m_closed || m_failed || !playerLayer)
        return;
    loadingSpinner->setRange(0, 1);
    loadingSpinner->hide();
    playerLayer->show();
}

void AVSPDocument::stopLoadingAnimationAndHandleError(bool withError)
{
    loadingSpinner->setRange(0, 1);
    loadingSpinner->hide();
    if (!withError || m_failed)
        return;
    m_failed = true;
    m_readyToPlay = false;
    setTransportEnabled(false);
    m_rewindTimer->stop();
    noVideoLabel->hide();
    if (playerLayer)
        playerLayer->hide();
    unplayableLabel->show();
    noteRate(0.0);
    // Told once the player's own signal has returned, not from inside it,
    // with the player's own words for what went wrong.
    QTimer::singleShot(0, this, [this] {
        if (m_closed)
            return;
        QString reason = m_errorText.isEmpty() && player ? player->errorString() : m_errorText;
        if (reason.trimmed().isEmpty())
            reason = CouldNotPlay;
        unplayableLabel->setText(QStringLiteral("This file cannot be played.\n%1").arg(reason));
        m_alerts.close(CouldNotPlay, reason);
    });
}

void AVSPDocument::playbackStateChanged(QMediaPlayer::PlaybackState state)
{
    // The player stops by itself at the end of the file (or on an error):
    // the rate falls back to 0 as it would for a pause.
    if (state != QMediaPlayer::PlayingState && m_rate > 0.0)
        noteRate(0.0);
}

void AVSPDocument::playPauseToggle()
{
    if (m_closed)
        return;
    switch (PlaybackRates::playPauseAction(m_rate, currentTime(), duration())) {
    case PlaybackRates::PlayPauseAction::Pause:
        setRate(0.0);
        break;
    case PlaybackRates::PlayPauseAction::RestartThenPlay:
        player->setPosition(0);
        setRate(1.0);
        break;
    case PlaybackRates::PlayPauseAction::Play:
        setRate(1.0);
        break;
    }
}

void AVSPDocument::fastForward()
{
    if (!m_closed)
        setRate(PlaybackRates::fastForward(m_rate));
}

void AVSPDocument::rewind()
{
    if (!m_closed)
        setRate(PlaybackRates::rewind(m_rate));
}

void AVSPDocument::setRate(double rate)
{
    if (rate < 0.0) {
        // Backwards: the player stays paused and the position steps back at
        // this speed, which looks the same on every media backend.
        if (player->playbackState() == QMediaPlayer::PlayingState)
            player->pause();
        m_rewindStart = currentTime();
        m_rewindClock.restart();
        noteRate(rate);
        if (!m_rewindTimer->isActive())
            m_rewindTimer->start();
        return;
    }
    m_rewindTimer->stop();
    if (rate == 0.0) {
        noteRate(0.0);
        player->pause();
        return;
    }
    player->setPlaybackRate(rate);
    noteRate(rate);
    player->play();
}

void AVSPDocument::noteRate(double rate)
{
    if (rate == m_rate)
        return;
    m_rate = rate;
    emit rateChanged(rate);
}

void AVSPDocument::rewindTick()
{
    if (m_rate >= 0.0 || m_closed) {
        m_rewindTimer->stop();
        return;
    }
    const double to = PlaybackRates::rewoundPosition(m_rewindStart, m_rate, m_rewindClock.elapsed() / 1000.0);
    player->setPosition(qRound64(to * 1000.0));
    updateTimeSlider();
    if (to <= 0.0) {
        // Back at the beginning: the player comes to rest there.
        m_rewindTimer->stop();
        noteRate(0.0);
    }
}

void AVSPDocument::setTransportEnabled(bool enabled)
{
    playPauseButton->setEnabled(enabled);
    fastForwardButton->setEnabled(enabled);
    rewindButton->setEnabled(enabled);
}

void AVSPDocument::updateTimeSlider()
{
    if (!player)
        return;
    updateClock();
    if (!timeSlider->isSliderDown())
        timeSlider->setValue(int(player->position()));
}

void AVSPDocument::updateClock()
{
    // A stream that does not state its length (an elementary .m2v) learns it
    // while it plays: the slider's range follows.
    if (player && m_readyToPlay && player->duration() > timeSlider->maximum())
        timeSlider->setRange(0, int(player->duration()));
    timeLabel->setText(PlaybackClock::text(currentTime(), duration()));
}

double AVSPDocument::duration() const
{
    if (!player || !m_readyToPlay)
        return 0.0;
    return player->duration() / 1000.0;
}

double AVSPDocument::currentTime() const
{
    return player ? player->position() / 1000.0 : 0.0;
}

void AVSPDocument::setCurrentTime(double seconds)
{
    if (!player || m_closed)
        return;
    const qint64 ms = qRound64(qMax(0.0, seconds) * 1000.0);
    player->setPosition(ms);
    if (m_rate < 0.0) {
        m_rewindStart = ms / 1000.0;
        m_rewindClock.restart();
    }
}

float AVSPDocument::volume() const
{
    return audioOutput ? audioOutput->volume() : 0.0f;
}

void AVSPDocument::setVolume(float volume)
{
    if (audioOutput)
        audioOutput->setVolume(volume);
}

void AVSPDocument::done(int)
{
    if (!m_closed)
        windowWillClose();
    QDialog::done(1);
}

void AVSPDocument::windowWillClose()
{
    m_closed = true;
    m_rewindTimer->stop();
    if (!player)
        return;
    player->pause();
    if (timeObserverToken) {
        timeObserverToken->stop();
        delete timeObserverToken;
        timeObserverToken = nullptr;
    }
    disconnect(player, nullptr, this, nullptr);
    if (audioOutput)
        disconnect(audioOutput, nullptr, this, nullptr);
    if (m_picture)
        disconnect(m_picture->videoSink(), nullptr, this, nullptr);
    player->stop();
    player->setVideoOutput(nullptr);
    m_rate = 0.0;
}
