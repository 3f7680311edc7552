#pragma once
// The benchmark sections. Each prints its progress and details as it goes
// and answers its figures; a figure that could not be measured says why.
#include <QList>
#include <QString>

#include "BenchSupport.h"

namespace Bench {

// 200 generated MP3 files added to the Audio list through the application's
// adding path, against "ffmpeg -i FILE" for each, one after the other, from
// a shell; the longest UI stall meanwhile; a 20 000-file data folder measured.
QList<Row> addingSection(const Options &options);

// 10 000 entries in the application's own window (AppDelegate on an
// offscreen screen): adding them, sorting by each column, deleting every
// other one and clearing, each with its longest UI stall; the memory the
// 10 000 records take.
QList<Row> bigListSection(const Options &options);

// The transcode phase of an MP3 CD (10 x 60 s) and of a video DVD
// (3 x 10 s) through TranscodeSequence, against the same ffmpeg command
// lines one after the other from a shell.
QList<Row> transcodeSection(const Options &options);

// From launch to the first painting of the main window, median of 10, with
// the machine's drive listing and with one that never answers.
QList<Row> startupSection(const QString &selfPath);
// The child side: starts the application as main.cpp does and prints the
// monotonic time of the window's first painting. Runs when argv[1] is
// StartupChildFlag.
constexpr const char *StartupChildFlag = "--startup-child";
int startupChild(int argc, char **argv);

} // namespace Bench
