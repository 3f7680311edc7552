#pragma once
#include <QSettings>
#include <QString>
#include <QUrl>
#include <functional>

#include "platform/Alerts.h"
#include "platform/FilePicker.h"
#include "platform/Notifier.h"
#include "platform/ToolPaths.h"
#include "drives/DriveAccess.h"

class DriveBackend;

// Everything the controller needs from the outside world. The shipped
// program fills it from the platform (main.cpp); tests fill it with fakes.
struct AppContext {
    Alerts *alerts = nullptr;
    FilePicker *filePicker = nullptr;
    QSettings *settings = nullptr;
    QString documentsDir;
    ToolPaths tools;
    DriveBackend *driveBackend = nullptr;          // null: made from `tools`
    DriveAccess::DeviceNodes opticalDeviceNodes;   // for the one made: null: this machine's /dev/sr*
    std::function<void(int)> exitProcess;          // null: end the process at once
    std::function<void(const QUrl &)> openUrl;     // null: the default browser
    std::function<bool()> systemIsDark;            // null: the platform's palette
    QString logsDir;                               // empty: "logs" in the platform's application-data folder
    Notifier *notifier = nullptr;                  // null: the desktop's notifications
    std::function<qint64()> clockMs;               // null: a monotonic clock, in milliseconds
};
