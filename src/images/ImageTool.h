#pragma once
#include <QString>
#include <memory>

#include "platform/ToolPaths.h"
#include "drives/Object_Optical_Drive.h"
#include "images/ImageProgress.h"
#include "toolrun/ToolCommand.h"

// The disk image tool of the platform: makes an ISO 9660 + Joliet image of a
// folder, and records an image file onto the disc in a drive.
class ImageTool {
public:
    virtual ~ImageTool() = default;

    // The image of `sourceFolder` written to the file `destIso`.
    virtual ToolCommand makeImageCommand(const QString &destIso, const QString &sourceFolder) const = 0;

    // `image` recorded as it is onto the medium in `drive`. A tool that
    // checks its own writing is told not to without `verify`.
    virtual ToolCommand burnImageCommand(const Object_Optical_Drive &drive, const QString &image,
                                         bool verify = false) const = 0;

    // Whether the recording reads the disc back and compares it itself, so
    // that its verdict is the verification (hdiutil); otherwise the image is
    // compared with the disc afterwards (ImageReadBack).
    virtual bool checksItsWriting() const { return false; }

    // How the recording run reports its progress on its error output.
    virtual ImageProgress::Kind progressKind() const = 0;

    // hdiutil on macOS, xorriso on Linux.
    static std::unique_ptr<ImageTool> create(const ToolPaths &paths);
};
