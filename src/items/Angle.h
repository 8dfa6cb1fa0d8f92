#pragma once

#include "ConstructionItem.h"
#include "ItemTypes.h"

// The angle between two straight items (lines, guides, cross arms, a side of a rectangle or ruler,
// a polyline's end segment: the part nearest the click). ang1 is the angle between the arms that
// run from the lines' crossing to their far ends, 0 to 180; ang2 its supplement. Drawn as an arc
// at the crossing; parallel lines give 0, drawn between their nearest ends.
class GRAPHICSOBJECTS_EXPORT Angle : public ConstructionItem {
    Q_OBJECT
public:
    GRAPHICSOBJECTS_CONSTRUCTION(Angle, "angle_mesureIndex", Ang1)
};
