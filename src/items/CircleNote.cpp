#include "CircleNote.h"

#include "AbstractScene.h"
#include "GeometryIntersections.h"
#include "HoverEventItem.h"
#include "VariantText.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QGraphicsPathItem>
#include <QGraphicsSceneMouseEvent>
#include <QMenu>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int zooms[] = {2, 4, 8};
// A drag shorter than this is a click.
constexpr double ClickSlack = 3;

bool isZoom(int zoom) {
    return std::find(std::begin(zooms), std::end(zooms), zoom) != std::end(zooms);
}

double clampedRadius(double r) {
    return std::isfinite(r) ? std::clamp(r, 0.0, CircleNote::MaxRadius) : 0.0;
}

} // namespace

CircleNote::CircleNote(QGraphicsItem* parent, int id, void* context)
    : ShapeItem(parent, new QGraphicsPathItem, 1, 2) {
    initGenerated(id, context, MesureKey, MesureDefault, [this](const _AUTOPOINTPARAMS& params) {
        setRegion(mapFromScene(params.center), params.radius);
        setNoteCentre(params.points.isEmpty() ? offeredNoteCentre() : mapFromScene(params.points.first()));
    });
}

QList<QLineF> CircleNote::tangents() const {
    const QPointF a = regionCentre();
    const QPointF b = noteCentre();
    const double ra = regionRadius();
    const double rb = noteRadius();
    // Outer tangents exist while neither circle holds the other; they are the first two found.
    QList<QPointF> points;
    if (!(std::hypot(b.x() - a.x(), b.y() - a.y()) > std::abs(rb - ra)) ||
        !circle_circle_tangents(a.x(), a.y(), ra, b.x(), b.y(), rb, points) || points.size() < 4)
        return {};
    return {QLineF(points[0], points[1]), QLineF(points[2], points[3])};
}

void CircleNote::rebuild() {
    QPainterPath path;
    const double r = regionRadius();
    const double R = noteRadius();
    path.addEllipse(regionCentre(), r, r);
    path.addEllipse(noteCentre(), R, R);
    for (const QLineF& line : tangents()) {
        path.moveTo(line.p1());
        path.lineTo(line.p2());
    }
    prepareGeometryChange();
    child<QGraphicsPathItem>()->setPath(path);
    computeMesures(nullptr);
    refreshHandgrips();
    update();
}

void CircleNote::setRegion(const QPointF& centre, double radius) {
    if (!isSceneNumber(centre.x()) || !isSceneNumber(centre.y()))
        return;
    m_mline[0] = centre;
    m_radius1 = clampedRadius(radius);
    rebuild();
}

void CircleNote::setNoteCentre(const QPointF& centre) {
    if (!isSceneNumber(centre.x()) || !isSceneNumber(centre.y()))
        return;
    m_mline[1] = centre;
    rebuild();
}

void CircleNote::setMagnification(int zoom) {
    if (!isZoom(zoom) || zoom == m_zoom)
        return;
    m_zoom = zoom;
    rebuild();
    emit mesureChanged(this);
    emit mesureChangedEND(this);
}

QPointF CircleNote::offeredNoteCentre() const {
    const double away = (regionRadius() + noteRadius()) * 1.2 / std::sqrt(2.0);
    return regionCentre() + QPointF(away, -away);
}

// Below the note, where the label hides none of its pixels.
QPointF CircleNote::centroid() {
    return noteCentre() + QPointF(0, noteRadius());
}

bool CircleNote::computeMesures(void*) {
    setupCentroidHandgrip();
    m_mesureP[Rad1] = m_radius1;
    m_mesureP[Cust] = m_zoom;
    calibrateMesures({Rad1, Cust});
    placeCentroidHandgrip();
    commonUpdateText();
    return m_radius1 > 0;
}

AbstractBaseItem::MesureText CircleNote::mesureText(int i) const {
    if (i != Cust)
        return ShapeItem::mesureText(i);
    MesureText text;
    text.name = QStringLiteral("x");
    text.number = QString::number(m_zoom);
    return text;
}

void CircleNote::mousePress(QGraphicsSceneMouseEvent* event) {
    const QPointF p = mapFromScene(event->scenePos());
    if (m_stage == PlacingNote) {
        setNoteCentre(p);
        return;
    }
    if (m_creationStarted)
        return;
    m_creationStarted = true;
    m_stage = DrawingRegion;
    m_mline = {p, p};
    setRegion(p, 0);
}

void CircleNote::mouseMove(QGraphicsSceneMouseEvent* event) {
    const QPointF p = mapFromScene(event->scenePos());
    if (m_stage == PlacingNote) {
        setNoteCentre(p);
    } else if (m_stage == DrawingRegion && (event->buttons() & Qt::LeftButton)) {
        const QPointF d = p - regionCentre();
        m_radius1 = clampedRadius(std::hypot(d.x(), d.y()));
        setNoteCentre(offeredNoteCentre());
    }
}

