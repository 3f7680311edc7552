#include "toolrun/ToolProcess.h"

#include <QProcessEnvironment>

namespace ToolProcess {

QString childLocale()
{
#ifdef Q_OS_MACOS
    return QStringLiteral("en_US.UTF-8");
#else
    return QStringLiteral("C.UTF-8");
#endif
}

static QProcessEnvironment childEnvironment()
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("LC_ALL"), childLocale());
    env.insert(QStringLiteral("LANG"), childLocale());
    return env;
}

void prepare(QProcess &process, const ToolCommand &command, QProcess::ProcessChannelMode mode)
{
    process.setProgram(command.program);
    process.setArguments(command.arguments);
    process.setProcessEnvironment(childEnvironment());
    process.setStandardInputFile(QProcess::nullDevice());
    process.setProcessChannelMode(mode);
}

QProcess *start(const ToolCommand &command, QObject *parent, QProcess::ProcessChannelMode mode)
{
    auto *p = new QProcess(parent);
    prepare(*p, command, mode);
    p->start();
    return p;
}

bool startDetached(const ToolCommand &command)
{
    QProcess p;
    // Both outputs go to the null device each on its own: merged channels
    // with a redirected error channel make Qt warn on every start.
    prepare(p, command, QProcess::SeparateChannels);
    p.setStandardOutputFile(QProcess::nullDevice());
    p.setStandardErrorFile(QProcess::nullDevice());
    return p.startDetached();
}

} // namespace ToolProcess
