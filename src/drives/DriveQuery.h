#pragma once
#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>

#include "toolrun/ToolCommand.h"

class QProcess;

// One short run of a drive tool whose whole output we want as text: standard
// output and standard error in one stream, read until the tool ends, decoded
// as UTF-8. Nothing blocks: the answer comes later through the callback, on
// the thread that asked, never inside run().
//
// A tool that cannot be started (missing, not executable, no path) answers
// an empty text. A tool still running after the time-out is killed and also
// answers an empty text, with timedOut set; whatever it printed before is
// dropped, so a hang reads exactly like "no output". The exit status is not
// looked at.
class DriveQuery : public QObject {
    Q_OBJECT
public:
    using Done = std::function<void(const QString &output, bool timedOut)>;

    // Starts the command; the query object lives as a child of `owner` and
    // deletes itself once it has answered (and its child has ended).
    static DriveQuery *run(const ToolCommand &command, int timeoutMs, QObject *owner, Done done);

private:
    DriveQuery(int timeoutMs, QObject *owner, Done done);
    void start(const ToolCommand &command);
    void finish(bool timedOut);

    QProcess *m_process = nullptr;
    QTimer m_timer;
    QByteArray m_bytes;
    Done m_done;
    bool m_finished = false;
};
