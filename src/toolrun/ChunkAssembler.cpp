#include "toolrun/ChunkAssembler.h"

QString ChunkAssembler::take(const QByteArray &bytes)
{
    if (bytes.isEmpty())
        return QString();
    QByteArray data = m_tail + bytes;
    qsizetype lastEnd = -1;
    for (qsizetype i = data.size() - 1; i >= 0; --i) {
        const char c = data.at(i);
        if (c == '\r' || c == '\n') {
            lastEnd = i;
            break;
        }
    }
    if (lastEnd < 0) {
        if (data.size() > MaxTail) {
            m_tail.clear();
            return QString::fromUtf8(data);
        }
        m_tail = data;
        return QString();
    }
    m_tail = data.mid(lastEnd + 1);
    data.truncate(lastEnd + 1);
    return QString::fromUtf8(data);
}

QString ChunkAssembler::flush()
{
    const QString rest = QString::fromUtf8(m_tail);
    m_tail.clear();
    return rest;
}
