#include "Types.h"

const QHash<Types::UnitsOfLength, QPair<QString, double>>& Types::unitsOfLength() {
    static const QHash<UnitsOfLength, QPair<QString, double>> units = {
        {Micrometre, {QStringLiteral("mi"), 0.001}}, {Millimetre, {QStringLiteral("mm"), 1.0}},
        {Centimetre, {QStringLiteral("cm"), 10.0}},  {Inch, {QStringLiteral("in"), 25.4}},
        {Foot, {QStringLiteral("ft"), 304.8}},       {Point, {QStringLiteral("pt"), 25.4 / 72}},
    };
    return units;
}

double Types::unitOfLenth(UnitsOfLength u) {
    return unitsOfLength().value(u, {QString(), 0.0}).second;
}

QString Types::unitNameOfLength(UnitsOfLength u) {
    return unitsOfLength().value(u).first;
}

Types::UnitsOfLength Types::unitOfLenthFromString(const QString& name) {
    static const QHash<QString, UnitsOfLength> byName = [] {
        QHash<QString, UnitsOfLength> inverse;
        const auto& units = unitsOfLength();
        for (auto it = units.cbegin(); it != units.cend(); ++it)
            inverse.insert(it.value().first, it.key());
        return inverse;
    }();
    return byName.value(name, Micrometre);
}

double Types::convertAbsToUnitsOfLength(double v, UnitsOfLength u) {
    return v * unitOfLenth(u);
}

double Types::convertDistanceToMM(double v, UnitsOfLength u) {
    return u == Millimetre ? v : v * unitOfLenth(u);
}

double Types::convertMMToDistance(double v, UnitsOfLength u) {
    return u == Millimetre ? v : v / unitOfLenth(u);
}

double Types::convertBetweenUnitsOfLength(double v, UnitsOfLength from, UnitsOfLength to) {
    if (from == to)
        return v;
    return convertMMToDistance(convertDistanceToMM(v, from), to);
}

QSizeF Types::convertBetweenUnitsOfLength(const QSizeF& s, UnitsOfLength from, UnitsOfLength to) {
    return QSizeF(convertBetweenUnitsOfLength(s.width(), from, to),
                  convertBetweenUnitsOfLength(s.height(), from, to));
}

QSizeF Types::convertSizeToMM(const QSizeF& s, UnitsOfLength u) {
    return QSizeF(convertDistanceToMM(s.width(), u), convertDistanceToMM(s.height(), u));
}

const QHash<QString, QSizeF>& Types::paperFormats() {
    static const QHash<QString, QSizeF> formats = {
        {QStringLiteral("DIN A4"), {210, 297}},  {QStringLiteral("DIN A3"), {297, 420}},
        {QStringLiteral("Legal"), {216, 356}},   {QStringLiteral("Letter"), {216, 279}},
        {QStringLiteral("Tabloid"), {279, 432}},
    };
    return formats;
}

QSizeF Types::paperSize(const QString& name, QPageLayout::Orientation o, UnitsOfLength u) {
    QSizeF size = paperFormats().value(name);
    if (o == QPageLayout::Landscape)
        size.transpose();
    return QSizeF(convertMMToDistance(size.width(), u), convertMMToDistance(size.height(), u));
}
