#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QListView>
#include <QTemporaryDir>

#include "platform/ui/QtFilePicker.h"
#include "compilation/ExtensionLists.h"
#include "images/IsoCreation.h"
#include "support/TestMain.h"
#include "support/Files.h"

// The open panels: titled after what they are for, their filter readable,
// and a file offered whatever the letter case of its extension.
class TestAppFilePanels : public QObject {
    Q_OBJECT

    // The names the panel lists in `folder`, once it has read it.
    static QStringList listed(QFileDialog &dialog, const QString &folder, int expected)
    {
        auto *view = dialog.findChild<QListView *>(QStringLiteral("listView"));
        if (!view)
            return {};
        QStringList names;
        const bool read = QTest::qWaitFor(
            [&] {
                names.clear();
                QAbstractItemModel *m = view->model();
                const QModelIndex root = view->rootIndex();
                if (m->data(root, QFileSystemModel::FilePathRole).toString() != folder)
                    return false;
                for (int i = 0; i < m->rowCount(root); ++i)
                    names << m->index(i, 0, root).data().toString();
                return names.size() >= expected;
            },
            5000);
        if (!read)
            qWarning() << "the panel has not read" << folder << "yet";
        names.sort();
        return names;
    }

private slots:
    void filtersReadAsWords()
    {
        QCOMPARE(QtFilePicker::nameFilter(ExtensionLists::audioAddFilesRequest()),
                 QString("Audio files (*.wma *.wav *.cda *.mp3 *.mp2 *.mpga *.m4a)"));
        QCOMPARE(QtFilePicker::nameFilter(ExtensionLists::videoAddFilesRequest()),
                 QString("Video files (*.wmv *.mov *.mpg *.mpeg *.mpe *.avi *.asf *.asx *.qt *.mp4 *.mpeg-4 "
                         "*.flv *.ts *.3gp *.fli *.m1v *.m2v *.mjpg)"));
        QCOMPARE(QtFilePicker::nameFilter(IsoCreation::imageRequest()), QString("Disc images (*.iso *.img *.dmg)"));
        QCOMPARE(QtFilePicker::nameFilter(ExtensionLists::dataAddFolderRequest()), QString());
    }

    void everyPanelSaysWhatItIsFor()
    {
        QCOMPARE(QtFilePicker::title(ExtensionLists::audioAddFilesRequest()), QString("Add Audio Files"));
        QCOMPARE(QtFilePicker::title(ExtensionLists::videoAddFilesRequest()), QString("Add Video Files"));
        QCOMPARE(QtFilePicker::title(ExtensionLists::audioAddFolderRequest()), QString("Add a Folder of Audio Files"));
        QCOMPARE(QtFilePicker::title(ExtensionLists::videoAddFolderRequest()), QString("Add a Folder of Video Files"));
        QCOMPARE(QtFilePicker::title(ExtensionLists::dataAddFolderRequest()), QString("Add a Data Folder"));
        QCOMPARE(QtFilePicker::title(IsoCreation::imageRequest()), QString("Select a ISO image to burn to media."));
        QCOMPARE(QtFilePicker::title(IsoCreation::sourceRequest()), QString("Select a folder to export to ISO format."));
        QCOMPARE(QtFilePicker::title(IsoCreation::volumeRequest()), QString("Select a volume to duplicate."));
        QCOMPARE(QtFilePicker::title(IsoCreation::destinationRequest(QDir::homePath())),
                 QString("Select a folder to save the Image.iso file."));
        for (const PickRequest &r : {ExtensionLists::audioAddFilesRequest(), ExtensionLists::dataAddFolderRequest(),
                                     IsoCreation::imageRequest()}) {
            QFileDialog dialog;
            QtFilePicker::configure(dialog, r);
            QCOMPARE(dialog.windowTitle(), QtFilePicker::title(r));
            QVERIFY(dialog.windowTitle() != QLatin1String("Tamblo"));
        }
    }

    // Song.MP3 is offered by the Add Files panel, as the panel's filter
    // reads "*.mp3".
    void thePanelMatchesAnyLetterCase()
    {
        QTemporaryDir dir;
        for (const char *name : {"a.mp3", "Song.MP3", "Mixed.Mp3", "voice.WAV", "notes.txt", "clip.mp4"})
            QVERIFY(writeFile(dir.filePath(QString::fromLatin1(name)), QByteArray()));
        QFileDialog dialog;
        PickRequest r = ExtensionLists::audioAddFilesRequest();
        r.startFolder = dir.path();
        QtFilePicker::configure(dialog, r);
        QCOMPARE(dialog.nameFilters(), QStringList{QtFilePicker::nameFilter(r)});
        QCOMPARE(dialog.fileMode(), QFileDialog::ExistingFiles);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QCOMPARE(listed(dialog, dir.path(), 4), (QStringList{"Mixed.Mp3", "Song.MP3", "a.mp3", "voice.WAV"}));
        dialog.reject();
    }
};

TAMBLO_TEST_MAIN(TestAppFilePanels)
#include "tst_app_file_panels.moc"
