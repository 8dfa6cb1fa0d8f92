#include "ItemFactory.h"

#include "AbstractBaseItem.h"
#include "ClassNames.h"
#include "eTextItem.h"

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
    {"LineItem", nullptr},
    {"PolylineItem", nullptr},
    {"PolygonItem", nullptr},
    {"EllipseItem", nullptr},
    {"CircleItem", nullptr},
    {"CirclePItem", nullptr},
    {"CirclePointsItem", nullptr},
    {"Circle3PointsItem", nullptr},
    {"ArcPointsItem", nullptr},
    {"Arc3PointsItem", nullptr},
    {"ArcItem", nullptr},
    {"CurveItem", nullptr},
    {"RectangleItem", nullptr},
    {"CrossItem", nullptr},
    {"RectCalibItem", nullptr},
    {"PolygonShapeItem", nullptr},
    {"DXFItem", nullptr},
    {"LassoItem", nullptr},
    {"VickersPItem", nullptr},
    {"RectangleItemFeret", nullptr},
    {"RulerItem", nullptr},
    {"StampItem", nullptr},
    {"eTextItem", &create<eTextItem>},
    {"PixmapItem", nullptr},
    {"SmileyItem", nullptr},
    {"VideoItem", nullptr},
    {"Custom1", nullptr},
    {"CircleNote", nullptr},
    {"CrossHItem", nullptr},
    {"CrossVItem", nullptr},
    {"ArrowItem", nullptr},
    {"Arrow2Item", nullptr},
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
