#include "images/SheetFlow.h"

SheetFlow::SheetFlow(const ImageFlowContext &context, QObject *parent) : QObject(parent), m_context(context) {}

void SheetFlow::finish()
{
    m_busy = false;
    emit ended();
}

void SheetFlow::startToolRun(const ToolCommand &command, ImageToolRun::Channels channels,
                             std::function<void()> terminated, std::optional<ImageProgress::Kind> progress)
{
    auto *run = new ImageToolRun(this);
    if (progress) {
        const ImageProgress::Kind kind = *progress;
        connect(run, &ImageToolRun::errorChunk, this, [this, kind](const QByteArray &chunk) {
            if (const auto value = ImageProgress::parse(kind, chunk))
                emit uniqueProgress(*value);
        });
    }
    connect(run, &ImageToolRun::finished, this, [this, run, terminated](int exitCode, bool) {
        emit toolFinished(exitCode);
        run->deleteLater();
        terminated();
    });
    emit toolStarted(command.program, command.arguments);
    run->start(command, channels);
}
