#pragma once
// A file system of a chosen size for one test: a tmpfs mounted on a folder of
// its own (the tests run as root), unmounted when it goes. xorriso reports
// the room of a stdio: pseudo-drive from the file system that holds its
// file: for a file not there yet, the file system's free space in 2048-byte
// sectors less 32 ("Media space" of -tell_media_space). A pseudo-drive here
// thus has exactly the room the test chooses, whatever else the machine
// writes meanwhile.
#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

class SmallDisk {
public:
    // What xorriso keeps back of a stdio file system's free space.
    static constexpr qint64 ReservedSectors = 32;

    // A file system whose blank pseudo-drive has `freeSectors` of room (an
    // even number: a tmpfs holds whole 4 KiB pages).
    static SmallDisk withRoomFor(qint64 freeSectors) { return SmallDisk((freeSectors + ReservedSectors) * 2048); }

    explicit SmallDisk(qint64 bytes) : m_bytes(bytes)
    {
        if (!m_dir.isValid()) {
            m_error = QStringLiteral("no temporary folder");
            return;
        }
        QProcess p;
        p.setProcessChannelMode(QProcess::MergedChannels);
        p.start(QStandardPaths::findExecutable(QStringLiteral("mount")),
                {QStringLiteral("-t"), QStringLiteral("tmpfs"), QStringLiteral("-o"),
                 QStringLiteral("size=%1").arg(bytes), QStringLiteral("tamblo-small-disk"), m_dir.path()});
        p.waitForFinished(30000);
        m_mounted = p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
        if (!m_mounted)
            m_error = QStringLiteral("mounting a %1-byte tmpfs needs root: %2")
                          .arg(bytes)
                          .arg(QString::fromLocal8Bit(p.readAll()));
    }
    SmallDisk(SmallDisk &&other) noexcept = delete;
    SmallDisk(const SmallDisk &) = delete;
    ~SmallDisk()
    {
        if (!m_mounted)
            return;
        QProcess p;
        p.start(QStandardPaths::findExecutable(QStringLiteral("umount")), {QStringLiteral("-l"), m_dir.path()});
        p.waitForFinished(30000);
    }

    bool isMounted() const { return m_mounted; }
    QString error() const { return m_error; }
    QString path() const { return m_dir.path(); }
    // The pseudo-drive: a file on this file system.
    QString file(const QString &name = QStringLiteral("disc.iso")) const { return m_dir.filePath(name); }
    QString device(const QString &name = QStringLiteral("disc.iso")) const
    {
        return QStringLiteral("stdio:") + file(name);
    }

private:
    QTemporaryDir m_dir;
    qint64 m_bytes = 0;
    bool m_mounted = false;
    QString m_error;
};
