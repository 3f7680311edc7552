#pragma once
#include "images/ImageTool.h"

// macOS: /usr/bin/hdiutil.
//   image  hdiutil makehybrid -o DEST SRC -iso -joliet
//   burn   hdiutil burn IMAGE -verbose      (hdiutil picks the drive itself)
//          hdiutil reads the disc back and compares it after burning unless
//          told "-noverifyburn" (added when not verifying).
class HdiutilImageTool : public ImageTool {
public:
    explicit HdiutilImageTool(const QString &hdiutil) : m_hdiutil(hdiutil) {}

    ToolCommand makeImageCommand(const QString &destIso, const QString &sourceFolder) const override;
    ToolCommand burnImageCommand(const Object_Optical_Drive &drive, const QString &image,
                                 bool verify = false) const override;
    bool checksItsWriting() const override { return true; }
    ImageProgress::Kind progressKind() const override { return ImageProgress::Kind::DiscRecordingPercent; }

private:
    QString m_hdiutil;
};
