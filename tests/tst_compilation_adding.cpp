// The add actions of the Audio, Video and Data tabs: the panels they ask
// for, the progress sheet, the order in which records land, and bad input.
// Media is made here with ffmpeg's lavfi sources.
#include "support/TestMain.h"
#include "support/Tools.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>
#include <QUrl>
#include <QMutex>
#include <algorithm>
#include <sys/stat.h>

#include "compilation/CompilationActions.h"
#include "compilation/DataFolderModel.h"
#include "compilation/ExtensionLists.h"
#include "compilation/Measurements.h"
#include "compilation/MediaListModel.h"
#include "compilation/MediaProbeJob.h"
#include "toolrun/ToolRun.h"
#include "support/FakeFilePicker.h"
#include "support/Files.h"

namespace {

// Everything the actions say, in the order they say it.
struct Recorder {
    QStringList events;
    explicit Recorder(CompilationActions *actions)
    {
        QObject::connect(actions, &Operation::sheetShown, actions,
                         [this](OperationSheet, double max) { events << QStringLiteral("shown %1").arg(int(max)); });
        QObject::connect(actions, &Operation::barMoved, actions,
                         [this](OperationBar, double v) { events << QStringLiteral("progress %1").arg(int(v)); });
        QObject::connect(actions, &Operation::sheetClosed, actions,
                         [this] { events << QStringLiteral("closed"); });
        QObject::connect(actions, &CompilationActions::refreshTable, actions,
                         [this](int tab) { events << QStringLiteral("refresh %1").arg(tab); });
    }
    bool refreshed() const
    {
        return std::any_of(events.cbegin(), events.cend(),
                           [](const QString &e) { return e.startsWith(QLatin1String("refresh")); });
    }
};

// One fresh set of lists, panel and actions per test.
struct Rig {
    MediaListModel media;
    DataFolderModel data;
    FakeFilePicker picker;
    CompilationActions actions{&media, &data, &picker};
    Recorder rec{&actions};
    explicit Rig(const QString &ffmpeg) { actions.setFfmpegPath(ffmpeg); }
};

NodeMediaFile placeholder(const QString &name)
{
    NodeMediaFile n;
    n.s_File_Path = QStringLiteral("/nowhere/") + name;
    n.s_File_Name_With_Extension = name;
    n.s_Folder_Path = QStringLiteral("/nowhere");
    n.s_Duration = QStringLiteral(" 00:00:01.0");
    n.i_Duration_in_Seconds = 1;
    n.s_File_Size = QStringLiteral("1.00 KB");
    return n;
}

// The byte total of a tree counted here, entry by entry (folders with the
// size of their own entry, the top folder left out).
quint64 treeBytes(const QString &folder)
{
    quint64 total = 0;
    QDirIterator it(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        const qint64 s = it.fileInfo().size();
        if (s > 0)
            total += quint64(s);
    }
    return total;
}

} // namespace

class TestCompilationAdding : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;
    QString m_ffmpeg;
    int m_folderCount = 0;

    QString path(const QString &name) const { return m_dir.filePath(name); }

    bool makeTone(const QString &file, int seconds)
    {
        return makeMedia({QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                       QStringLiteral("sine=frequency=440:d=%1").arg(seconds), file});
    }

    // A new empty folder inside the test's temporary folder.
    QString newFolder(const QString &stem)
    {
        const QString p = path(QStringLiteral("%1-%2").arg(stem).arg(++m_folderCount));
        return QDir().mkpath(p) ? p : QString();
    }

    // A copy of one of the generated base files under another name.
    static bool copyAs(const QString &from, const QString &to)
    {
        QFile::remove(to);
        return QFile::copy(from, to);
    }

    static void waitForRefresh(Rig &rig, int timeoutMs = 60000)
    {
        QTRY_VERIFY_WITH_TIMEOUT(rig.rec.refreshed(), timeoutMs);
    }

    // The record of a real file must carry every field the lists show.
    static void checkRecord(const NodeMediaFile &n, const QString &filePath, qint64 seconds)
    {
        const QFileInfo fi(filePath);
        QCOMPARE(n.s_File_Path, filePath);
        QCOMPARE(n.s_File_URL, QUrl::fromLocalFile(filePath));
        QCOMPARE(n.s_Folder_Path, fi.absolutePath());
        QCOMPARE(n.s_File_Name_With_Extension, fi.fileName());
        QCOMPARE(n.s_File_Extension, fi.suffix());
        QCOMPARE(n.s_Duration, QStringLiteral(" 00:00:%1.0").arg(seconds, 2, 10, QLatin1Char('0')));
        QCOMPARE(n.i_Duration_in_Seconds, seconds);
        QVERIFY(fi.size() > 0);
        QCOMPARE(n.s_File_Size, Measurements::sizeText(quint64(fi.size())));
    }

