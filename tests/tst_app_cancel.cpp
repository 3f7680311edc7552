// Cancel on every long sheet, pressed as the user presses it: the tool is
// gone afterwards, the working folder is empty, and the last sheet says the
// operation was cancelled, never that it is complete. A disc being written
// is stopped only after the user said so.
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <csignal>
#include <sys/types.h>

#include "compilation/CompilationActions.h"
#include "compilation/DataFolderModel.h"
#include "compilation/MediaListModel.h"
#include "app/ui/MainWindow.h"
#include "burn/MediaBurn.h"
#include "images/DataBurnFlow.h"
#include "images/DuplicationFlow.h"
#include "support/AppHarness.h"
#include "support/Files.h"
#include "support/TestMain.h"
#include "toolrun/ToolMessages.h"
#include "toolrun/ToolRun.h"

namespace {

const QString HangTool = fake("hang-tool");
const QString WritesOutput = fake("transcoder-writes-output");
const QString StopQuestion = QStringLiteral("Stop writing? A write-once disc will be unusable.");

NodeMediaFile mediaRecord(const QString &path, qint64 seconds)
{
    NodeMediaFile n;
    n.s_File_Path = path;
    n.s_File_Name_With_Extension = QFileInfo(path).fileName();
    n.s_Folder_Path = QFileInfo(path).absolutePath();
    n.s_Duration = QStringLiteral(" 00:00:0%1.00").arg(seconds);
    n.i_Duration_in_Seconds = seconds;
    n.s_File_Size = QStringLiteral("1.00 KB");
    return n;
}

// One controller whose tools hang until stopped, each noting its process id.
struct CancelRig : AppHarness<> {
    QString pids = root.filePath(QStringLiteral("pids"));

    explicit CancelRig(ToolPaths::Backend backend = ToolPaths::Backend::Linux)
    {
        qputenv("TAMBLO_FAKE_HANG_PIDS", QFile::encodeName(pids));
        QFile::remove(pids);
        drive->drives = {opticalDrive("1", "Fake", "Writer", "stdio:" + root.filePath("disc.iso"))};
        tune = [backend](AppContext &c) {
            c.tools.backend = backend;
            c.tools.ffmpeg = HangTool;
            c.tools.xorriso = HangTool;
            c.tools.cdrskin = HangTool;
            c.tools.drutil = HangTool;
            c.tools.hdiutil = HangTool;
        };
    }
    ~CancelRig() { qunsetenv("TAMBLO_FAKE_HANG_PIDS"); }

    QString folder(const char *name) const { return documents + QLatin1Char('/') + QLatin1String(name); }

    // An MP3 CD of one file whose transcode succeeds at once (the recorder,
    // and `xorriso` when given, as the test chooses), burned from the button.
    bool burnOneMp3(const QString &xorriso = QString())
    {
        tune = [base = tune, xorriso](AppContext &c) {
            base(c);
            c.tools.ffmpeg = WritesOutput;
            if (!xorriso.isEmpty())
                c.tools.xorriso = xorriso;
        };
        drive->status = FakeDriveBackend::blank("CD");
        if (!start())
            return false;
        app->OnActionMP3CD();
        app->arrayMediaFiles->append(mediaRecord("/music/a.mp3", 2));
        app->mainWindow()->btnBurn->click();
        return true;
    }

    // The hanging tools that were started, by process id.
    QList<qint64> started() const
    {
        QList<qint64> ids;
        QFile f(pids);
        if (f.open(QIODevice::ReadOnly))
            for (const QByteArray &line : f.readAll().split('\n'))
                if (!line.trimmed().isEmpty())
                    ids << line.trimmed().toLongLong();
        return ids;
    }

    // Every hanging tool started is gone (killed and reaped).
    bool toolsGone() const
    {
        for (qint64 id : started())
            if (::kill(pid_t(id), 0) == 0)
                return false;
        return ToolRun::running().isEmpty();
    }

