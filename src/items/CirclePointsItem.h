#pragma once

#include "FittedRoundItem.h"
#include "ItemTypes.h"

// A circle fitted to three or more clicked points (a double click or Return ends them), or to the edge
// of a round feature (a pore, a grain, a hole, an indentation) found on the scene's image around one
// click inside it. Measures as the circle drawn from its centre, plus the roundness: rad2 is the
// largest and cust the root-mean-square distance of the kept points from the circle. The way of the
// next item is remembered under "circlepoints_way" (0 clicked points, 1 found on the image).
class GRAPHICSOBJECTS_EXPORT CirclePointsItem : public FittedRoundItem {
    Q_OBJECT
public:
    // context: optional _AUTOPOINTPARAMS with three or more points, or a centre and radius.
    GRAPHICSOBJECTS_MEASURED_ITEM(CirclePointsItem, "circlepoints_mesureIndex", Aera)

protected:
    // One click inside the feature starts the search, all round.
    int imageClicks() const override { return 1; }
    std::optional<std::pair<double, double>> sectorOf(const QList<QPointF>& clicks) const override;
    std::optional<RoundShape> shapeOfFit(const QList<QPointF>&, const CircleFit& fit) const override;
};
