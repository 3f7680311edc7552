#pragma once
#include "images/ImageTool.h"

// Linux: xorriso.
//   image  xorriso -as mkisofs -J -R -V <source folder name> -o DEST SRC
//   burn   xorriso -as cdrecord -v -nopad dev=DEVICE IMAGE
// The recording reports "N of M MB written" about once a second. Without
// padding the disc holds the image's bytes and nothing more, except that
// DVD and BD recording (and a file as pseudo-drive) round the track up to
// the drive's 32 KiB write unit with zeros.
class XorrisoImageTool : public ImageTool {
public:
    explicit XorrisoImageTool(const QString &xorriso) : m_xorriso(xorriso) {}

    ToolCommand makeImageCommand(const QString &destIso, const QString &sourceFolder) const override;
    ToolCommand burnImageCommand(const Object_Optical_Drive &drive, const QString &image,
                                 bool verify = false) const override;
    ImageProgress::Kind progressKind() const override { return ImageProgress::Kind::XorrisoRecordPercent; }

    // A volume name xorriso takes: at most 32 bytes of UTF-8, cut on a
    // character boundary; "ISOIMAGE" (xorriso's own default) when nothing
    // is left.
    static QString volumeIdFor(const QString &name);

    // The last component of a folder path ("/a/Photos/" gives "Photos").
    static QString folderName(const QString &folder);

private:
    QString m_xorriso;
};
