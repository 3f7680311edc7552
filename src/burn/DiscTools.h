#pragma once
#include <QString>
#include <functional>

#include "burn/MediumChecks.h"
#include "drives/DriveBackend.h"
#include "toolrun/Operation.h"

// What the Tools tab's disc operations need of the application.
struct DiscToolsContext {
    DriveBackend *backend = nullptr;
    Alerts *alerts = nullptr;
    MediumCheckFn check;
    std::function<Object_Optical_Drive()> currentDrive;
    std::function<bool()> debugMode;
};

// Erasing a rewritable disc, completely or quickly: the medium check chain
// (a disc, rewritable), then the backend's erase command on the Working
// sheet, and the completion sheet, or the failure sheet with the tool's
// words. Cancel stops the erase once the user has said so; the last sheet
// then says the erase was stopped.
class EraseFlow : public Operation {
    Q_OBJECT
public:
    explicit EraseFlow(const DiscToolsContext &context, QObject *parent = nullptr);

    void erase(bool full);

protected:
    // Cancel stops the erase at once: the disc was to be emptied anyway.
    bool runWritesDisc() const override { return false; }

private:
    void run(bool full);

    DiscToolsContext m_context;
};

// The disc information: the medium check chain (a disc), then one status
// query whose text is shown in an alert titled "Disc Information". A drive
// the user may not open reads as empty: the alert says why instead.
class DiscInfoFlow : public Operation {
    Q_OBJECT
public:
    explicit DiscInfoFlow(const DiscToolsContext &context, QObject *parent = nullptr);

    void show();

private:
    void showStatus();

    DiscToolsContext m_context;
};
