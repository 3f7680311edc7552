#pragma once
#include <QStringList>

#include "platform/Notifier.h"

// Notes each notification as "title / text".
class RecordingNotifier : public Notifier {
public:
    void notify(const QString &title, const QString &text) override { shown << title + QStringLiteral(" / ") + text; }
    QStringList shown;
};
