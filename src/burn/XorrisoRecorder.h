#pragma once
#include "burn/Recorder.h"

// Linux: cdrskin writes the audio CD, one track per WAV file in the order
// given; xorriso writes a folder as an ISO 9660 / Rock Ridge / Joliet session
// whose root holds the folder's files and whose volume is named after the
// folder.
// On a blank medium that is the first session; on an appendable one a new
// session is added and the files of the earlier ones stay visible beside the
// new ones (writing to the output drive alone would be refused there).
// The drive is its device path (/dev/sr0, or stdio:/file for a pseudo-drive,
// which cdrskin only accepts with --allow_emulated_drives). Without a device
// path the commands are null (nothing to start).
class XorrisoRecorder : public Recorder {
public:
    XorrisoRecorder(const QString &xorriso, const QString &cdrskin) : m_xorriso(xorriso), m_cdrskin(cdrskin) {}

    // cdrskin -v dev=DEVICE -audio track1.wav track2.wav ...
    ToolCommand burnAudioCommand(const Object_Optical_Drive &drive, const QString &folder,
                                 const QStringList &wavsInCompilationOrder) const override;
    // xorriso [-md5 on] -dev DEVICE -joliet on -volid NAME -map FOLDER / -commit
    // ("-md5 on" with `verify`: the files' checksums go onto the disc).
    ToolCommand burnFolderCommand(const Object_Optical_Drive &drive, const QString &folder,
                                  bool verify = false) const override;
    // xorriso's checksum check of the whole disc (DiscVerify::md5CheckCommand).
    ToolCommand verifyFolderCommand(const Object_Optical_Drive &drive) const override;

    // The folder's name, cut to the 32 characters a volume id may hold.
    static QString volumeName(const QString &folder);

private:
    QString m_xorriso;
    QString m_cdrskin;
};
