#pragma once

#include "ItemTypes.h"
#include "SpanItem.h"

class QGraphicsPathItem;

// A block arrow drawn inside the rectangle spanned by its two points, with one head pointing up
// or heads at the top and the bottom. Its corner grips turn it, its side grips resize it.
class GRAPHICSOBJECTS_EXPORT Arrow2Item : public SpanItem {
    Q_OBJECT
public:
    GRAPHICSOBJECTS_ITEM(Arrow2Item)
    enum ArrowMode { SingleArrow = 0, DoubleArrow = 1 };

    GRAPHICSOBJECTS_UNMEASURED
    QPointF centroid() override;
    void mousePress(QGraphicsSceneMouseEvent* event) override;
    void mouseMove(QGraphicsSceneMouseEvent* event) override;
    void handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) override;
    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;
    void fillEditMenu(QMenu* menu) override { fillContextMenu(menu); }
    void applyEditMenu(int data) override { applyContextMenu(data); }
    void handlePressed(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) override;
    void handleReleased(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) override;

    int arrowMode() const { return m_arrowMode; }
    QPainterPath path() const;
    // The normalised rectangle between the two points, in item coordinates.
    QRectF frame() const;

    // The outline of the given mode inside r; empty for an unknown mode.
    static QPainterPath arrowOutline(const QRectF& r, int mode);

protected:
    bool menuInPreview() const override { return false; }
    void spanChanged() override { rebuild(); }
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;

private:
    void rebuild();
    void rotateAboutCentre(double degrees);

    int m_arrowMode = SingleArrow;
    bool isRotationGrip(int id) const;
};
