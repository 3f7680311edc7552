#pragma once
#include <QPointer>
#include "platform/StepTimer.h"
#include <memory>

#include "drives/DiscVerify.h"
#include "drives/MediaQuestions.h"
#include "images/ImageTool.h"
#include "images/SheetFlow.h"

// Copies a disc onto blank discs in the same drive: the chosen volume is made
// into DATA/image.iso (working sheet), the source disc is ejected, the user
// says how many copies, and for each copy the user is asked for a blank disc
// ("Burn Copy n of m" / "Cancel"; asked again after "No disc" or "Media not
// writable"), which is burned from the image with the single-bar sheet and
// ejected. After the last copy the working folder is emptied and the
// completion sheet shows. Cancel at that question empties the working folder
// (the image goes) and ends without completion; cancel at the count question
// leaves the image until the next operation empties the folder.
// Each blank disc must also have room for the image ("Not enough room on the
// disc", then the question again).
// Verifying after writing: each copy is read back before it is ejected (on
// Linux compared with the image byte for byte, the single bar showing how
// far; hdiutil checks its own writing). A copy that does not read back as
// the image ends the duplication in the failure sheet ("Copy 1 of 2 was
// written, but verifying it found differences."); after the last good copy
// the completion sheet says "The disc was written and verified."
class DuplicationFlow : public SheetFlow {
    Q_OBJECT
public:
    explicit DuplicationFlow(const ImageFlowContext &context, QObject *parent = nullptr);

    void start();

    int numberOfCopies() const { return m_copies; }
    int copiesDone() const { return m_copiesDone; }
    QString volumePath() const { return m_volume; }

protected:
    // The disc is read into an image first: only the copies write a disc.
    bool runWritesDisc() const override { return m_writingCopy; }

private:
    bool m_writingCopy = false;
    void makeImage();
    void imageMade(const ToolVerdict &verdict);
    void askForBlank();
    void writeCopy();
    void copyWritten(const ToolVerdict &verdict);
    void verifyCopy();
    void copyDone();
    void copyFailed(const OperationFailure &failure);
    void eject();

    std::unique_ptr<ImageTool> m_tool;
    QString m_volume;
    int m_copies = 0;
    int m_copiesDone = 0;
    StepTimer m_nextCopy{this};
    QString m_device;  // the drive the copies are written to
};
