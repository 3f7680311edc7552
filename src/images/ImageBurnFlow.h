#pragma once
#include <QPointer>
#include <memory>

#include "drives/DiscVerify.h"
#include "drives/MediaQuestions.h"
#include "images/ImageTool.h"
#include "images/SheetFlow.h"

// The ISO tab's burn action: an image file ("iso", "img", "dmg"; passed on
// as it is), then the medium checks (a disc, writable or rewritable; the
// medium's kind is not compared with the image), then the single-bar sheet
// from 0 of 100, fed by the recorder's progress, until the recorder ends;
// then the completion sheet (the failure sheet when the recorder failed).
// After the medium checks, the room: the image's size against the medium's
// free space ("Not enough room on the disc").
// Verifying after writing: on Linux the image is read back from the disc on
// a worker and compared byte for byte, the single bar showing how far
// ("Verifying the disc…"); hdiutil reads its writing back itself. The last
// sheet then says "The disc was written and verified.", or which bytes
// differ.
class ImageBurnFlow : public SheetFlow {
    Q_OBJECT
public:
    explicit ImageBurnFlow(const ImageFlowContext &context, QObject *parent = nullptr);

    void start();
    QString imagePath() const { return m_image; }

private:
    void record();
    void taskTerminated(const ToolVerdict &verdict);
    void verifyThen();

    std::unique_ptr<ImageTool> m_tool;
    QString m_image;
    QString m_device;  // the drive written to
};
