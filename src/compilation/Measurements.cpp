#include "compilation/Measurements.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QUrl>

#include "toolrun/ToolRun.h"

namespace Measurements {

QString sizeText(quint64 bytes)
{
    static const char *const units[] = {"bytes", "KB", "MB", "GB", "TB"};
    constexpr int lastUnit = int(sizeof(units) / sizeof(units[0])) - 1;
    double value = double(bytes);
    int unit = 0;
    if (bytes >= 1025) {
        do {
            value *= 0.0009765625;
            ++unit;
        } while (value > 1024.0 && unit < lastUnit);
    }
    return QString::asprintf("%4.2f %s", value, units[unit]);
}

// True when everything between the start of the line and `index` is blank.
static bool startsLine(const QString &text, qsizetype index)
{
    for (qsizetype i = index - 1; i >= 0; --i) {
        const QChar c = text.at(i);
        if (c == QLatin1Char('\n') || c == QLatin1Char('\r'))
            return true;
        if (c != QLatin1Char(' ') && c != QLatin1Char('\t'))
            return false;
    }
    return true;
}

QString durationTextFromProbe(const QString &probeOutput)
{
    static const QString marker = QStringLiteral("Duration:");
    // The report line is "  Duration: HH:MM:SS.cc, ...". Only a marker that
    // opens a line counts, so a file whose own name holds "Duration:" (the
    // report repeats the name on its "Input #0" line) is still read right.
    qsizetype from = 0;
    while (true) {
        const qsizetype at = probeOutput.indexOf(marker, from);
        if (at < 0)
            return QString();
        if (startsLine(probeOutput, at))
            return probeOutput.mid(at + marker.size(), 11);
        from = at + 1;
    }
}

// Reads a number the way a two-character field is read: leading blanks, an
// optional sign, then digits up to the first other character.
static qint64 leadingNumber(const QString &field)
{
    qsizetype i = 0;
    while (i < field.size() && (field.at(i) == QLatin1Char(' ') || field.at(i) == QLatin1Char('\t')))
        ++i;
    bool negative = false;
    if (i < field.size() && (field.at(i) == QLatin1Char('+') || field.at(i) == QLatin1Char('-'))) {
        negative = field.at(i) == QLatin1Char('-');
        ++i;
    }
    qint64 value = 0;
    while (i < field.size() && field.at(i) >= QLatin1Char('0') && field.at(i) <= QLatin1Char('9')) {
        value = value * 10 + (field.at(i).unicode() - '0');
        ++i;
    }
    return negative ? -value : value;
}

qint64 Return_Seconds_From_Duration_Str(const QString &durationText)
{
    const qint64 hours = leadingNumber(durationText.mid(1, 2));
    const qint64 minutes = leadingNumber(durationText.mid(4, 2));
    const qint64 seconds = leadingNumber(durationText.mid(7, 2));
    // ffmpeg writes a duration below zero (a broken file) with a sign in each
    // field, "00:00:-1.-49"; a playing time is never negative and reads 0.
    return qMax<qint64>(0, hours * 3600 + minutes * 60 + seconds);
}

quint64 folderSize(const QString &folderPath)
{
    if (folderPath.isEmpty())
        return 0;
    const QFileInfo top(folderPath);
    if (!top.isDir() || !top.isReadable())
        return 0;
    quint64 total = 0;
    // Without FollowSymlinks the walk never enters a linked folder, so a
    // link that points back up the tree cannot loop.
    QDirIterator it(folderPath,
                    QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        const qint64 size = it.fileInfo().size();  // a link reads as its target
        if (size > 0)
            total += quint64(size);
    }
    return total;
}

quint64 fileSize(const QString &filePath)
{
    if (filePath.isEmpty())
        return 0;
    const qint64 size = QFileInfo(filePath).size();
    return size > 0 ? quint64(size) : 0;
}

QString GetMediaFileDuration(const QString &ffmpegPath, const QString &filePath, int timeoutMs)
{
    if (ffmpegPath.isEmpty() || filePath.isEmpty())
        return QString();
    // ffmpeg describes the input and stops on the missing output file; its
    // exit status says nothing about the input and is not read.
    const ToolVerdict verdict = ToolRun::runToEnd(ToolCommand{ffmpegPath, {QStringLiteral("-i"), filePath}},
                                                  timeoutMs < 0 ? 0 : timeoutMs, ToolRun::Channels::Merged,
                                                  ToolRun::Report::Quiet);
    if (verdict.outcome == ToolVerdict::Outcome::FailedToStart)
        return QString();
    return durationTextFromProbe(verdict.output);
}

QString lastPathComponent(const QString &path)
{
    QString p = path;
    while (p.size() > 1 && p.endsWith(QLatin1Char('/')))
        p.chop(1);
    if (p == QLatin1String("/"))
        return p;
    const qsizetype slash = p.lastIndexOf(QLatin1Char('/'));
    return slash < 0 ? p : p.mid(slash + 1);
}

QString pathExtension(const QString &path)
{
    const QString name = lastPathComponent(path);
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot <= 0 || dot == name.size() - 1)
        return QString();
    return name.mid(dot + 1);
}

QString deletingLastPathComponent(const QString &path)
{
    QString p = path;
    while (p.size() > 1 && p.endsWith(QLatin1Char('/')))
        p.chop(1);
    qsizetype slash = p.lastIndexOf(QLatin1Char('/'));
    if (slash < 0)
        return QString();
    // "a//b" is in "a", not "a/".
    while (slash > 0 && p.at(slash - 1) == QLatin1Char('/'))
        --slash;
    if (slash == 0)
        return QStringLiteral("/");
    return p.left(slash);
}

NodeMediaFile makeMediaRecord(const QString &ffmpegPath, const QString &filePath)
{
    NodeMediaFile node;
    node.s_File_URL = QUrl::fromLocalFile(filePath);
    node.s_File_Path = filePath;
    node.s_File_Extension = pathExtension(filePath);
    node.s_File_Name_With_Extension = lastPathComponent(filePath);
    node.s_Folder_Path = deletingLastPathComponent(filePath);
    node.s_Duration = GetMediaFileDuration(ffmpegPath, filePath);
    node.i_Duration_in_Seconds = Return_Seconds_From_Duration_Str(node.s_Duration);
    node.s_File_Size = sizeText(fileSize(filePath));
    return node;
}

NodeDataFolder makeDataFolderRecord(const QString &folderPath)
{
    NodeDataFolder node;
    node.s_Path = folderPath;
    const quint64 bytes = folderSize(folderPath);
    node.i_Size_in_KBytes = bytes >> 10;
    node.s_Size = sizeText(bytes);
    return node;
}

QStringList splitStringIntoChars(const QString &text)
{
    QStringList chars;
    chars.reserve(text.size());
    for (const QChar c : text)
        chars.append(QString(c));
    return chars;
}

} // namespace Measurements
