#include "LassoItem.h"

#include "AbstractScene.h"
#include "GeometrySimplify.h"
#include "HoverEventItem.h"
#include "ImageProbes.h"
#include "SimpleTextItem.h"
#include "VariantText.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QGraphicsSceneMouseEvent>
#include <QInputDialog>
#include <QMenu>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr double Pi = 3.14159265358979323846;
// A drag shorter than this (screen pixels) keeps the tolerance the lasso started with.
constexpr double DragSlack = 3;
// The displayed outline stays within this distance (pixels) of the region's pixel edges.
constexpr double Simplification = 0.5;
constexpr qint64 MaxPixels = qint64(1) << 40;

struct Shared {
    int regionsSegmented = 0;
    int lastTolerance = 0;
    QList<QPolygonF> outlines;
};

Shared& shared() {
    static Shared state;
    return state;
}

// The outline turned clockwise on screen (outer) or anticlockwise (hole), so that filling all outlines
// by their winding covers every region and none of their holes, however they nest or repeat.
QPolygonF oriented(QPolygonF outline, bool outer) {
    double twiceArea = 0;
    for (qsizetype i = 0; i < outline.size(); ++i) {
        const QPointF& a = outline[i];
        const QPointF& b = outline[(i + 1) % outline.size()];
        twiceArea += a.x() * b.y() - b.x() * a.y();
    }
    if ((twiceArea > 0) != outer)
        std::reverse(outline.begin(), outline.end());
    return outline;
}

// The pixels of the shared regions, set in an image of the given size; null when there are none.
QImage sharedRegionsMask(const QSize& size) {
    if (shared().outlines.isEmpty())
        return QImage();
    QImage mask(size, QImage::Format_Grayscale8);
    if (mask.isNull())
        return mask;
    mask.fill(0);
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    for (const QPolygonF& outline : std::as_const(shared().outlines)) {
        path.addPolygon(outline);
        path.closeSubpath();
    }
    QPainter painter(&mask);
    painter.fillPath(path, Qt::white);
    return mask;
}

// The displayed form of an exact outline; the exact one when simplifying leaves no area.
QPolygonF displayed(const QPolygonF& exact) {
    const QPolygonF simple = simplifyPolyline(exact, Simplification, true);
    return simple.size() >= 3 ? simple : exact;
}

} // namespace

int LassoItem::regionsSegmented() {
    return shared().regionsSegmented;
}

int LassoItem::lastTolerance() {
    return shared().lastTolerance;
}

QList<QPolygonF> LassoItem::segmentedOutlines() {
    return shared().outlines;
}

void LassoItem::resetShared() {
    shared() = Shared();
}

LassoItem::LassoItem(QGraphicsItem* parent, int id, void* context)
    : VertexItem(parent, true) {
    initIdentity(id, MesureKey, MesureDefault);
    if (lastTolerance() > 0)
        m_tolerance = lastTolerance();
    const _AUTOPOINTPARAMS* params = startGenerated(context);
    if (!params)
        return;
    if (params->source)
        copyCommonData(this, params->source);
    m_modeEdition = EditionComplete;
    m_seed = mapFromScene(params->center);
    if (params->radius > 0 && std::isfinite(params->radius))
        m_tolerance = int(std::min<double>(std::lround(params->radius), MaxTolerance));
    m_waitsForImage = true;
}

LassoItem::~LassoItem() {
    unshare();
}

void LassoItem::share() {
    if (m_shared.isEmpty() || m_isShared)
        return;
    shared().outlines.append(m_shared);
    m_isShared = true;
}

void LassoItem::unshare() {
    if (!m_isShared)
        return;
    // Equal outlines stand for the same pixels, so whichever copy goes, the rest covers the same.
    for (const QPolygonF& outline : std::as_const(m_shared))
        shared().outlines.removeOne(outline);
    m_isShared = false;
}

void LassoItem::clearRegion() {
    m_holes.clear();
    m_pixels = 0;
    m_shared.clear();
    setVertices(QPolygonF());
}

bool LassoItem::segment() {
    return grow(true);
}

