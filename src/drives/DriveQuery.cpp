#include "drives/DriveQuery.h"

#include "toolrun/ToolRun.h"

namespace DriveQuery {

void run(const ToolCommand &command, int timeoutMs, QObject *owner, Done done)
{
    ToolRun::Options options;
    options.channels = ToolRun::Channels::Merged;
    options.purpose = ToolRun::Purpose::Query;
    options.timeoutMs = qMax(0, timeoutMs);
    auto *run = new ToolRun(command, options, owner);
    QObject::connect(run, &ToolRun::finished, run, [run, done = std::move(done)](const ToolVerdict &verdict) {
        run->deleteLater();
        if (done)
            done(verdict);
    });
    run->start();
}

bool answered(const ToolVerdict &verdict)
{
    // No command at all (no drive to ask) reads as an empty answer.
    if (verdict.command.isNull())
        return true;
    return verdict.outcome != ToolVerdict::Outcome::TimedOut
        && verdict.outcome != ToolVerdict::Outcome::FailedToStart;
}

MediaSpace space(const ToolVerdict &verdict, std::optional<qint64> (*parse)(const QString &text))
{
    MediaSpace s;
    // What a hung tool printed before it was stopped is not its answer.
    s.answered = answered(verdict);
    s.text = s.answered ? verdict.output : QString();
    const std::optional<qint64> sectors = parse(s.text);
    s.known = sectors.has_value();
    s.freeSectors = sectors.value_or(0);
    s.verdict = verdict;
    return s;
}

} // namespace DriveQuery
