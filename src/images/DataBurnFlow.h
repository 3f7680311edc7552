#pragma once
#include <QList>
#include <QPointer>
#include "platform/StepTimer.h"

#include "compilation/NodeDataFolder.h"
#include "drives/MediaQuestions.h"
#include "images/DataBurnPlan.h"
#include "images/ImageMessages.h"
#include "images/SheetFlow.h"

class StagingCopy;

// Burns the data compilation's folders onto a CD, DVD or Blu-ray.
//
// Checks first, each failure one "Close" alert and the end: a non-empty list
// (before the drive is asked anything), a disc, writable or else rewritable,
// of the right kind (in debug mode the wrong kind is followed by an alert
// naming what was found). Then the data working folder is emptied, and:
//   macOS  the staging sheet shows; a step later the folders are copied into
//          the working folder (Photos, Photos 1/Photos, ...; see StagingCopy);
//          then drutil burns the working folder: the staging sheet closes and
//          the working sheet shows.
//   Linux  nothing is copied: a step later xorriso writes each listed folder
//          in place under the name the staging would have given it, and the
//          working sheet shows.
// Before the working folder is touched, the room: the folders are walked on
// a worker and their estimated size on the disc (DiscRoom::fileSystem) is
// held against the medium's free space; a disc too small is refused with
// "Not enough room on the disc".
// When the recorder ends (dataBurnTerminated) the working sheet closes, the
// working folder is emptied and the completion sheet shows (the failure
// sheet when the recorder failed). Listed folders that are gone by then are
// left out with a warning in the log.
// Verifying after writing: on Linux xorriso records the files' checksums and
// reads the listed folders back against them ("Verifying the disc…" on the
// working sheet); drutil reads its writing back itself. The last sheet then
// says "The disc was written and verified.", or what did not match.
class DataBurnFlow : public SheetFlow {
    Q_OBJECT
public:
    explicit DataBurnFlow(const ImageFlowContext &context, QObject *parent = nullptr);
    ~DataBurnFlow() override;

    void burn(ImageMessages::DataDisc kind, const QList<NodeDataFolder> &folders);

    // The plan of the burn under way (or the last one).
    const DataBurnPlan &plan() const { return m_plan; }

protected:
    bool cancelSteps() override;

private:
    void prepare();
    void startStaging();
    bool refuseIfFoldersGone();
    void record();
    void dataBurnTerminated(const ToolVerdict &verdict);
    void verifyThen();
    bool onMac() const { return m_context.tools.backend == ToolPaths::Backend::MacOS; }
    DataBurnPlan makePlan() const;

    ImageMessages::DataDisc m_kind = ImageMessages::DataDisc::CD;
    QList<NodeDataFolder> m_folders;
    DataBurnPlan m_plan;
    StepTimer m_stagingStep{this};
    StepTimer m_recordStep{this};
    QPointer<StagingCopy> m_staging;
    QString m_device;  // the drive written to (Linux)
    bool m_stagingDone = false;
};
