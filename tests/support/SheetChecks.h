#pragma once
// Checks on what an operation's sheets showed: as a SheetLog recorded them,
// and as the working sheet itself shows them.
#include <QStringList>
#include <QtTest>

#include "support/SheetLog.h"
#include "toolrun/ui/StatusWindows.h"

// The flow ended on the failure sheet, the only one it showed, with
// `text` as its message. Stops the calling test function at its first
// check that fails.
#define CHECK_ENDED_IN_FAILURE(log, text)                                             \
    do {                                                                              \
        QCOMPARE((log).sheets().last(2), (QStringList{"operationFailed", "ended"}));  \
        QCOMPARE((log).failures.size(), 1);                                           \
        QCOMPARE((log).failures.first().message, QString(text));                      \
    } while (false)

// What the working sheet (Window_Performing_Operation) shows at one moment,
// as one line of text for comparisons: the bar ("busy", or "bar V of M") and
// each of its four readout lines as it is on screen ("-" when hidden), with
// what a screen reader hears when that differs from the text.
inline QString workingSheetNow(const Window_Performing_Operation *w)
{
    QStringList parts;
    parts << (w->pgAnimation->isBusy() ? QStringLiteral("busy")
                                       : QStringLiteral("bar %1 of %2")
                                             .arg(w->pgAnimation->doubleValue())
                                             .arg(w->pgAnimation->maxDouble()));
    for (const QLabel *l : {w->labelPercent, w->labelWritten, w->labelSpeed, w->labelTimeLeft}) {
        if (l->isHidden()) {
            parts << QStringLiteral("-");
            continue;
        }
        QString seen = l->text();
        if (l->accessibleName() != seen)
            seen += QStringLiteral(" (read as \"%1\")").arg(l->accessibleName());
        parts << seen;
    }
    return parts.join(QStringLiteral(" | "));
}
