#pragma once
// The context of the disc and image flows (data burn, image burn, ISO
// creation, duplication) in a temporary folder of their own: recorded alerts
// and panels, a fake drive whose current medium the test sets, and the
// medium questions asked of it. The pseudo-drive is the file `disc`; the
// working folder `data` is made unless the test says not to.
#include <QDir>
#include <QTemporaryDir>
#include <memory>

#include "drives/MediaQuestions.h"
#include "images/ImageFlowContext.h"
#include "support/DiscImages.h"
#include "support/FakeAlerts.h"
#include "support/FakeDriveBackend.h"
#include "support/FakeFilePicker.h"
#include "support/Files.h"
#include "support/ListRecords.h"

struct FlowRig {
    QTemporaryDir tmp;
    FakeDriveBackend drive;
    FakeAlerts alerts;
    FakeFilePicker picker;
    bool debug = false;   // what the debug-mode setting answers
    bool verify = false;  // what the verify-after-writing setting answers
    QString disc = tmp.filePath(QStringLiteral("disc.iso"));
    Object_Optical_Drive current;  // what the current drive is, asked anew each time
    std::unique_ptr<MediaQuestions> media;
    QString data = tmp.path() + QStringLiteral("/Documents/TambloData");
    ImageFlowContext ctx;

    enum class WorkingFolder { Made, NotMade };

    explicit FlowRig(ToolPaths::Backend backend = ToolPaths::Backend::Linux,
                     WorkingFolder working = WorkingFolder::Made)
    {
        if (working == WorkingFolder::Made)
            QDir().mkpath(data);
        current.s_Drive_Number = QStringLiteral("1");
        current.s_Device_Path = QStringLiteral("stdio:") + disc;
        media = std::make_unique<MediaQuestions>(drive, alerts, [this] { return debug; }, [this] { return current; });
        ctx.tools.backend = backend;
        ctx.tools.xorriso = xorrisoPath();
        ctx.tools.drutil = fake(QStringLiteral("drutil"));
        ctx.tools.hdiutil = fake(QStringLiteral("hdiutil"));
        ctx.dataFolder = data;
        ctx.homeFolder = tmp.path();
        ctx.alerts = &alerts;
        ctx.picker = &picker;
        ctx.media = media.get();
        ctx.currentDrive = [this] { return current; };
        ctx.debugMode = [this] { return debug; };
        ctx.verifyAfterWriting = [this] { return verify; };
        // The Tools menu's eject: noted by the drive, whose onEject may put
        // the next disc in.
        ctx.ejectDisc = [this] { drive.ejectTray(current); };
    }
};
