#pragma once
#include <QObject>
#include <QPointer>
#include <atomic>
#include <memory>

#include "drives/DiscVerify.h"

class ToolRun;

// One read-back of a disc just written, on its own run or worker: either a
// checksum check by the drive tool, or a byte-for-byte comparison of an
// image file with the start of the disc (read on a worker thread, never on
// the UI thread). It ends exactly once with finished().
class DiscVerification : public QObject {
    Q_OBJECT
public:
    explicit DiscVerification(QObject *parent = nullptr);
    ~DiscVerification() override;

    // xorriso's checksum check (DiscVerify::md5CheckCommand).
    void checkFiles(const ToolCommand &md5Check);
    // The image's bytes against the first bytes of `drive`: a stdio:
    // pseudo-drive's file, or the drive's device (/dev/sr0).
    void compareImage(const QString &image, const QString &drive);

    // Stops the read-back: it then ends as NotChecked.
    void stop();
    bool isRunning() const { return m_running; }

signals:
    void progress(double percent);  // the image comparison, 0 to 100
    void finished(const VerifyResult &result);

private:
    void end(const VerifyResult &result);

    QPointer<ToolRun> m_run;
    std::shared_ptr<std::atomic_bool> m_stop;
    bool m_running = false;
};