bool LassoItem::grow(bool final) {
    unshare();
    const AbstractScene* host = hostScene();
    const QImage image = host ? host->image() : QImage();
    const QPointF seed = mapToScene(m_seed);
    const QPoint pixel(int(std::floor(seed.x())), int(std::floor(seed.y())));
    m_waitsForImage = image.isNull();
    std::optional<RegionOutline> region;
    if (image.isNull())
        m_refusal = tr("There is no image to segment: the lasso segments when one arrives");
    else if (!isSceneNumber(seed.x()) || !isSceneNumber(seed.y()) || !image.rect().contains(pixel))
        m_refusal = tr("The click lies outside the image");
    else if (!(region = growRegion(image, pixel, m_tolerance, 0, sharedRegionsMask(image.size()))))
        m_refusal = tr("The click lies on a region segmented before");
    else
        m_refusal.clear();
    if (!region) {
        clearRegion();
        setToolTip(m_refusal);
        return false;
    }
    m_pixels = region->pixelCount;
    m_shared = {oriented(region->outer, true)};
    m_holes.clear();
    for (const QPolygonF& hole : std::as_const(region->holes)) {
        m_shared.append(oriented(hole, false));
        m_holes.append(mapFromScene(displayed(hole)));
    }
    setVertices(mapFromScene(displayed(region->outer)));
    if (!final)
        return true;
    share();
    shared().lastTolerance = m_tolerance;
    if (!m_counted)
        ++shared().regionsSegmented;
    m_counted = true;
    emit mesureChanged(this);
    emit mesureChangedEND(this);
    emit itemChanged(this, QStringLiteral("segmented"), nullptr);
    return true;
}

void LassoItem::setTolerance(int tolerance) {
    m_tolerance = std::clamp(tolerance, 0, MaxTolerance);
    if (m_creationStarted)
        grow(true);
}

QPainterPath LassoItem::pathThrough(const QPolygonF& points) const {
    QPainterPath path = VertexItem::pathThrough(points);
    path.setFillRule(Qt::OddEvenFill);
    for (const QPolygonF& hole : m_holes) {
        path.addPolygon(hole);
        path.closeSubpath();
    }
    return path;
}

void LassoItem::measure(bool) {
    const OutlineMesures outer = measureOutline(vertices(), true);
    takeOutlineMesures(outer);
    // The region's own centroid: the outline's, less its holes'.
    double area = outer.area;
    QPointF moment = outer.centroid * outer.area;
    for (const QPolygonF& hole : std::as_const(m_holes)) {
        const OutlineMesures inner = measureOutline(hole, false);
        area -= inner.area;
        moment -= inner.centroid * inner.area;
    }
    if (area > 0)
        m_centroidPoint = moment / area;
    m_mesureP[Aera] = double(m_pixels);
    m_mesureP[Cust] =
        outer.perimeter > 0 ? 4 * Pi * double(m_pixels) / (outer.perimeter * outer.perimeter) : 0.0;
    calibrateMesures({Aera, Cust});
}

void LassoItem::mousePress(QGraphicsSceneMouseEvent* event) {
    const QPointF p = mapFromScene(event->scenePos());
    if (m_creationStarted || !isSceneNumber(p.x()) || !isSceneNumber(p.y()))
        return;
    m_creationStarted = true;
    m_seed = p;
    m_pressScreen = event->screenPos();
    grow(false);
}

void LassoItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton))
        return;
    const QPoint d = event->screenPos() - m_pressScreen;
    const double distance = std::hypot(d.x(), d.y());
    if (distance < DragSlack)
        return;
    const int tolerance = int(std::min<double>(std::lround(distance), MaxTolerance));
    if (tolerance != m_tolerance) {
        m_tolerance = tolerance;
        grow(false);
    }
    setupCentroidHandgrip();
    m_label->setText(tr("tolerance:%1").arg(m_tolerance));
    m_label->setVisible(true);
}

AbstractBaseItem::typModeEdition LassoItem::mouseRelease(QGraphicsSceneMouseEvent*) {
    m_modeEdition = EditionComplete;
    return m_modeEdition;
}

