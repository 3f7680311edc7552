// xorriso -devices: XorrisoParsing::parseDevices.
#include "FuzzSupport.h"
#include "drives/XorrisoParsing.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = Fuzz::text(data, size);
    const DriveList drives = XorrisoParsing::parseDevices(text);
    FUZZ_CHECK(drives.size() <= text.count(QLatin1Char('\n')) + 1);
    for (qsizetype i = 0; i < drives.size(); ++i) {
        const Object_Optical_Drive &d = drives.at(i);
        // Numbered from 1 in listing order.
        FUZZ_CHECK(d.s_Drive_Number == QString::number(i + 1));
        // The quoted fields, without their quotes, each within one line.
        FUZZ_CHECK(!d.s_Device_Path.isEmpty());
        for (const QString *field : {&d.s_Device_Path, &d.sManufacturer, &d.sModel}) {
            FUZZ_CHECK(!field->contains(QLatin1Char('\'')));
            FUZZ_CHECK(!field->contains(QLatin1Char('\n')));
            FUZZ_CHECK(text.contains(*field));
        }
        FUZZ_CHECK(d.sManufacturer == d.sManufacturer.trimmed() && d.sModel == d.sModel.trimmed());
    }
    return 0;
}
