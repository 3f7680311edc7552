#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "support/TestMain.h"
#include "toolrun/ToolProcess.h"

namespace {
QStringList g_messages;
QtMessageHandler g_previous = nullptr;

void keep(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type != QtDebugMsg && type != QtInfoMsg)
        g_messages << message;
    if (g_previous)
        g_previous(type, context, message);
}
} // namespace

// The tray commands start detached: the tool runs, and Qt has nothing to
// warn about (the eject used to log an inconsistent channel setting on
// every start).
class TestToolrunDetached : public QObject {
    Q_OBJECT
private slots:
    void startsQuietly()
    {
        const QString touch = QStandardPaths::findExecutable(QStringLiteral("touch"));
        QVERIFY(!touch.isEmpty());
        QTemporaryDir dir;
        const QString marker = dir.filePath(QStringLiteral("ran"));
        g_messages.clear();
        g_previous = qInstallMessageHandler(keep);
        const bool started = ToolProcess::startDetached(ToolCommand{touch, {marker}});
        qInstallMessageHandler(g_previous);
        QVERIFY(started);
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(marker), 10000);
        QVERIFY2(g_messages.isEmpty(), qPrintable(g_messages.join(QLatin1Char('\n'))));
    }
};

TAMBLO_TEST_MAIN(TestToolrunDetached)
#include "tst_toolrun_detached.moc"