    // Cancel pressed on the working sheet of a write that hangs, Stop
    // answered: the question came first, the tool is gone, and the last
    // sheet says the burn was cancelled with the disc left unfinished.
    bool cancelWhileWriting()
    {
        QTest::mouseClick(app->windowPerformingOperation->btnCancel, Qt::LeftButton);
        if (alerts.shown.size() != 1 || alerts.shown.first().messageText != StopQuestion)
            return false;
        if (!QTest::qWaitFor([this] { return bool(app->windowOperationCompleted); }, 5000))
            return false;
        return lastMessage() == QStringLiteral("The burn was cancelled.")
            && lastInformative()
                   == QStringLiteral("Writing was stopped before the disc was finished. A write-once disc is now unusable.")
            && toolsGone();
    }

    QString lastMessage() const
    {
        return app->windowOperationCompleted ? app->windowOperationCompleted->labelMessage->text() : QString();
    }
    QString lastInformative() const
    {
        auto *w = app->windowOperationCompleted.data();
        return w && w->labelInformative ? w->labelInformative->text() : QString();
    }
};

QPushButton *cancelOf(StatusSheet *sheet)
{
    return sheet ? sheet->btnCancel : nullptr;
}

} // namespace

class TestAppCancel : public QObject {
    Q_OBJECT

private slots:
    // The sheets a long operation shows carry a Cancel button a person can
    // name; the last sheet has none.
    void longSheetsHaveCancel()
    {
        CancelRig r;
        QVERIFY(r.start());
        emit r.app->mediaBurn()->sheetShown(OperationSheet::Transcoding);
        QVERIFY(cancelOf(r.app->windowProgress));
        QCOMPARE(r.app->windowProgress->btnCancel->accessibleName(), QString("Cancel"));
        QVERIFY(r.app->windowProgress->btnCancel->isVisible());
        emit r.app->mediaBurn()->sheetClosed(OperationSheet::Transcoding);
        r.app->Show_Window_Performing_Operation();
        QVERIFY(cancelOf(r.app->windowPerformingOperation));
        emit r.app->mediaBurn()->sheetClosed(OperationSheet::Working);
        r.app->Show_Window_Data_Copy_Folders();
        QVERIFY(cancelOf(r.app->windowDataCopyFolders));
        r.app->Close_Window_Data_Copy_Folders();
        r.app->Show_Window_Operation_Complete();
        QVERIFY(!r.app->windowOperationCompleted->btnCancel);
    }

    // Adding files: the probe is stopped, the list is as it was, the sheet
    // goes and nothing else is said.
    void addingFilesCancelled()
    {
        CancelRig r;
        QVERIFY(r.start());
        r.app->arrayMediaFiles->append(mediaRecord("/music/kept.mp3", 3));
        r.picker.answers.enqueue({"/music/a.mp3", "/music/b.mp3", "/music/c.mp3"});
        r.app->mainWindow()->toolbar_btn_Audio_Add_Files->click();
        QTRY_VERIFY(r.app->windowUniqueProgress);
        QTRY_VERIFY(!r.started().isEmpty());
        QTest::mouseClick(r.app->windowUniqueProgress->btnCancel, Qt::LeftButton);
        QTRY_VERIFY(!r.app->windowUniqueProgress);
        QVERIFY(!r.app->compilationActions()->isBusy());
        QCOMPARE(r.app->arrayMediaFiles->count(), 1);
        QCOMPARE(r.app->arrayMediaFiles->at(0).s_File_Path, QString("/music/kept.mp3"));
        QTRY_VERIFY(r.toolsGone());
        QVERIFY(r.alerts.shown.isEmpty());
        QVERIFY(!r.app->windowOperationCompleted);
        // The list takes a new add at once.
        QVERIFY(r.app->compilationActions()->addMediaFiles(CompilationActions::AudioTab, {"/music/d.mp3"}));
        r.app->compilationActions()->cancel();
    }

