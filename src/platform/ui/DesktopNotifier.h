#pragma once
#include <QObject>
#include <QPointer>

#include "platform/Notifier.h"

class QSystemTrayIcon;

// Linux: the desktop's notification service on the session bus
// (org.freedesktop.Notifications). Elsewhere, or with no such service: a
// message from a tray icon that exists only while it shows one.
class DesktopNotifier : public QObject, public Notifier {
    Q_OBJECT
public:
    explicit DesktopNotifier(QObject *parent = nullptr);
    void notify(const QString &title, const QString &text) override;

private:
    bool notifyOverBus(const QString &title, const QString &text);
    void notifyFromTray(const QString &title, const QString &text);
    QPointer<QSystemTrayIcon> m_tray;
};
