#include "PolygonItem.h"

PolygonItem::PolygonItem(QGraphicsItem* parent, int id, void* context)
    : VertexItem(parent, true) {
    takeRecord(initGenerated(id, context, MesureKey, MesureDefault));
}

void PolygonItem::measure(bool live) {
    const QPolygonF points = vertices();
    takeOutlineMesures(measureOutline(points, !live || points.size() <= LiveHullLimit));
}
