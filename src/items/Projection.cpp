#include "Projection.h"

#include "ConstructionGeometry.h"

using namespace Construction;

Projection::Projection(QGraphicsItem* parent, int id, void*)
    : ConstructionItem(parent, 1, 2) {
    initIdentity(id, MesureKey, MesureDefault);
}

QList<AbstractBaseItem::MenuEntry> Projection::mesureMenu() const {
    return {{QT_TR_NOOP("Distance"), Dist1}, {QT_TR_NOOP("None"), NoMesure}};
}

QPointF Projection::foot() const {
    return resultPoints().value(0);
}

QString Projection::refusePick(const QList<AbstractBaseItem*>& earlier, AbstractBaseItem* item,
                               const std::optional<QPointF>& hint) const {
    if (earlier.isEmpty() || straightOf(item, hint))
        return QString();
    return tr("The second item must be straight: a line, a guide, a rectangle or ruler side, a polyline end");
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