    // Measuring a data folder: the walk ends early and adds nothing.
    void addingDataFolderCancelled()
    {
        QTemporaryDir tree;
        for (int i = 0; i < 200; ++i)
            QVERIFY(QDir().mkpath(tree.filePath(QStringLiteral("d%1/e").arg(i))));
        MediaListModel media;
        DataFolderModel data;
        CompilationActions actions(&media, &data, nullptr);
        QSignalSpy closed(&actions, &Operation::sheetClosed);
        QSignalSpy busy(&actions, &CompilationActions::busyChanged);
        QVERIFY(actions.addDataFolder(tree.path()));
        actions.cancel();
        QCOMPARE(closed.size(), 1);
        QTRY_COMPARE(busy.size(), 2);
        QCOMPARE(busy.last().first().toBool(), false);
        QTest::qWait(50);
        QCOMPARE(data.count(), 0);
        QVERIFY(!actions.isBusy());
    }

    // While files are transcoded: every transcode is stopped, the working
    // folder emptied, and the last sheet says nothing was written. Escape
    // on the sheet does what its button does.
    void transcodingCancelled_data()
    {
        QTest::addColumn<bool>("byEscape");
        QTest::newRow("button") << false;
        QTest::newRow("escape") << true;
    }
    void transcodingCancelled()
    {
        QFETCH(bool, byEscape);
        CancelRig r;
        r.drive->status = FakeDriveBackend::blank("CD");
        QVERIFY(r.start());
        r.app->arrayMediaFiles->append({mediaRecord("/music/a.mp3", 2), mediaRecord("/music/b.mp3", 2)});
        r.app->OnActionAudioCD();
        r.app->mainWindow()->btnBurn->click();
        QTRY_VERIFY(r.app->windowProgress);
        QTRY_VERIFY(!r.started().isEmpty());
        if (byEscape)
            QTest::keyClick(r.app->windowProgress, Qt::Key_Escape);
        else
            QTest::mouseClick(r.app->windowProgress->btnCancel, Qt::LeftButton);
        QTRY_VERIFY(r.app->windowOperationCompleted);
        QVERIFY(!r.app->windowProgress);
        QVERIFY(r.alerts.shown.isEmpty());  // nothing written yet: no question
        QCOMPARE(r.lastMessage(), QString("The burn was cancelled."));
        QCOMPARE(r.lastInformative(), QString("Nothing was written to the disc."));
        QCOMPARE(r.app->windowOperationCompleted->windowTitle(), QString("Tamblo — Cancelled"));
        QVERIFY(r.toolsGone());
        QCOMPARE(entries(r.folder("TambloAudio")), QStringList());
        QCOMPARE(r.app->arrayMediaFiles->count(), 2);
        QVERIFY(!r.app->mediaBurn()->isBusy());
    }

    // While the recorder writes: Cancel asks first. Continue goes on
    // writing; Stop stops the recorder and says the disc is unfinished.
    void recordingCancelledAfterAsking()
    {
        CancelRig r;
        QVERIFY(r.burnOneMp3());
        QTRY_VERIFY(r.app->mediaBurn()->isRecording());
        QTRY_VERIFY(r.app->windowPerformingOperation);
        QTRY_COMPARE(r.started().size(), 1);

        r.alerts.answer(1);  // Continue
        QTest::mouseClick(r.app->windowPerformingOperation->btnCancel, Qt::LeftButton);
        QCOMPARE(r.alerts.shown.size(), 1);
        QCOMPARE(r.alerts.shown.first().messageText, StopQuestion);
        QCOMPARE(r.alerts.shown.first().buttons, QStringList({"Stop", "Continue"}));
        QTest::qWait(300);
        QVERIFY(r.app->mediaBurn()->isRecording());
        QVERIFY(r.app->windowPerformingOperation);
        QVERIFY(!r.app->windowOperationCompleted);

        QTest::mouseClick(r.app->windowPerformingOperation->btnCancel, Qt::LeftButton);  // Stop
        QCOMPARE(r.alerts.shown.size(), 2);
        QTRY_VERIFY(r.app->windowOperationCompleted);
        QVERIFY(!r.app->windowPerformingOperation);
        QCOMPARE(r.lastMessage(), QString("The burn was cancelled."));
        QCOMPARE(r.lastInformative(),
                 QString("Writing was stopped before the disc was finished. A write-once disc is now unusable."));
        QVERIFY(r.app->windowOperationCompleted->btnDetails->isVisibleTo(r.app->windowOperationCompleted));
        QVERIFY(r.app->windowOperationCompleted->textDetails->toPlainText().contains("Media status : is blank"));
        QVERIFY(r.toolsGone());
        QCOMPARE(entries(r.folder("TambloAudio")), QStringList());
    }

