#pragma once
// Shared pieces of the fuzz targets: the input as the tools' text arrives,
// property checks that abort (libFuzzer then keeps the input as a crash),
// and the assembler feedings of the split targets.
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QtGlobal>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fuzzer/FuzzedDataProvider.h>
#include <optional>
#include <vector>

#include "toolrun/ChunkAssembler.h"

// The readers log what they read (qInfo); a target that runs one says
// FUZZ_QUIET_QT_MESSAGES once, so that a run stays quiet.
#define FUZZ_QUIET_QT_MESSAGES                                                                                         \
    extern "C" int LLVMFuzzerInitialize(int *, char ***)                                                               \
    {                                                                                                                  \
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});                         \
        return 0;                                                                                                      \
    }

namespace Fuzz {

// A property that does not hold: say which, and abort.
[[noreturn]] inline void fail(const char *file, int line, const char *what)
{
    std::fprintf(stderr, "\nPROPERTY FAILED %s:%d: %s\n", file, line, what);
    std::fflush(stderr);
    std::abort();
}

#define FUZZ_CHECK(condition)                                                                                          \
    do {                                                                                                               \
        if (!(condition))                                                                                              \
            ::Fuzz::fail(__FILE__, __LINE__, #condition);                                                              \
    } while (0)

inline QByteArray bytes(const uint8_t *data, size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), qsizetype(size));
}

// Every tool's output is read as UTF-8, as the runners and queries do.
inline QString text(const uint8_t *data, size_t size)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
}

inline QString text(const std::string &s)
{
    return QString::fromUtf8(s.data(), qsizetype(s.size()));
}

// The text with every digit written `times` times: figures of hundreds of
// digits, which mutation alone hardly ever grows ("5 of 5 MB" read as
// 300-digit figures is infinity over infinity).
inline QString widenDigits(const QString &text, int times)
{
    QString out;
    for (const QChar c : text) {
        const int n = (c >= u'0' && c <= u'9') ? times : 1;
        for (int i = 0; i < n; ++i)
            out += c;
    }
    return out;
}

inline bool isLineEnd(QChar c)
{
    return c == u'\n' || c == u'\r';
}

// A percentage for a bar: a finite number from 0 to 100.
inline bool isPercent(double v)
{
    return std::isfinite(v) && v >= 0.0 && v <= 100.0;
}

// Two parse results are the same value (NaN equals NaN, the sign of zero counts).
template <typename T>
bool same(const std::optional<T> &a, const std::optional<T> &b)
{
    if (a.has_value() != b.has_value())
        return false;
    if (!a)
        return true;
    if (std::isnan(*a) || std::isnan(*b))
        return std::isnan(*a) && std::isnan(*b);
    return *a == *b && std::signbit(*a) == std::signbit(*b);
}

// The reports a chunk holds: cut after every line end, as the assembler may cut.
inline QStringList lines(const QString &chunk)
{
    QStringList out;
    qsizetype start = 0;
    for (qsizetype i = 0; i < chunk.size(); ++i) {
        if (isLineEnd(chunk.at(i))) {
            out << chunk.mid(start, i + 1 - start);
            start = i + 1;
        }
    }
    if (start < chunk.size())
        out << chunk.mid(start);
    return out;
}

// What the reader hands the parser: each piece through one assembler, then
// its flush. The pieces joined must be the input.
inline std::vector<QString> assembled(const std::vector<QByteArray> &pieces)
{
    ChunkAssembler assembler;
    std::vector<QString> chunks;
    for (const QByteArray &piece : pieces)
        chunks.push_back(assembler.take(piece));
    chunks.push_back(assembler.flush());
    FUZZ_CHECK(!assembler.hasTail());
    return chunks;
}

inline QString joined(const std::vector<QString> &chunks)
{
    QString all;
    for (const QString &c : chunks)
        all += c;
    return all;
}

// The value a bar shows at the end: the last chunk that gave one.
template <typename Parse>
auto lastValue(const std::vector<QString> &chunks, Parse parse) -> decltype(parse(QString()))
{
    decltype(parse(QString())) last;
    for (const QString &c : chunks) {
        if (const auto v = parse(c))
            last = v;
    }
    return last;
}

// The last report of a chunk wins: its value is that of its last line with one.
template <typename Parse>
auto lastLineValue(const QString &chunk, Parse parse) -> decltype(parse(QString()))
{
    decltype(parse(QString())) last;
    for (const QString &line : lines(chunk)) {
        if (const auto v = parse(line))
            last = v;
    }
    return last;
}

// The input cut once at a place the fuzzer chooses (taken from the input's
// last bytes through `provider`, so a recorded output is its own starting
// point), fed as two reads, and fed whole. Inputs too long for the assembler to hold a line
// back are left out.
struct SplitFeeding {
    QByteArray input;
    qsizetype cut = 0;
    std::vector<QString> whole;  // one read
    std::vector<QString> split;  // two reads
};

inline std::optional<SplitFeeding> splitFeeding(const uint8_t *data, size_t size, FuzzedDataProvider &provider)
{
    if (size > size_t(ChunkAssembler::MaxTail / 2))
        return std::nullopt;
    const size_t cut = provider.ConsumeIntegralInRange<size_t>(0, size);
    SplitFeeding f;
    f.input = bytes(data, size);
    f.cut = qsizetype(std::min(cut, size_t(f.input.size())));
    f.whole = assembled({f.input});
    f.split = assembled({f.input.left(f.cut), f.input.mid(f.cut)});
    // The assembler loses nothing and changes nothing, however it was fed.
    const QString decoded = QString::fromUtf8(f.input);
    FUZZ_CHECK(joined(f.whole) == decoded);
    FUZZ_CHECK(joined(f.split) == decoded);
    for (const auto *chunks : {&f.whole, &f.split}) {
        for (size_t i = 0; i + 1 < chunks->size(); ++i) {
            const QString &c = chunks->at(i);
            FUZZ_CHECK(c.isEmpty() || isLineEnd(c.back()));
        }
    }
    return f;
}

// Every chunk handed to the parser, in both feedings.
template <typename Fn>
void forEachChunk(const SplitFeeding &f, Fn fn)
{
    for (const auto *chunks : {&f.whole, &f.split}) {
        for (const QString &chunk : *chunks)
            fn(chunk);
    }
}

// For a reader whose last report wins: a chunk reads as its last line with a
// report, and the bar ends where it would with the input in one read.
template <typename Parse>
void checkLastReportWins(const SplitFeeding &f, Parse parse)
{
    forEachChunk(f, [&](const QString &chunk) { FUZZ_CHECK(same(parse(chunk), lastLineValue(chunk, parse))); });
    FUZZ_CHECK(same(lastValue(f.whole, parse), lastValue(f.split, parse)));
}

// Runs `check` on the input and, for a short one, on the input with every
// digit written several times (how many: from the input's last byte).
template <typename Check>
void withWidenedDigits(const uint8_t *data, size_t size, Check check)
{
    FuzzedDataProvider provider(data, size);
    const int times = provider.ConsumeIntegralInRange<int>(2, 200);
    const QByteArray raw = bytes(data, size);
    check(raw);
    if (raw.size() <= 2048)
        check(widenDigits(QString::fromUtf8(raw), times).toUtf8());
}

} // namespace Fuzz
