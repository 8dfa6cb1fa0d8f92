#include "ItemRegistry.h"

#include "AnchorPointItem.h"
#include "Angle.h"
#include "Arc3PointsItem.h"
#include "ArcItem.h"
#include "ArcPointsItem.h"
#include "Arrow2Item.h"
#include "ArrowItem.h"
#include "Circle3.h"
#include "Circle3PointsItem.h"
#include "CircleItem.h"
#include "CircleNote.h"
#include "CirclePItem.h"
#include "CirclePointsItem.h"
#include "CrossHItem.h"
#include "CrossItem.h"
#include "CrossVItem.h"
#include "CurveItem.h"
#include "Custom1.h"
#include "DXFItem.h"
#include "Distance.h"
#include "EllipseItem.h"
#include "FlattenItem.h"
#include "Intersection.h"
#include "ItemTypes.h"
#include "LassoItem.h"
#include "LineItem.h"
#include "PixmapItem.h"
#include "PointItem.h"
#include "PolygonItem.h"
#include "PolygonShapeItem.h"
#include "PolylineItem.h"
#include "Projection.h"
#include "RectCalibItem.h"
#include "RectangleItem.h"
#include "RectangleItemFeret.h"
#include "RulerItem.h"
#include "SmileyItem.h"
#include "StampItem.h"
#include "Tangent.h"
#include "VickersPItem.h"
#include "VideoItem.h"
#include "eTextItem.h"

#include <QCoreApplication>

#include <new>
#include <type_traits>
#include <utility>

