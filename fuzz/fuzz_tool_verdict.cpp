// How a tool's end is read: ToolVerdicts::judge and errorLines, for each
// tool's rules, on any output.
#include "FuzzSupport.h"
#include "toolrun/ChunkAssembler.h"
#include "toolrun/ToolVerdict.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const char *const programs[] = {"/usr/bin/xorriso", "cdrskin", "/opt/ffmpeg", "/usr/bin/hdiutil",
                                           "/usr/bin/drutil", "eject"};
    FuzzedDataProvider provider(data, size);
    const char *program = programs[provider.ConsumeIntegralInRange<int>(0, 5)];
    const int exitCode = provider.ConsumeIntegralInRange<int>(-1, 255);
    const size_t cut = provider.ConsumeIntegral<uint16_t>();
    const std::string rest = provider.ConsumeRemainingBytesAsString();
    const QByteArray raw(rest.data(), qsizetype(rest.size()));

    ToolVerdict v;
    v.command.program = QString::fromLatin1(program);
    v.exitCode = exitCode;
    v.output = QString::fromUtf8(raw);
    ToolVerdicts::judge(v);

    // A non-zero exit code is always a failure; a failure always has words.
    if (exitCode != 0)
        FUZZ_CHECK(v.outcome == ToolVerdict::Outcome::Failed);
    FUZZ_CHECK(v.outcome == ToolVerdict::Outcome::Succeeded || v.outcome == ToolVerdict::Outcome::Failed);
    if (v.ok())
        FUZZ_CHECK(v.errorLines.isEmpty());
    FUZZ_CHECK(v.errorLines.size() <= 4);
    // Every quoted line is the tool's own: whole, trimmed, in its output.
    for (const QString &line : v.errorLines) {
        FUZZ_CHECK(!line.isEmpty());
        FUZZ_CHECK(line == line.trimmed());
        FUZZ_CHECK(v.output.contains(line));
    }

    // The output as a run reads it, in two pieces through the assembler,
    // reads the same.
    ChunkAssembler assembler;
    const qsizetype at = qsizetype(cut % (size_t(raw.size()) + 1));
    QString assembled = assembler.take(raw.left(at));
    assembled += assembler.take(raw.mid(at));
    assembled += assembler.flush();
    ToolVerdict again;
    again.command.program = v.command.program;
    again.exitCode = exitCode;
    again.output = assembled;
    ToolVerdicts::judge(again);
    if (assembled == v.output) {
        FUZZ_CHECK(again.outcome == v.outcome);
        FUZZ_CHECK(again.errorLines == v.errorLines);
    }
    return 0;
}
