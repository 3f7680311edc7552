#pragma once
#include <QString>

// The desktop's notifications: how a long operation that ends while Tamblo's
// window is not in front tells the user its verdict. The shipped program
// uses the platform's notification service; tests record what would show.
class Notifier {
public:
    virtual ~Notifier() = default;
    virtual void notify(const QString &title, const QString &text) = 0;
};
