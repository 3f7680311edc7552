// Adding to the compilation (200 files, a 20 000-file folder) and a list of
// 10 000 entries in the window (see bench/support/AddingBench.cpp and
// BigListBench.cpp).
//
// Usage: QT_QPA_PLATFORM=offscreen bench_compilation_adding [--runs N] [--tick-ms 1|5]
//        (defaults: 3 runs per side, 1 ms tick)
#include <QApplication>

#include "Sections.h"

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const Bench::Options options = Bench::parseOptions(app.arguments());
    QList<Bench::Row> rows = Bench::addingSection(options);
    rows += Bench::bigListSection(options);
    Bench::printTable(QStringLiteral("Adding and long lists"), rows);
    return 0;
}
