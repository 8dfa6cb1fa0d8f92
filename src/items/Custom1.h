#pragma once

#include "ClickedPointsItem.h"
#include "ItemTypes.h"

class QGraphicsPathItem;

// A protractor drawn with three clicks: the end of the first arm, the vertex, the end of the
// second arm. ang1 is the angle between the arms, 0 to 180, ang2 the reflex angle 360 - ang1;
// drawn as its two arms and the arc between them.
class GRAPHICSOBJECTS_EXPORT Custom1 : public ClickedPointsItem {
    Q_OBJECT
public:
    // The points in the order they are clicked, also the grips' ids.
    enum Point { FirstArm = 0, Vertex = 1, SecondArm = 2 };
    // context: optional _AUTOPOINTPARAMS; three points (arm end, vertex, arm end) build it at once.
    GRAPHICSOBJECTS_MEASURED_ITEM(Custom1, "protractor_mesureIndex", Ang1)

    long mesuresFlag() const override { return 0; }
    QPointF centroid() override;
    // Arms of no length measure nothing.
    bool endEdition() override;
    void handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) override;
    QList<MenuEntry> mesureMenu() const override;

public slots:
    bool computeMesures(void*) override;

protected:
    // Draws the arms through the points and, once there are three, the arc between them.
    void drawPoints(const QList<QPointF>& points) override;
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;
};
