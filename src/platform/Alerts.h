#pragma once
#include <QString>
#include <QStringList>

// A modal alert as the user sees it: a message text (the bold title), an
// informative text and its buttons, left to right in reading order, the first
// being the default. Optionally a one-line text field (the copy-count question).
struct AlertRequest {
    QString messageText;
    QString informativeText;
    QStringList buttons{QStringLiteral("Close")};
    bool warningStyle = false;
    bool hasInput = false;
    QString inputDefault;
    QString title;  // window title; empty = application name
};

struct AlertAnswer {
    int button = -1;   // index into AlertRequest::buttons; -1 when dismissed otherwise
    QString input;     // the field's text when hasInput
};

// Every alert the program shows goes through this seam, so a test can record
// what the user would have read and answer for the user.
class Alerts {
public:
    virtual ~Alerts() = default;
    virtual AlertAnswer show(const AlertRequest &request) = 0;

    // The common case: one message, one "Close" button.
    void close(const QString &message, const QString &informative)
    {
        AlertRequest r;
        r.messageText = message;
        r.informativeText = informative;
        show(r);
    }
};
