#pragma once
#include <QDialog>
#include <QElapsedTimer>
#include <QMediaPlayer>
#include <QUrl>
#include <QVideoFrame>

class Alerts;
class QAudioOutput;
class QLabel;
class QProgressBar;
class QPushButton;
class QSlider;
class QTimer;
class QVideoWidget;

// The preview player: one media file in a small modal window, with a picture
// when the file has one, play/pause, fast forward, rewind and a position
// slider. Run it with exec(); closing it stops playback and releases the
// player (exec() then returns 1).
class AVSPDocument : public QDialog {
    Q_OBJECT
    // Seconds; 0 until the file is ready to play.
    Q_PROPERTY(double duration READ duration NOTIFY durationChanged)
    // Seconds; setting it seeks to that exact time.
    Q_PROPERTY(double currentTime READ currentTime WRITE setCurrentTime NOTIFY currentTimeChanged)
    // 0.0 to 1.0.
    Q_PROPERTY(float volume READ volume WRITE setVolume NOTIFY volumeChanged)
    // 0 paused, 1 playing, 2/4/6 fast forward, -2/-4/-6 rewind.
    Q_PROPERTY(double rate READ rate NOTIFY rateChanged)
public:
    inline static const QString CouldNotPlay = QStringLiteral("Video could not be played.");

    AVSPDocument(const QUrl &fileUrl, Alerts &alerts, QWidget *parent = nullptr);
    ~AVSPDocument() override;

    double duration() const;
    double currentTime() const;
    void setCurrentTime(double seconds);
    float volume() const;
    void setVolume(float volume);
    double rate() const { return m_rate; }

    // True once the file reached ready-to-play and until it fails.
    bool isReadyToPlay() const { return m_readyToPlay; }

    QUrl s_File_URL;
    QMediaPlayer *player = nullptr;
    QAudioOutput *audioOutput = nullptr;
    QVideoWidget *playerLayer = nullptr;  // made only for files with a picture
    QWidget *playerView = nullptr;        // the black area that holds the picture
    QProgressBar *loadingSpinner = nullptr;
    QLabel *unplayableLabel = nullptr;
    QLabel *noVideoLabel = nullptr;
    QPushButton *playPauseButton = nullptr;
    QPushButton *fastForwardButton = nullptr;
    QPushButton *rewindButton = nullptr;
    QSlider *timeSlider = nullptr;        // position in milliseconds
    QLabel *timeLabel = nullptr;          // "0:07 / 3:25": elapsed and total time
    QLabel *fileNameLabel = nullptr;      // the file's name above the picture
    QTimer *timeObserverToken = nullptr;  // moves the slider every tenth of a second

public slots:
    void playPauseToggle();
    void fastForward();
    void rewind();
    void done(int result) override;

signals:
    void durationChanged(double seconds);
    void currentTimeChanged(double seconds);
    void volumeChanged(float volume);
    void rateChanged(double rate);

private:
    void windowDidLoad();
    void windowWillClose();
    void mediaStatusChanged(QMediaPlayer::MediaStatus status);
    void playbackStateChanged(QMediaPlayer::PlaybackState state);
    void assetLoaded();
    void videoFrameChanged(const QVideoFrame &frame);
    void showPicture();
    void stopLoadingAnimationAndHandleError(bool withError);
    void setRate(double rate);
    void noteRate(double rate);
    void rewindTick();
    void setTransportEnabled(bool enabled);
    void updateTimeSlider();
    void updateClock();

    Alerts &m_alerts;
    double m_rate = 0.0;
    bool m_readyToPlay = false;
    bool m_loaded = false;
    bool m_failed = false;
    bool m_readyForDisplay = false;
    bool m_closed = false;
    QVideoWidget *m_picture = nullptr;  // the picture output, made before the file is opened
    QString m_errorText;                // the player's own words when the file fails
    QVideoFrame m_lastFrame;            // the picture shown while the backend has none
    QTimer *m_rewindTimer = nullptr;
    QElapsedTimer m_rewindClock;
    double m_rewindStart = 0.0;
};
