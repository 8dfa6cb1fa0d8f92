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

// Declares what every item class declares: its Type and type(), and the invokable constructor that the
// factories and clone() call. One line in each item class; the constructor's comment goes above it.
#define GRAPHICSOBJECTS_ITEM(Class)                                                                          \
    GRAPHICSOBJECTS_ITEM_TYPE(Class)                                                                         \
    Q_INVOKABLE Class(QGraphicsItem* parent, int id, void* context);

// What an item whose menu remembers its measure declares: MesureKey names the common parameter and
// MesureDefault is the measure shown until one is chosen.
#define GRAPHICSOBJECTS_MESURE_KEY(mesureKey, mesureDefault)                                                 \
    static constexpr const char* MesureKey = mesureKey;                                                      \
    static constexpr int MesureDefault = mesureDefault;

// GRAPHICSOBJECTS_ITEM for an item whose menu remembers its measure.
#define GRAPHICSOBJECTS_MEASURED_ITEM(Class, mesureKey, mesureDefault)                                       \
    GRAPHICSOBJECTS_ITEM(Class)                                                                              \
    GRAPHICSOBJECTS_MESURE_KEY(mesureKey, mesureDefault)

// Declares the overrides of an item drawn with the mouse and edited through its grips: the press and
// the moves that draw it, the end of the drawing that keeps or refuses it, its grips and their drags.
#define GRAPHICSOBJECTS_ITEM_DRAWING                                                                         \
    void mousePress(QGraphicsSceneMouseEvent* event) override;                                               \
    void mouseMove(QGraphicsSceneMouseEvent* event) override;                                                \
    bool endEdition() override;                                                                              \
    QList<Handle> handles() const override;                                                                  \
    void handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) override;

// The same for an item drawn click by click: its releases answer whether the drawing goes on.
#define GRAPHICSOBJECTS_ITEM_DRAWN_BY_CLICKS                                                                 \
    GRAPHICSOBJECTS_ITEM_DRAWING                                                                             \
    typModeEdition mouseRelease(QGraphicsSceneMouseEvent* event) override;                                   \
    bool drawnByClicks() const override {                                                                    \
        return true;                                                                                         \
    }

// Declares the overrides of an item the host transforms (a circle extracted from the image, a rectangle
// turned into a circle or a matching template): its edit menu picks the transform, setTransformIndex
// keeps it and announces it to the host (0 announces nothing), fixupForTransform fills the record the
// host works from.
#define GRAPHICSOBJECTS_ITEM_TRANSFORMED                                                                     \
    void setTransformIndex(int index) override {                                                             \
        m_transformIndex = index;                                                                            \
        if (index != 0)                                                                                      \
            emit transformIndex(this, index, false);                                                         \
    }                                                                                                        \
    void fillEditMenu(QMenu* menu) override;                                                                 \
    void applyEditMenu(int data) override;                                                                   \
    void fixupForTransform(_AUTOPOINTPARAMS& params, int, void*) override;

// Declares the lock of an item whose lock reaches its grips without the movable flag that
// lockunlockHandgrips gives them (a line, a rectangle).
#define GRAPHICSOBJECTS_LOCKS_GRIPS_ONLY                                                                     \
    void setLockstate(const bool& state) override {                                                          \
        m_locked = state;                                                                                    \
        lockHandgripsOnly(state);                                                                            \
    }
