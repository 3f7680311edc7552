#include "toolrun/RunLog.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>

RunLog::RunLog(const QString &folder) : m_folder(folder) {}

void RunLog::beginOperation(const QString &title)
{
    QMutexLocker lock(&m_lock);
    QDir().mkpath(m_folder);
    static const QRegularExpression unsafe(QStringLiteral("[^A-Za-z0-9-]+"));
    QString name = title;
    name.replace(unsafe, QStringLiteral("-"));
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz"));
    m_file = QStringLiteral("%1/%2-%3-%4.log").arg(m_folder, stamp).arg(++m_sequence, 3, 10, QLatin1Char('0')).arg(name);
    QFile f(m_file);
    if (f.open(QIODevice::WriteOnly | QIODevice::Text))
        f.write(QStringLiteral("%1 — %2\n").arg(title, QDateTime::currentDateTime().toString(Qt::ISODateWithMs)).toUtf8());
    lock.unlock();
    prune();
}

QString RunLog::currentFile() const
{
    QMutexLocker lock(&m_lock);
    return m_file;
}

void RunLog::append(const QString &text)
{
    if (currentFile().isEmpty())
        beginOperation(QStringLiteral("Session"));
    QMutexLocker lock(&m_lock);
    QFile f(m_file);
    if (f.open(QIODevice::Append | QIODevice::Text))
        f.write(text.toUtf8());
}

void RunLog::record(const ToolVerdict &verdict)
{
    QString line = verdict.command.program;
    for (const QString &a : verdict.command.arguments)
        line += QLatin1Char(' ') + (a.contains(QLatin1Char(' ')) ? QLatin1Char('"') + a + QLatin1Char('"') : a);
    const QDateTime end = QDateTime::currentDateTime();
    QString text = QStringLiteral("\n$ %1\n").arg(line);
    text += QStringLiteral("started %1, ended %2 (%3 s)\n")
                .arg(end.addMSecs(-verdict.elapsedMs).toString(Qt::ISODateWithMs), end.toString(Qt::ISODateWithMs))
                .arg(double(verdict.elapsedMs) / 1000.0, 0, 'f', 2);
    QString output = verdict.output;
    output.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    text += output;
    if (!output.endsWith(QLatin1Char('\n')))
        text += QLatin1Char('\n');
    text += QStringLiteral("[%1]\n").arg(verdict.summary());
    if (!verdict.errorLines.isEmpty())
        text += QStringLiteral("[its words: %1]\n").arg(verdict.errorLines.join(QStringLiteral(" | ")));
    append(text);
}

void RunLog::note(const QString &line)
{
    append(QStringLiteral("\n# %1\n").arg(line));
}

void RunLog::prune()
{
    QDir dir(m_folder);
    const QStringList files = dir.entryList({QStringLiteral("*.log")}, QDir::Files, QDir::Name);
    for (int i = 0; i + KeepOperations < files.size(); ++i)
        dir.remove(files.at(i));
}
