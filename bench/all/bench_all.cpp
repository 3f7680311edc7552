// Every benchmark section in one run, printed as one table of figures
// against their targets: adding 200 files, a 20 000-file folder, 10 000
// entries in the window (stalls and memory), the transcodes of an MP3 CD and
// a video DVD, and the start-up time.
//
// Usage: QT_QPA_PLATFORM=offscreen bench_all [--runs N] [--tick-ms 1|5]
//                                            [--only startup,adding,transcode,list]
//        (defaults: 3 runs per side, 1 ms tick, every section)
#include <QApplication>
#include <QThread>
#include <cstring>

#include "Sections.h"

int main(int argc, char **argv)
{
    if (argc > 1 && std::strcmp(argv[1], Bench::StartupChildFlag) == 0)
        return Bench::startupChild(argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const Bench::Options options = Bench::parseOptions(app.arguments());
    QList<Bench::Row> rows;
    if (options.wants(QStringLiteral("startup")))
        rows += Bench::startupSection(QCoreApplication::applicationFilePath());
    if (options.wants(QStringLiteral("adding")))
        rows += Bench::addingSection(options);
    if (options.wants(QStringLiteral("transcode")))
        rows += Bench::transcodeSection(options);
    if (options.wants(QStringLiteral("list")))
        rows += Bench::bigListSection(options);
    Bench::printTable(QStringLiteral("Tamblo on %1 cores, %2 runs per side").arg(QThread::idealThreadCount()).arg(options.runs),
                      rows);
    return 0;
}
