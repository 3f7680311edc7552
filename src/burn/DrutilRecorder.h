#pragma once
#include "burn/Recorder.h"

// macOS: drutil records a folder, as audio tracks or as a data disc, on the
// drive of the given number.
class DrutilRecorder : public Recorder {
public:
    explicit DrutilRecorder(const QString &drutil) : m_drutil(drutil) {}

    // "burn" "-audio" folder "-drive" number
    ToolCommand burnAudioCommand(const Object_Optical_Drive &drive, const QString &folder,
                                 const QStringList &wavsInCompilationOrder) const override;
    // "burn" folder "-drive" number; "burn" "-noverify" folder "-drive"
    // number without `verify` (drutil reads the disc back by default).
    ToolCommand burnFolderCommand(const Object_Optical_Drive &drive, const QString &folder,
                                  bool verify = false) const override;
    bool checksItsWriting() const override { return true; }

private:
    QString m_drutil;
};
