#include "burn/DiscTools.h"

#include <QPointer>

#include "platform/Alerts.h"
#include "toolrun/ToolMessages.h"
#include "toolrun/WriteProgress.h"

namespace {

using Refusal = MediumRefusals;

MediumRefusals eraseRefusals()
{
    MediumRefusals r;
    r.noDisc = Refusal::closeAlert(QStringLiteral("No disc"),
                          QStringLiteral("There is no disc on the drive. insert a rewritable media on the drive and try again."));
    r.notWritable = Refusal::closeAlert(
        QStringLiteral("Media not rewritable"),
        QStringLiteral("The media on the drive is not rewritable. insert a rewritable media on the drive and try again."));
    return r;
}

MediumRefusals infoRefusals(const DiscToolsContext &context)
{
    MediumRefusals r;
    r.noDisc = Refusal::closeAlert(QStringLiteral("No disc"),
                          QStringLiteral("There is no disc on the drive. Insert a media on the drive and try again."));
    r.noDiscNow = [context, fallback = r.noDisc] {
        const DriveAccess access = context.backend->access().forDrive(context.currentDrive());
        return access.denied() ? Refusal::closeAlert(access.alertMessage(), access.alertInformative()) : fallback;
    };
    return r;
}

} // namespace

EraseFlow::EraseFlow(const DiscToolsContext &context, QObject *parent)
    : Operation(context.alerts, parent), m_context(context)
{
    setCancelTexts(ToolMessages::EraseCancelled, ToolMessages::ErasingStopped);
}

void EraseFlow::erase(bool full)
{
    if (isBusy())
        return;
    begin();
    QPointer<EraseFlow> self(this);
    const bool debug = m_context.debugMode && m_context.debugMode();
    MediumChecks::run(m_context.check, alerts(), MediumNeed::Rewritable, QString(), SizeEstimate{},
                      eraseRefusals(), debug, [self, full](bool passed) {
                          if (!self)
                              return;
                          if (passed)
                              self->run(full);
                          else
                              self->finish();
                      });
}

void EraseFlow::run(bool full)
{
    ToolRun::Options options;
    options.channels = ToolRun::Channels::Merged;
    options.purpose = ToolRun::Purpose::Write;
    options.writeReports = &WriteProgress::parseReports;  // none known of a blanking yet: the sheet stays busy
    startToolRun(m_context.backend->eraseCommand(m_context.currentDrive(), full), options,
                 [this](const ToolVerdict &verdict) {
                     emit sheetClosed(OperationSheet::Working);
                     if (verdict.ok())
                         emit lastSheet(OperationEnd::complete());
                     else
                         tellFailure(QStringLiteral("The disc could not be erased."), verdict);
                     finish();
                 });
    emit sheetShown(OperationSheet::Working);
}

DiscInfoFlow::DiscInfoFlow(const DiscToolsContext &context, QObject *parent)
    : Operation(context.alerts, parent), m_context(context)
{
}

void DiscInfoFlow::show()
{
    if (isBusy())
        return;
    begin();
    QPointer<DiscInfoFlow> self(this);
    MediumChecks::run(m_context.check, alerts(), MediumNeed::Disc, QString(), SizeEstimate{}, infoRefusals(m_context),
                      false, [self](bool passed) {
                          if (!self)
                              return;
                          if (passed)
                              self->showStatus();
                          else
                              self->finish();
                      });
}

void DiscInfoFlow::showStatus()
{
    QPointer<DiscInfoFlow> self(this);
    m_context.backend->queryStatus(m_context.currentDrive(), [self](const MediaStatus &status) {
        if (!self)
            return;
        if (!status.answered) {
            self->tell(ToolMessages::driveDidNotAnswer(status.verdict));
        } else {
            AlertRequest r;
            r.messageText = QStringLiteral("Disc Information");
            r.informativeText = status.text;
            r.buttons = {QStringLiteral("OK")};
            self->tell(r);
        }
        self->finish();
    });
}
