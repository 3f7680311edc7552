#include "support/Files.h"
#include "support/TestMain.h"
#include "platform/ToolPaths.h"
#include "toolrun/ToolProcess.h"

#include <QFile>
#include <QTemporaryDir>

class TestToolPaths : public QObject {
    Q_OBJECT
private slots:
    void linuxPrefersFfmpegBesideExecutable()
    {
        QTemporaryDir dir;
        const QString beside = dir.filePath("ffmpeg");
        QVERIFY(writeScript(beside, "#!/bin/sh\n"));
        QCOMPARE(ToolPaths::locateFfmpeg(dir.path(), ToolPaths::Backend::Linux), beside);
    }
    void linuxFallsBackToPath()
    {
        QTemporaryDir dir;
        const QString found = ToolPaths::locateFfmpeg(dir.path(), ToolPaths::Backend::Linux);
        QCOMPARE(found, QStandardPaths::findExecutable("ffmpeg"));
        QVERIFY2(!found.isEmpty(), "ffmpeg must be installed for the tests");
    }
    void macosUsesBundleResources()
    {
        QCOMPARE(ToolPaths::locateFfmpeg("/Applications/Tamblo.app/Contents/MacOS", ToolPaths::Backend::MacOS),
                 QString("/Applications/Tamblo.app/Contents/Resources/ffmpeg"));
    }
    void thisPlatformIsLinuxWithToolsOnPath()
    {
        const ToolPaths p = ToolPaths::forThisPlatform("/nonexistent");
        QVERIFY(p.backend == ToolPaths::Backend::Linux);
        QCOMPARE(p.xorriso, QStandardPaths::findExecutable("xorriso"));
        QCOMPARE(p.cdrskin, QStandardPaths::findExecutable("cdrskin"));
        QCOMPARE(p.eject, QStandardPaths::findExecutable("eject"));
        QVERIFY(p.drutil.isEmpty());
    }
    void childGetsAnEnglishUtf8LocaleAndNullStdin()
    {
        // `cat` with no arguments copies its standard input: with the null
        // device it ends at once with nothing; LC_ALL is printed by env.
        QProcess p;
        ToolProcess::prepare(p, {"/bin/sh", {"-c", "cat; echo \"LC_ALL=$LC_ALL\""}});
        p.start();
        QVERIFY(p.waitForFinished(5000));
        QCOMPARE(QString::fromUtf8(p.readAllStandardOutput()), QString("LC_ALL=C.UTF-8\n"));
        QCOMPARE(ToolProcess::childLocale(), QStringLiteral("C.UTF-8"));
    }
};

TAMBLO_TEST_MAIN(TestToolPaths)
#include "tst_toolpaths.moc"
