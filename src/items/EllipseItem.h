#pragma once

#include "ItemTypes.h"
#include "ShapeItem.h"

// An ellipse: press and drag its bounding box (Shift draws a circle), then turn it by its rotation
// grip, which keeps the centre. The four grips at the ends of the axes change their lengths, also about
// the centre. Measures: the major and minor axes (dist1, dist2), the major axis's orientation in degrees
// (ang1, anticlockwise on screen, 0 to 180), the area, the perimeter (exact), the semi-axes (rad1 the
// major, rad2 the minor) and the eccentricity (cust).
class GRAPHICSOBJECTS_EXPORT EllipseItem : public ShapeItem {
    Q_OBJECT
public:
    // context: optional _AUTOPOINTPARAMS with the bounding rectangle, or two opposite corners as its
    // first points, or a centre and radius.
    GRAPHICSOBJECTS_MEASURED_ITEM(EllipseItem, "ellipse_mesureIndex", Perim)
    // The grip that turns the ellipse; the others are the ends of its axes.
    static constexpr int RotationGrip = 2; // HoverEventItem::TopRight

    // The ellipse's axes as a rectangle in item coordinates, before the rotation.
    QRectF rect() const;
    // Whether the record given to the constructor defined no ellipse; the factory then gives no item.
    bool refusedRecord() const { return m_refusedRecord; }

    long mesuresFlag() const override { return 0x70; }
    GRAPHICSOBJECTS_ITEM_DRAWING
    // Degrees anticlockwise on screen, about the centre.
    void rotate(double angle) override;
    QList<MenuEntry> mesureMenu() const override;
    void handlePressed(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) override;

public slots:
    bool computeMesures(void* arg) override;
    void fixupForTransform(_AUTOPOINTPARAMS& params, int, void*) override;

protected:
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;

private:
    void setRect(const QRectF& r);
    // Degrees anticlockwise on screen of the direction from the centre to a scene point.
    double screenAngle(const QPointF& scenePos) const;

    bool m_refusedRecord = false;
    double m_turnFrom = 0;
    double m_rotationAtPress = 0;
};
