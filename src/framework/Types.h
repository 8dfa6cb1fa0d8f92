#pragma once

#include "graphicsobjects_export.h"

#include <QHash>
#include <QPageLayout>
#include <QPair>
#include <QSizeF>
#include <QString>

// Units of length (converted through the millimetre) and named paper formats.
class GRAPHICSOBJECTS_EXPORT Types {
public:
    // A fixed underlying type: values outside the table are valid and name no unit.
    enum UnitsOfLength : int {
        Micrometre = 0,
        Millimetre = 1,
        Centimetre = 2,
        Inch = 3,
        Foot = 4,
        Point = 5
    };

    static const QHash<UnitsOfLength, QPair<QString, double>>& unitsOfLength();
    static double unitOfLenth(UnitsOfLength u);
    static QString unitNameOfLength(UnitsOfLength u);
    static UnitsOfLength unitOfLenthFromString(const QString& name);
    static double convertAbsToUnitsOfLength(double v, UnitsOfLength u);
    static double convertDistanceToMM(double v, UnitsOfLength u);
    static double convertMMToDistance(double v, UnitsOfLength u);
    static double convertBetweenUnitsOfLength(double v, UnitsOfLength from, UnitsOfLength to);
    static QSizeF convertBetweenUnitsOfLength(const QSizeF& s, UnitsOfLength from, UnitsOfLength to);
    static QSizeF convertSizeToMM(const QSizeF& s, UnitsOfLength u);
    static const QHash<QString, QSizeF>& paperFormats();
    static QSizeF paperSize(const QString& name, QPageLayout::Orientation o, UnitsOfLength u);
};
