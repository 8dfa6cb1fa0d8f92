#pragma once

#include "PositionItem.h"

// A guide line across the whole scene through its point, horizontal or vertical, dragged across
// its direction only. dist1 is its calibrated position (y or x) from the scene's origin.
class GRAPHICSOBJECTS_EXPORT GuideItem : public PositionItem {
    Q_OBJECT
public:
    Qt::Orientation orientation() const { return m_orientation; }
    long mesuresFlag() const override { return 0; }
    QList<QLineF> lines() const override;

protected:
    GuideItem(QGraphicsItem* parent, Qt::Orientation orientation, void* context);

    QPointF constrained(const QPointF& p) const override;
    void fillMesures() override;
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;

private:
    // The line spans the scene's rectangle, which may change.
    void placeLine();

    Qt::Orientation m_orientation;
};
