#include "app/SingleInstance.h"

#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>

SingleInstance::SingleInstance(const QString &folder, const QString &name, QObject *parent)
    : QObject(parent), m_name(name)
{
    QDir().mkpath(folder);
    m_lock = std::make_unique<QLockFile>(folder + QStringLiteral("/tamblo.lock"));
    m_lock->setStaleLockTime(0);  // only a dead owner makes a lock stale
}

SingleInstance::~SingleInstance() = default;

QString SingleInstance::nameForThisUser()
{
    QString user = qEnvironmentVariable("USER");
    if (user.isEmpty())
        user = qEnvironmentVariable("USERNAME");
    if (user.isEmpty())
        user = QDir::home().dirName();
    return QStringLiteral("Tamblo-%1").arg(user);
}

bool SingleInstance::claim()
{
    if (m_lock->tryLock(0)) {
        QLocalServer::removeServer(m_name);
        m_server = new QLocalServer(this);
        m_server->setSocketOptions(QLocalServer::UserAccessOption);
        connect(m_server, &QLocalServer::newConnection, this, [this] {
            while (QLocalSocket *s = m_server->nextPendingConnection()) {
                connect(s, &QLocalSocket::disconnected, s, &QObject::deleteLater);
                emit activationRequested();
            }
        });
        m_server->listen(m_name);
        return true;
    }
    QLocalSocket socket;
    socket.connectToServer(m_name);
    if (socket.waitForConnected(1000)) {
        socket.write("show\n");
        socket.waitForBytesWritten(1000);
        socket.disconnectFromServer();
    }
    return false;
}
