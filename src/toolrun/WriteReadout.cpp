#include "toolrun/WriteReadout.h"

#include <algorithm>
#include <cmath>

void RateEstimator::add(qint64 ms, double done)
{
    if (!std::isfinite(done))
        return;
    if (!m_samples.isEmpty() && (done < m_samples.last().done || ms < m_samples.last().ms))
        m_samples.clear();
    m_samples.append({ms, done});
    while (m_samples.size() > 2 && ms - m_samples.at(1).ms >= m_windowMs)
        m_samples.removeFirst();
}

std::optional<double> RateEstimator::perSecond() const
{
    if (m_samples.size() < 2)
        return std::nullopt;
    const Sample &first = m_samples.first();
    const Sample &last = m_samples.last();
    const qint64 span = last.ms - first.ms;
    if (span < m_minimumSpanMs || span <= 0)
        return std::nullopt;
    const double rate = (last.done - first.done) * 1000.0 / double(span);
    if (!(rate > 0.0) || !std::isfinite(rate))
        return std::nullopt;
    return rate;
}

std::optional<qint64> RateEstimator::secondsLeft(double whole) const
{
    const auto rate = perSecond();
    if (!rate)
        return std::nullopt;
    const double left = std::max(0.0, whole - m_samples.last().done) / *rate;
    if (!std::isfinite(left) || left > 1e7)
        return std::nullopt;
    return qint64(std::ceil(left));
}

// A report of one track of several: its figures become the whole run's.
void WriteReadout::addUpTracks(int track, std::optional<double> &written, std::optional<double> &total,
                               double &percent)
{
    // A new track: the one before is done.
    if (track != m_track) {
        if (m_track > 0)
            m_doneBeforeMB += m_trackTotalMB;
        m_track = track;
    }
    if (total)
        m_trackTotalMB = *total;
    if (written)
        written = m_doneBeforeMB + *written;
    if (m_runTotalMB && (!written || *written <= *m_runTotalMB))
        total = m_runTotalMB;
    else if (total)
        total = m_doneBeforeMB + *total;
    if (written && total && *total > 0.0)
        percent = std::clamp(*written * 100.0 / *total, 0.0, 100.0);
}

void WriteReadout::add(const WriteReport &report, qint64 ms, const QDateTime &now)
{
    if (report.runTotal) {
        if (report.totalMB && *report.totalMB > 0.0)
            m_runTotalMB = report.totalMB;
        return;
    }
    if (!report.percent)
        return;

    std::optional<double> written = report.writtenMB;
    std::optional<double> total = report.totalMB;
    double percent = *report.percent;

    if (report.track > 0)
        addUpTracks(report.track, written, total, percent);

    if (percent >= 100.0) {
        // The end of the write: all of it is written.
        if (!total)
            total = m_totalMB;
        if (total)
            written = total;
    }

    m_percent = percent;
    if (written)
        m_writtenMB = written;
    if (total)
        m_totalMB = total;
    if (report.speed && *report.speed > 0.0)
        m_speed = report.speed;

    m_rate.add(ms, percent);
    const auto rate = m_rate.perSecond();
    m_megabytesPerSecond.reset();
    if (rate && m_totalMB)
        m_megabytesPerSecond = *rate * *m_totalMB / 100.0;

    if (report.finishAt && now.isValid())
        m_secondsLeft = std::max<qint64>(0, now.secsTo(*report.finishAt));
    else
        m_secondsLeft = m_rate.secondsLeft(100.0);
    if (percent >= 100.0)
        m_secondsLeft = 0;
}

QString WriteReadout::percentText(double percent)
{
    const double shown = std::floor(std::clamp(percent, 0.0, 100.0));
    return QStringLiteral("%1%").arg(qint64(shown));
}

static QString megabytes(double mb)
{
    return QString::number(qint64(std::llround(std::max(0.0, mb))));
}

QString WriteReadout::amountText(std::optional<double> writtenMB, std::optional<double> totalMB)
{
    if (!writtenMB)
        return QString();
    if (!totalMB)
        return QStringLiteral("%1 MB written").arg(megabytes(*writtenMB));
    return QStringLiteral("%1 MB of %2 MB written").arg(megabytes(*writtenMB), megabytes(*totalMB));
}

QString WriteReadout::timeLeftText(std::optional<qint64> seconds)
{
    if (!seconds)
        return QStringLiteral("Estimating the time left…");
    const qint64 s = *seconds;
    if (s <= 0)
        return QStringLiteral("Finishing…");
    if (s == 1)
        return QStringLiteral("About 1 second left");
    if (s < 60)
        return QStringLiteral("About %1 seconds left").arg(s);
    if (s < 90)
        return QStringLiteral("About 1 minute left");
    if (s < 3600)
        return QStringLiteral("About %1 minutes left").arg((s + 30) / 60);
    const qint64 minutes = (s + 30) / 60;
    return QStringLiteral("About %1 h %2 min left").arg(minutes / 60).arg(minutes % 60, 2, 10, QLatin1Char('0'));
}

WriteReadout::Texts WriteReadout::texts() const
{
    Texts t;
    if (!m_percent)
        return t;
    t.percent = percentText(*m_percent);
    t.amount = amountText(m_writtenMB, m_totalMB);
    if (m_speed)
        t.speed = QStringLiteral("Speed: %1x").arg(*m_speed, 0, 'f', 1);
    else if (m_megabytesPerSecond)
        t.speed = QStringLiteral("Speed: %1 MB/s").arg(*m_megabytesPerSecond, 0, 'f', 1);
    t.timeLeft = *m_percent >= 100.0 ? timeLeftText(0) : timeLeftText(m_secondsLeft);
    return t;
}
