#pragma once
#include <QString>
#include <QStringList>
#include <memory>

#include "app/ToolPaths.h"
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

    // MP3 and video discs: the folder's content as a data disc.
    virtual ToolCommand burnFolderCommand(const Object_Optical_Drive &drive, const QString &folder) const = 0;

    // drutil on macOS, cdrskin and xorriso on Linux.
    static std::unique_ptr<Recorder> create(const ToolPaths &tools);
};
