#include "Projection.h"

#include "ConstructionGeometry.h"

using namespace Construction;

ConstructionItem::Kind Projection::kind() {
    return {{Need::Anything, Need::Straight}, {{QT_TR_NOOP("Distance"), Dist1}}};
}

QPointF Projection::foot() const {
    return resultPoints().value(0);
}

QString Projection::build(Drawing& drawing) {
    const std::optional<QLineF> line = straightOf(source(1), hint(1));
    if (!line)
        return tr("The second item has no straight part");
    const QPointF from = centroidOf(source(0));
    const QPointF to = footOn(from, *line);
    m_mesureP[Dist1] = QLineF(from, to).length();
    addSegment(drawing.lines, from, to);
    addExtension(drawing.lines, *line, to);
    drawing.points = {to};
    drawing.anchor = (from + to) / 2;
    return QString();
}
