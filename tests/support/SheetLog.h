#pragma once
#include <QElapsedTimer>
#include <QObject>
#include <QStringList>
#include <QtTest>

#include "images/SheetFlow.h"

// Records the sheet signals of a flow in order ("showPerformingOperation",
// "progress 12.5", "tool /usr/bin/xorriso|-outdev|...", ...).
class SheetLog : public QObject {
public:
    explicit SheetLog(SheetFlow *flow)
    {
        auto add = [this](const QString &what) {
            events << what;
            times << clock.elapsed();
        };
        clock.start();
        connect(flow, &SheetFlow::showPerformingOperation, this, [add] { add(QStringLiteral("showPerformingOperation")); });
        connect(flow, &SheetFlow::closePerformingOperation, this, [add] { add(QStringLiteral("closePerformingOperation")); });
        connect(flow, &SheetFlow::showStagingSheet, this, [add] { add(QStringLiteral("showStagingSheet")); });
        connect(flow, &SheetFlow::closeStagingSheet, this, [add] { add(QStringLiteral("closeStagingSheet")); });
        connect(flow, &SheetFlow::operationComplete, this, [add] { add(QStringLiteral("operationComplete")); });
        connect(flow, &SheetFlow::verifying, this, [add] { add(QStringLiteral("verifying")); });
        connect(flow, &SheetFlow::operationVerified, this, [add] { add(QStringLiteral("operationVerified")); });
        connect(flow, &SheetFlow::operationFailed, this, [this, add](const OperationFailure &f) {
            failures << f;
            add(QStringLiteral("operationFailed"));
        });
        connect(flow, &SheetFlow::ended, this, [this, add] {
            add(QStringLiteral("ended"));
            ++endedCount;
        });
        connect(flow, &SheetFlow::checkProgress, this, [this, add](double v) {  // reading back
            progress << v;
            add(QStringLiteral("progress"));
        });
        connect(flow, &SheetFlow::writeProgress, this, [this, add](const WriteReport &r) {
            reports << r;
            if (r.percent) {  // what the bar shows
                progress << *r.percent;
                add(QStringLiteral("progress"));
            }
        });
        connect(flow, &SheetFlow::toolStarted, this, [this, add](const QString &program, const QStringList &args) {
            commands << (QStringList{program} + args);
            add(QStringLiteral("toolStarted"));
        });
        connect(flow, &SheetFlow::toolFinished, this, [add](int) { add(QStringLiteral("toolFinished")); });
    }

    QList<OperationFailure> failures;
    QList<WriteReport> reports;  // what the working sheet was given, in order

    // The events without the progress values, for order checks.
    QStringList sheets() const
    {
        QStringList out;
        for (const QString &e : events)
            if (e != QLatin1String("progress"))
                out << e;
        return out;
    }
    qint64 timeOf(const QString &event, int nth = 0) const
    {
        int seen = 0;
        for (int i = 0; i < events.size(); ++i)
            if (events.at(i) == event && seen++ == nth)
                return times.at(i);
        return -1;
    }
    bool waitEnded(int count = 1, int timeoutMs = 60000)
    {
        QElapsedTimer t;
        t.start();
        while (endedCount < count && t.elapsed() < timeoutMs)
            QTest::qWait(5);
        return endedCount >= count;
    }

    QStringList events;
    QList<qint64> times;
    QList<double> progress;
    QList<QStringList> commands;
    int endedCount = 0;
    QElapsedTimer clock;
};
