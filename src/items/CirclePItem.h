#pragma once

#include "ItemTypes.h"
#include "RoundItem.h"

// A circle drawn by the two ends of a diameter: press on one side, drag to the other, release. Its two
// grips are the ends; the measures are the circle's (area, perimeter, radius, diameter).
class GRAPHICSOBJECTS_EXPORT CirclePItem : public RoundItem {
    Q_OBJECT
public:
    // context: optional _AUTOPOINTPARAMS with the two ends as its first points, or a centre and radius.
    GRAPHICSOBJECTS_MEASURED_ITEM(CirclePItem, "circle_mesureIndex", Aera)

    void mousePress(QGraphicsSceneMouseEvent* event) override;
    void mouseMove(QGraphicsSceneMouseEvent* event) override;
    typModeEdition mouseRelease(QGraphicsSceneMouseEvent*) override { return EditionComplete; }
    bool drawnByClicks() const override { return false; }

protected:
    // None for a diameter of length 0.
    std::optional<RoundShape> shapeFrom(const QList<QPointF>& points) const override;
    int clicksToComplete() const override { return 2; }
    int minimumPoints() const override { return 2; }
};
