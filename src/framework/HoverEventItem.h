#pragma once

#include "graphicsobjects_export.h"

#include <QColor>
#include <QFont>
#include <QGraphicsPathItem>
#include <QList>
#include <QObject>

class QGraphicsSimpleTextItem;

// A handgrip: a small grip on one point of an item (or on a side, a corner or the centroid) that
// keeps its size on screen at every zoom, highlights under the mouse and reports its drags.
class GRAPHICSOBJECTS_EXPORT HoverEventItem : public QObject, public QGraphicsPathItem {
    Q_OBJECT
public:
    // Grip kinds.
    enum Kind { Move = 0, ResizeHorizontal = 1, ResizeVertical = 2, Rotation = 3, CentroidGrip = 4 };
    // Positions on a rectangle, used as grip ids by syncHandgrips and applyTranslation.
    enum RectPosition {
        TopLeft = 0,
        TopMiddle,
        TopRight,
        MiddleLeft,
        MiddleRight,
        BottomLeft,
        BottomMiddle,
        BottomRight,
        Center
    };

    // The phases of a drag, as the owning item receives them.
    enum Phase { Pressed, Moved, Released };

    // An owner that is an AbstractBaseItem receives every drag step as a handle call with this
    // grip's id, besides the signals.
    HoverEventItem(QObject* owner, QGraphicsItem* parent, int id, int type);

    int getId() const { return m_id; }
    void setId(int id) { m_id = id; }
    int getType() const { return m_type; }
    bool lockstate() const { return m_lockstate; }
    bool constrainstate() const { return m_constrainstate; }
    void setLockstate(const bool& state);
    void setConstrainstate(const bool& state) { m_constrainstate = state; }
    QFont font() const { return m_font; }
    void setFont(const QFont& font, const QColor& color);
    void setFontColor(const QColor& color);
    void setTooltip(QString text, QPointF* pos = nullptr);
    QString tooltip() const;
    bool isHighlighted() const;

    static double angleForPos(const QPointF& p, const QPointF& c);
    static double distanceToPoint(const QPointF& v);
    static double applyRotation(const HoverEventItem* h, const QPointF& p, const QPointF& c,
                                const QPointF& p0);
    // p turned about c by degrees, anticlockwise on screen: the sense in which angleForPos grows.
    static QPointF turnedAbout(const QPointF& p, const QPointF& c, double degrees);
    static QRectF applyTranslation(const HoverEventItem* h, const QRectF& r, const QPointF& scenePos,
                                   const QGraphicsItem* item);
    static void syncHandgrips(const QRectF& r, const QList<HoverEventItem*>& grips);
    static QPointF positionOnRect(const QRectF& r, int position);

    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

signals:
    void initPos(const QPointF& scenePos);
    void moved(const QPointF& scenePos);
    void releasePos(const QPointF& scenePos);

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;
    void hoverEnterEvent(QGraphicsSceneHoverEvent* event) override;
    void hoverLeaveEvent(QGraphicsSceneHoverEvent* event) override;

private:
    void applyLook();
    void ensureFrame();
    void tellOwner(Phase phase, QGraphicsSceneMouseEvent* event);

    QGraphicsPathItem* m_frame = nullptr;
    QGraphicsSimpleTextItem* m_text = nullptr;
    QFont m_font;
    QColor m_textColor;
    QString m_tooltip;
    int m_id = 0;
    int m_type = 0;
    bool m_pressed = false;
    bool m_hovered = false;
    bool m_lockstate = false;
    bool m_constrainstate = false;
};

// Process-wide grip settings: size (pixels, first value) and the outline, text and frame colours.
GRAPHICSOBJECTS_EXPORT void HoverEventItemSetup(QList<double> sizes, QList<QColor> colours);
GRAPHICSOBJECTS_EXPORT int HoverEventItemSize();
