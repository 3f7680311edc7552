#include "platform/ui/AwayNotice.h"

#include <QGuiApplication>
#include <QWidget>
#include <QWindow>
#include <utility>

#include "platform/Notifier.h"

AwayNotice::AwayNotice(Notifier *notifier, std::function<qint64()> clockMs, const QWidget *window, qint64 afterMs)
    : m_notifier(notifier), m_clockMs(std::move(clockMs)), m_window(window), m_afterMs(afterMs)
{
}

void AwayNotice::begin(const QString &operationTitle)
{
    m_title = operationTitle;
    m_startMs = m_clockMs();
}

void AwayNotice::tellIfAway(const QString &verdict)
{
    const QString title = std::exchange(m_title, QString());
    if (title.isEmpty() || m_clockMs() - m_startMs <= m_afterMs)
        return;
    // The main window or one of its sheets in front: the user is here.
    const QWindow *main = m_window->windowHandle();
    if (const QWindow *focus = QGuiApplication::focusWindow();
        focus && main && (focus == main || focus->transientParent() == main))
        return;
    m_notifier->notify(QStringLiteral("Tamblo — %1").arg(title), verdict);
}
