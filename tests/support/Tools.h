#pragma once
// Running the real tools from a test: media made with ffmpeg, what ffprobe
// reads in a file, and any tool run to its end with its output read.
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QString>
#include <QStringList>
#include <QtTest>

#include "platform/ToolPaths.h"

// How one run of a tool ended: its exit code (-1 when it crashed or was
// stopped at the time limit) and what it printed.
struct ToolEnd {
    int exitCode = -1;
    QString output;
    bool ok() const { return exitCode == 0; }
};

// Runs `program` to its end with the null device for standard input. The
// output is standard output, with standard error in it unless `errorsApart`;
// a run past `timeoutMs` is killed.
inline ToolEnd runTool(const QString &program, const QStringList &args, bool errorsApart = false,
                       int timeoutMs = 120000)
{
    QProcess p;
    p.setStandardInputFile(QProcess::nullDevice());
    if (!errorsApart)
        p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(program, args);
    if (!p.waitForFinished(timeoutMs)) {
        p.kill();
        p.waitForFinished();
    }
    ToolEnd end;
    end.exitCode = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    end.output = QString::fromUtf8(p.readAllStandardOutput());
    return end;
}

inline QString ffmpegPath()
{
    return QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
}

inline QString ffprobePath()
{
    return QStandardPaths::findExecutable(QStringLiteral("ffprobe"));
}

// The Linux tools as found on PATH: ffmpeg, xorriso, cdrskin and eject.
inline ToolPaths linuxToolsOnPath()
{
    ToolPaths t;
    t.backend = ToolPaths::Backend::Linux;
    t.ffmpeg = ffmpegPath();
    t.xorriso = QStandardPaths::findExecutable(QStringLiteral("xorriso"));
    t.cdrskin = QStandardPaths::findExecutable(QStringLiteral("cdrskin"));
    t.eject = QStandardPaths::findExecutable(QStringLiteral("eject"));
    return t;
}

// Makes a media file with ffmpeg ("-v error -y", then `args`). A run that
// fails fails the running test, with ffmpeg's own words.
inline bool makeMedia(const QStringList &args)
{
    const ToolEnd end = runTool(ffmpegPath(), QStringList{QStringLiteral("-v"), QStringLiteral("error"),
                                                          QStringLiteral("-y")} + args);
    if (end.ok())
        return true;
    QTest::qFail(qPrintable(QStringLiteral("ffmpeg could not make %1: %2").arg(args.value(args.size() - 1), end.output)),
                 __FILE__, __LINE__);
    return false;
}

// What ffprobe says of the first stream of `type` ("audio", "video") in a
// file: codec, bit rate, sample rate, channels, picture size.
inline QJsonObject firstStream(const QString &path, const QString &type)
{
    const QString out =
        runTool(ffprobePath(),
                {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-show_entries"),
                 QStringLiteral("stream=codec_name,codec_type,bit_rate,sample_rate,channels,width,height"),
                 QStringLiteral("-of"), QStringLiteral("json"), path},
                true)
            .output;
    for (const QJsonValue &v : QJsonDocument::fromJson(out.toUtf8()).object().value(QStringLiteral("streams")).toArray())
        if (v.toObject().value(QStringLiteral("codec_type")).toString() == type)
            return v.toObject();
    return {};
}
