// The transcode phase of an MP3 CD and a video DVD as the application runs
// it, against the same ffmpeg command lines one after the other from a shell
// (see bench/support/TranscodeBench.cpp).
//
// Usage: bench_burn_transcode [--runs N]   (default 3; medians are reported)
#include <QCoreApplication>

#include "Sections.h"

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const Bench::Options options = Bench::parseOptions(app.arguments());
    Bench::printTable(QStringLiteral("Transcoding"), Bench::transcodeSection(options));
    return 0;
}
