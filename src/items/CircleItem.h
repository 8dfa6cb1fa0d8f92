#pragma once

#include "ItemTypes.h"
#include "ShapeItem.h"

class QGraphicsEllipseItem;

// A circle drawn from its centre: the press sets the centre, the drag the radius. Its four corner
// grips change the radius only; the centre stays where it was drawn.
class GRAPHICSOBJECTS_EXPORT CircleItem : public ShapeItem {
    Q_OBJECT
public:
    GRAPHICSOBJECTS_MEASURED_ITEM(CircleItem, "circle_mesureIndex", Aera)

    // Edit-menu data, also the transform indices it sets.
    enum EditCommand { NoTransform = 0, Extract = 254 };

    long mesuresSupport() const override { return 0x3020; }
    long mesuresFlag() const override { return 0x70; }
    void setPen(const QPen& pen) override;
    GRAPHICSOBJECTS_ITEM_DRAWING
    typModeEdition mouseRelease(QGraphicsSceneMouseEvent* event) override;
    GRAPHICSOBJECTS_ITEM_TRANSFORMED
    QList<MenuEntry> mesureMenu() const override;
    // Its radius is saved with two decimals: the saved measures are the exact ones.
    bool keepsReadMesures() const override { return true; }

    // The circle's bounding square in item coordinates.
    QRectF rect() const;

public slots:
    bool computeMesures(void* arg) override;

protected:
    // A preview shows no measure menu, but its edit menu.
    bool menuInPreview() const override { return false; }
    bool editMenuInPreview() const override { return true; }
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;

private:
    // Centre and radius (item coordinates) give the points and the child's square.
    void placeCircle(double radius);
    void setSquare(const QRectF& square);
    void extract();
};
