#pragma once
#include <QString>

#include "toolrun/ToolVerdict.h"

// What the medium in a drive is, as read from one status query.
struct MediaAnswers {
    bool driveEmpty = false;       // IsDriveEmpty
    bool oneTimeWritable = false;  // IsMediaOneTimeWritable ("writable": blank or appendable)
    bool reWritable = false;       // IsMediaReWritable
    QString family = QStringLiteral("Other");  // TypeOfMediaInTheDrive: "DVD", "CD", "BD" or "Other"
};

// The full text of one status query and what it says.
struct MediaStatus {
    QString text;      // everything the tool printed (stdout and stderr), unchanged
    MediaAnswers answers;
    // False when the tool did not answer at all: it hung past its time
    // limit, or could not be started. The answers then mean nothing.
    bool answered = true;
    ToolVerdict verdict;
};
