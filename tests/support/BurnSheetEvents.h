#pragma once
// The sheets of a media burn as a list of what the user would have seen, in
// order: "begin" and "end" (the two-bar sheet), "performing" and
// "endPerforming" (the working sheet), "verifying", then the last sheet:
// "complete", "verified" or "failed" (with `failure`). The bars' values are
// left out.
#include <QStringList>

#include "burn/BurnSheets.h"
#include "toolrun/ToolMessages.h"

class BurnSheetEvents : public BurnSheets {
public:
    QStringList events;
    OperationFailure failure;

    void beginProgress() override { events << QStringLiteral("begin"); }
    void setOverallRange(double) override {}
    void setOverallValue(double) override {}
    void setFileRange(double) override {}
    void setFileValue(double) override {}
    void endProgress() override { events << QStringLiteral("end"); }
    void showPerformingOperation() override { events << QStringLiteral("performing"); }
    void endPerformingOperation() override { events << QStringLiteral("endPerforming"); }
    void showOperationComplete() override { events << QStringLiteral("complete"); }
    void showVerifying() override { events << QStringLiteral("verifying"); }
    void showOperationVerified() override { events << QStringLiteral("verified"); }
    void showOperationFailed(const OperationFailure &f) override
    {
        failure = f;
        events << QStringLiteral("failed");
    }
};
