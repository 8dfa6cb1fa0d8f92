#pragma once

#include "ConstructionItem.h"
#include "ItemTypes.h"

// The circle through the centroids of three items (three holes of a flange, three indentations),
// measured as a circle: dist2 and diam the diameter, area, perimeter, rad1 and rad2 the radius.
// Three centroids on one line give no circle.
class GRAPHICSOBJECTS_EXPORT Circle3 : public ConstructionItem {
    Q_OBJECT
public:
    GRAPHICSOBJECTS_CONSTRUCTION(Circle3, "circle3_mesureIndex", Diam)

    // The circle found, in scene coordinates and pixels; meaningful while hasResult().
    QPointF centre() const { return m_centre; }
    double radius() const { return m_radius; }

private:
    QPointF m_centre;
    double m_radius = 0;
};
