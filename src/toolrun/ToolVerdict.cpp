#include "toolrun/ToolVerdict.h"

#include <QFileInfo>
#include <QRegularExpression>

namespace {

enum class Tool { Ffmpeg, Xorriso, Cdrskin, Hdiutil, Drutil, Other };

Tool toolOf(const QString &program)
{
    const QString name = QFileInfo(program).fileName().toLower();
    if (name.startsWith(QLatin1String("ffmpeg")))
        return Tool::Ffmpeg;
    if (name.startsWith(QLatin1String("xorriso")))
        return Tool::Xorriso;
    if (name.startsWith(QLatin1String("cdrskin")))
        return Tool::Cdrskin;
    if (name.startsWith(QLatin1String("hdiutil")))
        return Tool::Hdiutil;
    if (name.startsWith(QLatin1String("drutil")))
        return Tool::Drutil;
    return Tool::Other;
}

// The lines of the output; a progress report overwritten with '\r' counts as
// a line of its own.
QStringList linesOf(const QString &output)
{
    static const QRegularExpression ends(QStringLiteral("[\r\n]+"));
    QStringList lines;
    for (const QString &raw : output.split(ends, Qt::SkipEmptyParts)) {
        const QString line = raw.trimmed();
        if (!line.isEmpty())
            lines << line;
    }
    return lines;
}

bool isFfmpegProgress(const QString &line)
{
    return line.startsWith(QLatin1String("size=")) || line.startsWith(QLatin1String("frame="))
        || line.startsWith(QLatin1String("video:")) || line.contains(QLatin1String(" time="));
}

bool isFfmpegError(const QString &line)
{
    static const QRegularExpression words(
        QStringLiteral("error|invalid|failed|no such file|not overwriting|no space left|permission denied|"
                       "could not|cannot|unable|not found|does not contain|unknown|already exists"),
        QRegularExpression::CaseInsensitiveOption);
    return !isFfmpegProgress(line) && words.match(line).hasMatch();
}

bool isXorrisoEvent(const QString &line)
{
    return line.contains(QLatin1String(" : FAILURE : ")) || line.contains(QLatin1String(" : SORRY : "))
        || line.contains(QLatin1String(" : FATAL : ")) || line.contains(QLatin1String(" : MISHAP : "));
}

bool isXorrisoFatal(const QString &line)
{
    return line.contains(QLatin1String(" : FAILURE : ")) || line.contains(QLatin1String(" : FATAL : "));
}

bool isCdrskinEvent(const QString &line)
{
    return line.startsWith(QLatin1String("cdrskin: SORRY")) || line.startsWith(QLatin1String("cdrskin: FAILURE"))
        || line.startsWith(QLatin1String("cdrskin: FATAL")) || line.startsWith(QLatin1String("cdrskin: Reason"))
        || line == QLatin1String("cdrskin: burning failed") || isXorrisoEvent(line);
}

bool isHdiutilFailure(const QString &line)
{
    static const QRegularExpression failed(QStringLiteral("^hdiutil: .*(failed|error)"),
                                           QRegularExpression::CaseInsensitiveOption);
    return failed.match(line).hasMatch() || line.contains(QLatin1String("DRErrorStatusKey"))
        || line.startsWith(QLatin1String("***"));
}

bool isDrutilFailure(const QString &line)
{
    static const QRegularExpression failed(QStringLiteral("\\b(failed|error)\\b"),
                                           QRegularExpression::CaseInsensitiveOption);
    return failed.match(line).hasMatch();
}

QStringList lastOf(const QStringList &lines, int count)
{
    return lines.mid(qMax(0, int(lines.size()) - count));
}

constexpr int MaxErrorLines = 4;

} // namespace

QString ToolVerdict::toolName() const
{
    return QFileInfo(command.program).fileName();
}

QString ToolVerdict::summary() const
{
    const QString name = toolName().isEmpty() ? QStringLiteral("(no program)") : toolName();
    switch (outcome) {
    case Outcome::Succeeded:
        return QStringLiteral("%1: exit code 0").arg(name);
    case Outcome::Failed:
        return QStringLiteral("%1: failed, exit code %2").arg(name).arg(exitCode);
    case Outcome::Crashed:
        return QStringLiteral("%1: crashed").arg(name);
    case Outcome::FailedToStart:
        return QStringLiteral("%1: could not be started (%2)").arg(name, startError);
    case Outcome::TimedOut:
        return QStringLiteral("%1: did not answer in time and was stopped").arg(name);
    case Outcome::Stopped:
        return QStringLiteral("%1: stopped").arg(name);
    }
    return name;
}

namespace ToolVerdicts {

QStringList errorLines(const QString &program, const QString &output)
{
    bool (*marks)(const QString &) = nullptr;
    switch (toolOf(program)) {
    case Tool::Ffmpeg: marks = isFfmpegError; break;
    case Tool::Xorriso: marks = isXorrisoEvent; break;
    case Tool::Cdrskin: marks = isCdrskinEvent; break;
    case Tool::Hdiutil: marks = isHdiutilFailure; break;
    case Tool::Drutil: marks = isDrutilFailure; break;
    case Tool::Other: return {};
    }
    QStringList picked;
    for (const QString &line : linesOf(output))
        if (marks(line))
            picked << line;
    return lastOf(picked, MaxErrorLines);
}

void judge(ToolVerdict &verdict)
{
    const QString program = verdict.command.program;
    const QStringList failures = errorLines(program, verdict.output);
    bool failed = verdict.exitCode != 0;
    if (!failed && toolOf(program) == Tool::Xorriso) {
        for (const QString &l : linesOf(verdict.output))
            failed = failed || isXorrisoFatal(l);
    }
    if (!failed && toolOf(program) == Tool::Hdiutil) {
        for (const QString &l : linesOf(verdict.output))
            failed = failed || isHdiutilFailure(l);
    }
    verdict.outcome = failed ? ToolVerdict::Outcome::Failed : ToolVerdict::Outcome::Succeeded;
    if (!failed) {
        verdict.errorLines.clear();
        return;
    }
    verdict.errorLines = failures;
    if (verdict.errorLines.isEmpty()) {
        // No marked line: the last thing the tool said.
        const QStringList lines = linesOf(verdict.output);
        if (!lines.isEmpty())
            verdict.errorLines << lines.last();
    }
}

} // namespace ToolVerdicts
