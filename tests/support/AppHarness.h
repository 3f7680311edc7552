#pragma once
// One application controller on test seams: its own Documents and settings
// file, recorded alerts and panels, a fake drive, and an exit that is only
// noted.
#include <QDir>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>
#include <functional>
#include <memory>

#include "app/ui/AppContext.h"
#include "app/ui/AppDelegate.h"
#include "appearance/ui/Window_Colors.h"
#include "burn/ui/Window_Video_Settings.h"
#include "compilation/ui/Window_New_Disc.h"
#include "images/ui/Window_Data_Copy_Folders.h"
#include "preview/ui/AVSPDocument.h"
#include "toolrun/ui/StatusWindows.h"
#include "support/FakeAlerts.h"
#include "support/FakeDriveBackend.h"
#include "support/FakeFilePicker.h"

template <typename Delegate = AppDelegate>
struct AppHarness {
    QTemporaryDir root;
    QString documents;
    std::unique_ptr<QSettings> settings;
    FakeAlerts alerts;
    FakeFilePicker picker;
    FakeDriveBackend *drive = new FakeDriveBackend;
    QList<int> exits;
    QList<QUrl> opened;
    bool dark = false;
    std::function<void(AppContext &)> tune;  // changes the seams before start()
    std::unique_ptr<Delegate> app;

    explicit AppHarness(const QString &documentsDir = QString())
    {
        documents = documentsDir.isEmpty() ? root.filePath(QStringLiteral("Documents")) : documentsDir;
        QDir().mkpath(root.path());
        settings = std::make_unique<QSettings>(root.filePath(QStringLiteral("Tamblo.conf")), QSettings::IniFormat);
    }

    AppContext context()
    {
        AppContext c;
        c.alerts = &alerts;
        c.filePicker = &picker;
        c.settings = settings.get();
        c.documentsDir = documents;
        c.tools.backend = ToolPaths::Backend::Linux;
        c.tools.ffmpeg = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
        c.driveBackend = drive;
        c.exitProcess = [this](int code) { exits << code; };
        c.openUrl = [this](const QUrl &u) { opened << u; };
        c.systemIsDark = [this] { return dark; };
        c.logsDir = root.filePath(QStringLiteral("logs"));
        if (tune)
            tune(c);
        return c;
    }

    // Builds the controller (the drive becomes its child) and starts it; waits
    // for the drive listing when start-up succeeded.
    bool start()
    {
        app = std::make_unique<Delegate>(context());
        drive->setParent(app.get());
        QSignalSpy listed(app.get(), &AppDelegate::drivesListed);
        const bool ok = app->applicationDidFinishLaunching();
        if (ok && listed.isEmpty())
            listed.wait(5000);
        return ok;
    }

    QString setting(const QString &key) const { return settings->value(key).toString(); }
};
