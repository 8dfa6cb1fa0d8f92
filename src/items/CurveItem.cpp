#include "CurveItem.h"

#include "GeometrySplines.h"
#include "OutlineShape.h"
#include "VDxfCurvesAsSplines.h"

#include <QPainter>

CurveItem::CurveItem(QGraphicsItem* parent, int id, void* context)
    : VertexItem(parent, false) {
    initIdentity(id, MesureKey, MesureDefault);
    // The item paints the curve itself, so that the DXF export keeps it a curve.
    outline()->setVisible(false);
    takeRecord(startGenerated(context));
}

QList<AbstractBaseItem::MenuEntry> CurveItem::mesureMenu() const {
    return {{QT_TR_NOOP("Length"), Dist1},
            {QT_TR_NOOP("Distance"), Dist2},
            {QT_TR_NOOP("Tortuosity"), Cust},
            {QT_TR_NOOP("None"), NoMesure}};
}

QPainterPath CurveItem::pathThrough(const QPolygonF& points) const {
    const QPolygonF controls = catmullRomBezier(points);
    if (controls.isEmpty())
        return VertexItem::pathThrough(points);
    QPainterPath path(controls.first());
    path.reserve(int(controls.size()));
    for (qsizetype i = 1; i + 2 < controls.size(); i += 3)
        path.cubicTo(controls[i], controls[i + 1], controls[i + 2]);
    return path;
}

void CurveItem::measure(bool) {
    takePathMesures(catmullRomLength(vertices()), false);
}

bool CurveItem::endEdition() {
    if (VertexItem::endEdition())
        return true;
    emit objectDeleted(this, getType(), getGUID());
    return false;
}

void CurveItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
    const VDxfCurvesAsSplines splines;
    painter->setPen(m_pen);
    painter->setBrush(Qt::NoBrush);
    painter->drawPath(outline()->path());
    commonPaintCentroidText(painter);
}
