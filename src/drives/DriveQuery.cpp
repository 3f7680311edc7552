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

} // namespace DriveQuery
