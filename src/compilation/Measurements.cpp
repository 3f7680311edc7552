#include "compilation/Measurements.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <limits>

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

quint64 saturatingAdd(quint64 a, quint64 b)
{
    constexpr quint64 top = std::numeric_limits<quint64>::max();
    return a > top - b ? top : a + b;
}

qint64 saturatingAdd(qint64 a, qint64 b)
{
    constexpr qint64 top = std::numeric_limits<qint64>::max();
    a = qMax<qint64>(a, 0);
    b = qMax<qint64>(b, 0);
    return a > top - b ? top : a + b;
}

QString nameAsPrinted(const QString &filePath)
{
    QByteArray bytes = QFile::encodeName(filePath);
    for (char &c : bytes) {
        const auto u = static_cast<unsigned char>(c);
        if (u < 0x08 || (u > 0x0D && u < 0x20))
            c = '?';
    }
    return QString::fromUtf8(bytes);
}

// The line that starts at `from`, without its line feed; `next` gets the
// start of the line after it (the text's end when there is none).
static QStringView lineAt(const QString &text, qsizetype from, qsizetype &next)
{
    qsizetype end = text.indexOf(QLatin1Char('\n'), from);
    if (end < 0) {
        next = text.size();
        end = text.size();
    } else {
        next = end + 1;
    }
    return QStringView(text).mid(from, end - from);
}

// Finds, from `from` on, the line "Input #N, FORMAT, from 'NAME':" that
// opens the description of input `number` named `name`. Answers where the
// line after it starts, or -1.
static qsizetype inputHeaderEnd(const QString &report, qsizetype from, int number, const QString &name)
{
    const QString opening = QStringLiteral("Input #%1, ").arg(number);
    const QString tail = QStringLiteral("'") + name + QStringLiteral("':\n");
    static const QString fromWord = QStringLiteral(", from '");
    qsizetype at = from;
    while (true) {
        at = report.indexOf(opening, at);
        if (at < 0)
            return -1;
        if (at == 0 || report.at(at - 1) == QLatin1Char('\n')) {
            // FORMAT is a demuxer's name list ("mov,mp4,m4a,3gp,3g2,mj2"):
            // never a blank, a quote or a line break.
            const qsizetype formatStart = at + opening.size();
            const qsizetype formatEnd = report.indexOf(fromWord, formatStart);
            bool plainFormat = formatEnd > formatStart;
            for (qsizetype i = formatStart; plainFormat && i < formatEnd; ++i) {
                const QChar c = report.at(i);
                plainFormat = c != QLatin1Char(' ') && c != QLatin1Char('\'') && c != QLatin1Char('\n')
                    && c != QLatin1Char('\r');
            }
            const qsizetype quote = formatEnd + fromWord.size() - 1;
            if (plainFormat && QStringView(report).mid(quote).startsWith(tail))
                return quote + tail.size();
        }
        at += opening.size();
    }
}

QStringList durationTextsFromBatchReport(const QString &report, const QStringList &inputs)
{
    static const QString metadata = QStringLiteral("  Metadata:");
    static const QString durationLine = QStringLiteral("  Duration:");
    static const QString deeper = QStringLiteral("    ");
    QStringList texts;
    qsizetype from = 0;
    for (int n = 0; n < inputs.size(); ++n) {
        qsizetype at = inputHeaderEnd(report, from, n, nameAsPrinted(inputs.at(n)));
        if (at < 0)
            break;
        qsizetype next = 0;
        QStringView line = lineAt(report, at, next);
        if (line == metadata) {
            at = next;
            while (at < report.size()) {
                line = lineAt(report, at, next);
                if (!line.startsWith(deeper))
                    break;
                at = next;
            }
        }
        line = lineAt(report, at, next);
        if (!line.startsWith(durationLine))
            break;
        texts << line.mid(durationLine.size(), 11).toString();
        from = next;
    }
    return texts;
}

BatchProbe probeBatch(const QString &ffmpegPath, const QStringList &filePaths, int timeoutMs,
                      const StopToken &stop)
{
    BatchProbe probe;
    if (filePaths.isEmpty())
        return probe;
    if (ffmpegPath.isEmpty()) {
        probe.toolStarted = false;
        return probe;
    }
    QStringList arguments{QStringLiteral("-hide_banner")};
    arguments.reserve(1 + 2 * filePaths.size());
    for (const QString &path : filePaths)
        arguments << QStringLiteral("-i") << path;
    // ffmpeg describes each input and stops on the missing output file; its
    // exit status says nothing about the inputs and is not read.
    const ToolVerdict verdict =
        ToolRun::runToEnd(ToolCommand{ffmpegPath, arguments}, timeoutMs < 0 ? 0 : timeoutMs,
                          ToolRun::Channels::Merged, ToolRun::Report::Quiet, stop);
    if (verdict.outcome == ToolVerdict::Outcome::FailedToStart) {
        probe.toolStarted = false;
        return probe;
    }
    probe.durations = durationTextsFromBatchReport(verdict.output, filePaths);
    return probe;
}

quint64 folderSize(const QString &folderPath, const StopToken &stop)
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
    while (it.hasNext() && !stop.stopped()) {
        it.next();
        const qint64 size = it.fileInfo().size();  // a link reads as its target
        if (size > 0)
            total = saturatingAdd(total, quint64(size));
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
    return probeBatch(ffmpegPath, {filePath}, timeoutMs).durations.value(0);
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
    return mediaRecordFor(filePath, GetMediaFileDuration(ffmpegPath, filePath));
}

NodeMediaFile mediaRecordFor(const QString &filePath, const QString &durationText, const QString &folderOfPrevious)
{
    NodeMediaFile node;
    node.s_File_URL = QUrl::fromLocalFile(filePath);
    node.s_File_Path = filePath;
    node.s_File_Extension = pathExtension(filePath);
    node.s_File_Name_With_Extension = lastPathComponent(filePath);
    const QString folder = deletingLastPathComponent(filePath);
    node.s_Folder_Path = folder == folderOfPrevious ? folderOfPrevious : folder;
    node.s_Duration = durationText;
    node.i_Duration_in_Seconds = Return_Seconds_From_Duration_Str(node.s_Duration);
    node.s_File_Size = sizeText(fileSize(filePath));
    return node;
}

NodeDataFolder makeDataFolderRecord(const QString &folderPath, const StopToken &stop)
{
    NodeDataFolder node;
    node.s_Path = folderPath;
    const quint64 bytes = folderSize(folderPath, stop);
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
