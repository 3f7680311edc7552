#pragma once
#include <QPointer>
#include <QWidget>

#include "platform/Alerts.h"

// Alerts as the user sees them: an application-modal message box.
class QtAlerts : public Alerts {
public:
    explicit QtAlerts(QWidget *parent = nullptr) : m_parent(parent) {}
    void setParent(QWidget *parent) { m_parent = parent; }
    AlertAnswer show(const AlertRequest &request) override;

private:
    QPointer<QWidget> m_parent;
};