    // The data disc's recorder, on Linux: asked, then stopped.
    void dataBurnCancelledWhileWriting()
    {
        CancelRig r;
        QTemporaryDir photos;
        QVERIFY(writeFile(photos.filePath("a.txt"), QByteArray()));
        r.drive->status = FakeDriveBackend::blank("CD");
        QVERIFY(r.start());
        NodeDataFolder f;
        f.s_Path = photos.path();
        f.s_Size = "0 bytes";
        r.app->arrayDataFolders->append(f);
        r.app->OnActionDataCD();
        r.app->mainWindow()->btnBurn->click();
        QTRY_VERIFY(r.app->windowPerformingOperation);
        QTRY_COMPARE(r.started().size(), 1);
        QVERIFY(r.cancelWhileWriting());
        QTRY_COMPARE(entries(r.folder("TambloData")), QStringList());
        QVERIFY(!r.app->dataBurn()->isBusy());
    }

    // The data disc's staging copy, on macOS: stopped without a question,
    // the working folder emptied, nothing recorded.
    void stagingCancelled()
    {
        CancelRig r(ToolPaths::Backend::MacOS);
        QTemporaryDir photos;
        QVERIFY(writeFile(photos.filePath("a.txt"), QByteArray(4096, 'a')));
        r.drive->status = FakeDriveBackend::blank("CD");
        QVERIFY(r.start());
        NodeDataFolder f;
        f.s_Path = photos.path();
        f.i_Size_in_KBytes = 400;  // more than is there: the staging waits for its poll
        f.s_Size = "400.00 KB";
        r.app->arrayDataFolders->append(f);
        r.app->OnActionDataCD();
        r.app->mainWindow()->btnBurn->click();
        QTRY_VERIFY(r.app->windowDataCopyFolders);
        QTRY_VERIFY(!entries(r.folder("TambloData")).isEmpty());  // the copy has begun
        QTest::mouseClick(r.app->windowDataCopyFolders->btnCancel, Qt::LeftButton);
        QTRY_VERIFY(r.app->windowOperationCompleted);
        QVERIFY(!r.app->windowDataCopyFolders);
        QVERIFY(r.alerts.shown.isEmpty());
        QCOMPARE(r.lastMessage(), QString("The burn was cancelled."));
        QCOMPARE(r.lastInformative(), QString("Nothing was written to the disc."));
        QVERIFY(r.started().isEmpty());  // the recorder never ran
        QCOMPARE(entries(r.folder("TambloData")), QStringList());
        QVERIFY(!r.app->dataBurn()->isBusy());
    }

    // Making an image writes no disc: stopped at once, no half image left.
    void isoCreationCancelled()
    {
        CancelRig r;
        QTemporaryDir source, dest;
        QVERIFY(r.start());
        r.picker.answers.enqueue({source.path()});
        r.picker.answers.enqueue({dest.path()});
        r.app->OnActionISOCreate();
        QTRY_VERIFY(r.app->windowPerformingOperation);
        QTRY_COMPARE(r.started().size(), 1);
        QTest::mouseClick(r.app->windowPerformingOperation->btnCancel, Qt::LeftButton);
        QTRY_VERIFY(r.app->windowOperationCompleted);
        QVERIFY(r.alerts.shown.isEmpty());
        QCOMPARE(r.lastMessage(), QString("Making the image was cancelled."));
        QCOMPARE(r.lastInformative(), QString("No image was made."));
        QVERIFY(r.toolsGone());
        QCOMPARE(entries(dest.path()), QStringList());
    }

