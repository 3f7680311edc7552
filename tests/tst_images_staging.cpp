// The staging copy of a macOS data burn: what lands where, the poll and its
// stop rules, and that the UI thread keeps running throughout.
#include "compilation/Measurements.h"
#include "support/ListRecords.h"
#include "support/TestMain.h"

#include <QTemporaryDir>
#include <sys/stat.h>

#include "support/LogCatcher.h"
#include "support/Files.h"
#include "images/DataBurnPlan.h"
#include "images/StagingCopy.h"

class TestImagesStaging : public QObject {
    Q_OBJECT
private:
    struct Run {
        QList<QPair<int, double>> polls;
        QList<qint64> doneAt;
        qint64 finishedAt = -1;
        QStringList errors;
    };

    static void stage(Run &run, const QList<StagingEntry> &entries, int intervalMs, int timeoutMs = 60000)
    {
        StagingCopy copy(entries, intervalMs);
        QElapsedTimer clock;
        QObject::connect(&copy, &StagingCopy::folderPolled, [&](int i, double kib) { run.polls << qMakePair(i, kib); });
        QObject::connect(&copy, &StagingCopy::folderDone, [&](int) { run.doneAt << clock.elapsed(); });
        QObject::connect(&copy, &StagingCopy::finished, [&] { run.finishedAt = clock.elapsed(); });
        clock.start();
        copy.start();
        QVERIFY(copy.isRunning() || run.finishedAt >= 0);
        QTRY_VERIFY_WITH_TIMEOUT(run.finishedAt >= 0, timeoutMs);
        run.errors = copy.errors();
    }

private slots:
    void copiesEveryFolderUnderItsStagingName()
    {
        QTemporaryDir tmp;
        const QString a = tmp.path() + "/a/Photos";
        const QString b = tmp.path() + "/b/Photos";
        writeFile(a + "/one.jpg", pseudoRandom(70000, 1));
        writeFile(a + "/deep/er/two.bin", pseudoRandom(5000, 2));
        writeFile(a + "/Ünïcødé ñame 写真.txt", "unicode\n");
        writeFile(a + "/.hidden", "hidden\n");
        QDir().mkpath(a + "/empty folder");
        QVERIFY(QFile::link("one.jpg", a + "/link-to-one"));
        writeFile(b + "/three.bin", pseudoRandom(12345, 3));
        QFile::setPermissions(b + "/three.bin", QFile::ReadOwner | QFile::WriteOwner);
        const QDateTime stamp = QDateTime::fromSecsSinceEpoch(1500000000);
        {
            QFile f(b + "/three.bin");
            QVERIFY(f.open(QIODevice::ReadWrite));
            QVERIFY(f.setFileTime(stamp, QFileDevice::FileModificationTime));
        }

        const QString data = tmp.path() + "/TambloData";
        QDir().mkpath(data);
        const DataBurnPlan plan = DataBurnPlan::make(
            {measuredFolder(a), measuredFolder(b)}, data);
        Run run;
        stage(run, plan.entries(), 50);
        if (QTest::currentTestFailed())
            return;
        QVERIFY(run.errors.isEmpty());

        QCOMPARE(tree(data + "/Photos"), tree(a));
        QCOMPARE(tree(data + "/Photos 1/Photos"), tree(b));
        QCOMPARE(QDir(data).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), (QStringList{"Photos", "Photos 1"}));
        QVERIFY(QFileInfo(data + "/Photos/link-to-one").isSymLink());
        QVERIFY(QFileInfo(data + "/Photos/empty folder").isDir());
        QCOMPARE(QFileInfo(data + "/Photos 1/Photos/three.bin").lastModified(), stamp);
        QCOMPARE(QFileInfo(data + "/Photos 1/Photos/three.bin").permissions() & (QFile::ReadOther | QFile::WriteOther),
                 QFileDevice::Permissions());
        QCOMPARE(run.doneAt.size(), 2);
    }

    void aFolderRecordedAsZeroFinishesAfterTheFirstInterval()
    {
        QTemporaryDir tmp;
        const QString src = tmp.path() + "/src/Docs";
        writeFile(src + "/f.txt", pseudoRandom(40000, 4));
        const QString data = tmp.path() + "/D";
        const DataBurnPlan plan = DataBurnPlan::make({folderRecord(src, 0)}, data);
        const int interval = 400;
        Run run;
        stage(run, plan.entries(), interval);
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(run.polls.size(), 1);
        QVERIFY2(run.finishedAt >= interval, qPrintable(QString::number(run.finishedAt)));
        QVERIFY2(run.finishedAt < interval + 3000, qPrintable(QString::number(run.finishedAt)));
        QCOMPARE(tree(data + "/Docs"), tree(src));
    }

    void everyFolderTakesAtLeastOneInterval()
    {
        QTemporaryDir tmp;
        QList<NodeDataFolder> list;
        for (int i = 0; i < 3; ++i) {
            const QString src = tmp.path() + QStringLiteral("/s%1/F%1").arg(i);
            writeFile(src + "/x", pseudoRandom(3000, quint32(i)));
            list << folderRecord(src, 0);
        }
        const int interval = 200;
        Run run;
        stage(run, DataBurnPlan::make(list, tmp.path() + "/D").entries(), interval);
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(run.doneAt.size(), 3);
        for (int i = 0; i < 3; ++i)
            QVERIFY2(run.doneAt.at(i) >= qint64(interval) * (i + 1), qPrintable(QString::number(run.doneAt.at(i))));
    }

    void pollStopsWhenTheSizeStopsGrowing()
    {
        QTemporaryDir tmp;
        const QString src = tmp.path() + "/s/Big";
        writeFile(src + "/a", pseudoRandom(300000, 5));
        // Recorded far larger than the folder: only the "no growth" rule can stop it.
        Run run;
        stage(run, DataBurnPlan::make({folderRecord(src, 1u << 30)}, tmp.path() + "/D").entries(), 100);
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(run.polls.size(), 2);
        QVERIFY(run.polls.at(0).second > 0);
        QCOMPARE(run.polls.at(1).second, run.polls.at(0).second);
    }

    void pollStopsAtOnceForAnEmptyFolderThatWasRecordedLarger()
    {
        QTemporaryDir tmp;
        const QString src = tmp.path() + "/s/Empty";
        QDir().mkpath(src);
        const QString data = tmp.path() + "/D";
        Run run;
        stage(run, DataBurnPlan::make({folderRecord(src, 5)}, data).entries(), 100);
        if (QTest::currentTestFailed())
            return;
        // 0 KiB equals the starting "last size" of 0: no growth.
        QCOMPARE(run.polls.size(), 1);
        QCOMPARE(run.polls.at(0).second, 0.0);
        QVERIFY(QFileInfo(data + "/Empty").isDir());
    }

    void aNumberedCopyIsMeasuredAtTheFirstFolderOfItsName()
    {
        QTemporaryDir tmp;
        const QString a = tmp.path() + "/a/Photos";
        const QString b = tmp.path() + "/b/Photos";
        writeFile(a + "/small", pseudoRandom(20 * 1024, 6));
        writeFile(b + "/large", pseudoRandom(400 * 1024, 7));
        const QString data = tmp.path() + "/D";
        const DataBurnPlan plan = DataBurnPlan::make(
            {measuredFolder(a), measuredFolder(b)}, data);
        Run run;
        stage(run, plan.entries(), 100);
        if (QTest::currentTestFailed())
            return;
        QList<double> second;
        for (const auto &p : run.polls)
            if (p.first == 1)
                second << p.second;
        // The base is D/Photos, which holds the small folder: it never
        // reaches the large folder's size, so polling ends for lack of growth.
        const double firstSize = double(Measurements::folderSize(data + "/Photos") >> 10);
        QCOMPARE(second.size(), 2);
        QCOMPARE(second.at(0), firstSize);
        QCOMPARE(second.at(1), firstSize);
        QVERIFY(firstSize < double(Measurements::folderSize(b) >> 10));
        QCOMPARE(tree(data + "/Photos 1/Photos"), tree(b));
    }

    void theNextFolderWaitsForTheCopyToReturn()
    {
        QTemporaryDir tmp;
        const QString src = tmp.path() + "/s/Heavy";
        const QString src2 = tmp.path() + "/s/Light";
        writeFile(src + "/big.bin", pseudoRandom(96 * 1024 * 1024, 8));
        writeFile(src + "/after.txt", "after\n");
        writeFile(src2 + "/x", "x");
        const QString data = tmp.path() + "/D";
        int startedSecondWhileFirstIncomplete = 0;
        StagingCopy copy(DataBurnPlan::make({folderRecord(src, 0), folderRecord(src2, 0)}, data).entries(), 1);
        bool finished = false;
        QObject::connect(&copy, &StagingCopy::folderStarted, [&](int i, const QString &) {
            if (i == 1 && tree(data + "/Heavy") != tree(src))
                ++startedSecondWhileFirstIncomplete;
        });
        QObject::connect(&copy, &StagingCopy::finished, [&] { finished = true; });
        copy.start();
        QTRY_VERIFY_WITH_TIMEOUT(finished, 60000);
        QCOMPARE(startedSecondWhileFirstIncomplete, 0);
        QCOMPARE(tree(data + "/Heavy"), tree(src));
    }

    void theUiThreadKeepsTurningDuringTheCopy()
    {
        QTemporaryDir tmp;
        const QString src = tmp.path() + "/s/Media";
        for (int i = 0; i < 2; ++i)
            writeFile(src + QStringLiteral("/part%1.bin").arg(i), pseudoRandom(40 * 1024 * 1024, quint32(10 + i)));
        // Many small files make a copy that lasts.
        const QByteArray small = pseudoRandom(2048, 99);
        for (int d = 0; d < 40; ++d)
            for (int i = 0; i < 150; ++i)
                writeFile(src + QStringLiteral("/d%1/f%2").arg(d).arg(i), small);
        const QString data = tmp.path() + "/D";
        StagingCopy copy(DataBurnPlan::make({measuredFolder(src)}, data).entries(), 20);
        QElapsedTimer clock;
        qint64 last = 0, worst = 0;
        int ticks = 0;
        QTimer beat;
        beat.setInterval(10);
        QObject::connect(&beat, &QTimer::timeout, [&] {
            const qint64 now = clock.elapsed();
            worst = qMax(worst, now - last);
            last = now;
            ++ticks;
        });
        bool finished = false;
        QObject::connect(&copy, &StagingCopy::finished, [&] { finished = true; });
        clock.start();
        beat.start();
        copy.start();
        QTRY_VERIFY_WITH_TIMEOUT(finished, 120000);
        beat.stop();
        const qint64 took = clock.elapsed();
        qInfo("staging of 6000 files and 80 MB took %lld ms; longest UI pause %lld ms over %d ticks", took, worst, ticks);
        QVERIFY2(took > 300, "the copy was too quick to tell anything");
        QVERIFY(ticks > 10);
        QVERIFY2(worst < 100 && worst * 3 < took, qPrintable(QString::number(worst)));
        QCOMPARE(tree(data + "/Media"), tree(src));
    }

    void theWorkingFolderIsNeverCopiedIntoItself()
    {
        QTemporaryDir tmp;
        const QString docs = tmp.path() + "/Documents";
        const QString data = docs + "/TambloData";
        QDir().mkpath(data);
        writeFile(docs + "/letter.txt", "dear\n");
        LogCatcher log;
        Run run;
        stage(run, DataBurnPlan::make({folderRecord(docs, 1)}, data).entries(), 20);
        if (QTest::currentTestFailed())
            return;
        QVERIFY(QFileInfo::exists(data + "/Documents/letter.txt"));
        QVERIFY(!QFileInfo::exists(data + "/Documents/TambloData"));
        QVERIFY(log.contains(QStringLiteral("is the working folder itself")));
        QVERIFY(run.errors.isEmpty());
    }

    void folderSizeSumsEntriesFollowingLinks()
    {
        QTemporaryDir tmp;
        const QString root = tmp.path() + "/R";
        writeFile(root + "/a", pseudoRandom(1000, 1));
        writeFile(root + "/sub/b", pseudoRandom(2500, 2));
        QVERIFY(QFile::link(root + "/a", root + "/sub/link-to-a"));
        quint64 expected = 0;
        for (const QString &rel : {QStringLiteral("a"), QStringLiteral("sub"), QStringLiteral("sub/b"),
                                   QStringLiteral("sub/link-to-a")}) {
            struct stat st;
            QCOMPARE(::stat(QFile::encodeName(root + "/" + rel).constData(), &st), 0);
            expected += quint64(st.st_size);
        }
        QCOMPARE(Measurements::folderSize(root), expected);
        QVERIFY(Measurements::folderSize(root) >= 1000 + 2500 + 1000);
        QCOMPARE(Measurements::folderSize(tmp.path() + "/missing"), quint64(0));
    }

    void aVanishedSourceIsLoggedAndStagingGoesOn()
    {
        QTemporaryDir tmp;
        const QString gone = tmp.path() + "/a/Gone";
        const QString kept = tmp.path() + "/b/Kept";
        writeFile(kept + "/k", "k");
        LogCatcher log;
        StagingEntry e1;
        e1.source = gone;
        e1.destinationFolder = tmp.path() + "/D";
        e1.base = tmp.path() + "/D/Gone";
        e1.recordedKiB = 10;
        const DataBurnPlan plan = DataBurnPlan::make({folderRecord(kept, 0)}, tmp.path() + "/D");
        Run run;
        stage(run, {e1, plan.entries().first()}, 20);
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(run.doneAt.size(), 2);
        QVERIFY(log.warned(QStringLiteral("\"") + gone + QStringLiteral("\" is no longer there")));
        QCOMPARE(run.errors.size(), 1);
        QVERIFY(QFileInfo::exists(tmp.path() + "/D/Kept/k"));
    }
};

TAMBLO_TEST_MAIN(TestImagesStaging)
#include "tst_images_staging.moc"
