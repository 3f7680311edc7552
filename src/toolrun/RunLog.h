#pragma once
#include <QMutex>
#include <QString>

#include "toolrun/ToolVerdict.h"

// The log of every operation: one file per operation in a folder of its own
// (the platform's application-data folder in the shipped program), holding
// each tool's command line, its output, its end and its times. The newest
// KeepOperations files are kept. Runs that end outside any operation (the
// drive listing at start-up) go into a file of their own too.
// Safe to call from any thread (probes end on workers).
class RunLog {
public:
    static constexpr int KeepOperations = 20;

    explicit RunLog(const QString &folder);

    QString folder() const { return m_folder; }
    // Starts a new file for the operation named `title` ("Burn Data CD").
    void beginOperation(const QString &title);
    void record(const ToolVerdict &verdict);
    // A line of the operation's own ("Cancelled by the user.").
    void note(const QString &line);
    QString currentFile() const;

private:
    void append(const QString &text);
    void prune();

    QString m_folder;
    QString m_file;
    mutable QMutex m_lock;
    int m_sequence = 0;
};