AbstractBaseItem::typModeEdition CircleNote::mouseRelease(QGraphicsSceneMouseEvent*) {
    if (m_stage != DrawingRegion)
        return EditionComplete;
    if (m_radius1 < ClickSlack)
        m_radius1 = DefaultRadius;
    setNoteCentre(offeredNoteCentre());
    m_stage = PlacingNote;
    return EditionCreating;
}

AbstractBaseItem::typModeEdition CircleNote::completeCreation() {
    if (m_radius1 < ClickSlack)
        setRegion(regionCentre(), DefaultRadius);
    return EditionComplete;
}

bool CircleNote::endEdition() {
    m_stage = Idle;
    if (!(m_radius1 > 0))
        return false;
    emit mesureChangedEND(this);
    return true;
}

QList<AbstractBaseItem::MenuEntry> CircleNote::mesureMenu() const {
    return {{QT_TR_NOOP("Radius"), Rad1}, {QT_TR_NOOP("Magnification"), Cust}};
}

void CircleNote::fillContextMenu(QMenu* menu) {
    ShapeItem::fillContextMenu(menu);
    menu->addSeparator();
    for (const int zoom : zooms)
        createMenuAction(menu, QIcon(), tr("%1x").arg(zoom), m_zoom == zoom, nullptr, -zoom);
}

void CircleNote::applyContextMenu(int data) {
    if (data < 0)
        setMagnification(-data);
    else
        ShapeItem::applyContextMenu(data);
}

QList<AbstractBaseItem::Handle> CircleNote::handles() const {
    return {{RegionCentre, HoverEventItem::Move, regionCentre()},
            {RegionEdge, HoverEventItem::ResizeHorizontal, regionCentre() + QPointF(regionRadius(), 0)},
            {NoteCentre, HoverEventItem::Move, noteCentre()}};
}

void CircleNote::handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers) {
    const QPointF p = mapFromScene(scenePos);
    if (id == RegionCentre) {
        setRegion(p, regionRadius());
    } else if (id == RegionEdge) {
        const QPointF d = p - regionCentre();
        setRegion(regionCentre(), std::max(1.0, std::hypot(d.x(), d.y())));
    } else if (id == NoteCentre) {
        setNoteCentre(p);
    }
    emit mesureChanged(this);
}

QRect CircleNote::regionPixels(const QImage& image) const {
    const double r = regionRadius();
    const QPointF c = mapToScene(regionCentre());
    return QRectF(c - QPointF(r, r), QSizeF(2 * r, 2 * r)).toAlignedRect().intersected(image.rect());
}

// The region's pixels, each a square of the magnification's side, centred as the region is.
void CircleNote::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
    const AbstractScene* host = hostScene();
    const QImage image = host ? host->image() : QImage();
    const QRect pixels = regionPixels(image);
    if (!pixels.isEmpty() && m_radius1 > 0) {
        const QPointF offset = QPointF(pixels.topLeft()) - mapToScene(regionCentre());
        const QRectF target(noteCentre() + offset * m_zoom, QSizeF(pixels.size()) * m_zoom);
        QPainterPath note;
        note.addEllipse(noteCentre(), noteRadius(), noteRadius());
        painter->save();
        painter->setClipPath(note, Qt::IntersectClip);
        painter->setRenderHint(QPainter::SmoothPixmapTransform, false);
        painter->drawImage(target, image, pixels);
        painter->restore();
    }
    commonPaintCentroidText(painter);
}

QVariant CircleNote::itemChange(GraphicsItemChange change, const QVariant& value) {
    if (change == ItemSceneHasChanged) {
        disconnect(m_imageConnection);
        if (auto* host = qobject_cast<AbstractScene*>(value.value<QGraphicsScene*>()))
            m_imageConnection =
                connect(host, &AbstractScene::imageChanged, this, &CircleNote::sceneImageChanged);
    }
    return ShapeItem::itemChange(change, value);
}

void CircleNote::sceneImageChanged() {
    update();
    const AbstractScene* host = hostScene();
    emit imageChanged(QStringLiteral("scene"), host && !regionPixels(host->image()).isEmpty());
}

void CircleNote::writeGeometry(XmlAttributes& e) const {
    e.setAttribute(QStringLiteral("region"), variantToString(regionCentre()));
    e.setAttribute(QStringLiteral("note"), variantToString(noteCentre()));
    // Every digit: the loaded note measures what the saved one did.
    e.setAttribute(QStringLiteral("radius1"), QString::number(m_radius1, 'g', 17));
    e.setAttribute(QStringLiteral("zoom"), m_zoom);
    e.setAttribute(QStringLiteral("pos"), variantToString(pos()));
}

void CircleNote::readGeometry(const XmlAttributes& e) {
    const int zoom = e.attribute(QStringLiteral("zoom")).toInt();
    m_zoom = isZoom(zoom) ? zoom : 4;
    setPos(readPoint(e, QStringLiteral("pos")));
    m_mline[1] = readPoint(e, QStringLiteral("note"));
    setRegion(readPoint(e, QStringLiteral("region")), readNumber(e, QStringLiteral("radius1")));
}
