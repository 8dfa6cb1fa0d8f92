#pragma once

#include "graphicsobjects_export.h"

#include <QList>
#include <QString>
#include <QStringList>

class AbstractBaseItem;

// One measure of an item as a user reads it in a table: a name of its own ("Width", "Hardness"),
// the calibrated value and its unit ("µm", "µm²", "°", "HV"). The labels on the scene keep their
// short texts ("dist1:"); these names are for tables, exports and reports.
struct GRAPHICSOBJECTS_EXPORT ItemMeasure {
    int slot = 0;     // index into the item's measure arrays
    QString name;     // translated in the context "MeasureNames"
    double value = 0; // calibrated; always finite
    QString unit;     // empty for counts
    int decimals = 2; // as the item's calibration prints it
    int rank = 0;     // where its column goes among the others: the same name and unit, the same rank
};

// The measures the item fills, in a fixed order for its class: a class the library knows lists
// its own (a horizontal line still has an angle of 0°); another lists every slot that is not zero,
// named by its kind. Lengths are in the calibration's unit, areas in its square, angles in degrees.
// Values that are not finite (a degenerate indentation's hardness) are left out.
GRAPHICSOBJECTS_EXPORT QList<ItemMeasure> itemMeasures(const AbstractBaseItem* item);

// What a table shows beside the numbers: for a Vickers indentation its hardness designation
// ("511 HV 1") and, when the diagonals differ too much, the warning; empty texts when there is
// nothing to say.
struct GRAPHICSOBJECTS_EXPORT ItemRemarks {
    QString designation;
    QString warning;
};
GRAPHICSOBJECTS_EXPORT ItemRemarks itemRemarks(const AbstractBaseItem* item);
