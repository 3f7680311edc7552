#include "platform/ui/DesktopNotifier.h"

#include <QApplication>
#include <QIcon>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QVariantMap>

#ifdef TAMBLO_HAVE_DBUS
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#endif

DesktopNotifier::DesktopNotifier(QObject *parent) : QObject(parent) {}

void DesktopNotifier::notify(const QString &title, const QString &text)
{
    if (!notifyOverBus(title, text))
        notifyFromTray(title, text);
}

void DesktopNotifier::notifyFromTray(const QString &title, const QString &text)
{
    if (!QSystemTrayIcon::isSystemTrayAvailable())
        return;
    if (!m_tray) {
        m_tray = new QSystemTrayIcon(QApplication::windowIcon(), this);
        m_tray->setToolTip(QStringLiteral("Tamblo"));
    }
    m_tray->show();
    m_tray->showMessage(title, text, QSystemTrayIcon::Information, 10000);
    // The icon is there for the message only.
    QTimer::singleShot(15000, m_tray, [tray = m_tray] {
        if (tray)
            tray->hide();
    });
}

bool DesktopNotifier::notifyOverBus(const QString &title, const QString &text)
{
#ifdef TAMBLO_HAVE_DBUS
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    call << QStringLiteral("Tamblo") << uint(0) << QStringLiteral("com.zendrova.Tamblo") << title << text
         << QStringList() << QVariantMap() << int(-1);
    // Sent without waiting: the UI thread never waits on the bus. A desktop
    // without the service answers with an error, and the tray takes over.
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, title, text] {
        watcher->deleteLater();
        if (watcher->isError())
            notifyFromTray(title, text);
    });
    return true;
#else
    Q_UNUSED(title);
    Q_UNUSED(text);
    return false;
#endif
}
