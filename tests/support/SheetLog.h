#pragma once
// The one sheet recorder: what an operation asked the window to show, in
// order, with the time of each step:
//   "showPerformingOperation" / "closePerformingOperation"  the working sheet
//   "showTranscoding" / "closeTranscoding"                  the two-bar sheet
//   "showMeasuring N" / "closeMeasuring"                    the adding sheet (N: its maximum)
//   "showStagingSheet" / "closeStagingSheet"                a data disc's copy sheet
//   "verifying"                                             the sheet says "Verifying the disc…"
//   "overallRange N", "overall N", "fileRange N", "file N"  the two-bar sheet's bars
//   "single N"                                              the adding sheet's bar
//   "progress"                                              a percentage for the working sheet (in `progress`)
//   "operationComplete" / "operationVerified" / "operationFailed"  the last sheet (failures in `failures`)
//   "toolStarted" / "toolFinished", "ended"
#include <QElapsedTimer>
#include <QObject>
#include <QStringList>
#include <QTest>
#include <cmath>

#include "toolrun/Operation.h"

class SheetLog : public QObject {
public:
    explicit SheetLog(Operation *operation)
    {
        clock.start();
        connect(operation, &Operation::sheetShown, this, [this](OperationSheet sheet, double maximum) {
            if (sheet == OperationSheet::MeasuringFiles || sheet == OperationSheet::MeasuringFolder)
                add(QStringLiteral("showMeasuring ") + num(maximum));
            else
                add(sheet == OperationSheet::Verifying ? QStringLiteral("verifying") : QStringLiteral("show") + name(sheet));
        });
        connect(operation, &Operation::sheetClosed, this, [this](OperationSheet sheet) {
            if (sheet == OperationSheet::MeasuringFiles || sheet == OperationSheet::MeasuringFolder)
                add(QStringLiteral("closeMeasuring"));
            else
                add(QStringLiteral("close") + name(sheet));
        });
        connect(operation, &Operation::barRanged, this, [this](OperationBar bar, double maximum) {
            add(barName(bar) + QStringLiteral("Range ") + num(maximum));
        });
        connect(operation, &Operation::barMoved, this, [this](OperationBar bar, double value) {
            if (bar == OperationBar::Check) {  // reading back
                progress << value;
                add(QStringLiteral("progress"));
                return;
            }
            add(barName(bar) + QLatin1Char(' ') + num(value));
        });
        connect(operation, &Operation::writeReported, this, [this](const WriteReport &r) {
            reports << r;
            if (r.percent) {  // what the bar shows
                progress << *r.percent;
                add(QStringLiteral("progress"));
            }
        });
        connect(operation, &Operation::lastSheet, this, [this](const OperationEnd &end) {
            if (end.kind == OperationEnd::Failed) {
                failures << end.failure;
                add(QStringLiteral("operationFailed"));
            } else {
                add(end.kind == OperationEnd::Verified ? QStringLiteral("operationVerified")
                                                       : QStringLiteral("operationComplete"));
            }
        });
        connect(operation, &Operation::toolStarted, this, [this](const QString &program, const QStringList &args) {
            commands << (QStringList{program} + args);
            add(QStringLiteral("toolStarted"));
        });
        connect(operation, &Operation::toolFinished, this, [this](int) { add(QStringLiteral("toolFinished")); });
        connect(operation, &Operation::ended, this, [this] {
            add(QStringLiteral("ended"));
            ++endedCount;
        });
    }

    QList<OperationFailure> failures;
    QList<WriteReport> reports;  // what the working sheet was given, in order

    // The last failure sheet (empty when none).
    OperationFailure failure() const { return failures.isEmpty() ? OperationFailure{} : failures.last(); }

    // The events without the progress values, for order checks.
    QStringList sheets() const
    {
        QStringList out;
        for (const QString &e : events)
            if (e != QLatin1String("progress"))
                out << e;
        return out;
    }
    // The sheets, without tool starts and ends, with each run of upper-bar
    // values cut to its first and last.
    QStringList outline() const
    {
        QStringList plain;
        for (const QString &e : sheets())
            if (e != QLatin1String("toolStarted") && e != QLatin1String("toolFinished") && e != QLatin1String("ended"))
                plain << e;
        QStringList out;
        auto isFile = [&plain](int i) { return i >= 0 && i < plain.size() && plain.at(i).startsWith(QStringLiteral("file ")); };
        for (int i = 0; i < plain.size(); ++i)
            if (!isFile(i) || !isFile(i - 1) || !isFile(i + 1))
                out << plain.at(i);
        return out;
    }
    // The sheets alone: the outline without the bars' values.
    QStringList steps() const
    {
        QStringList out;
        for (const QString &e : outline())
            if (!e.startsWith(QStringLiteral("overall")) && !e.startsWith(QStringLiteral("file"))
                && !e.startsWith(QStringLiteral("single")))
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
    // How the operation ended the last time it did: "complete", "verified"
    // or "failed" as its last sheet said; "told" when it ended with no last
    // sheet after it had shown or started something (an alert said why);
    // "refused" when it ended before anything (an alert refused it). Empty
    // while it has not ended.
    QString ending() const
    {
        const int end = events.lastIndexOf(QStringLiteral("ended"));
        if (end < 0)
            return {};
        const int from = events.lastIndexOf(QStringLiteral("ended"), end - 1) + 1;
        QString ending = QStringLiteral("refused");
        for (int i = from; i < end; ++i) {
            const QString &e = events.at(i);
            if (e == QLatin1String("operationComplete"))
                ending = QStringLiteral("complete");
            else if (e == QLatin1String("operationVerified"))
                ending = QStringLiteral("verified");
            else if (e == QLatin1String("operationFailed"))
                ending = QStringLiteral("failed");
            else if (ending == QLatin1String("refused"))
                ending = QStringLiteral("told");
        }
        return ending;
    }
    // It ended on the complete or the verified sheet.
    bool endedComplete() const { return ending() == QLatin1String("complete") || ending() == QLatin1String("verified"); }
    // It ended without completing once under way: on the failure sheet, or
    // with an alert and no last sheet.
    bool endedFailed() const { return ending() == QLatin1String("failed") || ending() == QLatin1String("told"); }
    // It was refused before it showed or started anything.
    bool endedRefused() const { return ending() == QLatin1String("refused"); }
    // The complete and verified sheets shown so far.
    int completions() const
    {
        return int(events.count(QStringLiteral("operationComplete")) + events.count(QStringLiteral("operationVerified")));
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

private:
    void add(const QString &what)
    {
        events << what;
        times << clock.elapsed();
    }
    static QString num(double v) { return std::isinf(v) ? QStringLiteral("inf") : QString::number(v); }
    static QString name(OperationSheet sheet)
    {
        switch (sheet) {
        case OperationSheet::Working: return QStringLiteral("PerformingOperation");
        case OperationSheet::Transcoding: return QStringLiteral("Transcoding");
        case OperationSheet::Staging: return QStringLiteral("StagingSheet");
        default: return QStringLiteral("Measuring");
        }
    }
    static QString barName(OperationBar bar)
    {
        switch (bar) {
        case OperationBar::Overall: return QStringLiteral("overall");
        case OperationBar::File: return QStringLiteral("file");
        case OperationBar::Single: return QStringLiteral("single");
        default: return QStringLiteral("check");
        }
    }
};
