#pragma once
#include <QByteArray>
#include <QList>
#include <QString>

// Sets environment variables (the stand-in tools read theirs) for one
// scope; each is unset again when it ends.
class ScopedEnv {
public:
    ScopedEnv() = default;
    ScopedEnv(const ScopedEnv &) = delete;
    ScopedEnv &operator=(const ScopedEnv &) = delete;
    ~ScopedEnv()
    {
        for (const QByteArray &n : std::as_const(m_names))
            qunsetenv(n.constData());
    }

    void set(const char *name, const QString &value)
    {
        m_names << name;
        qputenv(name, value.toLocal8Bit());
    }

private:
    QList<QByteArray> m_names;
};
