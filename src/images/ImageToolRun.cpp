#include "images/ImageToolRun.h"

#include <QtDebug>

#include "toolrun/ToolProcess.h"

ImageToolRun::ImageToolRun(QObject *parent) : QObject(parent) {}

ImageToolRun::~ImageToolRun()
{
    if (m_process) {
        // A recording is never stopped by us; let it end on its own.
        m_process->disconnect(this);
        if (m_process->state() != QProcess::NotRunning) {
            m_process->setParent(nullptr);
            QObject::connect(m_process.data(), &QProcess::finished, m_process.data(), &QObject::deleteLater);
        }
    }
}

void ImageToolRun::start(const ToolCommand &command, Channels channels)
{
    m_command = command;
    m_running = true;
    m_finished = false;
    m_failedToStart = false;
    m_output.clear();
    m_merged = channels == Channels::Merged;
    qInfo().noquote() << QStringLiteral("Starting %1 %2").arg(command.program, command.arguments.join(QLatin1Char(' ')));

    auto *p = new QProcess(this);
    m_process = p;
    ToolProcess::prepare(*p, command,
                         channels == Channels::Merged ? QProcess::MergedChannels : QProcess::SeparateChannels);
    connect(p, &QProcess::readyReadStandardOutput, this, &ImageToolRun::readOut);
    connect(p, &QProcess::readyReadStandardError, this, &ImageToolRun::readErr);
    connect(p, &QProcess::finished, this, [this](int code, QProcess::ExitStatus status) {
        readOut();
        readErr();
        end(code, status == QProcess::NormalExit);
    });
    connect(p, &QProcess::errorOccurred, this, [this, p](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        qWarning().noquote() << QStringLiteral("oops: could not start %1: %2").arg(m_command.program, p->errorString());
        m_failedToStart = true;
        // Answered from the event loop, so the caller has finished its own
        // start-up steps before it hears of the end.
        QMetaObject::invokeMethod(this, [this] { end(-1, false); }, Qt::QueuedConnection);
    });
    p->start();
}

void ImageToolRun::readOut()
{
    if (!m_process)
        return;
    const QByteArray data = m_process->readAllStandardOutput();
    if (data.isEmpty())
        return;
    m_output += data;
    qInfo().noquote() << QStringLiteral("Data Ready : %1").arg(QString::fromUtf8(data).trimmed());
}

void ImageToolRun::readErr()
{
    if (!m_process || m_merged)
        return;
    const QByteArray data = m_process->readAllStandardError();
    if (data.isEmpty())
        return;
    m_output += data;
    qInfo().noquote() << QStringLiteral("Data Ready : %1").arg(QString::fromUtf8(data).trimmed());
    emit errorChunk(data);
}

void ImageToolRun::end(int exitCode, bool normalExit)
{
    if (m_finished)
        return;
    m_finished = true;
    m_running = false;
    if (m_failedToStart)
        ;  // already said
    else if (!normalExit)
        qWarning().noquote() << QStringLiteral("%1 ended abnormally").arg(m_command.program);
    else if (exitCode != 0)
        qWarning().noquote() << QStringLiteral("%1 ended with exit code %2").arg(m_command.program).arg(exitCode);
    else
        qInfo().noquote() << QStringLiteral("%1 ended with exit code 0").arg(m_command.program);
    emit finished(exitCode, normalExit);
}
