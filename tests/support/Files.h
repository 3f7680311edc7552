#pragma once
// Files for the tests: where the recorded outputs (fixtures) and the
// stand-in tools (fakes) live, reading and writing whole files, made-up
// bytes, and what a folder holds.
#include <QByteArray>
#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QtTest>
#include <unistd.h>

// A recorded tool output under tests/fixtures.
inline QString fixture(const QString &name)
{
    return QStringLiteral(TAMBLO_FIXTURES_DIR "/") + name;
}

// A stand-in tool script under tests/fakes.
inline QString fake(const QString &name)
{
    return QStringLiteral(TAMBLO_FAKES_DIR "/") + name;
}

// The whole of a fixture; a missing one stops the test program.
inline QByteArray fixtureBytes(const QString &name)
{
    QFile f(fixture(name));
    if (!f.open(QIODevice::ReadOnly))
        qFatal("missing fixture %s", qPrintable(name));
    return f.readAll();
}

inline QString fixtureText(const QString &name)
{
    return QString::fromUtf8(fixtureBytes(name));
}

// The whole of a file; empty when it cannot be read.
inline QByteArray readBytes(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

inline QString readText(const QString &path)
{
    return QString::fromUtf8(readBytes(path));
}

// The lines of a file, without the empty ones at its end.
inline QStringList readLines(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    QStringList out = QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'));
    while (!out.isEmpty() && out.last().isEmpty())
        out.removeLast();
    return out;
}

// Writes `bytes` to `path`, making its folders first. A file that cannot be
// written fails the running test (and says false).
inline bool writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly)) {
        QTest::qFail(qPrintable(QStringLiteral("cannot write %1").arg(path)), __FILE__, __LINE__);
        return false;
    }
    if (f.write(bytes) != qint64(bytes.size())) {
        QTest::qFail(qPrintable(QStringLiteral("short write to %1").arg(path)), __FILE__, __LINE__);
        return false;
    }
    return true;
}

// A shell script the tests may run.
inline bool writeScript(const QString &path, const QByteArray &text)
{
    if (!writeFile(path, text))
        return false;
    return QFile::setPermissions(path, QFile::permissions(path) | QFileDevice::ExeOwner);
}

// `size` bytes that do not compress, the same for the same `salt`.
inline QByteArray pseudoRandom(int size, quint32 salt)
{
    QByteArray b(size, Qt::Uninitialized);
    quint32 x = salt * 2654435761u + 1;
    for (int i = 0; i < size; ++i) {
        x ^= x << 13;
        x ^= x >> 17;
        x ^= x << 5;
        b[i] = char(x & 0xff);
    }
    return b;
}

// The names in a folder, hidden ones too, not below it.
inline QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

// Every entry below `root`, as a path relative to it, sorted.
inline QStringList everything(const QString &root)
{
    QStringList out;
    QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext())
        out << QDir(root).relativeFilePath(it.next());
    out.sort();
    return out;
}

// Every entry below `root`: relative path -> "dir", "link:<target>" or
// "file:<sha1>".
inline QMap<QString, QString> tree(const QString &root)
{
    QMap<QString, QString> out;
    QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    const QDir base(root);
    while (it.hasNext()) {
        const QString path = it.next();
        const QFileInfo fi(path);
        const QString rel = base.relativeFilePath(path);
        if (fi.isSymLink()) {
            QByteArray target(4096, '\0');
            const auto len = ::readlink(QFile::encodeName(path).constData(), target.data(), size_t(target.size()));
            out.insert(rel, QStringLiteral("link:") + QFile::decodeName(target.left(len < 0 ? 0 : int(len))));
        } else if (fi.isDir()) {
            out.insert(rel, QStringLiteral("dir"));
        } else {
            QFile f(path);
            QByteArray hash = "unreadable";
            if (f.open(QIODevice::ReadOnly)) {
                QCryptographicHash h(QCryptographicHash::Sha1);
                h.addData(&f);
                hash = h.result().toHex();
            }
            out.insert(rel, QStringLiteral("file:") + QString::fromLatin1(hash));
        }
    }
    return out;
}

// The same tree with every path put under `prefix`.
inline QMap<QString, QString> under(const QString &prefix, const QMap<QString, QString> &t)
{
    QMap<QString, QString> out;
    out.insert(prefix, QStringLiteral("dir"));
    for (auto it = t.begin(); it != t.end(); ++it)
        out.insert(prefix + QLatin1Char('/') + it.key(), it.value());
    return out;
}

// Opens up every folder and file below `root` to its owner again (discs read
// back carry read-only folders), so that a temporary folder can go.
inline void makeWritable(const QString &root)
{
    if (root.isEmpty() || !QFileInfo::exists(root))
        return;
    QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    QFile::setPermissions(root, QFile::permissions(root) | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    while (it.hasNext()) {
        const QString p = it.next();
        const QFileInfo fi(p);
        if (fi.isSymLink())
            continue;
        QFileDevice::Permissions perms = QFile::permissions(p) | QFileDevice::WriteOwner | QFileDevice::ReadOwner;
        if (fi.isDir())
            perms |= QFileDevice::ExeOwner;
        QFile::setPermissions(p, perms);
    }
}
