#include "ItemFactory.h"

#include "AbstractBaseItem.h"
#include "Arrow2Item.h"
#include "ArrowItem.h"
#include "CircleItem.h"
#include "ClassNames.h"
#include "eTextItem.h"
#include "LineItem.h"
#include "RectangleItem.h"
#include "RectangleItemFeret.h"
#include "RectCalibItem.h"
#include "RulerItem.h"
#include "VickersPItem.h"

#include <new>

namespace {

using Constructor = AbstractBaseItem* (*)(QGraphicsItem* parent, int id, void* context);

template <class Item> AbstractBaseItem* create(QGraphicsItem* parent, int id, void* context) {
    return new (std::nothrow) Item(parent, id, context);
}

struct FactoryEntry {
    const char* className;
    Constructor construct; // null until the class exists
};

// Each factory tries its names in this order. A class is built once its header is included above
// and its row names &create<Class>.
// clang-format off
const FactoryEntry toolClasses[] = {
    {"PointItem", nullptr},
    {"AnchorPointItem", nullptr},
    {"LineItem", &create<LineItem>},
    {"PolylineItem", nullptr},
    {"PolygonItem", nullptr},
    {"EllipseItem", nullptr},
    {"CircleItem", &create<CircleItem>},
    {"CirclePItem", nullptr},
    {"CirclePointsItem", nullptr},
    {"Circle3PointsItem", nullptr},
    {"ArcPointsItem", nullptr},
    {"Arc3PointsItem", nullptr},
    {"ArcItem", nullptr},
    {"CurveItem", nullptr},
    {"RectangleItem", &create<RectangleItem>},
    {"CrossItem", nullptr},
    {"RectCalibItem", &create<RectCalibItem>},
    {"PolygonShapeItem", nullptr},
    {"DXFItem", nullptr},
    {"LassoItem", nullptr},
    {"VickersPItem", &create<VickersPItem>},
    {"RectangleItemFeret", &create<RectangleItemFeret>},
    {"RulerItem", &create<RulerItem>},
    {"StampItem", nullptr},
    {"eTextItem", &create<eTextItem>},
    {"PixmapItem", nullptr},
    {"SmileyItem", nullptr},
    {"VideoItem", nullptr},
    {"Custom1", nullptr},
    {"CircleNote", nullptr},
    {"CrossHItem", nullptr},
    {"CrossVItem", nullptr},
    {"ArrowItem", &create<ArrowItem>},
    {"Arrow2Item", &create<Arrow2Item>},
    {"FlattenItem", nullptr},
};

const FactoryEntry mesureClasses[] = {
    {"Distance", nullptr},
    {"Angle", nullptr},
    {"Circle3", nullptr},
    {"Projection", nullptr},
    {"Intersection", nullptr},
    {"Tangent", nullptr},
};
// clang-format on

template <size_t N> const FactoryEntry* find(const FactoryEntry (&table)[N], const QString& className) {
    for (const FactoryEntry& entry : table) {
        if (className == QLatin1String(entry.className))
            return &entry;
    }
    return nullptr;
}

template <size_t N>
AbstractBaseItem* build(const FactoryEntry (&table)[N], const QString& name, QGraphicsItem* parent, int id,
                        void* context) {
    const FactoryEntry* entry = find(table, classNameFor(name));
    return entry && entry->construct ? entry->construct(parent, id, context) : nullptr;
}

template <size_t N> QStringList classNames(const FactoryEntry (&table)[N]) {
    QStringList result;
    for (const FactoryEntry& entry : table)
        result << QString::fromLatin1(entry.className);
    return result;
}

} // namespace

AbstractBaseItem* XBaseItemToolCreate(QString& name, QGraphicsItem* parent, int id, void* context) {
    return build(toolClasses, name, parent, id, context);
}

AbstractBaseItem* XBaseItemMesureCreate(QString& name, QGraphicsItem* parent, int id, void* context) {
    return build(mesureClasses, name, parent, id, context);
}

QStringList toolFactoryClassNames() {
    return classNames(toolClasses);
}

QStringList mesureFactoryClassNames() {
    return classNames(mesureClasses);
}

bool factoryBuilds(const QString& className) {
    const FactoryEntry* entry = find(toolClasses, className);
    if (!entry)
        entry = find(mesureClasses, className);
    return entry && entry->construct;
}