private slots:
    void initTestCase()
    {
        m_ffmpeg = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
        QVERIFY2(!m_ffmpeg.isEmpty(), "ffmpeg must be installed for these tests");
        QVERIFY(m_dir.isValid());
        QVERIFY(makeTone(path("base2.mp3"), 2));
        QVERIFY(makeTone(path("base3.mp3"), 3));
        QVERIFY(makeMedia({"-f", "lavfi", "-i", "testsrc=d=2:s=160x120:r=25", "-pix_fmt", "yuv420p",
                        path("base2.mp4")}));
    }

    // Three audio files from the panel: the sheet, its steps in order, the
    // refresh, and three filled records appended in the panel's order.
    void threeAudioFilesShowSheetStepsAndRecords()
    {
        Rig rig(m_ffmpeg);
        rig.media.append(placeholder(QStringLiteral("already.mp3")));

        const QString dir = newFolder("three");
        const QStringList files{dir + "/Zulu first.MP3", dir + "/alpha second.mp3",
                                dir + "/Mike third.Mp3"};
        for (const QString &f : files)
            QVERIFY(copyAs(path("base2.mp3"), f));
        rig.picker.answers.enqueue(files);

        QList<double> shown;
        connect(&rig.actions, &Operation::sheetShown, this, [&shown](OperationSheet sheet, double maximum) {
            QCOMPARE(sheet, OperationSheet::MeasuringFiles);
            shown << maximum;
        });
        QVERIFY(rig.actions.addFiles(CompilationActions::AudioTab));
        QCOMPARE(shown.count(), 1);
        QCOMPARE(int(shown.at(0)), 3);
        QVERIFY(rig.actions.isBusy());
        waitForRefresh(rig);

        QCOMPARE(rig.rec.events,
                 QStringList({"shown 3", "progress 1", "progress 2", "progress 3", "closed",
                              "refresh 0"}));
        QVERIFY(!rig.actions.isBusy());
        QCOMPARE(rig.media.count(), 4);
        QCOMPARE(rig.media.at(0).s_File_Name_With_Extension, QStringLiteral("already.mp3"));
        for (int i = 0; i < 3; ++i)
            checkRecord(rig.media.at(i + 1), files.at(i), 2);
        QCOMPARE(rig.media.at(1).s_File_Extension, QStringLiteral("MP3"));
        QCOMPARE(rig.media.at(2).s_File_Extension, QStringLiteral("mp3"));
        QCOMPARE(rig.media.at(3).s_File_Extension, QStringLiteral("Mp3"));
        QCOMPARE(rig.media.at(1).s_Duration, QStringLiteral(" 00:00:02.0"));
        QCOMPARE(rig.data.count(), 0);
    }

    // The panels the five actions ask for.
    void panelRequests()
    {
        Rig rig(m_ffmpeg);  // every answer is Cancel
        QVERIFY(!rig.actions.addFiles(CompilationActions::AudioTab));
        QVERIFY(!rig.actions.addFiles(CompilationActions::VideoTab));
        QVERIFY(!rig.actions.addFolder(CompilationActions::AudioTab));
        QVERIFY(!rig.actions.addFolder(CompilationActions::VideoTab));
        QVERIFY(!rig.actions.addFolder(CompilationActions::DataTab));
        QCOMPARE(rig.picker.requests.size(), 5);

        const QStringList audio{"wma", "wav", "cda", "mp3", "mp2", "mpga", "m4a"};
        const QStringList video{"wmv", "mov", "mpg", "mpeg", "mpe", "avi", "asf", "asx", "qt",
                                "mp4", "mpeg-4", "flv", "ts", "3gp", "fli", "m1v", "m2v", "mjpg"};
        QCOMPARE(ExtensionLists::audio(), audio);
        QCOMPARE(ExtensionLists::video(), video);

        const PickRequest &audioFiles = rig.picker.requests.at(0);
        QCOMPARE(audioFiles.kind, PickRequest::Kind::Files);
        QVERIFY(audioFiles.multiple);
        QCOMPARE(audioFiles.allowedExtensions, audio);

        const PickRequest &videoFiles = rig.picker.requests.at(1);
        QCOMPARE(videoFiles.kind, PickRequest::Kind::Files);
        QVERIFY(videoFiles.multiple);
        QCOMPARE(videoFiles.allowedExtensions, video);

        for (int i = 2; i < 5; ++i) {
            const PickRequest &folder = rig.picker.requests.at(i);
            QCOMPARE(folder.kind, PickRequest::Kind::Folder);
            QVERIFY(!folder.multiple);
        }
    }

    // Extensions match exactly: b.MP3 and c.txt are left out.
    void folderAddsOnlyExactExtension()
    {
        Rig rig(m_ffmpeg);
        const QString dir = newFolder("exact");
        QVERIFY(copyAs(path("base2.mp3"), dir + "/a.mp3"));
        QVERIFY(copyAs(path("base2.mp3"), dir + "/b.MP3"));
        QVERIFY(writeFile(dir + "/c.txt", "text"));
        rig.picker.answers.enqueue({dir});

        QVERIFY(rig.actions.addFolder(CompilationActions::AudioTab));
        waitForRefresh(rig);
        QCOMPARE(rig.rec.events,
                 QStringList({"shown 1", "progress 1", "closed", "refresh 0"}));
        QCOMPARE(rig.media.count(), 1);
        checkRecord(rig.media.at(0), dir + "/a.mp3", 2);
    }

    // Only the folder's own files, never those of its subfolders.
    void folderAddsTopLevelOnly()
    {
        Rig rig(m_ffmpeg);
        const QString dir = newFolder("top");
        QVERIFY(QDir().mkpath(dir + "/sub/deeper"));
        QVERIFY(QDir().mkpath(dir + "/folder.mp3"));  // a folder named like a file
        QVERIFY(copyAs(path("base2.mp3"), dir + "/one.mp3"));
        QVERIFY(copyAs(path("base3.mp3"), dir + "/two.mp3"));
        QVERIFY(copyAs(path("base2.mp3"), dir + "/sub/inner.mp3"));
        QVERIFY(copyAs(path("base2.mp3"), dir + "/sub/deeper/deepest.mp3"));

        QVERIFY(rig.actions.addMediaFolder(CompilationActions::AudioTab, dir));
        waitForRefresh(rig);
        QCOMPARE(rig.rec.events.first(), QStringLiteral("shown 2"));
        QCOMPARE(rig.rec.events.last(), QStringLiteral("refresh 0"));
        QCOMPARE(rig.media.count(), 2);
        QStringList names;
        for (const NodeMediaFile &n : rig.media.records()) {
            names << n.s_File_Name_With_Extension;
            QCOMPARE(n.s_Folder_Path, dir);
        }
        names.sort();
        QCOMPARE(names, QStringList({"one.mp3", "two.mp3"}));
        for (const NodeMediaFile &n : rig.media.records())
            checkRecord(n, n.s_File_Path, n.s_File_Name_With_Extension == "one.mp3" ? 2 : 3);
    }

    // Nothing to add: no sheet, no signal at all, false.
    void folderWithoutMatchesDoesNothing()
    {
        Rig rig(m_ffmpeg);
        QSignalSpy busy(&rig.actions, &CompilationActions::busyChanged);
        const QString dir = newFolder("nomatch");
        QVERIFY(writeFile(dir + "/c.txt", "text"));
        QVERIFY(copyAs(path("base2.mp3"), dir + "/d.MP3"));
        QVERIFY(QDir().mkpath(dir + "/sub"));
        QVERIFY(copyAs(path("base2.mp3"), dir + "/sub/e.mp3"));
        const QString empty = newFolder("empty");

        rig.picker.answers.enqueue({dir});
        QVERIFY(!rig.actions.addFolder(CompilationActions::AudioTab));
        rig.picker.answers.enqueue({empty});
        QVERIFY(!rig.actions.addFolder(CompilationActions::VideoTab));
        QVERIFY(!rig.actions.addMediaFolder(CompilationActions::VideoTab, dir));
        QVERIFY(!rig.actions.addMediaFolder(CompilationActions::AudioTab, path("no-such-folder")));
        QCOMPARE(rig.picker.requests.size(), 2);
        QTest::qWait(300);
        QCOMPARE(rig.rec.events, QStringList());
        QCOMPARE(busy.count(), 0);
        QCOMPARE(rig.media.count(), 0);
        QVERIFY(!rig.actions.isBusy());
    }

    // Cancel on any panel: nothing at all.
    void cancelledPanelDoesNothing()
    {
        Rig rig(m_ffmpeg);
        rig.media.append(placeholder(QStringLiteral("keep.mp3")));
        QSignalSpy busy(&rig.actions, &CompilationActions::busyChanged);
        QSignalSpy rowsIn(&rig.media, &QAbstractItemModel::rowsInserted);
        QSignalSpy dataIn(&rig.data, &QAbstractItemModel::rowsInserted);

        rig.picker.answers.enqueue(QStringList());
        QVERIFY(!rig.actions.addFiles(CompilationActions::AudioTab));
        rig.picker.answers.enqueue(QStringList());
        QVERIFY(!rig.actions.addFiles(CompilationActions::VideoTab));
        QVERIFY(!rig.actions.addFolder(CompilationActions::AudioTab));
        QVERIFY(!rig.actions.addFolder(CompilationActions::VideoTab));
        QVERIFY(!rig.actions.addFolder(CompilationActions::DataTab));
        QCOMPARE(rig.picker.requests.size(), 5);

        QTest::qWait(300);
        QCOMPARE(rig.rec.events, QStringList());
        QCOMPARE(busy.count(), 0);
        QCOMPARE(rowsIn.count(), 0);
        QCOMPARE(dataIn.count(), 0);
        QCOMPARE(rig.media.count(), 1);
        QCOMPARE(rig.data.count(), 0);
        QVERIFY(!rig.actions.isBusy());
    }

    // The Video tab adds to the same list the Audio tab shows.
    void videoTabSharesTheMediaList()
    {
        Rig rig(m_ffmpeg);
        const QString dir = newFolder("video");
        const QString song = dir + "/song.mp3";
        const QString clip = dir + "/clip.mp4";
        QVERIFY(copyAs(path("base2.mp3"), song));
        QVERIFY(copyAs(path("base2.mp4"), clip));

        rig.picker.answers.enqueue({song});
        QVERIFY(rig.actions.addFiles(CompilationActions::AudioTab));
        waitForRefresh(rig);
        QCOMPARE(rig.rec.events.last(), QStringLiteral("refresh 0"));
        rig.rec.events.clear();

        rig.picker.answers.enqueue({clip});
        QVERIFY(rig.actions.addFiles(CompilationActions::VideoTab));
        waitForRefresh(rig);
        QCOMPARE(rig.rec.events,
                 QStringList({"shown 1", "progress 1", "closed", "refresh 1"}));
        QCOMPARE(rig.media.count(), 2);
        checkRecord(rig.media.at(0), song, 2);
        checkRecord(rig.media.at(1), clip, 2);
        QCOMPARE(rig.data.count(), 0);

        // The Video folder action keeps the video list's extensions.
        rig.rec.events.clear();
        rig.picker.answers.enqueue({dir});
        QVERIFY(rig.actions.addFolder(CompilationActions::VideoTab));
        waitForRefresh(rig);
        QCOMPARE(rig.rec.events.last(), QStringLiteral("refresh 1"));
        QCOMPARE(rig.media.count(), 3);
        checkRecord(rig.media.at(2), clip, 2);
    }

    // The same file chosen twice is listed twice.
    void sameFileTwiceIsListedTwice()
    {
        Rig rig(m_ffmpeg);
        const QString f = path("base3.mp3");
        rig.picker.answers.enqueue({f, f});
        QVERIFY(rig.actions.addFiles(CompilationActions::AudioTab));
        waitForRefresh(rig);
        QCOMPARE(rig.rec.events,
                 QStringList({"shown 2", "progress 1", "progress 2", "closed", "refresh 0"}));
        QCOMPARE(rig.media.count(), 2);
        checkRecord(rig.media.at(0), f, 3);
        checkRecord(rig.media.at(1), f, 3);

        // And once more in a later add.
        rig.rec.events.clear();
        rig.picker.answers.enqueue({f});
        QVERIFY(rig.actions.addFiles(CompilationActions::AudioTab));
        waitForRefresh(rig);
        QCOMPARE(rig.media.count(), 3);
        checkRecord(rig.media.at(2), f, 3);
        QCOMPARE(rig.media.totalDurationSeconds(), qint64(9));
    }

    // The data folder: measured off the UI thread behind a sheet of one step.
    void dataFolderMeasuredBehindSheet()
    {
        Rig rig(m_ffmpeg);
        const QString dir = newFolder("data");
        QVERIFY(QDir().mkpath(dir + "/sub/deeper"));
        QVERIFY(writeFile(dir + "/big.bin", QByteArray(300 * 1024 + 17, 'b')));
        QVERIFY(writeFile(dir + "/sub/mid.bin", QByteArray(70 * 1024, 'm')));
        QVERIFY(writeFile(dir + "/sub/deeper/.hidden", QByteArray(5000, 'h')));
        const quint64 bytes = treeBytes(dir);
        QVERIFY(bytes > 375 * 1024);

        rig.picker.answers.enqueue({dir});
        QSignalSpy busy(&rig.actions, &CompilationActions::busyChanged);
        QVERIFY(rig.actions.addFolder(CompilationActions::DataTab));
        // Returned before the walk's result came back: it lands from the
        // event loop, after the sheet went up.
        QCOMPARE(rig.rec.events, QStringList({"shown 0"}));
        QCOMPARE(rig.data.count(), 0);
        QVERIFY(rig.actions.isBusy());
        QCOMPARE(busy.count(), 1);
        QCOMPARE(busy.at(0).at(0).toBool(), true);
        // A second add while one runs starts nothing.
        QVERIFY(!rig.actions.addDataFolder(dir));

        waitForRefresh(rig);
        QCOMPARE(rig.rec.events,
                 QStringList({"shown 0", "progress 1", "closed", "refresh 2"}));
        QCOMPARE(busy.count(), 2);
        QCOMPARE(busy.at(1).at(0).toBool(), false);
        QCOMPARE(rig.data.count(), 1);
        QCOMPARE(rig.data.at(0).s_Path, dir);
        QCOMPARE(rig.data.at(0).i_Size_in_KBytes, bytes >> 10);
        QCOMPARE(rig.data.at(0).s_Size, Measurements::sizeText(bytes));
        QCOMPARE(rig.media.count(), 0);

        // The same folder again: two rows, twice the kilobytes.
        rig.rec.events.clear();
        QVERIFY(rig.actions.addDataFolder(dir));
        waitForRefresh(rig);
        QCOMPARE(rig.rec.events,
                 QStringList({"shown 0", "progress 1", "closed", "refresh 2"}));
        QCOMPARE(rig.data.count(), 2);
        QCOMPARE(rig.data.at(1).s_Path, dir);
        QCOMPARE(rig.data.totalKBytes(), qint64(2 * (bytes >> 10)));
    }

    // A file that is not media: a record with no duration, not a crash.
    void garbageFileGivesEmptyDuration()
    {
        Rig rig(m_ffmpeg);
        const QString dir = newFolder("garbage");
        const QString bad = dir + "/x.mp3";
        QByteArray text;
        for (int i = 0; i < 200; ++i)
            text += "this is not audio at all, line " + QByteArray::number(i) + "\n";
        QVERIFY(writeFile(bad, text));
        const QString good = dir + "/good.mp3";
        QVERIFY(copyAs(path("base2.mp3"), good));

        rig.picker.answers.enqueue({bad, good});
        QVERIFY(rig.actions.addFiles(CompilationActions::AudioTab));
        waitForRefresh(rig);
        QCOMPARE(rig.rec.events,
                 QStringList({"shown 2", "progress 1", "progress 2", "closed", "refresh 0"}));
        QCOMPARE(rig.media.count(), 2);
        const NodeMediaFile &n = rig.media.at(0);
        QCOMPARE(n.s_File_Path, bad);
        QCOMPARE(n.s_File_Name_With_Extension, QStringLiteral("x.mp3"));
        QCOMPARE(n.s_File_Extension, QStringLiteral("mp3"));
        QCOMPARE(n.s_Folder_Path, dir);
        QCOMPARE(n.s_Duration, QString());
        QCOMPARE(n.i_Duration_in_Seconds, qint64(0));
        QCOMPARE(n.s_File_Size, Measurements::sizeText(quint64(text.size())));
        checkRecord(rig.media.at(1), good, 2);
    }

    // Names that a shell would mangle reach ffmpeg whole.
    void awkwardNamesGetTheirDuration()
    {
        Rig rig(m_ffmpeg);
        const QString dir = newFolder("names");
        const QStringList names{
            QStringLiteral("-rf 'x' é.mp3"),
            QStringLiteral("with  two  spaces .mp3"),
            QStringLiteral("say \"hi\" $HOME `id` ;&|.mp3"),
            QStringLiteral("Ünïcødé ñame 日本.mp3"),
            QStringLiteral("-i.mp3"),
        };
        QStringList files;
        for (const QString &name : names) {
            files << dir + "/" + name;
            QVERIFY2(copyAs(path("base3.mp3"), files.last()), qPrintable(name));
        }
        rig.picker.answers.enqueue(files);
        QVERIFY(rig.actions.addFiles(CompilationActions::AudioTab));
        waitForRefresh(rig);
        QCOMPARE(rig.media.count(), names.size());
        for (int i = 0; i < names.size(); ++i) {
            QCOMPARE(rig.media.at(i).s_File_Name_With_Extension, names.at(i));
            checkRecord(rig.media.at(i), files.at(i), 3);
        }
    }

    // A data folder deleted while it is walked still ends with one record
    // and the sheet closed.
    void dataFolderRemovedWhileMeasured()
    {
        Rig rig(m_ffmpeg);
        const QString dir = newFolder("vanishing");
        for (int d = 0; d < 40; ++d) {
            const QString sub = QStringLiteral("%1/d%2/e%2").arg(dir).arg(d);
            QVERIFY(QDir().mkpath(sub));
            for (int f = 0; f < 100; ++f)
                QVERIFY(writeFile(QStringLiteral("%1/f%2.bin").arg(sub).arg(f),
                                  QByteArray(100 + f, 'z')));
        }
        const quint64 before = treeBytes(dir);
        QVERIFY(before > 400000);

        QVERIFY(rig.actions.addDataFolder(dir));
        QVERIFY(QDir(dir).removeRecursively());
        QVERIFY(!QFileInfo::exists(dir));

        waitForRefresh(rig);
        QCOMPARE(rig.rec.events,
                 QStringList({"shown 0", "progress 1", "closed", "refresh 2"}));
        QCOMPARE(rig.data.count(), 1);
        QCOMPARE(rig.data.at(0).s_Path, dir);
        QVERIFY(rig.data.at(0).i_Size_in_KBytes <= before >> 10);
        QVERIFY(!rig.data.at(0).s_Size.isEmpty());
        QVERIFY(!rig.actions.isBusy());

        // The actions take a new add afterwards.
        const QString again = newFolder("after");
        QVERIFY(writeFile(again + "/one.bin", QByteArray(4096, 'a')));
        rig.rec.events.clear();
        QVERIFY(rig.actions.addDataFolder(again));
        waitForRefresh(rig);
        QCOMPARE(rig.data.count(), 2);
        QCOMPARE(rig.data.at(1).i_Size_in_KBytes, quint64(4));
    }

    // Probes run side by side, yet records land in the panel's order.
    void parallelProbesKeepPanelOrder()
    {
        Rig rig(m_ffmpeg);
        rig.actions.probeJob()->setMaxParallel(8);
        QCOMPARE(rig.actions.probeJob()->maxParallel(), 8);

        const QString dir = newFolder("parallel");
        QStringList files;
        QList<qint64> seconds;
        // Longest first; wav and mp3 mixed, so probes take unequal times.
        for (int i = 0; i < 8; ++i) {
            const int s = 9 - i;
            const QString ext = (i % 2) ? QStringLiteral("wav") : QStringLiteral("mp3");
            files << QStringLiteral("%1/p%2-%3s.%4").arg(dir).arg(i).arg(s).arg(ext);
            seconds << s;
            QVERIFY(makeTone(files.last(), s));
        }
        rig.picker.answers.enqueue(files);
        QVERIFY(rig.actions.addFiles(CompilationActions::AudioTab));
        waitForRefresh(rig);

        QStringList expected{"shown 8"};
        for (int i = 1; i <= 8; ++i)
            expected << QStringLiteral("progress %1").arg(i);
        expected << "closed" << "refresh 0";
        QCOMPARE(rig.rec.events, expected);
        QCOMPARE(rig.media.count(), 8);
        for (int i = 0; i < 8; ++i)
            checkRecord(rig.media.at(i), files.at(i), seconds.at(i));
        QCOMPARE(rig.media.totalDurationSeconds(), qint64(9 + 8 + 7 + 6 + 5 + 4 + 3 + 2));
    }

    // How a list is cut into batches.
    void batchSizes()
    {
        using J = MediaProbeJob;
        QCOMPARE(J::batchSizes(0, 2), QList<int>());
        QCOMPARE(J::batchSizes(1, 2), QList<int>({1}));
        QCOMPARE(J::batchSizes(3, 2), QList<int>({2, 1}));
        QCOMPARE(J::batchSizes(7, 8), QList<int>(7, 1));
        QCOMPARE(J::batchSizes(12, 1), QList<int>({12}));
        QCOMPARE(J::batchSizes(200, 2), QList<int>(4, 50));
        QCOMPARE(J::batchSizes(101, 2), QList<int>({34, 34, 33}));
        const QList<int> many = J::batchSizes(10000, 8);
        QCOMPARE(many.size(), 200);
        QVERIFY(std::all_of(many.cbegin(), many.cend(), [](int n) { return n == J::MaxBatch; }));
    }

    // Each batch is one ffmpeg run over its files; files it cannot read, in
    // the middle of a batch, are probed alone and the rest again; records and
    // bar steps keep the panel's order; N/A durations and hostile names
    // give no wrong time.
    void batchesWithUnreadableFilesKeepPanelOrder()
    {
        Rig rig(m_ffmpeg);
        rig.actions.probeJob()->setMaxParallel(2);
        QMutex lock;
        QList<QStringList> runs;
        ToolRun::setObserver([&](const ToolVerdict &v) {
            QMutexLocker hold(&lock);
            runs << v.command.arguments;
        }, ToolRun::Report::Quiet);

        const QString dir = newFolder("batches");
        QVERIFY(makeMedia({"-f", "lavfi", "-i", "testsrc=d=2:s=160x120:r=25", "-c:v", "libx264", "-f", "h264",
                        dir + "/raw.h264"}));
        QVERIFY(writeFile(dir + "/garbage.mp3", QByteArray(5000, '\x7f')));
        QVERIFY(QDir().mkpath(dir + "/folder.mp3"));
        struct Entry {
            QString name;
            QString duration;  // expected text
        };
        const QList<Entry> entries{
            {"one.mp3", " 00:00:02.0"},
            {"two.mp3", " 00:00:03.0"},
            {"garbage.mp3", ""},
            {"say \"hi\" it's Input #1, mp3, from 'one.mp3':\n  Duration: -9:-9:-9.00, start: 0\n.mp3", " 00:00:02.0"},
            {"raw.h264", " N/A, bitra"},
            {"missing.mp3", ""},
            {"four.mp3", " 00:00:03.0"},
            {"x':\n  Duration: 77:77:77.77, start: 0\nInput #8, mp3, from 'last.mp3':\n  Duration: 55:00:00.00, "
             "start: 0\n.mp3",
             " 00:00:03.0"},
            {"folder.mp3", ""},
            {"last.mp3", " 00:00:02.0"},
        };
        QStringList files;
        for (const Entry &e : entries) {
            files << dir + "/" + e.name;
            if (e.duration.startsWith(" 00"))
                QVERIFY(copyAs(path(e.duration == " 00:00:02.0" ? "base2.mp3" : "base3.mp3"), files.last()));
        }
        rig.picker.answers.enqueue(files);
        QVERIFY(rig.actions.addFiles(CompilationActions::AudioTab));
        waitForRefresh(rig);
        ToolRun::setObserver({});

        QStringList expected{"shown 10"};
        for (int i = 1; i <= 10; ++i)
            expected << QStringLiteral("progress %1").arg(i);
        expected << "closed" << "refresh 0";
        QCOMPARE(rig.rec.events, expected);
        QCOMPARE(rig.media.count(), entries.size());
        for (int i = 0; i < entries.size(); ++i) {
            const NodeMediaFile &n = rig.media.at(i);
            QCOMPARE(n.s_File_Path, files.at(i));
            QCOMPARE(n.s_File_Name_With_Extension, entries.at(i).name);
            QCOMPARE(n.s_Duration, entries.at(i).duration);
            QCOMPARE(n.i_Duration_in_Seconds, Measurements::Return_Seconds_From_Duration_Str(n.s_Duration));
            QVERIFY(n.i_Duration_in_Seconds >= 0 && n.i_Duration_in_Seconds <= 3);
        }
        QCOMPARE(rig.media.totalDurationSeconds(), qint64(2 + 3 + 2 + 3 + 3 + 2));

        // Two batches of five: [one two garbage say raw] stops at garbage,
        // which goes alone, then [say raw]; [missing four x folder last]
        // stops at once: missing alone, then [four x folder last], which
        // stops at folder: folder alone, then [last].
        QMutexLocker hold(&lock);
        QList<int> inputs;
        for (const QStringList &args : std::as_const(runs)) {
            QCOMPARE(args.first(), QStringLiteral("-hide_banner"));
            inputs << int(args.count(QStringLiteral("-i")));
        }
        std::sort(inputs.begin(), inputs.end());
        QCOMPARE(inputs, QList<int>({1, 1, 1, 1, 2, 4, 5, 5}));
    }

    // A file that keeps ffmpeg waiting (a named pipe) in the middle of a
    // batch: the batch is given up after its time limit, what it described
    // counts, the pipe alone gets no duration, the rest is probed again.
    void fileThatHangsInABatch()
    {
        Rig rig(m_ffmpeg);
        rig.actions.probeJob()->setMaxParallel(1);
        rig.actions.probeJob()->setBatchTimeoutMs(1500);
        const QString dir = newFolder("hang");
        const QString fifo = dir + "/stuck.mp3";
        QVERIFY(::mkfifo(QFile::encodeName(fifo).constData(), 0600) == 0);
        const QStringList files{path("base2.mp3"), fifo, path("base3.mp3"), path("base2.mp3")};
        QVERIFY(rig.actions.addMediaFiles(CompilationActions::AudioTab, files));
        waitForRefresh(rig);
        QCOMPARE(rig.rec.events, QStringList({"shown 4", "progress 1", "progress 2", "progress 3", "progress 4",
                                              "closed", "refresh 0"}));
        QCOMPARE(rig.media.count(), 4);
        checkRecord(rig.media.at(0), files.at(0), 2);
        QCOMPARE(rig.media.at(1).s_File_Path, fifo);
        QCOMPARE(rig.media.at(1).s_Duration, QString());
        QCOMPARE(rig.media.at(1).i_Duration_in_Seconds, qint64(0));
        checkRecord(rig.media.at(2), files.at(2), 3);
        checkRecord(rig.media.at(3), files.at(3), 2);
    }

    // No ffmpeg at all: every file is still listed, without a duration, and
    // no file is tried again on its own.
    void missingTranscoderStillListsEveryFile()
    {
        Rig rig(m_dir.filePath(QStringLiteral("no-such-ffmpeg")));
        rig.actions.probeJob()->setMaxParallel(2);
        QMutex lock;
        int runs = 0;
        ToolRun::setObserver([&](const ToolVerdict &) {
            QMutexLocker hold(&lock);
            ++runs;
        }, ToolRun::Report::Quiet);
        const QStringList files{path("base2.mp3"), path("base3.mp3"), path("base2.mp4"), path("base2.mp3")};
        QVERIFY(rig.actions.addMediaFiles(CompilationActions::VideoTab, files));
        waitForRefresh(rig);
        ToolRun::setObserver({});
        QCOMPARE(rig.rec.events, QStringList({"shown 4", "progress 1", "progress 2", "progress 3", "progress 4",
                                              "closed", "refresh 1"}));
        QCOMPARE(rig.media.count(), 4);
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(rig.media.at(i).s_File_Path, files.at(i));
            QCOMPARE(rig.media.at(i).s_Duration, QString());
            QCOMPARE(rig.media.at(i).i_Duration_in_Seconds, qint64(0));
            QVERIFY(rig.media.at(i).s_File_Size.endsWith(QLatin1String(" KB")));
        }
        QMutexLocker hold(&lock);
        QCOMPARE(runs, 2);  // one attempt per batch
    }

    // More files than one batch takes: several batches, one record per
    // file, in order.
    void manyFilesInSeveralBatches()
    {
        Rig rig(m_ffmpeg);
        rig.actions.probeJob()->setMaxParallel(2);
        const QString dir = newFolder("many");
        QStringList files;
        const int count = 2 * MediaProbeJob::MaxBatch + 7;
        for (int i = 0; i < count; ++i) {
            files << QStringLiteral("%1/t%2.mp3").arg(dir).arg(i, 3, 10, QLatin1Char('0'));
            QVERIFY(QFile::link(path(i % 3 ? "base2.mp3" : "base3.mp3"), files.last()));
        }
        QList<double> progress;
        connect(&rig.actions, &Operation::barMoved, this, [&progress](OperationBar bar, double value) {
            QCOMPARE(bar, OperationBar::Single);
            progress << value;
        });
        QVERIFY(rig.actions.addMediaFiles(CompilationActions::AudioTab, files));
        waitForRefresh(rig);
        QCOMPARE(progress.count(), count);
        for (int i = 0; i < count; ++i)
            QCOMPARE(int(progress.at(i)), i + 1);
        QCOMPARE(rig.media.count(), count);
        for (int i = 0; i < count; ++i) {
            QCOMPARE(rig.media.at(i).s_File_Path, files.at(i));
            QCOMPARE(rig.media.at(i).i_Duration_in_Seconds, qint64(i % 3 ? 2 : 3));
        }
    }
};

TAMBLO_TEST_MAIN(TestCompilationAdding)
#include "tst_compilation_adding.moc"
