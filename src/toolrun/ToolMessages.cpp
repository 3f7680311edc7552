#include "toolrun/ToolMessages.h"

#include <QFileInfo>

namespace ToolMessages {

QString installHint(const QString &program)
{
    const QString name = QFileInfo(program).fileName();
#ifdef Q_OS_MACOS
    if (name == QLatin1String("drutil") || name == QLatin1String("hdiutil"))
        return QStringLiteral("It is part of macOS; check that /usr/bin/%1 is there.").arg(name);
    return QStringLiteral("Install it with Homebrew: brew install %1").arg(name.isEmpty() ? QStringLiteral("ffmpeg") : name);
#else
    const QString package = name.isEmpty() ? QStringLiteral("the missing tool") : name;
    return QStringLiteral("Install it with: sudo apt install %1").arg(package);
#endif
}

AlertRequest notStarted(const ToolVerdict &verdict)
{
    const QString name = verdict.toolName().isEmpty() ? QStringLiteral("A needed program") : verdict.toolName();
    AlertRequest r;
    r.messageText = QStringLiteral("%1 could not be started.").arg(name);
    r.informativeText = QStringLiteral("Tamblo needs %1 for this and could not run it (%2). %3")
                            .arg(name, verdict.startError.isEmpty() ? QStringLiteral("not found") : verdict.startError,
                                 installHint(verdict.command.program));
    return r;
}

AlertRequest driveDidNotAnswer(const ToolVerdict &verdict)
{
    if (verdict.outcome == ToolVerdict::Outcome::FailedToStart)
        return notStarted(verdict);
    AlertRequest r;
    r.messageText = QStringLiteral("The drive does not answer.");
    r.informativeText = QStringLiteral("%1 asked the drive about its disc and got no answer in %2 seconds. "
                                       "Check that the drive is connected and not busy with another program, "
                                       "then try again.")
                            .arg(verdict.toolName())
                            .arg(qMax<qint64>(1, (verdict.elapsedMs + 500) / 1000));
    return r;
}

QString toolWords(const ToolVerdict &verdict)
{
    const QString name = verdict.toolName();
    QString words = verdict.errorLines.join(QLatin1Char('\n'));
    switch (verdict.outcome) {
    case ToolVerdict::Outcome::Succeeded:
        return QString();
    case ToolVerdict::Outcome::Failed:
        if (words.isEmpty())
            words = QStringLiteral("%1 ended with exit code %2.").arg(name).arg(verdict.exitCode);
        return words;
    case ToolVerdict::Outcome::Crashed:
        return words.isEmpty() ? QStringLiteral("%1 crashed.").arg(name) : words + QStringLiteral("\n%1 crashed.").arg(name);
    case ToolVerdict::Outcome::FailedToStart:
        return QStringLiteral("%1 could not be started. %2").arg(name, installHint(verdict.command.program));
    case ToolVerdict::Outcome::TimedOut:
        return QStringLiteral("%1 stopped answering and was stopped.").arg(name);
    case ToolVerdict::Outcome::Stopped:
        return QStringLiteral("%1 was stopped.").arg(name);
    }
    return words;
}

AlertRequest stopWritingQuestion()
{
    AlertRequest r;
    r.messageText = QStringLiteral("Stop writing? A write-once disc will be unusable.");
    r.informativeText = QString();
    r.buttons = {QStringLiteral("Stop"), QStringLiteral("Continue")};
    r.warningStyle = true;
    return r;
}

bool confirmStopWriting(Alerts &alerts)
{
    return alerts.show(stopWritingQuestion()).button == 0;
}

} // namespace ToolMessages

OperationFailure OperationFailure::fromVerdict(const QString &message, const ToolVerdict &verdict)
{
    OperationFailure f;
    f.message = message;
    f.informative = ToolMessages::toolWords(verdict);
    QString line = verdict.command.program;
    for (const QString &a : verdict.command.arguments)
        line += QLatin1Char(' ') + (a.contains(QLatin1Char(' ')) ? QLatin1Char('"') + a + QLatin1Char('"') : a);
    f.details = QStringLiteral("$ %1\n%2\n[%3]").arg(line, verdict.output, verdict.summary());
    f.cancelled = verdict.outcome == ToolVerdict::Outcome::Stopped;
    return f;
}

OperationFailure OperationFailure::cancellation(const QString &message, const QString &informative,
                                                const ToolVerdict *stoppedRun)
{
    OperationFailure f = stoppedRun ? fromVerdict(message, *stoppedRun) : OperationFailure();
    f.message = message;
    f.informative = informative;
    f.cancelled = true;
    return f;
}
