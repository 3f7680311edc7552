#pragma once
#include <QPointer>
#include <memory>

#include "drives/MediaQuestions.h"
#include "images/ImageTool.h"
#include "images/SheetFlow.h"

// The ISO tab's burn action: an image file ("iso", "img", "dmg"; passed on
// as it is), then the medium checks (a disc, writable or rewritable; the
// medium's kind is not compared with the image), then the single-bar sheet
// from 0 of 100, fed by the recorder's progress, until the recorder ends;
// then the completion sheet. The exit status is logged, not judged.
class ImageBurnFlow : public SheetFlow {
    Q_OBJECT
public:
    explicit ImageBurnFlow(const ImageFlowContext &context, QObject *parent = nullptr);

    void OnActionISOBurn();
    QString imagePath() const { return m_image; }

private:
    void checked(const MediumCheck &check);
    void taskTerminated(const ToolVerdict &verdict);

    std::unique_ptr<ImageTool> m_tool;
    QString m_image;
};
