#pragma once
// Checks on what a flow's sheets showed, as a SheetLog recorded them. Each
// stops the calling test function at its first check that fails.
#include <QStringList>
#include <QtTest>

#include "support/SheetLog.h"

// The flow ended on the failure sheet, the only one it showed, with
// `text` as its message.
#define CHECK_ENDED_IN_FAILURE(log, text)                                             \
    do {                                                                              \
        QCOMPARE((log).sheets().last(2), (QStringList{"operationFailed", "ended"}));  \
        QCOMPARE((log).failures.size(), 1);                                           \
        QCOMPARE((log).failures.first().message, QString(text));                      \
    } while (false)
