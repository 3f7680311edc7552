#include "drives/DrutilBackend.h"

#include "drives/DriveQuery.h"
#include "drives/DrutilParsing.h"
#include "toolrun/ToolProcess.h"

// The number after "-drive"; a drive record without one is the default
// current drive, "1".
static QString driveNumber(const Object_Optical_Drive &drive)
{
    return drive.s_Drive_Number.isEmpty() ? QStringLiteral("1") : drive.s_Drive_Number;
}

DrutilBackend::DrutilBackend(const QString &drutil, QObject *parent, int listTimeoutMs,
                             int statusTimeoutMs)
    : DriveBackend(parent), m_drutil(drutil), m_listTimeoutMs(listTimeoutMs),
      m_statusTimeoutMs(statusTimeoutMs)
{
}

ToolCommand DrutilBackend::listCommand() const
{
    return ToolCommand{m_drutil, {QStringLiteral("list")}};
}

ToolCommand DrutilBackend::statusCommand(const Object_Optical_Drive &drive) const
{
    return ToolCommand{m_drutil,
                       {QStringLiteral("status"), QStringLiteral("-drive"), driveNumber(drive)}};
}

ToolCommand DrutilBackend::trayCommand(const Object_Optical_Drive &drive, bool eject) const
{
    return ToolCommand{m_drutil,
                       {QStringLiteral("tray"), eject ? QStringLiteral("eject") : QStringLiteral("close"),
                        QStringLiteral("-drive"), driveNumber(drive)}};
}

void DrutilBackend::listDrives(ListCallback done)
{
    DriveQuery::run(listCommand(), m_listTimeoutMs, this,
                    [done = std::move(done)](const ToolVerdict &verdict) {
                        if (done)
                            done(DrutilParsing::parseList(verdict.output));
                    });
}

void DrutilBackend::queryStatus(const Object_Optical_Drive &drive, StatusCallback done)
{
    DriveQuery::run(statusCommand(drive), m_statusTimeoutMs, this,
                    [done = std::move(done)](const ToolVerdict &verdict) {
                        MediaStatus status;
                        // A drive that did not answer says nothing: what a hung
                        // tool printed before it was stopped is not its answer.
                        status.answered = DriveQuery::answered(verdict);
                        status.text = status.answered ? verdict.output : QString();
                        status.answers = DrutilParsing::answers(status.text);
                        status.verdict = verdict;
                        if (done)
                            done(status);
                    });
}

void DrutilBackend::queryFreeSpace(const Object_Optical_Drive &drive, SpaceCallback done)
{
    DriveQuery::run(statusCommand(drive), m_statusTimeoutMs, this,
                    [done = std::move(done)](const ToolVerdict &verdict) {
                        if (done)
                            done(DriveQuery::space(verdict, &DrutilParsing::spaceFreeSectors));
                    });
}

void DrutilBackend::ejectTray(const Object_Optical_Drive &drive)
{
    ToolProcess::startDetached(trayCommand(drive, true));
}

void DrutilBackend::closeTray(const Object_Optical_Drive &drive)
{
    ToolProcess::startDetached(trayCommand(drive, false));
}

ToolCommand DrutilBackend::eraseCommand(const Object_Optical_Drive &drive, bool full) const
{
    return ToolCommand{m_drutil,
                       {QStringLiteral("erase"), full ? QStringLiteral("full") : QStringLiteral("quick"),
                        QStringLiteral("-drive"), driveNumber(drive)}};
}

ToolCommand DrutilBackend::discInfoCommand(const Object_Optical_Drive &drive) const
{
    return statusCommand(drive);
}
