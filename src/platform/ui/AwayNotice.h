#pragma once
#include <QString>
#include <functional>

class Notifier;
class QWidget;

// The end of a long operation told to a user who is elsewhere: only when
// it ran longer than `afterMs` and neither the window nor one of its sheets
// is in front (the sheet itself tells someone looking at the window).
class AwayNotice {
public:
    AwayNotice(Notifier *notifier, std::function<qint64()> clockMs, const QWidget *window, qint64 afterMs);

    void begin(const QString &operationTitle);
    // The operation begun last ends with `verdict`; told at most once.
    void tellIfAway(const QString &verdict);

private:
    Notifier *m_notifier;
    std::function<qint64()> m_clockMs;
    const QWidget *m_window;
    qint64 m_afterMs;
    QString m_title;  // the operation under way, empty once told
    qint64 m_startMs = 0;
};
