#include "PolylineItem.h"

#include "GeometryPolygonMetrics.h"

PolylineItem::PolylineItem(QGraphicsItem* parent, int id, void* context)
    : VertexItem(parent, false) {
    takeRecord(initGenerated(id, context, MesureKey, MesureDefault));
}

QList<AbstractBaseItem::MenuEntry> PolylineItem::mesureMenu() const {
    return {{QT_TR_NOOP("Length"), Dist1},
            {QT_TR_NOOP("Distance"), Dist2},
            {QT_TR_NOOP("Direction"), Ang1},
            {QT_TR_NOOP("Tortuosity"), Cust},
            {QT_TR_NOOP("None"), NoMesure}};
}

void PolylineItem::measure(bool) {
    takePathMesures(polygonPerimeter(vertices(), false), true);
}
