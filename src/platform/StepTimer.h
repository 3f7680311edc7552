#pragma once
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <utility>

// The pause before an operation's next step (0.1 s between transcoding and
// recording, between the copies of a disc, before the colours are forced).
// Starting it again replaces the step due; stop() drops it; a step never runs
// once its owner is gone.
class StepTimer {
public:
    explicit StepTimer(QObject *owner, int intervalMs = 100) : m_owner(owner), m_intervalMs(intervalMs) {}
    StepTimer(const StepTimer &) = delete;
    StepTimer &operator=(const StepTimer &) = delete;
    ~StepTimer() { stop(); }

    void setInterval(int ms) { m_intervalMs = ms; }

    void start(std::function<void()> step)
    {
        stop();
        auto *timer = new QTimer(m_owner);
        timer->setSingleShot(true);
        timer->setInterval(m_intervalMs);
        QObject::connect(timer, &QTimer::timeout, m_owner, [timer, step = std::move(step)] {
            timer->deleteLater();
            step();
        });
        m_timer = timer;
        timer->start();
    }

    void stop()
    {
        if (m_timer) {
            m_timer->stop();
            m_timer->deleteLater();
        }
        m_timer = nullptr;
    }

    bool isActive() const { return m_timer && m_timer->isActive(); }

private:
    QObject *m_owner;
    int m_intervalMs;
    QPointer<QTimer> m_timer;
};
