// File and folder names turned into values: Measurements::lastPathComponent,
// pathExtension, deletingLastPathComponent; TranscodeArguments::nameWithoutExtension;
// XorrisoImageTool::folderName and volumeIdFor.
#include "FuzzSupport.h"
#include "burn/TranscodeArguments.h"
#include "compilation/Measurements.h"
#include "images/XorrisoImageTool.h"

using namespace Measurements;

static void checkPath(const QString &path)
{
    const QChar slash = QLatin1Char('/');
    const QString name = lastPathComponent(path);
    FUZZ_CHECK(name == QLatin1String("/") || !name.contains(slash));

    // The extension: after the name's last dot, never the whole name.
    const QString ext = pathExtension(path);
    if (!ext.isEmpty()) {
        FUZZ_CHECK(!ext.contains(slash) && !ext.contains(QLatin1Char('.')));
        FUZZ_CHECK(name.endsWith(QLatin1Char('.') + ext) && name.size() > ext.size() + 1);
    }

    // The folder: a start of the path, "/" for the root, no slash at its end.
    const QString folder = deletingLastPathComponent(path);
    if (!folder.isEmpty()) {
        FUZZ_CHECK(path.startsWith(folder));
        FUZZ_CHECK(folder == QLatin1String("/") || !folder.endsWith(slash));
    }

    // The transcoder's output name: never empty for a named file, no folder in it.
    const QString stem = TranscodeArguments::nameWithoutExtension(path);
    FUZZ_CHECK(!stem.contains(slash));
    if (!name.isEmpty() && name != QLatin1String("/"))
        FUZZ_CHECK(!stem.isEmpty() && name.startsWith(stem));

    FUZZ_CHECK(!XorrisoImageTool::folderName(path).contains(slash));

    // A volume name xorriso takes: 32 bytes of UTF-8 at most, as much of the
    // name as fits, cut between characters.
    const QString volume = XorrisoImageTool::volumeIdFor(path);
    const QByteArray volumeBytes = volume.toUtf8();
    FUZZ_CHECK(volumeBytes.size() <= 32);
    if (path.startsWith(volume)) {
        if (volume.size() < path.size()) {
            const qsizetype next = path.at(volume.size()).isHighSurrogate() ? 2 : 1;
            FUZZ_CHECK(volumeBytes.size() + path.mid(volume.size(), next).toUtf8().size() > 32);
        }
    } else {
        FUZZ_CHECK(volume == QLatin1String("ISOIMAGE"));
    }
    FUZZ_CHECK(volume == QString::fromUtf8(volumeBytes));
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // A name as the file system hands it over, decoded from UTF-8; each line
    // of the input is one more.
    const QString text = Fuzz::text(data, size);
    checkPath(text);
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < qMin<qsizetype>(lines.size(), 64); ++i)
        checkPath(lines.at(i));
    return 0;
}
