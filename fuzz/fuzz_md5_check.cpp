// Reading a disc back against its checksums: DiscVerify::readMd5Check and
// mismatchedFiles on any output of xorriso -check_md5_r, with any exit code.
#include "FuzzSupport.h"
#include "drives/DiscVerify.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider provider(data, size);
    const int exitCode = provider.ConsumeIntegralInRange<int>(-1, 255);
    const std::string rest = provider.ConsumeRemainingBytesAsString();
    ToolVerdict v;
    v.command.program = QStringLiteral("/usr/bin/xorriso");
    v.exitCode = exitCode;
    v.output = QString::fromUtf8(QByteArray(rest.data(), qsizetype(rest.size())));
    ToolVerdicts::judge(v);

    const VerifyResult r = DiscVerify::readMd5Check(v);
    const QStringList files = DiscVerify::mismatchedFiles(v.output);
    // Verified only on the tool's own word, from a run that succeeded, and
    // never with a file named as different.
    if (r.verified()) {
        FUZZ_CHECK(v.ok());
        FUZZ_CHECK(v.output.contains(QLatin1String("File contents and their MD5 checksums match.")));
        FUZZ_CHECK(files.isEmpty());
        FUZZ_CHECK(r.what.isEmpty());
    } else {
        // Anything else says what, in words.
        FUZZ_CHECK(!r.what.isEmpty());
    }
    // A file named as different is a mismatch, and is named on the sheet
    // (the first ten of them).
    if (!files.isEmpty()) {
        FUZZ_CHECK(r.outcome == VerifyResult::Outcome::Mismatch);
        for (const QString &f : files.mid(0, 10))
            FUZZ_CHECK(r.what.contains(f));
    }
    for (const QString &f : files)
        FUZZ_CHECK(!f.contains(QLatin1Char('\n')));
    return 0;
}
