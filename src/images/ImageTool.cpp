#include "images/ImageTool.h"

#include "images/HdiutilImageTool.h"
#include "images/XorrisoImageTool.h"

std::unique_ptr<ImageTool> ImageTool::create(const ToolPaths &paths)
{
    if (paths.backend == ToolPaths::Backend::MacOS)
        return std::make_unique<HdiutilImageTool>(paths.hdiutil);
    return std::make_unique<XorrisoImageTool>(paths.xorriso);
}
