#pragma once
#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QProcess>

#include "toolrun/ToolCommand.h"

// One run of an image or recording tool. Its output is written to the log
// ("Data Ready : <text>"); with separate channels every chunk of the error
// output is also handed on for progress. finished() comes exactly once, also
// when the program could not be started. The exit status is logged, never
// judged: the caller goes on either way.
class ImageToolRun : public QObject {
    Q_OBJECT
public:
    enum class Channels { Merged, Separate };

    explicit ImageToolRun(QObject *parent = nullptr);
    ~ImageToolRun() override;

    void start(const ToolCommand &command, Channels channels);
    bool isRunning() const { return m_running; }
    bool hasFinished() const { return m_finished; }
    const ToolCommand &command() const { return m_command; }
    QByteArray output() const { return m_output; }  // everything read, both channels

signals:
    void errorChunk(const QByteArray &chunk);
    void finished(int exitCode, bool normalExit);

private:
    void readOut();
    void readErr();
    void end(int exitCode, bool normalExit);

    ToolCommand m_command;
    QPointer<QProcess> m_process;
    QByteArray m_output;
    bool m_running = false;
    bool m_finished = false;
    bool m_failedToStart = false;
    bool m_merged = false;
};
