#pragma once
#include <QList>
#include <QQueue>
#include <functional>

#include "platform/Alerts.h"

// Records every alert and answers from a queue (default: the first button).
class FakeAlerts : public Alerts {
public:
    AlertAnswer show(const AlertRequest &request) override
    {
        shown.append(request);
        if (onShow)
            onShow(request);
        if (!answers.isEmpty())
            return answers.dequeue();
        AlertAnswer a;
        a.button = 0;
        a.input = request.inputDefault;
        return a;
    }

    // Queues the answer to the next alert: `button`, with `input` in its text
    // field.
    void answer(int button, const QString &input = QString())
    {
        AlertAnswer a;
        a.button = button;
        a.input = input;
        answers.enqueue(a);
    }

    // "message / informative" of each alert, in order: easy to compare.
    QStringList texts() const
    {
        QStringList out;
        for (const auto &r : shown)
            out << r.messageText + QStringLiteral(" / ") + r.informativeText;
        return out;
    }

    QList<AlertRequest> shown;
    QQueue<AlertAnswer> answers;
    std::function<void(const AlertRequest &)> onShow;
};
