#include "drives/DiscVerification.h"

#include <QFileInfo>
#include <QFutureWatcher>
#include <QTimer>
#include <QtConcurrent/QtConcurrentRun>

#include "drives/ImageReadBack.h"
#include "toolrun/ToolRun.h"

DiscVerification::DiscVerification(QObject *parent) : QObject(parent) {}

DiscVerification::~DiscVerification()
{
    if (m_stop)
        m_stop->store(true);
}

void DiscVerification::end(const VerifyResult &result)
{
    if (!m_running)
        return;
    m_running = false;
    emit finished(result);
}

void DiscVerification::checkFiles(const ToolCommand &md5Check)
{
    m_running = true;
    ToolRun::Options options;
    options.channels = ToolRun::Channels::Merged;
    options.purpose = ToolRun::Purpose::Query;
    auto *run = new ToolRun(md5Check, options, this);
    m_run = run;
    connect(run, &ToolRun::finished, this, [this, run](const ToolVerdict &verdict) {
        run->deleteLater();
        if (verdict.outcome == ToolVerdict::Outcome::Stopped) {
            VerifyResult r;
            r.outcome = VerifyResult::Outcome::NotChecked;
            r.what = QStringLiteral("The check was stopped.");
            r.details = verdict.output;
            end(r);
            return;
        }
        end(DiscVerify::readMd5Check(verdict));
    });
    run->start();
}

void DiscVerification::compareImage(const QString &image, const QString &drive)
{
    m_running = true;
    m_stop = std::make_shared<std::atomic_bool>(false);
    const std::shared_ptr<std::atomic_bool> stop = m_stop;
    // The worker counts the bytes compared; the bar looks at the count from
    // this thread.
    auto compared = std::make_shared<std::atomic<qint64>>(0);
    const qint64 total = QFileInfo(image).size();
    auto *poll = new QTimer(this);
    poll->setInterval(100);
    int lastPercent = -1;
    auto tell = [this, compared, total, lastPercent]() mutable {
        const int percent = total > 0 ? int(compared->load() * 100 / total) : 0;
        if (percent != lastPercent) {
            lastPercent = percent;
            emit progress(double(percent));
        }
    };
    connect(poll, &QTimer::timeout, this, tell);
    poll->start();
    auto *watcher = new QFutureWatcher<ImageReadBack::Comparison>(this);
    connect(watcher, &QFutureWatcher<ImageReadBack::Comparison>::finished, this,
            [this, watcher, poll, tell, image, drive]() mutable {
                watcher->deleteLater();
                poll->deleteLater();
                tell();
                end(ImageReadBack::result(watcher->result(), image, drive));
            });
    watcher->setFuture(QtConcurrent::run([image, drive, stop, compared] {
        return ImageReadBack::compareFiles(
            image, drive, [compared](qint64 n) { compared->store(n); }, stop.get());
    }));
}

void DiscVerification::stop()
{
    if (m_stop)
        m_stop->store(true);
    if (m_run)
        m_run->stop();
}