namespace ItemRegistry {
namespace {

// Classes that can refuse a host record say so through refusedRecord(); the factory then builds nothing.
template <class Item, class = void> struct RefusesRecords : std::false_type {};
template <class Item>
struct RefusesRecords<Item, std::void_t<decltype(std::declval<const Item&>().refusedRecord())>>
    : std::true_type {};

template <class Item> AbstractBaseItem* create(QGraphicsItem* parent, int id, void* context) {
    Item* item = new (std::nothrow) Item(parent, id, context);
    if constexpr (RefusesRecords<Item>::value) {
        if (item && item->refusedRecord()) {
            delete item;
            return nullptr;
        }
    }
    return item;
}

// A class that is built: its type, measure parameter and constructor come from the class.
template <class Item>
Row built(const char* className, List list, int position, Displayed displayed, const char* icon) {
    return {className,       Item::Type,          list,         position, displayed, icon,
            Item::MesureKey, Item::MesureDefault, &create<Item>};
}

const char* const pencil = ":/pencil.png";
using L = List;
using D = Displayed;

// Some icons look borrowed (the intersection shows the tangent line, the stamp the ruler): hosts
// and their users know the tools by these pictures.
QList<Row> makeRows() {
    namespace T = ItemTypes;
    // clang-format off
    return {
        built<PointItem>(QT_TRANSLATE_NOOP("NAMES", "PointItem"), L::Tools, 2, D::Translated, ":/point.png"),
        built<AnchorPointItem>(QT_TRANSLATE_NOOP("NAMES", "AnchorPointItem"), L::Tools, 3, D::Translated, ":/point.png"),
        built<LineItem>(QT_TRANSLATE_NOOP("NAMES", "LineItem"), L::Tools, 1, D::Translated, ":/line.png"),
        built<PolylineItem>(QT_TRANSLATE_NOOP("NAMES", "PolylineItem"), L::Tools, 12, D::Translated, ":/poly.png"),
        built<PolygonItem>(QT_TRANSLATE_NOOP("NAMES", "PolygonItem"), L::Tools, 11, D::Translated, ":/polyclosed.png"),
        built<EllipseItem>(QT_TRANSLATE_NOOP("NAMES", "EllipseItem"), L::Tools, 4, D::Translated, ":/ellipse.png"),
        built<CircleItem>(QT_TRANSLATE_NOOP("NAMES", "CircleItem"), L::Tools, 5, D::Translated, ":/circle.png"),
        built<CirclePItem>(QT_TRANSLATE_NOOP("NAMES", "CirclePItem"), L::Tools, 6, D::Translated, ":/circleP.png"),
        built<CirclePointsItem>(QT_TRANSLATE_NOOP("NAMES", "CirclePointsItem"), L::None, 0, D::Translated, ":/circle.png"),
        built<Circle3PointsItem>(QT_TRANSLATE_NOOP("NAMES", "Circle3PointsItem"), L::Tools, 7, D::Translated, ":/circle.png"),
        built<ArcPointsItem>(QT_TRANSLATE_NOOP("NAMES", "ArcPointsItem"), L::None, 0, D::Translated, ":/arc.png"),
        built<Arc3PointsItem>(QT_TRANSLATE_NOOP("NAMES", "Arc3PointsItem"), L::Tools, 8, D::Translated, ":/arc.png"),
        built<ArcItem>("ArcItem", L::None, 0, D::Absent, pencil),
        built<CurveItem>(QT_TRANSLATE_NOOP("NAMES", "CurveItem"), L::Tools, 9, D::Translated, ":/curve.png"),
        built<RectangleItem>(QT_TRANSLATE_NOOP("NAMES", "RectangleItem"), L::Tools, 10, D::Translated, ":/rectangle.png"),
        built<CrossItem>(QT_TRANSLATE_NOOP("NAMES", "CrossItem"), L::Tools, 13, D::Translated, ":/orthosnap.png"),
        built<RectCalibItem>("RectCalibItem", L::None, 0, D::Itself, pencil),
        built<PolygonShapeItem>("PolygonShapeItem", L::None, 0, D::Itself, pencil),
        built<DXFItem>("DXFItem", L::None, 0, D::Absent, pencil),
        built<LassoItem>(QT_TRANSLATE_NOOP("NAMES", "LassoItem"), L::None, 0, D::Translated, ":/poly.png"),
        built<VickersPItem>("VickersPItem", L::None, 0, D::Absent, ":/poly.png"),
        built<RectangleItemFeret>("RectangleItemFeret", L::None, 0, D::Absent, pencil),
        built<RulerItem>(QT_TRANSLATE_NOOP("NAMES", "RulerItem"), L::Annotations, 7, D::Translated, ":/qrule.png"),
        built<StampItem>(QT_TRANSLATE_NOOP("NAMES", "StampItem"), L::Annotations, 8, D::Translated, ":/qrule.png"),
        built<eTextItem>(QT_TRANSLATE_NOOP("NAMES", "eTextItem"), L::Annotations, 1, D::Translated, ":/font.png"),
        built<PixmapItem>(QT_TRANSLATE_NOOP("NAMES", "PixmapItem"), L::Annotations, 5, D::Translated, ":/image.png"),
        built<SmileyItem>(QT_TRANSLATE_NOOP("NAMES", "SmileyItem"), L::Annotations, 4, D::Translated, ":/smiley.png"),
        built<VideoItem>(QT_TRANSLATE_NOOP("NAMES", "VideoItem"), L::Annotations, 6, D::Translated, ":/zoomplus.png"),
        built<Custom1>(QT_TRANSLATE_NOOP("NAMES", "Custom1"), L::Annotations, 9, D::Translated, ":/protractor.png"),
        built<CircleNote>(QT_TRANSLATE_NOOP("NAMES", "CircleNote"), L::Annotations, 12, D::Translated, ":/circle.png"),
        built<CrossHItem>(QT_TRANSLATE_NOOP("NAMES", "CrossHItem"), L::Annotations, 10, D::Translated, pencil),
        built<CrossVItem>(QT_TRANSLATE_NOOP("NAMES", "CrossVItem"), L::Annotations, 11, D::Translated, pencil),
        built<ArrowItem>(QT_TRANSLATE_NOOP("NAMES", "ArrowItem"), L::Annotations, 2, D::Translated, ":/arrow.png"),
        built<Arrow2Item>(QT_TRANSLATE_NOOP("NAMES", "Arrow2Item"), L::Annotations, 3, D::Translated, ":/arrow.png"),
        built<FlattenItem>("FlattenItem", L::None, 0, D::Itself, ":/arrow.png"),
        built<Distance>(QT_TRANSLATE_NOOP("NAMES", "Distance"), L::Mesures, 1, D::Translated, ":/distance.png"),
        built<Angle>(QT_TRANSLATE_NOOP("NAMES", "Angle"), L::Mesures, 2, D::Translated, ":/angle.png"),
        built<Circle3>(QT_TRANSLATE_NOOP("NAMES", "Circle3"), L::Mesures, 3, D::Translated, ":/circle.png"),
        built<Projection>(QT_TRANSLATE_NOOP("NAMES", "Projection"), L::Mesures, 4, D::Translated, ":/perpline.png"),
        built<Intersection>(QT_TRANSLATE_NOOP("NAMES", "Intersection"), L::Mesures, 5, D::Translated, ":/tanline.png"),
        built<Tangent>(QT_TRANSLATE_NOOP("NAMES", "Tangent"), L::Mesures, 6, D::Translated, ":/parallel.png"),
    };
    // clang-format on
}

} // namespace

const QList<Row>& rows() {
    static const QList<Row> table = makeRows();
    return table;
}

const Row* find(const QString& className) {
    for (const Row& row : rows()) {
        if (className == QLatin1String(row.className))
            return &row;
    }
    return nullptr;
}

} // namespace ItemRegistry
