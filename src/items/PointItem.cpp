#include "PointItem.h"

#include <QPainterPath>

namespace {

// Half the side of the cross that marks the point.
constexpr double MarkSize = 6;

} // namespace

PointItem::PointItem(QGraphicsItem* parent, int id, void* context)
    : PositionItem(parent, 1) {
    initIdentity(id, MesureKey, MesureDefault);
    QPainterPath mark;
    mark.moveTo(-MarkSize, 0);
    mark.lineTo(MarkSize, 0);
    mark.moveTo(0, -MarkSize);
    mark.lineTo(0, MarkSize);
    setPath(mark);
    if (const _AUTOPOINTPARAMS* params = startGenerated(context)) {
        copyCommonData(this, params->source);
        setPoint(params->points.isEmpty() ? params->center : params->points.first());
        computeMesures(nullptr);
    }
}

QList<AbstractBaseItem::MenuEntry> PointItem::mesureMenu() const {
    return {{QT_TR_NOOP("X"), Dist1}, {QT_TR_NOOP("Y"), Dist2}, {QT_TR_NOOP("None"), NoMesure}};
}
