#include <QApplication>
#include <QIcon>
#include <QSettings>
#include <QStandardPaths>

#include "app/SingleInstance.h"
#include "platform/ToolPaths.h"
#include "app/ui/AccessibleControls.h"
#include "app/ui/AppContext.h"
#include "app/ui/AppDelegate.h"
#include "app/ui/MainWindow.h"
#include "platform/ui/QtAlerts.h"
#include "platform/ui/QtFilePicker.h"

namespace {

// The platform's request to end (the dock's Quit on macOS, a session that
// logs out) ends Tamblo the same way as its own Quit.
class TerminateFilter : public QObject {
public:
    explicit TerminateFilter(AppDelegate &app) : m_app(app) {}
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched == qApp && event->type() == QEvent::Quit)
            m_app.Terminate_App();
        return QObject::eventFilter(watched, event);
    }

private:
    AppDelegate &m_app;
};

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Zendrova"));
    QCoreApplication::setApplicationName(QStringLiteral("Tamblo"));
    // The installed menu entry and icon (packaging/linux), so the desktop
    // shows the window under them; a run from the build folder has neither.
    QGuiApplication::setDesktopFileName(QStringLiteral("com.zendrova.Tamblo"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("com.zendrova.Tamblo")));
    QApplication::setQuitOnLastWindowClosed(true);
    AccessibleControls::install();

    // A second start shows the first one's window and ends here, before it
    // could empty working folders that the first one is using.
    SingleInstance instance(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation),
                            SingleInstance::nameForThisUser());
    if (!instance.claim())
        return 0;

    QSettings settings(QStringLiteral("Zendrova"), QStringLiteral("Tamblo"));
    QtAlerts alerts;
    QtFilePicker picker;

    AppContext context;
    context.alerts = &alerts;
    context.filePicker = &picker;
    context.settings = &settings;
    context.documentsDir = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    context.tools = ToolPaths::forThisPlatform(QCoreApplication::applicationDirPath());

    AppDelegate delegate(context);
    alerts.setParent(delegate.mainWindow());
    picker.setParent(delegate.mainWindow());
    QObject::connect(&instance, &SingleInstance::activationRequested, &delegate, [&delegate] {
        QWidget *w = delegate.mainWindow();
        w->showNormal();
        w->raise();
        w->activateWindow();
    });
    TerminateFilter filter(delegate);
    app.installEventFilter(&filter);
    QObject::connect(&app, &QCoreApplication::aboutToQuit, &delegate, &AppDelegate::Terminate_App);

    if (!delegate.applicationDidFinishLaunching())
        return 0;
    return app.exec();
}
