#pragma once
#include <QList>
#include <QString>

// One optical drive as the listing gave it.
struct Object_Optical_Drive {
    QString s_Drive_Number;   // the number the tool prints (macOS: drutil's first column; Linux: position from "1")
    QString sManufacturer;    // vendor, trimmed
    QString sModel;           // product, trimmed
    QString s_Device_Path;    // Linux: the device xorriso names (/dev/sr0); empty on macOS

    // "%@ - %@" of vendor and product: what is remembered between runs.
    QString label() const { return sManufacturer + QStringLiteral(" - ") + sModel; }
};

using DriveList = QList<Object_Optical_Drive>;
