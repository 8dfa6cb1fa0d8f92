#pragma once

#include "ItemTypes.h"
#include "RoundItem.h"

// An arc by its centre, radius and two angles: press at the centre, drag to the start of the arc,
// release, move around the centre to its end and click. The span follows the cursor's way round, up to
// a full turn either way. Grips: the centre (moves the arc), the start (radius and start) and the end.
// Measures as the arc through three points. Its menu remembers the measure under "arc_mesureIndex",
// which no new arc reads.
class GRAPHICSOBJECTS_EXPORT ArcItem : public RoundItem {
    Q_OBJECT
public:
    // context: optional _AUTOPOINTPARAMS with the centre, the start and the end as its first points; the
    // arc runs the shorter way from start to end.
    GRAPHICSOBJECTS_ITEM(ArcItem)
    static constexpr const char* MenuKey = "arc_mesureIndex";
    static constexpr int MesureDefault = Rad1;

    // Remembers the measure under MenuKey.
    void applyContextMenu(int data) override;
    void mousePress(QGraphicsSceneMouseEvent* event) override;
    void mouseMove(QGraphicsSceneMouseEvent* event) override;
    typModeEdition mouseRelease(QGraphicsSceneMouseEvent* event) override;
    void handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) override;

protected:
    // Points: centre, start, end. The start and end angles move on from the present arc's, so that a
    // span beyond half a turn stays as it was drawn.
    std::optional<RoundShape> shapeFrom(const QList<QPointF>& points) const override;
    QList<QPointF> pointsOnCircle(const QPointF&, double) const override { return {}; }
    // The end lies on the arc.
    QList<QPointF> settledPoints(const QList<QPointF>& points, const RoundShape& shape) const override;

private:
    enum Stage { Centre, Radius, End };
    Stage m_stage = Centre;
};
