#pragma once
#include <QDateTime>
#include <QList>
#include <QString>
#include <optional>

#include "toolrun/WriteProgress.h"

// How fast a write goes, from its recent reports: the amount done (any unit,
// here the percentage of the whole) at each moment, over the last
// `windowMs`. It answers only once the reports span `minimumSpanMs` and the
// amount moved; an amount that goes back (a new phase of the tool) starts
// it afresh.
class RateEstimator {
public:
    explicit RateEstimator(qint64 windowMs = 20000, qint64 minimumSpanMs = 1500)
        : m_windowMs(windowMs), m_minimumSpanMs(minimumSpanMs)
    {
    }

    void add(qint64 ms, double done);
    void reset() { m_samples.clear(); }

    // Units per second over the window.
    std::optional<double> perSecond() const;
    // Whole seconds until `whole` at that rate (rounded up, never below 0).
    std::optional<qint64> secondsLeft(double whole) const;

private:
    struct Sample {
        qint64 ms;
        double done;
    };
    QList<Sample> m_samples;
    qint64 m_windowMs;
    qint64 m_minimumSpanMs;
};

// What the writing sheet shows of a write, from the tool's reports as they
// come: the percentage of the whole, the MB written of the total, the speed
// and the time left. cdrskin counts each track on its own ("Track 02: 3 of
// 40 MB written"); here the tracks add up to one figure of the whole run.
// The time left is the tool's own estimate where it gives one, else worked
// out from the rate of the recent reports.
class WriteReadout {
public:
    // `ms`: a steady clock (the time since the write began will do); `now`:
    // the wall clock, for a tool's finish estimate.
    void add(const WriteReport &report, qint64 ms, const QDateTime &now);

    // A report with a percentage has come: the bar can show an amount.
    bool isDeterminate() const { return m_percent.has_value(); }
    double percent() const { return m_percent.value_or(0.0); }
    std::optional<double> writtenMB() const { return m_writtenMB; }
    std::optional<double> totalMB() const { return m_totalMB; }
    std::optional<double> speed() const { return m_speed; }
    std::optional<qint64> secondsLeft() const { return m_secondsLeft; }

    struct Texts {
        QString percent;   // "31%"
        QString amount;    // "16 MB of 50 MB written", "16 MB written", or empty
        QString speed;     // "Speed: 4.2x", "Speed: 2.5 MB/s", or empty
        QString timeLeft;  // "About 2 minutes left", "Estimating the time left…", "Finishing…"
    };
    Texts texts() const;

    static QString percentText(double percent);
    static QString amountText(std::optional<double> writtenMB, std::optional<double> totalMB);
    static QString timeLeftText(std::optional<qint64> seconds);

private:
    void addUpTracks(int track, std::optional<double> &written, std::optional<double> &total, double &percent);
    RateEstimator m_rate;
    std::optional<double> m_percent;
    std::optional<double> m_writtenMB;
    std::optional<double> m_totalMB;
    std::optional<double> m_speed;           // the tool's, last one above 0
    std::optional<double> m_megabytesPerSecond;
    std::optional<qint64> m_secondsLeft;
    std::optional<double> m_runTotalMB;      // cdrskin's "Total size:"
    int m_track = 0;
    double m_doneBeforeMB = 0.0;             // the tracks before the one in hand
    double m_trackTotalMB = 0.0;
};
