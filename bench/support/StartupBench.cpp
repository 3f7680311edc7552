// From launch to the window: a child process of this benchmark starts the
// application exactly as main.cpp does (QApplication, single-instance
// claim, settings, the platform's alerts and panels, the tool paths,
// AppDelegate and its start-up) on the offscreen screen, with its own home
// folder, and prints the time of the main window's first painting. The
// parent takes the time from just before it starts the child. Median of 10
// launches after one not counted, in two settings: this machine as it is
// (no optical drive), and a PATH whose xorriso never answers the drive
// listing. Target: 300 ms.
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QIcon>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>

#include "Sections.h"
#include "app/SingleInstance.h"
#include "platform/ToolPaths.h"
#include "app/ui/AppContext.h"
#include "app/ui/AppDelegate.h"
#include "app/ui/MainWindow.h"
#include "platform/ui/QtAlerts.h"
#include "platform/ui/QtFilePicker.h"

namespace Bench {

namespace {

constexpr int Launches = 10;
constexpr double TargetMs = 300.0;

qint64 monotonicMs()
{
    QElapsedTimer t;
    t.start();
    return t.msecsSinceReference();
}

// Tells, once, when the window is first painted, then ends the loop.
class FirstPaint : public QObject {
public:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (!m_seen && event->type() == QEvent::Paint) {
            m_seen = true;
            std::printf("shown %lld\n", static_cast<long long>(monotonicMs()));
            std::fflush(stdout);
            QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(0); });
        }
        return QObject::eventFilter(watched, event);
    }

private:
    bool m_seen = false;
};

struct Launch {
    double ms = -1;
    QString problem;
};

Launch launchOnce(const QString &selfPath, const QProcessEnvironment &env)
{
    QProcess child;
    child.setProcessEnvironment(env);
    child.setStandardInputFile(QProcess::nullDevice());
    const qint64 before = monotonicMs();
    child.start(selfPath, {QString::fromLatin1(StartupChildFlag)});
    Launch l;
    if (!child.waitForFinished(30000)) {
        child.kill();
        child.waitForFinished(2000);
        l.problem = QStringLiteral("no window within 30 s");
        return l;
    }
    const QByteArray output = child.readAllStandardOutput();
    const qsizetype at = output.indexOf("shown ");
    if (at < 0) {
        l.problem = QStringLiteral("no window: ") + QString::fromLocal8Bit(output + child.readAllStandardError()).left(300);
        return l;
    }
    l.ms = double(output.mid(at + 6).trimmed().split('\n').value(0).toLongLong() - before);
    return l;
}

} // namespace

int startupChild(int argc, char **argv)
{
    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Zendrova"));
    QCoreApplication::setApplicationName(QStringLiteral("Tamblo"));
    QGuiApplication::setDesktopFileName(QStringLiteral("com.zendrova.Tamblo"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("com.zendrova.Tamblo")));
    SingleInstance instance(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation),
                            SingleInstance::nameForThisUser());
    if (!instance.claim())
        return 3;
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
    FirstPaint paint;
    delegate.mainWindow()->installEventFilter(&paint);
    if (!delegate.applicationDidFinishLaunching())
        return 2;
    return app.exec();
}

QList<Row> startupSection(const QString &selfPath)
{
    QTemporaryDir dir;
    const QString home = dir.filePath(QStringLiteral("home"));
    const QString runtime = dir.filePath(QStringLiteral("runtime"));
    const QString fakes = dir.filePath(QStringLiteral("silent-drive"));
    QDir().mkpath(home);
    QDir().mkpath(runtime);
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QDir().mkpath(fakes);
    {
        // A drive listing that never answers while the window comes up.
        QFile xorriso(fakes + QStringLiteral("/xorriso"));
        if (xorriso.open(QIODevice::WriteOnly))
            xorriso.write("#!/bin/sh\nexec sleep 5\n");
        xorriso.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("HOME"), home);
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QStringLiteral("/.config"));
    env.insert(QStringLiteral("XDG_DATA_HOME"), home + QStringLiteral("/.local/share"));
    env.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime);
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    QProcessEnvironment silent = env;
    silent.insert(QStringLiteral("PATH"), fakes + QLatin1Char(':') + env.value(QStringLiteral("PATH")));

    QList<Row> rows;
    const QList<std::pair<QString, QProcessEnvironment>> settingsList{
        {QStringLiteral("start-up, no drive (median of 10)"), env},
        {QStringLiteral("start-up, drive listing never answers (median of 10)"), silent}};
    for (const auto &[name, environment] : settingsList) {
        say(QStringLiteral("Start-up: %1 ...").arg(name));
        launchOnce(selfPath, environment);  // the first run makes the folders; not counted
        QList<qint64> times;
        QString problem;
        for (int i = 0; i < Launches && problem.isEmpty(); ++i) {
            const Launch l = launchOnce(selfPath, environment);
            if (!l.problem.isEmpty())
                problem = l.problem;
            times << qint64(l.ms);
        }
        say(QStringLiteral("  launch to window ms: %1").arg(joined(times)));
        if (!problem.isEmpty()) {
            say(QStringLiteral("  PROBLEM: ") + problem);
            rows << against(name, QStringLiteral("failed"), QStringLiteral("<= 300 ms"), false);
            continue;
        }
        const double ms = double(median(times));
        rows << against(name, msText(ms), QStringLiteral("<= 300 ms"), ms <= TargetMs);
    }
    return rows;
}

} // namespace Bench
