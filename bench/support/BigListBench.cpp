// 10 000 entries in the application's own window: AppDelegate with its
// MainWindow on the offscreen screen, a drive backend that finds no drive, a
// panel that answers the 10 000 paths. The files are hard links to seven
// small MP3 files of different lengths, so the columns have something to
// sort by. Each step runs from the watched event loop and is followed for
// 0.3 s, so the tables' own layout and painting count too:
//  - adding them (Add Files on the Audio tab), every ffmpeg probe included;
//  - sorting by each of the four columns, twice (both directions);
//  - deleting every other row (5 000 separate selections);
//  - clearing the list.
// Target: no stall over 50 ms in any step. Memory: the resident size once
// the 10 000 records are listed, against the same window empty. Target:
// at most 30 MB more.
#include <QDir>
#include <QFile>
#include <QItemSelectionModel>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>

#include "Sections.h"
#include "app/ui/AppContext.h"
#include "app/ui/AppDelegate.h"
#include "app/ui/MainWindow.h"
#include "compilation/CompilationActions.h"
#include "compilation/MediaListModel.h"
#include "compilation/ui/CompilationTable.h"
#include "drives/DriveBackend.h"

namespace Bench {

namespace {

constexpr int EntryCount = 10000;
constexpr double StallTargetMs = 50.0;
constexpr double MemoryTargetMb = 30.0;

class CountingAlerts : public Alerts {
public:
    int shown = 0;
    AlertAnswer show(const AlertRequest &) override
    {
        ++shown;
        return AlertAnswer{0, QString()};
    }
};

class ListPicker : public FilePicker {
public:
    QStringList next;
    QStringList pick(const PickRequest &) override { return std::exchange(next, QStringList()); }
};

class NoDrives : public DriveBackend {
public:
    void listDrives(ListCallback done) override
    {
        QTimer::singleShot(0, this, [done] { done({}); });
    }
    void queryStatus(const Object_Optical_Drive &, StatusCallback done) override
    {
        QTimer::singleShot(0, this, [done] { done(MediaStatus{}); });
    }
    void ejectTray(const Object_Optical_Drive &) override {}
    void closeTray(const Object_Optical_Drive &) override {}
    ToolCommand eraseCommand(const Object_Optical_Drive &, bool) const override { return {}; }
    ToolCommand discInfoCommand(const Object_Optical_Drive &) const override { return {}; }
};

// Seven MP3 files of 1 to 7 s, and 10 000 links to them under shuffled
// names.
QStringList makeLinks(const QString &ffmpeg, const QString &folder)
{
    QDir().mkpath(folder + QStringLiteral("/sources"));
    QList<Job> jobs;
    QStringList sources;
    for (int i = 0; i < 7; ++i) {
        sources << QStringLiteral("%1/sources/s%2.mp3").arg(folder).arg(i);
        jobs << Job{ffmpeg,
                    {"-v", "error", "-y", "-f", "lavfi", "-i", QStringLiteral("sine=duration=%1").arg(i + 1), "-b:a",
                     "32k", sources.last()}};
    }
    if (!runJobs(jobs, 2))
        return {};
    QStringList links;
    for (int i = 0; i < EntryCount; ++i) {
        const int number = int((qint64(i) * 7919) % EntryCount);
        links << QStringLiteral("%1/Track %2 of the long list.mp3").arg(folder).arg(number);
        if (!QFile::link(sources.at(i % 7), links.last()) && !QFile::copy(sources.at(i % 7), links.last()))
            return {};
    }
    return links;
}

} // namespace

QList<Row> bigListSection(const Options &options)
{
    const QString ffmpeg = ffmpegPath();
    if (ffmpeg.isEmpty())
        return {measured(QStringLiteral("10 000 entries"), QStringLiteral("no ffmpeg"))};
    QTemporaryDir dir;
    say(QStringLiteral("Big list: preparing %1 files in %2 ...").arg(EntryCount).arg(dir.path()));
    const QStringList files = makeLinks(ffmpeg, dir.filePath(QStringLiteral("links")));
    if (files.isEmpty())
        return {measured(QStringLiteral("10 000 entries"), QStringLiteral("no material"))};

    QSettings settings(dir.filePath(QStringLiteral("Tamblo.conf")), QSettings::IniFormat);
    CountingAlerts alerts;
    ListPicker picker;
    AppContext context;
    context.alerts = &alerts;
    context.filePicker = &picker;
    context.settings = &settings;
    context.documentsDir = dir.filePath(QStringLiteral("Documents"));
    context.tools.backend = ToolPaths::Backend::Linux;
    context.tools.ffmpeg = ffmpeg;
    auto *drives = new NoDrives;
    context.driveBackend = drives;
    context.exitProcess = [](int) {};
    context.openUrl = [](const QUrl &) {};
    context.logsDir = dir.filePath(QStringLiteral("logs"));
    AppDelegate app(context);
    drives->setParent(&app);
    if (!app.applicationDidFinishLaunching())
        return {measured(QStringLiteral("10 000 entries"), QStringLiteral("start-up failed"))};
    MainWindow *window = app.mainWindow();
    window->resize(1000, 700);

    StallMonitor monitor(options.tickMs);
    idleStall(monitor, 500);  // the window settles
    const qint64 emptyKb = residentKb();

    say(QStringLiteral("Adding %1 entries through the window ...").arg(EntryCount));
    picker.next = files;
    const Watched add = watch(monitor, [&](std::function<void()> done) {
        QObject::connect(app.compilationActions(), &CompilationActions::refreshTable, &app, done);
        app.OnActionAudioAddFiles();
    });
    const qint64 fullKb = residentKb();
    const qint64 peakKb = peakResidentKb();
    const int listed = app.arrayMediaFiles->count();
    bool inOrder = listed == EntryCount;
    for (int i = 0; inOrder && i < listed; ++i)
        inOrder = app.arrayMediaFiles->at(i).s_File_Path == files.at(i)
            && app.arrayMediaFiles->at(i).i_Duration_in_Seconds == i % 7 + 1;

    say(QStringLiteral("Sorting by each column, both ways ..."));
    double sortStall = 0;
    QStringList sortStalls;
    for (int column = 0; column < MediaListModel::ColumnCount; ++column)
        for (int turn = 0; turn < 2; ++turn) {
            const Watched w = watch(monitor, [&](std::function<void()> done) {
                app.sortTable(0, column);
                done();
            });
            sortStall = std::max(sortStall, w.stallMs);
            sortStalls << QString::number(w.stallMs, 'f', 1);
        }

    say(QStringLiteral("Deleting every other entry ..."));
    CompilationTable *table = window->tableviewAudioFiles;
    QItemSelection every;
    for (int row = 0; row < listed; row += 2)
        every.select(app.arrayMediaFiles->index(row, 0),
                     app.arrayMediaFiles->index(row, MediaListModel::ColumnCount - 1));
    table->selectionModel()->select(every, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    const int selected = int(table->selectedRows().size());
    const Watched remove = watch(monitor, [&](std::function<void()> done) {
        app.OnActionAudioDelete();
        done();
    });
    const int left = app.arrayMediaFiles->count();

    say(QStringLiteral("Clearing ..."));
    const Watched clear = watch(monitor, [&](std::function<void()> done) {
        app.OnActionAudioClear();
        done();
    });
    const int afterClear = app.arrayMediaFiles->count();

    const double growthMb = double(fullKb - emptyKb) / 1024.0;
    say(QStringLiteral("  adding: %1 ms, %2 listed%3; sorts: %4 ms stalls; %5 selected, %6 left, %7 after clearing")
            .arg(add.ms)
            .arg(listed)
            .arg(inOrder ? QString() : QStringLiteral(" (NOT in order or wrong durations)"))
            .arg(sortStalls.join(QStringLiteral(", ")))
            .arg(selected)
            .arg(left)
            .arg(afterClear));
    say(QStringLiteral("  resident: %1 kB empty, %2 kB with the entries, peak %3 kB; %4 alerts")
            .arg(emptyKb)
            .arg(fullKb)
            .arg(peakKb)
            .arg(alerts.shown));

    const bool complete = inOrder && left == EntryCount / 2 && afterClear == 0 && !add.timedOut;
    return {
        measured(QStringLiteral("10 000 entries: adding (wall, probes included)"), msText(double(add.ms))),
        against(QStringLiteral("10 000 entries: longest UI stall, adding"), msText(add.stallMs),
                QStringLiteral("<= 50 ms"), add.stallMs <= StallTargetMs && complete),
        against(QStringLiteral("10 000 entries: longest UI stall, sorting (8 sorts)"), msText(sortStall),
                QStringLiteral("<= 50 ms"), sortStall <= StallTargetMs),
        against(QStringLiteral("10 000 entries: longest UI stall, deleting half"), msText(remove.stallMs),
                QStringLiteral("<= 50 ms"), remove.stallMs <= StallTargetMs && left == EntryCount / 2),
        against(QStringLiteral("10 000 entries: longest UI stall, clearing"), msText(clear.stallMs),
                QStringLiteral("<= 50 ms"), clear.stallMs <= StallTargetMs && afterClear == 0),
        against(QStringLiteral("10 000 entries: memory growth (resident)"), mbText(growthMb),
                QStringLiteral("<= 30 MB"), emptyKb > 0 && growthMb <= MemoryTargetMb),
    };
}

} // namespace Bench
