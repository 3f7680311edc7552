#pragma once
#include "images/ImageTool.h"

// macOS: /usr/bin/hdiutil.
//   image  hdiutil makehybrid -o DEST SRC -iso -joliet
//   burn   hdiutil burn IMAGE -verbose      (hdiutil picks the drive itself)
class HdiutilImageTool : public ImageTool {
public:
    explicit HdiutilImageTool(const QString &hdiutil) : m_hdiutil(hdiutil) {}

    ToolCommand makeImageCommand(const QString &destIso, const QString &sourceFolder) const override;
    ToolCommand burnImageCommand(const Object_Optical_Drive &drive, const QString &image) const override;
    ImageProgress::Kind progressKind() const override { return ImageProgress::Kind::DiscRecordingPercent; }

private:
    QString m_hdiutil;
};
