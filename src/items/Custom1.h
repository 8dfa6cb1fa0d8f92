#pragma once

#include "ItemTypes.h"
#include "ShapeItem.h"

class QGraphicsPathItem;

// A protractor drawn with three clicks: the end of the first arm, the vertex, the end of the
// second arm. ang1 is the angle between the arms, 0 to 180, ang2 the reflex angle 360 - ang1;
// drawn as its two arms and the arc between them.
class GRAPHICSOBJECTS_EXPORT Custom1 : public ShapeItem {
    Q_OBJECT
public:
    // The points in the order they are clicked, also the grips' ids.
    enum Point { FirstArm = 0, Vertex = 1, SecondArm = 2 };
    GRAPHICSOBJECTS_ITEM_TYPE(Custom1)
    static constexpr const char* MesureKey = "protractor_mesureIndex";
    static constexpr int MesureDefault = Ang1;

    // context: optional _AUTOPOINTPARAMS; three points (arm end, vertex, arm end) build it at once.
    Q_INVOKABLE Custom1(QGraphicsItem* parent, int id, void* context);

    long mesuresFlag() const override { return 0; }
    QPointF centroid() override;
    void mousePress(QGraphicsSceneMouseEvent* event) override;
    void mouseMove(QGraphicsSceneMouseEvent* event) override;
    typModeEdition mouseRelease(QGraphicsSceneMouseEvent* event) override;
    bool endEdition() override;
    bool drawnByClicks() const override { return true; }
    QList<MenuEntry> mesureMenu() const override;
    QList<Handle> handles() const override;
    void handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers) override;

public slots:
    bool computeMesures(void*) override;

protected:
    void writeGeometry(QDomElement& e) const override;
    void readGeometry(const QDomElement& e) override;

private:
    // Draws the arms through points (item coordinates), the last one possibly the cursor.
    void drawArms(const QList<QPointF>& points);
};
