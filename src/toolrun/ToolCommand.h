#pragma once
#include <QString>
#include <QStringList>

// One command line: a program and its arguments, never through a shell.
struct ToolCommand {
    QString program;
    QStringList arguments;

    bool isNull() const { return program.isEmpty(); }
    bool operator==(const ToolCommand &o) const { return program == o.program && arguments == o.arguments; }
};
