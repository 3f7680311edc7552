#pragma once
#include <QByteArray>
#include <QString>

// Cuts a tool's output into complete reports. A read may end anywhere, even
// inside a marker or inside a multi-byte character: everything after the
// last line end ('\r' or '\n') is kept back and put in front of the next
// read, so a parser always sees whole reports. Bytes that are not valid
// UTF-8 are decoded as replacement characters. The pieces handed on, joined,
// are the whole output decoded at once, however the reads were cut (short
// of a line longer than MaxTail, let go wherever the read ended).
class ChunkAssembler {
public:
    // The complete part of what has arrived so far (empty if no line ended yet).
    QString take(const QByteArray &bytes);

    // Whatever is still held back, at the end of the output.
    QString flush();

    bool hasTail() const { return !m_tail.isEmpty(); }

    // A tool that never ends a line is not held back forever.
    static constexpr qsizetype MaxTail = 64 * 1024;

private:
    QString decode(const QByteArray &bytes);

    QByteArray m_tail;
    bool m_started = false;  // some output was handed on
};