    // Burning an image: asked, then stopped.
    void imageBurnCancelled()
    {
        CancelRig r;
        QTemporaryDir dir;
        const QString image = dir.filePath("disc.iso");
        QVERIFY(writeFile(image, QByteArray()));
        r.drive->status = FakeDriveBackend::blank("DVD");
        QVERIFY(r.start());
        r.picker.answers.enqueue({image});
        r.app->OnActionISOBurn();
        QTRY_VERIFY(r.app->windowPerformingOperation);
        QTRY_COMPARE(r.started().size(), 1);
        QVERIFY(r.cancelWhileWriting());
    }

    // A copy cancelled while the disc is read: no question, nothing written,
    // the image gone.
    void copyCancelledWhileReading()
    {
        CancelRig r;
        r.drive->status = FakeDriveBackend::finished("CD");
        QVERIFY(r.start());
        r.picker.answers.enqueue({"/media/disc"});
        r.app->DuplicateMedia();
        QTRY_VERIFY(r.app->windowPerformingOperation);
        QTRY_COMPARE(r.started().size(), 1);
        QTest::mouseClick(r.app->windowPerformingOperation->btnCancel, Qt::LeftButton);
        QTRY_VERIFY(r.app->windowOperationCompleted);
        QVERIFY(r.alerts.shown.isEmpty());
        QCOMPARE(r.lastMessage(), QString("The copy was cancelled."));
        QCOMPARE(r.lastInformative(), QString("Nothing was written to the disc."));
        QVERIFY(r.toolsGone());
        QTRY_COMPARE(entries(r.folder("TambloData")), QStringList());
        QVERIFY(!r.app->duplication()->isBusy());
    }

    // Reading the written disc back: stopped without a question (the disc
    // is written already); the last sheet says it was not verified.
    void verificationCancelled()
    {
        CancelRig r;
        QVERIFY(r.burnOneMp3(fake("xorriso-hangs-on-check")));
        QTRY_COMPARE(r.started().size(), 1);  // the check hangs
        QTRY_VERIFY(r.app->windowPerformingOperation);
        QCOMPARE(r.app->windowPerformingOperation->labelDescription->text(), QString("Verifying the disc…"));
        QTest::mouseClick(r.app->windowPerformingOperation->btnCancel, Qt::LeftButton);
        QTRY_VERIFY(r.app->windowOperationCompleted);
        QVERIFY(r.alerts.shown.isEmpty());
        QCOMPARE(r.lastMessage(), QString("Verifying was cancelled."));
        QCOMPARE(r.lastInformative(), QString("The disc was written, but it was not verified."));
        QVERIFY(r.toolsGone());
        QCOMPARE(entries(r.folder("TambloAudio")), QStringList());
    }

    void eraseCancelled()
    {
        CancelRig r;
        r.drive->status = FakeDriveBackend::rewritable("DVD");
        r.drive->erase = ToolCommand{HangTool, {"blank"}};
        QVERIFY(r.start());
        r.app->mainWindow()->menuitemEraseQuick->trigger();
        QTRY_VERIFY(r.app->windowPerformingOperation);
        QTRY_COMPARE(r.started().size(), 1);
        QTest::mouseClick(r.app->windowPerformingOperation->btnCancel, Qt::LeftButton);
        QTRY_VERIFY(r.app->windowOperationCompleted);
        QCOMPARE(r.lastMessage(), QString("Erasing was cancelled."));
        QCOMPARE(r.lastInformative(), QString("Erasing was stopped part way. Erase the disc again before using it."));
        QVERIFY(r.toolsGone());
    }
};

TAMBLO_TEST_MAIN(TestAppCancel)
#include "tst_app_cancel.moc"
