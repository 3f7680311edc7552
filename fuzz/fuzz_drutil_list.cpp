// drutil list: DrutilParsing::parseList.
#include "FuzzSupport.h"
#include "drives/DrutilParsing.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = Fuzz::text(data, size);
    const DriveList drives = DrutilParsing::parseList(text);
    // At most one drive a line, never the header.
    FUZZ_CHECK(drives.size() <= qMax<qsizetype>(0, text.count(QLatin1Char('\n'))));
    for (const Object_Optical_Drive &d : drives) {
        // One digit, the vendor and product columns cut and trimmed.
        FUZZ_CHECK(d.s_Drive_Number.size() == 1 && d.s_Drive_Number.at(0).isDigit());
        FUZZ_CHECK(d.sManufacturer.size() <= 9 && d.sManufacturer == d.sManufacturer.trimmed());
        FUZZ_CHECK(d.sModel.size() <= 18 && d.sModel == d.sModel.trimmed());
        FUZZ_CHECK(!d.sManufacturer.contains(QLatin1Char('\n')) && !d.sModel.contains(QLatin1Char('\n')));
        FUZZ_CHECK(d.s_Device_Path.isEmpty());
        FUZZ_CHECK(text.contains(d.sManufacturer) && text.contains(d.sModel));
    }
    return 0;
}
