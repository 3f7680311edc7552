#include "images/SheetFlow.h"

#include <memory>

#include "toolrun/ChunkAssembler.h"

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
        // A read may end inside a report: the parser sees whole lines only,
        // and what is held back is read when the run ends (before the end is
        // told, as this connection comes first).
        auto assembler = std::make_shared<ChunkAssembler>();
        const ImageProgress::Kind kind = *progress;
        auto feed = [this, kind](const QString &text) {
            if (text.isEmpty())
                return;
            if (const auto value = ImageProgress::parse(kind, text))
                emit uniqueProgress(*value);
        };
        connect(run, &ImageToolRun::errorChunk, this,
                [assembler, feed](const QByteArray &chunk) { feed(assembler->take(chunk)); });
        connect(run, &ImageToolRun::finished, this, [assembler, feed] { feed(assembler->flush()); });
    }
    connect(run, &ImageToolRun::finished, this, [this, run, terminated](int exitCode, bool) {
        emit toolFinished(exitCode);
        run->deleteLater();
        terminated();
    });
    emit toolStarted(command.program, command.arguments);
    run->start(command, channels);
}
