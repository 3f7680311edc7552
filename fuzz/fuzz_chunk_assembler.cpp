// ChunkAssembler: a tool's output cut by reads anywhere, any number of times.
#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider provider(data, size);
    // The stream: the input, or now and then the input repeated past the
    // length of line the assembler keeps back.
    const bool long_ = provider.ConsumeIntegralInRange<int>(0, 15) == 0;
    const int repeats = long_ ? int(ChunkAssembler::MaxTail / qMax<size_t>(size, 1)) + 2
                              : provider.ConsumeIntegralInRange<int>(1, 3);
    const int reads = provider.ConsumeIntegralInRange<int>(1, 64);
    const QByteArray unit = Fuzz::bytes(data, size);
    QByteArray stream;
    for (int i = 0; i < repeats; ++i)
        stream += unit;

    // The read ends: fuzzer-chosen, in order.
    std::vector<qsizetype> ends;
    for (int i = 0; i < reads; ++i)
        ends.push_back(qsizetype(provider.ConsumeIntegralInRange<size_t>(0, size_t(stream.size()))));
    std::sort(ends.begin(), ends.end());
    ends.push_back(stream.size());

    ChunkAssembler assembler;
    QString all;
    qsizetype from = 0;
    qsizetype held = 0;  // bytes since the last line end, as the assembler holds them
    bool released = false;
    for (qsizetype end : ends) {
        const QByteArray piece = stream.mid(from, end - from);
        from = end;
        const QString chunk = assembler.take(piece);
        const qsizetype lastEnd = std::max(piece.lastIndexOf('\n'), piece.lastIndexOf('\r'));
        const qsizetype before = held;
        held = lastEnd < 0 ? held + piece.size() : piece.size() - lastEnd - 1;
        if (!piece.isEmpty() && lastEnd < 0 && held > ChunkAssembler::MaxTail) {
            // A line longer than the limit is let go as it is.
            FUZZ_CHECK(chunk.size() >= qsizetype(before + piece.size()) / 3);
            FUZZ_CHECK(!assembler.hasTail());
            held = 0;
            released = true;
        } else {
            // Only whole reports are handed on; the rest waits.
            FUZZ_CHECK(chunk.isEmpty() || Fuzz::isLineEnd(chunk.back()));
            FUZZ_CHECK(chunk.isEmpty() == (lastEnd < 0 || piece.isEmpty()));
            FUZZ_CHECK(assembler.hasTail() == (held > 0));
        }
        all += chunk;
    }
    all += assembler.flush();
    FUZZ_CHECK(!assembler.hasTail());
    // Nothing lost, nothing added, whatever the reads were, unless an overlong
    // line was let go inside a character.
    if (!released)
        FUZZ_CHECK(all == QString::fromUtf8(stream));
    return 0;
}
