#pragma once
#include <QPointer>
#include <functional>
#include <optional>

#include "drives/DiscVerification.h"
#include "images/ImageFlowContext.h"
#include "images/ImageProgress.h"
#include "burn/MediumChecks.h"
#include "toolrun/Operation.h"

// The operations on images and data discs (data burn, ISO creation, image
// burn, disc copy): an Operation with the application's tools and folders
// at hand, and the read-back of a disc it wrote.
class SheetFlow : public Operation {
    Q_OBJECT
public:
    explicit SheetFlow(const ImageFlowContext &context, QObject *parent = nullptr);

    const ImageFlowContext &context() const { return m_context; }

protected:
    // Starts the flow's tool on `channels`. With a progress kind, each
    // complete report of the tool's progress channel (its error output, or
    // the merged output) that carries a percentage goes out as writeReported.
    void startToolRun(const ToolCommand &command, ToolRun::Channels channels,
                      std::function<void(const ToolVerdict &)> terminated,
                      std::optional<ImageProgress::Kind> progress = std::nullopt,
                      ToolRun::Purpose purpose = ToolRun::Purpose::Write);

    // Reading back a disc this flow wrote: the Verifying sheet first, then
    // xorriso's checksum check of its files, or its first bytes compared
    // with an image on a worker (the Check bar follows from 0). `done` gets
    // what was found, on this thread.
    void readBackFiles(const ToolCommand &check, std::function<void(const VerifyResult &)> done);
    void readBackImage(const QString &image, const QString &drive, std::function<void(const VerifyResult &)> done);
    bool readingBack() const { return m_readBack && m_readBack->isRunning(); }
    bool stopWithoutAsking() override;

    // The medium check chain on the current drive; `passed` is not called
    // once the flow is gone.
    void checkMedium(MediumNeed need, const QString &family, const SizeEstimate &size,
                     const MediumRefusals &refusals, std::function<void(bool passed)> passed);

    // The Verifying sheet when the tool just started says it reads back.
    void tellWhenToolVerifies();

    ImageFlowContext m_context;

private:
    DiscVerification *startReadBack(std::function<void(const VerifyResult &)> done);

    QPointer<DiscVerification> m_readBack;
};
