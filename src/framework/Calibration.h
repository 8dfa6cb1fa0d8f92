#pragma once

#include <QString>

// The calibration block of an item, copied as a whole between items. Only the factor, the unit
// name and the decimals are read by the library; the other values belong to the host.
struct Calibration {
    QString unitName = QStringLiteral("mm");
    QString unitText;
    double resolution = 72.0;
    double factor = 1.0; // calibrated units per pixel
    int unitCode = 1;
    int decimals = 2;
    double origin = 0;
    double extra = 0;
    int flag1 = 0;
    int flag2 = 0;

    friend bool operator==(const Calibration& a, const Calibration& b) {
        return a.unitName == b.unitName && a.unitText == b.unitText && a.resolution == b.resolution &&
               a.factor == b.factor && a.unitCode == b.unitCode && a.decimals == b.decimals &&
               a.origin == b.origin && a.extra == b.extra && a.flag1 == b.flag1 && a.flag2 == b.flag2;
    }
    friend bool operator!=(const Calibration& a, const Calibration& b) { return !(a == b); }
};
