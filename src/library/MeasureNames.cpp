#include "MeasureNames.h"

#include "AbstractBaseItem.h"
#include "VickersPItem.h"

#include <QCoreApplication>
#include <QHash>

#include <cmath>

namespace {

using B = AbstractBaseItem;

// The names, in the order their columns take.
enum Name {
    X,
    Y,
    Position,
    Length,
    Breadth,
    Width,
    Height,
    Distance,
    Gap,
    Radius,
    Diameter,
    Diagonal,
    Diagonal1,
    Diagonal2,
    Perimeter,
    Area,
    Angle,
    ReferenceAngle,
    Supplement,
    ReflexAngle,
    SecondArm,
    Chord,
    Crossings,
    TangentLength,
    SecondTangent,
    BarLength,
    Magnification,
    Load,
    Hardness,
    Value,
    NameCount
};

const char* const names[NameCount] = {
    QT_TRANSLATE_NOOP("MeasureNames", "X"),
    QT_TRANSLATE_NOOP("MeasureNames", "Y"),
    QT_TRANSLATE_NOOP("MeasureNames", "Position"),
    QT_TRANSLATE_NOOP("MeasureNames", "Length"),
    QT_TRANSLATE_NOOP("MeasureNames", "Breadth"),
    QT_TRANSLATE_NOOP("MeasureNames", "Width"),
    QT_TRANSLATE_NOOP("MeasureNames", "Height"),
    QT_TRANSLATE_NOOP("MeasureNames", "Distance"),
    QT_TRANSLATE_NOOP("MeasureNames", "Gap"),
    QT_TRANSLATE_NOOP("MeasureNames", "Radius"),
    QT_TRANSLATE_NOOP("MeasureNames", "Diameter"),
    QT_TRANSLATE_NOOP("MeasureNames", "Diagonal"),
    QT_TRANSLATE_NOOP("MeasureNames", "Diagonal 1"),
    QT_TRANSLATE_NOOP("MeasureNames", "Diagonal 2"),
    QT_TRANSLATE_NOOP("MeasureNames", "Perimeter"),
    QT_TRANSLATE_NOOP("MeasureNames", "Area"),
    QT_TRANSLATE_NOOP("MeasureNames", "Angle"),
    QT_TRANSLATE_NOOP("MeasureNames", "Angle to reference"),
    QT_TRANSLATE_NOOP("MeasureNames", "Supplement"),
    QT_TRANSLATE_NOOP("MeasureNames", "Reflex angle"),
    QT_TRANSLATE_NOOP("MeasureNames", "Second arm"),
    QT_TRANSLATE_NOOP("MeasureNames", "Chord"),
    QT_TRANSLATE_NOOP("MeasureNames", "Crossings"),
    QT_TRANSLATE_NOOP("MeasureNames", "Tangent length"),
    QT_TRANSLATE_NOOP("MeasureNames", "Second tangent"),
    QT_TRANSLATE_NOOP("MeasureNames", "Bar length"),
    QT_TRANSLATE_NOOP("MeasureNames", "Magnification"),
    QT_TRANSLATE_NOOP("MeasureNames", "Load"),
    QT_TRANSLATE_NOOP("MeasureNames", "Hardness"),
    QT_TRANSLATE_NOOP("MeasureNames", "Value"),
};

// How a value is read and which unit it carries.
enum class Kind { Length, Area, Angle, Count, Newton, Kgf, Vickers, Times, Plain };

struct Entry {
    int slot;
    Name name;
    Kind kind;
    bool optional = false; // listed only when not zero: the class fills it in some cases only
};

// The measures of each class the library knows, by class name; a class not listed takes its
// nearest listed base's.
const QHash<QString, QList<Entry>>& classEntries() {
    static const QHash<QString, QList<Entry>> table = {
        {"LineItem",
         {{B::Dist1, Length, Kind::Length},
          {B::Ang1, Angle, Kind::Angle},
          {B::Ang2, ReferenceAngle, Kind::Angle, true}}},
        {"RectangleItem",
         {{B::Dist1, Width, Kind::Length},
          {B::Dist2, Height, Kind::Length},
          {B::Perim, Perimeter, Kind::Length},
          {B::Aera, Area, Kind::Area}}},
        {"RectangleItemFeret", {{B::Dist1, Length, Kind::Length}, {B::Dist2, Breadth, Kind::Length}}},
        {"RectCalibItem",
         {{B::Rad1, Width, Kind::Length},
          {B::Rad2, Height, Kind::Length},
          {B::Cust, Diagonal, Kind::Length},
          {B::Perim, Perimeter, Kind::Length},
          {B::Aera, Area, Kind::Area}}},
        {"CircleItem",
         {{B::Rad1, Radius, Kind::Length},
          {B::Diam, Diameter, Kind::Length},
          {B::Perim, Perimeter, Kind::Length},
          {B::Aera, Area, Kind::Area}}},
        {"Circle3",
         {{B::Rad1, Radius, Kind::Length},
          {B::Diam, Diameter, Kind::Length},
          {B::Perim, Perimeter, Kind::Length},
          {B::Aera, Area, Kind::Area}}},
        {"CircleNote", {{B::Rad1, Radius, Kind::Length}, {B::Cust, Magnification, Kind::Times}}},
        {"PositionItem", {{B::Dist1, X, Kind::Length}, {B::Dist2, Y, Kind::Length}}},
        {"GuideItem", {{B::Dist1, Position, Kind::Length}}},
        {"CrossItem", {{B::Ang1, Angle, Kind::Angle}, {B::Ang2, SecondArm, Kind::Angle}}},
        {"Custom1", {{B::Ang1, Angle, Kind::Angle}, {B::Ang2, ReflexAngle, Kind::Angle}}},
        {"StampItem", {{B::Dist1, BarLength, Kind::Length}}},
        {"Distance", {{B::Dist1, Distance, Kind::Length}, {B::Dist2, Gap, Kind::Length, true}}},
        {"Angle", {{B::Ang1, Angle, Kind::Angle}, {B::Ang2, Supplement, Kind::Angle}}},
        {"Projection", {{B::Dist1, Distance, Kind::Length}}},
        {"Intersection",
         {{B::Ang1, Angle, Kind::Angle, true},
          {B::Ang2, Supplement, Kind::Angle, true},
          {B::Cust, Crossings, Kind::Count, true},
          {B::Dist1, Chord, Kind::Length, true}}},
        {"Tangent", {{B::Dist1, TangentLength, Kind::Length}, {B::Dist2, SecondTangent, Kind::Length, true}}},
        {"VickersPItem",
         {{VickersPItem::DiagonalSlot1, Diagonal1, Kind::Length},
          {VickersPItem::DiagonalSlot2, Diagonal2, Kind::Length},
          {VickersPItem::LoadSlot, Load, Kind::Newton},
          {VickersPItem::LoadKgfSlot, Load, Kind::Kgf},
          {VickersPItem::HardnessSlot, Hardness, Kind::Vickers}}},
        // Annotations without measures.
        {"eTextItem", {}},
        {"ArrowItem", {}},
        {"Arrow2Item", {}},
        {"RulerItem", {}},
        {"FrameItem", {}},
    };
    return table;
}

const QList<Entry>* entriesOf(const AbstractBaseItem* item) {
    const QHash<QString, QList<Entry>>& table = classEntries();
    for (const QMetaObject* m = item->metaObject(); m; m = m->superClass()) {
        const auto it = table.constFind(QLatin1String(m->className()));
        if (it != table.constEnd())
            return &it.value();
    }
    return nullptr;
}

// The entries of a class the library does not know: each slot that is not zero, by its kind.
QList<Entry> genericEntries(const AbstractBaseItem* item) {
    const Name byKind[] = {Value,     Length, Length, Angle,    Angle, Area,
                           Perimeter, Radius, Radius, Diameter, Value};
    QList<Entry> entries;
    for (int slot = B::Dist1; slot <= B::Cust; ++slot) {
        if (item->accessmesure(unsigned(slot)) == 0)
            continue;
        switch (item->mesureUnit(slot)) {
        case B::MesureUnit::Length:
            entries.append({slot, byKind[slot], Kind::Length});
            break;
        case B::MesureUnit::Area:
            entries.append({slot, Area, Kind::Area});
            break;
        case B::MesureUnit::Angle:
            entries.append({slot, Angle, Kind::Angle});
            break;
        case B::MesureUnit::None:
            entries.append({slot, Value, Kind::Plain});
            break;
        }
    }
    return entries;
}

ItemMeasure measureOf(const AbstractBaseItem* item, const Entry& entry) {
    const Calibration c = item->calibration();
    const double pixels = item->accessmesureP(unsigned(entry.slot));
    double value = item->accessmesure(unsigned(entry.slot));
    QString unit;
    int decimals = c.decimals;
    switch (entry.kind) {
    case Kind::Length:
        // An item that scales a length otherwise (none) still shows it calibrated here.
        if (item->mesureUnit(entry.slot) != B::MesureUnit::Length)
            value = pixels * c.factor;
        unit = c.unitName;
        break;
    case Kind::Area:
        if (item->mesureUnit(entry.slot) != B::MesureUnit::Area)
            value = pixels * c.factor * c.factor;
        unit = c.unitName.isEmpty() ? QString() : c.unitName + QChar(0x00B2);
        break;
    case Kind::Angle:
        unit = QStringLiteral("°");
        break;
    case Kind::Count:
        decimals = 0;
        break;
    case Kind::Newton:
        unit = QStringLiteral("N");
        break;
    case Kind::Kgf:
        unit = QStringLiteral("kgf");
        decimals = 3;
        break;
    case Kind::Vickers:
        unit = QStringLiteral("HV");
        break;
    case Kind::Times:
        unit = QStringLiteral("×");
        decimals = 0;
        break;
    case Kind::Plain:
        break;
    }
    ItemMeasure m;
    m.slot = entry.slot;
    m.name = QCoreApplication::translate("MeasureNames", names[entry.name]);
    m.value = value;
    m.unit = unit;
    m.decimals = decimals;
    m.rank = entry.name;
    return m;
}

} // namespace

QList<ItemMeasure> itemMeasures(const AbstractBaseItem* item) {
    QList<ItemMeasure> result;
    if (!item)
        return result;
    const QList<Entry>* known = entriesOf(item);
    const QList<Entry> entries = known ? *known : genericEntries(item);
    for (const Entry& entry : entries) {
        const ItemMeasure m = measureOf(item, entry);
        if (std::isfinite(m.value) && !(entry.optional && m.value == 0))
            result.append(m);
    }
    return result;
}

ItemRemarks itemRemarks(const AbstractBaseItem* item) {
    ItemRemarks remarks;
    if (const auto* vickers = qobject_cast<const VickersPItem*>(item)) {
        remarks.designation = vickers->hardnessDesignation();
        vickers->diagonalsDiffer(&remarks.warning);
    }
    return remarks;
}
