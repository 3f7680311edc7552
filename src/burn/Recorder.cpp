#include "burn/Recorder.h"

#include "burn/DrutilRecorder.h"
#include "burn/XorrisoRecorder.h"

std::unique_ptr<Recorder> Recorder::create(const ToolPaths &tools)
{
    if (tools.backend == ToolPaths::Backend::MacOS)
        return std::make_unique<DrutilRecorder>(tools.drutil);
    return std::make_unique<XorrisoRecorder>(tools.xorriso, tools.cdrskin);
}
