#pragma once
// One application controller on test seams: its own Documents and settings
// file, recorded alerts and panels, a fake drive, and an exit that is only
// noted.
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>
#include <functional>
#include <memory>

#include "app/ui/AppContext.h"
#include "app/ui/AppDelegate.h"
#include "app/ui/MainWindow.h"
#include "appearance/ui/Window_Colors.h"
#include "burn/ui/Window_Video_Settings.h"
#include "compilation/CompilationActions.h"
#include "compilation/DataFolderModel.h"
#include "compilation/MediaListModel.h"
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
    QPointer<FakeDriveBackend> drive = new FakeDriveBackend;  // the controller's child once it is built
    // A real backend the controller uses instead of the fake drive, when set
    // (it becomes the controller's child too).
    QPointer<DriveBackend> backend;
    QList<int> exits;
    QList<QUrl> opened;
    bool dark = false;
    int listingWaitMs = 5000;  // how long start() waits for the drive listing
    std::function<void(AppContext &)> tune;  // changes the seams before the controller is built
    std::unique_ptr<Delegate> app;

    // Documents in `documentsDir` (default: inside the harness's own folder),
    // that folder made from `rootTemplate` (default: the system's temporary
    // folder).
    explicit AppHarness(const QString &documentsDir = QString(), const QString &rootTemplate = QString())
        : root(rootTemplate.isEmpty() ? defaultRootTemplate() : rootTemplate)
    {
        documents = documentsDir.isEmpty() ? root.filePath(QStringLiteral("Documents")) : documentsDir;
        QDir().mkpath(root.path());
        settings = std::make_unique<QSettings>(root.filePath(QStringLiteral("Tamblo.conf")), QSettings::IniFormat);
    }
    AppHarness(const AppHarness &) = delete;
    AppHarness &operator=(const AppHarness &) = delete;
    ~AppHarness()
    {
        app.reset();
        delete drive.data();    // when no controller took them
        delete backend.data();
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
        c.driveBackend = backend ? backend.data() : static_cast<DriveBackend *>(drive.data());
        c.exitProcess = [this](int code) { exits << code; };
        c.openUrl = [this](const QUrl &u) { opened << u; };
        c.systemIsDark = [this] { return dark; };
        c.logsDir = logsDir();
        if (tune)
            tune(c);
        return c;
    }

    // Builds the controller without launching it; the drives become its
    // children. A new fake drive stands in for one an earlier controller took
    // with it.
    Delegate &build()
    {
        if (!drive)
            drive = new FakeDriveBackend;
        app = std::make_unique<Delegate>(context());
        drive->setParent(app.get());
        if (backend)
            backend->setParent(app.get());
        return *app;
    }

    // Launches the controller built; false when start-up failed or the drive
    // listing did not come within `listingWaitMs`.
    bool launch()
    {
        QSignalSpy listed(app.get(), &AppDelegate::drivesListed);
        if (!app->applicationDidFinishLaunching())
            return false;
        return !listed.isEmpty() || listed.wait(listingWaitMs);
    }

    bool start()
    {
        build();
        return launch();
    }

    // A second start on the same Documents and settings file, with a new
    // fake drive.
    bool restart()
    {
        app.reset();
        return start();
    }

    MainWindow *window() const { return app->mainWindow(); }
    QString setting(const QString &key) const { return settings->value(key).toString(); }
    QString logsDir() const { return root.filePath(QStringLiteral("logs")); }

    // Adds media files through a tab's Add Files button and waits until they
    // are measured.
    bool addFiles(QPushButton *add, const QStringList &paths)
    {
        const int before = app->arrayMediaFiles->count();
        picker.answers.enqueue(paths);
        QTest::mouseClick(add, Qt::LeftButton);
        return settled([&] { return app->arrayMediaFiles->count() == before + paths.size(); });
    }

    // Adds a folder through the Data tab's Add Folder button and waits until
    // it is measured.
    bool addDataFolder(const QString &path)
    {
        const int before = app->arrayDataFolders->count();
        picker.answers.enqueue({path});
        QTest::mouseClick(window()->toolbar_btn_Data_Add_Folder, Qt::LeftButton);
        return settled([&] { return app->arrayDataFolders->count() == before + 1; });
    }

private:
    static QString defaultRootTemplate()
    {
        const QString name = QCoreApplication::applicationName();
        return QDir::tempPath() + QLatin1Char('/') + (name.isEmpty() ? QStringLiteral("qt_temp") : name)
            + QStringLiteral("-XXXXXX");
    }

    // Waits up to 30 s for `added` with no adding at work and no progress
    // sheet up.
    bool settled(const std::function<bool()> &added)
    {
        QElapsedTimer t;
        t.start();
        while (t.elapsed() < 30000) {
            if (added() && !app->compilationActions()->isBusy() && !app->windowUniqueProgress)
                return true;
            QTest::qWait(10);
        }
        return false;
    }
};
