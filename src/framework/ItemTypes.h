#pragma once

#include <QGraphicsItem>

// QGraphicsItem::type() of every item class, so that qgraphicsitem_cast finds a kind without RTTI.
// The values are part of the interface: hosts may store them. Never renumber; append.
namespace ItemTypes {
enum : int {
    First = QGraphicsItem::UserType + 1000,
    LineItem = First,
    PointItem,
    AnchorPointItem,
    EllipseItem,
    CircleItem,
    CirclePItem,
    Circle3PointsItem,
    Arc3PointsItem,
    CurveItem,
    RectangleItem,
    PolygonItem,
    PolylineItem,
    CrossItem,
    Distance,
    Angle,
    Circle3,
    Projection,
    Intersection,
    Tangent,
    eTextItem,
    ArrowItem,
    Arrow2Item,
    SmileyItem,
    PixmapItem,
    VideoItem,
    RulerItem,
    StampItem,
    Custom1,
    CrossHItem,
    CrossVItem,
    CircleNote,
    CirclePointsItem,
    ArcPointsItem,
    LassoItem,
    VickersPItem,
    FlattenItem,
    RectCalibItem,
    PolygonShapeItem,
    ArcItem,
    DXFItem,
    RectangleItemFeret,
    Last = RectangleItemFeret
};
} // namespace ItemTypes

// Declares a class's Type and type(): one line in each item class.
#define GRAPHICSOBJECTS_ITEM_TYPE(Class)                                                                     \
    enum { Type = ItemTypes::Class };                                                                        \
    int type() const override {                                                                              \
        return Type;                                                                                         \
    }
