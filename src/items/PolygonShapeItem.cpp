#include "PolygonShapeItem.h"

#include "GeometryPolygonMetrics.h"
#include "HoverEventItem.h"
#include "OutlineShape.h"
#include "PolygonItem.h"
#include "VariantText.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QGraphicsScene>
#include <QGraphicsSceneMouseEvent>
#include <QInputDialog>
#include <QMenu>

namespace {

const QString SidesKey = QStringLiteral("polygonshape_sides");
// The numbers of sides the menu offers at once; any other comes from a dialog.
constexpr int offeredSides[] = {3, 4, 5, 6, 8, 10, 12, 16, 24, 32, 64};
// A shape smaller than this (circumradius, pixels) is a click, not a drawing.
constexpr double MinRadius = 2;

bool usable(const QPointF& p) {
    return isSceneNumber(p.x()) && isSceneNumber(p.y());
}

} // namespace

PolygonShapeItem::PolygonShapeItem(QGraphicsItem* parent, int id, void* context)
    : ShapeItem(parent, new OutlineShape, 1, 2) {
    initIdentity(id, MesureKey, MesureDefault);
    const int remembered = getCommonParams(SidesKey, DefaultSides).toInt();
    if (remembered >= MinSides && remembered <= MaxSides)
        m_sides = remembered;
    child<OutlineShape>()->setAcceptedMouseButtons(Qt::NoButton);
    const _AUTOPOINTPARAMS* params = startGenerated(context);
    if (!params)
        return;
    if (params->source)
        copyCommonData(this, params->source);
    const QPointF c = mapFromScene(params->center);
    setShape(c, params->points.isEmpty() ? c + QPointF(params->radius, 0)
                                         : mapFromScene(params->points.first()));
}

void PolygonShapeItem::setShape(const QPointF& centre, const QPointF& corner) {
    if (!usable(centre) || !usable(corner))
        return;
    m_mline = {centre, corner};
    rebuild();
}

bool PolygonShapeItem::setSides(int sides) {
    if (sides < MinSides || sides > MaxSides)
        return false;
    m_sides = sides;
    QVariant value = sides;
    setCommonParams(SidesKey, value);
    rebuild();
    emit mesureChanged(this);
    emit mesureChangedEND(this);
    return true;
}

void PolygonShapeItem::rebuild() {
    const std::optional<RegularPolygon> shape = regularPolygon(centre(), corner(), m_sides);
    m_vertices = shape ? shape->vertices : QPolygonF();
    QPainterPath path;
    path.addPolygon(m_vertices);
    path.closeSubpath();
    prepareGeometryChange();
    child<OutlineShape>()->setPath(path);
    computeMesures(nullptr);
    refreshHandgrips();
    update();
}

bool PolygonShapeItem::computeMesures(void*) {
    const std::optional<RegularPolygon> shape = regularPolygon(centre(), corner(), m_sides);
    const RegularPolygon p = shape.value_or(RegularPolygon());
    m_mesureP[Dist1] = p.side;
    m_mesureP[Perim] = p.side * m_sides;
    m_mesureP[Aera] = p.side * m_sides * p.inradius / 2;
    m_mesureP[Rad1] = p.circumradius;
    m_mesureP[Rad2] = p.inradius;
    calibrateMesures({Dist1, Perim, Aera, Rad1, Rad2});
    placeCentroidHandgrip();
    commonUpdateText();
    return shape.has_value();
}

void PolygonShapeItem::mousePress(QGraphicsSceneMouseEvent* event) {
    if (m_creationStarted)
        return;
    m_creationStarted = true;
    const QPointF p = mapFromScene(event->scenePos());
    setShape(p, p);
}

void PolygonShapeItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    setShape(centre(), mapFromScene(event->scenePos()));
}

bool PolygonShapeItem::endEdition() {
    if (!(m_mesureP[Rad1] >= MinRadius))
        return false;
    emit mesureChangedEND(this);
    return true;
}

QList<AbstractBaseItem::Handle> PolygonShapeItem::handles() const {
    return {{CentreGrip, HoverEventItem::Move, centre()}, {CornerGrip, HoverEventItem::Move, corner()}};
}

void PolygonShapeItem::handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers) {
    const QPointF p = mapFromScene(scenePos);
    if (id == CentreGrip)
        setShape(p, corner() + (p - centre()));
    else if (id == CornerGrip)
        setShape(centre(), p);
    emit mesureChanged(this);
}

QList<AbstractBaseItem::MenuEntry> PolygonShapeItem::mesureMenu() const {
    return {{QT_TR_NOOP("Area"), Aera},         {QT_TR_NOOP("Perimeter"), Perim},
            {QT_TR_NOOP("Circumradius"), Rad1}, {QT_TR_NOOP("Inradius"), Rad2},
            {QT_TR_NOOP("Side"), Dist1},        {QT_TR_NOOP("None"), NoMesure}};
}

void PolygonShapeItem::fillContextMenu(QMenu* menu) {
    ShapeItem::fillContextMenu(menu);
    menu->addSeparator();
    QMenu* sides = menu->addMenu(tr("Sides"));
    for (int n : offeredSides)
        createMenuAction(sides, QIcon(), QString::number(n), n == m_sides, nullptr, SidesBase - n);
    createMenuAction(sides, QIcon(), tr("Other..."), false, nullptr, OtherSides);
    createMenuAction(menu, QIcon(), tr("Turn into a free PolygonItem"), false, nullptr, TurnIntoPolygon)
        ->setEnabled(!m_vertices.isEmpty());
}

void PolygonShapeItem::applyContextMenu(int data) {
    if (data == TurnIntoPolygon) {
        turnIntoPolygon();
    } else if (data == OtherSides) {
        bool ok = false;
        const int n = QInputDialog::getInt(nullptr, tr("Sides"), tr("Number of sides:"), m_sides, MinSides,
                                           MaxSides, 1, &ok);
        if (ok)
            setSides(n);
    } else if (data <= SidesBase - MinSides) {
        setSides(SidesBase - data);
    } else {
        ShapeItem::applyContextMenu(data);
    }
}

PolygonItem* PolygonShapeItem::turnIntoPolygon() {
    if (m_vertices.isEmpty())
        return nullptr;
    _AUTOPOINTPARAMS record;
    record.points = toScene(m_vertices);
    record.source = this;
    auto* polygon = new PolygonItem(parentItem(), 0, &record);
    polygon->setgenerated(m_generated);
    polygon->setPen(m_pen);
    polygon->setBrush(m_brush);
    polygon->setFont(m_font);
    QGraphicsScene* host = scene();
    if (host)
        host->addItem(polygon);
    emit itemChanged(this, QStringLiteral("polygon"), polygon);
    if (host) {
        if (isSelected())
            polygon->forceSelection();
        emit objectDeleted(this, getType(), getGUID());
        host->removeItem(this);
        deleteLater();
    }
    return polygon;
}

void PolygonShapeItem::writeGeometry(XmlAttributes& e) const {
    e.setAttribute(QStringLiteral("centre"), variantToString(mapToParent(centre())));
    e.setAttribute(QStringLiteral("corner"), variantToString(mapToParent(corner())));
    e.setAttribute(QStringLiteral("sides"), m_sides);
}

void PolygonShapeItem::readGeometry(const XmlAttributes& e) {
    const int sides = e.attribute(QStringLiteral("sides")).toInt();
    m_sides = sides >= MinSides && sides <= MaxSides ? sides : DefaultSides;
    setPos(0, 0);
    m_mline = {readPoint(e, QStringLiteral("centre")), readPoint(e, QStringLiteral("corner"))};
    rebuild();
}
