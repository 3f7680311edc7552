#include "support/TestMain.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <cstdlib>

namespace TestEnv {

static QTemporaryDir *g_home = nullptr;

QString prepare()
{
    if (!g_home) {
        g_home = new QTemporaryDir(QDir::tempPath() + QStringLiteral("/tamblo-test-home-XXXXXX"));
        const QByteArray h = g_home->path().toLocal8Bit();
        qputenv("HOME", h);
        qputenv("XDG_CONFIG_HOME", h + "/.config");
        qputenv("XDG_DATA_HOME", h + "/.local/share");
        qputenv("XDG_CACHE_HOME", h + "/.cache");
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        QStandardPaths::setTestModeEnabled(true);
        QCoreApplication::setOrganizationName(QStringLiteral("Zendrova"));
        QCoreApplication::setApplicationName(QStringLiteral("Tamblo"));
        std::atexit([] { delete g_home; g_home = nullptr; });
    }
    return g_home->path();
}

QString home()
{
    return g_home ? g_home->path() : QString();
}

} // namespace TestEnv
