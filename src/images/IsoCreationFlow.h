#pragma once
#include <QPointer>
#include "platform/StepTimer.h"
#include <memory>

#include "images/ImageTool.h"
#include "images/SheetFlow.h"

// The ISO tab's create action: a source folder, then (a step later) a
// destination folder, whose "image.iso" is replaced without a question;
// a step later the image tool runs, and a step after the launch the working
// sheet appears. When the tool ends the sheets close and the completion
// sheet shows; the tool's exit status is logged, not judged. Cancelling
// either panel ends it quietly with nothing written.
class IsoCreationFlow : public SheetFlow {
    Q_OBJECT
public:
    explicit IsoCreationFlow(const ImageFlowContext &context, QObject *parent = nullptr);

    void start();

    QString sourcePath() const { return m_sourcePath; }
    QString destinationFolder() const { return m_destPath; }
    QString imagePath() const { return m_destPathISO; }

protected:
    // An image, not a disc, is written: stopped without a question.
    bool runWritesDisc() const override { return false; }

private:
    void chooseDestination();
    void runTool();
    void showWorking();
    void taskTerminated(const ToolVerdict &verdict);
    ToolVerdict m_verdict;
    bool m_oldImageStayed = false;

    std::unique_ptr<ImageTool> m_tool;
    QString m_sourcePath;
    QString m_destPath;
    QString m_destPathISO;
    StepTimer m_step{this};
    bool m_sheetShown = false;
    bool m_toolEnded = false;
};
