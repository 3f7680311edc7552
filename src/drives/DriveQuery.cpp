#include "drives/DriveQuery.h"

#include <QProcess>

#include "toolrun/ToolProcess.h"

DriveQuery *DriveQuery::run(const ToolCommand &command, int timeoutMs, QObject *owner, Done done)
{
    auto *query = new DriveQuery(timeoutMs, owner, std::move(done));
    query->start(command);
    return query;
}

DriveQuery::DriveQuery(int timeoutMs, QObject *owner, Done done)
    : QObject(owner), m_done(std::move(done))
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(qMax(0, timeoutMs));
    connect(&m_timer, &QTimer::timeout, this, [this] { finish(true); });
}

void DriveQuery::start(const ToolCommand &command)
{
    if (command.isNull()) {
        finish(false);
        return;
    }
    m_process = new QProcess(this);
    ToolProcess::prepare(*m_process, command, QProcess::MergedChannels);
    connect(m_process, &QProcess::readyReadStandardOutput, this,
            [this] { m_bytes += m_process->readAllStandardOutput(); });
    connect(m_process, &QProcess::finished, this, [this] {
        m_bytes += m_process->readAllStandardOutput();
        finish(false);
    });
    connect(m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        // A child that never ran has nothing to say; a crash or a kill ends
        // through finished() as well.
        if (error == QProcess::FailedToStart)
            finish(false);
    });
    m_timer.start();
    m_process->start();
}

void DriveQuery::finish(bool timedOut)
{
    if (m_finished)
        return;
    m_finished = true;
    m_timer.stop();

    const QString text = timedOut ? QString() : QString::fromUtf8(m_bytes);
    if (timedOut && m_process && m_process->state() != QProcess::NotRunning)
        m_process->kill();

    // Answer from the event loop, never from inside run() or a signal of the
    // child that may still be delivering.
    QMetaObject::invokeMethod(
        this,
        [this, text, timedOut] {
            if (m_done)
                m_done(text, timedOut);
            m_done = nullptr;
            if (m_process && m_process->state() != QProcess::NotRunning)
                connect(m_process, &QProcess::finished, this, &QObject::deleteLater);
            else
                deleteLater();
        },
        Qt::QueuedConnection);
}