// A lasso on a scene without an image waits for one; other refusals discard it.
bool LassoItem::endEdition() {
    return grow(true) || m_waitsForImage;
}

QList<AbstractBaseItem::Handle> LassoItem::handles() const {
    if (!m_creationStarted)
        return {};
    return {{0, HoverEventItem::Move, m_seed}};
}

void LassoItem::handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers) {
    const QPointF p = mapFromScene(scenePos);
    if (id != 0 || !isSceneNumber(p.x()) || !isSceneNumber(p.y()))
        return;
    m_seed = p;
    if (HoverEventItem* grip = handgrip(0))
        grip->setPos(p);
    grow(false);
}

void LassoItem::handleReleased(int, const QPointF&, Qt::KeyboardModifiers) {
    grow(true);
}

void LassoItem::fillContextMenu(QMenu* menu) {
    VertexItem::fillContextMenu(menu);
    menu->addSeparator();
    createMenuAction(menu, QIcon(), tr("Tolerance..."), false, nullptr, ToleranceCommand);
}

void LassoItem::applyContextMenu(int data) {
    if (data != ToleranceCommand) {
        VertexItem::applyContextMenu(data);
        return;
    }
    bool ok = false;
    const int tolerance = QInputDialog::getInt(nullptr, tr("Lasso"), tr("Tolerance (grey levels):"),
                                               m_tolerance, 0, MaxTolerance, 1, &ok);
    if (ok)
        setTolerance(tolerance);
}

QVariant LassoItem::itemChange(GraphicsItemChange change, const QVariant& value) {
    if (change == ItemSceneHasChanged) {
        disconnect(m_imageConnection);
        if (auto* host = qobject_cast<AbstractScene*>(value.value<QGraphicsScene*>())) {
            m_imageConnection =
                connect(host, &AbstractScene::imageChanged, this, &LassoItem::sceneImageChanged);
            sceneImageChanged();
        }
    }
    return VertexItem::itemChange(change, value);
}

void LassoItem::sceneImageChanged() {
    const AbstractScene* host = hostScene();
    if (m_waitsForImage && host && !host->image().isNull())
        grow(true);
}

void LassoItem::writeGeometry(XmlAttributes& e) const {
    VertexItem::writeGeometry(e);
    QStringList holes;
    for (const QPolygonF& hole : m_holes)
        holes << coordsText(mapToParent(hole));
    e.setAttribute(QStringLiteral("holes"), holes.join(QLatin1Char('|')));
    e.setAttribute(QStringLiteral("seed"), variantToString(mapToParent(m_seed)));
    e.setAttribute(QStringLiteral("tolerance"), m_tolerance);
    e.setAttribute(QStringLiteral("pixels"), QString::number(m_pixels));
    e.setAttribute(QStringLiteral("waiting"), m_waitsForImage ? 1 : 0);
}

// The saved region stands as it was segmented; it is shared with the other lassos again.
void LassoItem::readGeometry(const XmlAttributes& e) {
    unshare();
    m_holes.clear();
    for (const QString& text :
         e.attribute(QStringLiteral("holes")).split(QLatin1Char('|'), Qt::SkipEmptyParts)) {
        const QPolygonF hole = readCoords(text);
        if (hole.size() >= 3)
            m_holes.append(hole);
    }
    m_seed = readPoint(e, QStringLiteral("seed"));
    m_tolerance = std::clamp(e.attribute(QStringLiteral("tolerance")).toInt(), 0, MaxTolerance);
    m_pixels = std::clamp(e.attribute(QStringLiteral("pixels")).toLongLong(), qint64(0), MaxPixels);
    m_waitsForImage = e.attribute(QStringLiteral("waiting")).toInt() != 0;
    VertexItem::readGeometry(e);
    m_counted = !m_mline.isEmpty();
    m_shared.clear();
    if (m_mline.size() >= 3) {
        m_shared.append(oriented(QPolygonF(mline()), true));
        for (const QPolygonF& hole : std::as_const(m_holes))
            m_shared.append(oriented(mapToScene(hole), false));
    }
    share();
}
