#include "toolrun/ChunkAssembler.h"

#include <QStringDecoder>

// The chunks are one text cut in pieces: a byte-order mark is dropped at the
// very start of the output only, as QString::fromUtf8 drops it at the start
// of a whole text; one at the start of a later chunk stays (U+FEFF).
QString ChunkAssembler::decode(const QByteArray &bytes)
{
    if (bytes.isEmpty())
        return QString();
    if (!m_started) {
        m_started = true;
        return QString::fromUtf8(bytes);
    }
    QStringDecoder later(QStringConverter::Utf8,
                         QStringConverter::Flag::Stateless | QStringConverter::Flag::ConvertInitialBom);
    return later.decode(bytes);
}

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
            return decode(data);
        }
        m_tail = data;
        return QString();
    }
    m_tail = data.mid(lastEnd + 1);
    data.truncate(lastEnd + 1);
    return decode(data);
}

QString ChunkAssembler::flush()
{
    const QString rest = decode(m_tail);
    m_tail.clear();
    return rest;
}
