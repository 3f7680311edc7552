#pragma once
#include <QString>
#include <QStringList>
#include <memory>

#include "platform/ToolPaths.h"
#include "drives/Object_Optical_Drive.h"
#include "toolrun/ToolCommand.h"

// The recording command of a media burn, per platform. A recorder only
// writes: no command it makes ever erases a medium.
class Recorder {
public:
    virtual ~Recorder() = default;

    // The audio CD: the WAV files of `folder` as audio tracks. Recorders that
    // take a list of files burn `wavsInCompilationOrder` in that order.
    virtual ToolCommand burnAudioCommand(const Object_Optical_Drive &drive, const QString &folder,
                                         const QStringList &wavsInCompilationOrder) const = 0;

    // MP3 and video discs: the folder's content as a data disc. With
    // `verify`, what is written is made checkable (xorriso records the
    // checksums of its files) or is checked by the recorder itself (drutil
    // reads the disc back; without `verify` it is told -noverify).
    virtual ToolCommand burnFolderCommand(const Object_Optical_Drive &drive, const QString &folder,
                                          bool verify = false) const = 0;

    // Whether the folder recording checks the disc it wrote itself, so that
    // its verdict is the verification (drutil).
    virtual bool checksItsWriting() const { return false; }

    // The read-back of a folder disc written with `verify`, compared with
    // the checksums recorded on it; null when the recorder checks its own
    // writing.
    virtual ToolCommand verifyFolderCommand(const Object_Optical_Drive &drive) const
    {
        Q_UNUSED(drive)
        return {};
    }

    // drutil on macOS, cdrskin and xorriso on Linux.
    static std::unique_ptr<Recorder> create(const ToolPaths &tools);
};
