#pragma once
#include <QList>
#include <QMutex>
#include <QRegularExpression>
#include <QStringList>
#include <cstdio>

#include "toolrun/ToolRun.h"

// Catches every log line (any thread) while it lives, and the end of every
// tool run: its output as lines, then "<program> ended with exit code N"
// (a warning unless N is 0), or a warning "could not start <program>".
class LogCatcher {
public:
    LogCatcher()
    {
        s_self = this;
        m_previous = qInstallMessageHandler(&LogCatcher::handler);
        ToolRun::setObserver([this](const ToolVerdict &v) { told(v); });
    }
    ~LogCatcher()
    {
        ToolRun::setObserver({});
        qInstallMessageHandler(m_previous);
        s_self = nullptr;
    }
    QList<ToolVerdict> verdicts() const
    {
        QMutexLocker lock(&m_mutex);
        return m_verdicts;
    }
    QStringList lines() const
    {
        QMutexLocker lock(&m_mutex);
        return m_lines;
    }
    QStringList warnings() const
    {
        QMutexLocker lock(&m_mutex);
        return m_warnings;
    }
    bool contains(const QString &part) const
    {
        for (const QString &l : lines())
            if (l.contains(part))
                return true;
        return false;
    }
    bool warned(const QString &part) const
    {
        for (const QString &l : warnings())
            if (l.contains(part))
                return true;
        return false;
    }

private:
    void told(const ToolVerdict &v)
    {
        QMutexLocker lock(&m_mutex);
        m_verdicts << v;
        for (const QString &l : v.output.split(QRegularExpression(QStringLiteral("[\r\n]+")), Qt::SkipEmptyParts))
            m_lines << l;
        if (v.outcome == ToolVerdict::Outcome::FailedToStart) {
            m_warnings << QStringLiteral("could not start %1").arg(v.command.program);
        } else if (v.outcome == ToolVerdict::Outcome::Crashed) {
            m_warnings << QStringLiteral("%1 ended abnormally").arg(v.command.program);
        } else {
            const QString end = QStringLiteral("%1 ended with exit code %2").arg(v.command.program).arg(v.exitCode);
            m_lines << end;
            if (v.exitCode != 0)
                m_warnings << end;
        }
    }

    static void handler(QtMsgType type, const QMessageLogContext &, const QString &msg)
    {
        if (LogCatcher *self = s_self) {
            QMutexLocker lock(&self->m_mutex);
            self->m_lines << msg;
            if (type == QtWarningMsg || type == QtCriticalMsg)
                self->m_warnings << msg;
        }
        fprintf(stderr, "%s\n", qPrintable(msg));
    }
    static inline LogCatcher *s_self = nullptr;
    mutable QMutex m_mutex;
    QStringList m_lines;
    QStringList m_warnings;
    QList<ToolVerdict> m_verdicts;
    QtMessageHandler m_previous = nullptr;
};
