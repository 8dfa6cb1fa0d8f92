#include "VertexItem.h"

#include "GeometryFinite.h"
#include "GeometryHull.h"
#include "GeometryPolygonMetrics.h"
#include "GeometrySegments.h"
#include "GeometrySelfIntersection.h"
#include "GeometrySimplify.h"
#include "HoverEventItem.h"
#include "OutlineShape.h"
#include "VariantText.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QGraphicsSceneContextMenuEvent>
#include <QGraphicsSceneHoverEvent>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsView>
#include <QInputDialog>
#include <QKeyEvent>
#include <QMenu>

#include <algorithm>
#include <cmath>

namespace {

constexpr double Pi = 3.14159265358979323846;
// A click this close (view pixels) to the first vertex closes an outline being drawn.
constexpr double CloseDistance = 8;
// Menu and Delete reach a vertex this close (item units) to where the menu opened, and a click an edge.
constexpr double VertexReach = 10;
constexpr double EdgeReach = 10;
constexpr int MaxSimplifyPasses = 12;

// View pixels per scene unit in the view the event came from.
double viewScale(const QGraphicsSceneEvent* event) {
    const auto* view =
        event->widget() ? qobject_cast<QGraphicsView*>(event->widget()->parentWidget()) : nullptr;
    return view ? std::max(1e-9, std::abs(view->transform().m11())) : 1.0;
}

bool usable(const QPointF& p) {
    return isSceneNumber(p.x()) && isSceneNumber(p.y());
}

} // namespace

VertexItem::VertexItem(QGraphicsItem* parent, bool closed)
    : ShapeItem(parent, new OutlineShape, 1, 0)
    , m_closed(closed) {
    outline()->setFilledShape(closed);
    outline()->setAcceptedMouseButtons(Qt::NoButton);
    setFlag(ItemIsFocusable, true);
    setAcceptHoverEvents(true);
}

OutlineShape* VertexItem::outline() const {
    return child<OutlineShape>();
}

bool VertexItem::contains(const QPointF& p) const {
    return outline()->contains(p);
}

void VertexItem::takeRecord(const _AUTOPOINTPARAMS* params) {
    if (!params)
        return;
    if (params->source)
        copyCommonData(this, params->source);
    m_modeEdition = EditionComplete;
    setVertices(QPolygonF(fromScene(params->points)));
}

bool VertexItem::setVertices(const QPolygonF& points) {
    if (points.size() > MaxVertices || !std::all_of(points.begin(), points.end(), usable))
        return false;
    m_mline = finiteDistinct(points, m_closed);
    m_nearGrips.clear();
    rebuild();
    updateMesures(false);
    return true;
}

QPainterPath VertexItem::pathThrough(const QPolygonF& points) const {
    QPainterPath path;
    if (points.isEmpty())
        return path;
    path.reserve(int(points.size()) + 1);
    path.moveTo(points.first());
    for (qsizetype i = 1; i < points.size(); ++i)
        path.lineTo(points[i]);
    if (m_closed && points.size() >= 3)
        path.closeSubpath();
    return path;
}

void VertexItem::rebuild() {
    QPolygonF points = vertices();
    if (m_hasPreview)
        points.append(m_preview);
    prepareGeometryChange();
    outline()->setPath(pathThrough(points));
    refreshHandgrips();
    update();
}

// --- Measures

VertexItem::OutlineMesures VertexItem::measureOutline(const QPolygonF& points, bool withHull) {
    OutlineMesures m;
    const qsizetype n = points.size();
    double twiceArea = 0, cx = 0, cy = 0;
    QPointF mean;
    for (qsizetype i = 0; i < n; ++i) {
        const QPointF& a = points[i];
        const QPointF& b = points[(i + 1) % n];
        const double cross = a.x() * b.y() - b.x() * a.y();
        twiceArea += cross;
        cx += (a.x() + b.x()) * cross;
        cy += (a.y() + b.y()) * cross;
        mean += a / double(n);
    }
    m.area = std::abs(twiceArea) / 2;
    // A flat outline has no centroid of its own: the mean of its vertices stands for it.
    m.centroid = twiceArea != 0 ? QPointF(cx / (3 * twiceArea), cy / (3 * twiceArea)) : mean;
    m.perimeter = polygonPerimeter(points, true);
    if (withHull) {
        const std::optional<Caliper> feret = maxFeretDiameter(points);
        const std::optional<Caliper> width = minCaliperWidth(points);
        m.feret = feret ? feret->length : 0.0;
        m.feretAngle = feret ? feret->angle : 0.0;
        m.width = width ? width->length : 0.0;
        m.crosses = polygonSelfIntersects(points, true);
    }
    return m;
}

void VertexItem::takeOutlineMesures(const OutlineMesures& m) {
    m_mesureP[Aera] = m.area;
    m_mesureP[Perim] = m.perimeter;
    m_mesureP[Cust] = m.perimeter > 0 ? 4 * Pi * m.area / (m.perimeter * m.perimeter) : 0.0;
    m_centroidPoint = m.centroid;
    if (m.feret) {
        m_mesureP[Dist1] = *m.feret;
        m_mesureP[Ang1] = *m.feretAngle;
        m_mesureP[Dist2] = *m.width;
        m_crosses = *m.crosses;
    }
    calibrateMesures({Dist1, Dist2, Ang1, Aera, Perim, Cust});
}

void VertexItem::takePathMesures(double length, bool direction) {
    const QLineF chord(m_mline.first(), m_mline.last());
    const double straight = chord.length();
    m_mesureP[Dist1] = length;
    m_mesureP[Dist2] = straight;
    m_mesureP[Cust] = straight > 0 ? length / straight : 0.0;
    m_mesureP[Ang1] = direction && straight > 0 ? chord.angle() : 0.0;
    m_centroidPoint = halfwayPoint();
    calibrateMesures({Dist1, Dist2, Ang1, Cust});
}

QPointF VertexItem::halfwayPoint() const {
    if (m_mline.isEmpty())
        return QPointF();
    double left = polygonPerimeter(vertices(), false) / 2;
    for (qsizetype i = 1; i < m_mline.size(); ++i) {
        const QLineF edge(m_mline[i - 1], m_mline[i]);
        if (edge.length() >= left)
            return edge.pointAt(edge.length() > 0 ? left / edge.length() : 0.0);
        left -= edge.length();
    }
    return m_mline.first();
}

QList<AbstractBaseItem::MenuEntry> VertexItem::outlineMesureMenu() {
    return {{QT_TR_NOOP("Area"), Aera},        {QT_TR_NOOP("Perimeter"), Perim},
            {QT_TR_NOOP("Feret max"), Dist1},  {QT_TR_NOOP("Width min"), Dist2},
            {QT_TR_NOOP("Feret angle"), Ang1}, {QT_TR_NOOP("Circularity"), Cust},
            {QT_TR_NOOP("None"), NoMesure}};
}

QString VertexItem::crossingNote() {
    return tr("The outline crosses itself: its area is the shoelace sum, where loops turning the other "
              "way count negative");
}

bool VertexItem::computeMesures(void*) {
    return updateMesures(false);
}

bool VertexItem::updateMesures(bool live) {
    if (m_mline.size() < minimumVertices()) {
        std::fill(std::begin(m_mesureP), std::end(m_mesureP), 0.0);
        std::fill(std::begin(m_mesure), std::end(m_mesure), 0.0);
        m_crosses = false;
        return false;
    }
    measure(live);
    placeCentroidHandgrip();
    commonUpdateText();
    setToolTip(m_crosses ? crossingNote() : QString());
    return true;
}

// --- Drawing click by click

void VertexItem::mousePress(QGraphicsSceneMouseEvent* event) {
    const QPointF p = mapFromScene(event->scenePos());
    if (!usable(p))
        return;
    if (!m_creationStarted) {
        m_creationStarted = true;
        m_mline = {p};
        showHandgrips();
        rebuild();
        return;
    }
    QList<QPointF> first{m_mline.first()};
    int index = 0;
    if (m_closed && m_mline.size() >= 3 &&
        isPointSelected(p, first, index, CloseDistance / viewScale(event))) {
        m_closing = true;
        return;
    }
    if (samePoint(m_mline.last(), p) || m_mline.size() >= MaxVertices)
        return;
    m_mline.append(p);
    rebuild();
}

void VertexItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    const QPointF p = mapFromScene(event->scenePos());
    if (m_mline.isEmpty() || !usable(p))
        return;
    m_preview = p;
    m_hasPreview = true;
    rebuild();
}

AbstractBaseItem::typModeEdition VertexItem::mouseRelease(QGraphicsSceneMouseEvent*) {
    m_modeEdition = m_closing ? EditionComplete : EditionCreating;
    return m_modeEdition;
}

AbstractBaseItem::typModeEdition VertexItem::completeCreation() {
    m_modeEdition = EditionComplete;
    return m_modeEdition;
}

bool VertexItem::endEdition() {
    m_hasPreview = false;
    m_closing = false;
    m_mline = finiteDistinct(m_mline, m_closed);
    rebuild();
    if (!updateMesures(false))
        return false;
    emit mesureChangedEND(this);
    return true;
}

// --- Grips and vertex editing

QList<AbstractBaseItem::Handle> VertexItem::handles() const {
    QList<Handle> result;
    if (!editsVertices())
        return result;
    const int n = int(m_mline.size());
    if (n <= MaxGrips) {
        result.reserve(n);
        for (int i = 0; i < n; ++i)
            result.append({i, HoverEventItem::Move, m_mline[i]});
        return result;
    }
    for (int i : m_nearGrips)
        if (i < n)
            result.append({i, HoverEventItem::Move, m_mline[i]});
    return result;
}

void VertexItem::findNearGrips(const QPointF& p, double radius) {
    QList<QPair<double, int>> near;
    const double limit = radius * radius;
    for (int i = 0; i < m_mline.size(); ++i) {
        const QPointF d = m_mline[i] - p;
        const double squared = d.x() * d.x() + d.y() * d.y();
        if (squared <= limit)
            near.append({squared, i});
    }
    if (near.size() > NearGrips) {
        std::nth_element(near.begin(), near.begin() + NearGrips, near.end());
        near.resize(NearGrips);
    }
    QList<int> ids;
    for (const auto& entry : std::as_const(near))
        ids.append(entry.second);
    std::sort(ids.begin(), ids.end());
    if (ids != m_nearGrips) {
        m_nearGrips = ids;
        // A selected outline that had no grip near the cursor has none to move yet.
        if (m_handgripItems.isEmpty())
            showHandgrips();
        else
            refreshHandgrips();
    }
    // Grips of close vertices overlap: the nearest lies on top.
    for (const auto& entry : std::as_const(near))
        if (HoverEventItem* grip = handgrip(entry.second))
            grip->setZValue(-entry.first);
}

void VertexItem::hoverMoveEvent(QGraphicsSceneHoverEvent* event) {
    if (isSelected() && editsVertices() && m_mline.size() > MaxGrips)
        findNearGrips(event->pos(), NearRadius / viewScale(event));
    ShapeItem::hoverMoveEvent(event);
}

void VertexItem::handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers) {
    const QPointF p = mapFromScene(scenePos);
    if (!editsVertices() || id < 0 || id >= m_mline.size() || !usable(p))
        return;
    m_mline[id] = p;
    // One vertex of a straight outline moves in constant time; curves are drawn again.
    prepareGeometryChange();
    if (straightEdges() && !m_hasPreview)
        outline()->moveVertex(id, p);
    else
        outline()->setPath(pathThrough(vertices()));
    if (HoverEventItem* grip = handgrip(id))
        grip->setPos(p);
    updateMesures(true);
    emit mesureChanged(this);
}

void VertexItem::handleReleased(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) {
    updateMesures(false);
    ShapeItem::handleReleased(id, scenePos, modifiers);
}

int VertexItem::insertVertexAt(const QPointF& p) {
    if (!editsVertices() || !usable(p) || m_mline.size() >= MaxVertices)
        return -1;
    const QList<QPointF> before = m_mline;
    if (!createPointIfNeeded(p, m_mline, m_closed) && !insertOnAxisParallelEdge(p))
        return -1;
    int index = 0;
    while (index < before.size() && samePoint(before[index], m_mline[index]))
        ++index;
    m_nearGrips.clear();
    rebuild();
    updateMesures(false);
    emit mesureChanged(this);
    return index;
}

// An edge parallel to an axis has an empty bounding rectangle, which createPointIfNeeded never reaches:
// it is reached within the same distance.
bool VertexItem::insertOnAxisParallelEdge(const QPointF& p) {
    const int n = int(m_mline.size());
    for (int i = 0; i < (m_closed ? n : n - 1) && n >= 2; ++i) {
        const QPointF a = m_mline[i];
        const QPointF b = m_mline[(i + 1) % n];
        if ((a.x() == b.x() || a.y() == b.y()) && distancePointToSegment(p, a, b) < EdgeReach) {
            insertPoint(i + 1, p, m_mline);
            return true;
        }
    }
    return false;
}

bool VertexItem::removeVertex(int index) {
    if (!editsVertices() || index < 0 || index >= m_mline.size() || m_mline.size() <= minimumVertices())
        return false;
    deletePoint(index, m_mline);
    m_mline = finiteDistinct(m_mline, m_closed);
    m_nearGrips.clear();
    rebuild();
    updateMesures(false);
    emit mesureChanged(this);
    emit mesureChangedEND(this);
    return true;
}

int VertexItem::simplify(double tolerance) {
    const int before = int(m_mline.size());
    if (!editsVertices() || !(tolerance > 0) || before <= minimumVertices())
        return 0;
    const QPolygonF original = vertices();
    const bool crossed = polygonSelfIntersects(original, m_closed);
    QPolygonF result = original;
    double t = std::min(tolerance, 1e9);
    for (int pass = 0; pass < MaxSimplifyPasses; ++pass, t /= 2) {
        const QPolygonF candidate = simplifyPolyline(original, t, m_closed);
        const bool acceptable =
            candidate.size() >= minimumVertices() && (crossed || !polygonSelfIntersects(candidate, m_closed));
        emit transformIndex(this, pass, acceptable || pass + 1 == MaxSimplifyPasses);
        if (acceptable) {
            result = candidate;
            break;
        }
    }
    if (result.size() == before || !setVertices(result))
        return 0;
    emit mesureChanged(this);
    emit mesureChangedEND(this);
    return before - int(result.size());
}

int VertexItem::vertexToDelete(const QPointF& p) const {
    for (const HoverEventItem* grip : std::as_const(m_handgripItems))
        if (grip->isHighlighted())
            return grip->getId();
    QList<QPointF> points = m_mline;
    int index = -1;
    return const_cast<VertexItem*>(this)->isPointSelected(p, points, index, VertexReach) ? index : -1;
}

void VertexItem::mousePressEvent(QGraphicsSceneMouseEvent* event) {
    if (event->button() == Qt::LeftButton && isSelected() && !m_locked && m_modeEdition != EditionCreating) {
        m_dragged = insertVertexAt(event->pos());
        if (m_dragged >= 0) {
            emit mesureChangedSTART(this);
            event->accept();
            return;
        }
    }
    ShapeItem::mousePressEvent(event);
}

void VertexItem::mouseMoveEvent(QGraphicsSceneMouseEvent* event) {
    if (m_dragged >= 0)
        handleMoved(m_dragged, event->scenePos(), event->modifiers());
    else
        ShapeItem::mouseMoveEvent(event);
}

void VertexItem::mouseReleaseEvent(QGraphicsSceneMouseEvent* event) {
    if (m_dragged < 0) {
        ShapeItem::mouseReleaseEvent(event);
        return;
    }
    handleReleased(m_dragged, event->scenePos(), event->modifiers());
    m_dragged = -1;
}

void VertexItem::keyPressEvent(QKeyEvent* event) {
    const bool deleting = event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace;
    int index = -1;
    for (const HoverEventItem* grip : std::as_const(m_handgripItems))
        if (grip->isHighlighted())
            index = grip->getId();
    if (deleting && index >= 0 && !m_locked && removeVertex(index)) {
        event->accept();
        return;
    }
    event->ignore();
}

void VertexItem::contextMenuEvent(QGraphicsSceneContextMenuEvent* event) {
    m_menuPos = event->pos();
    ShapeItem::contextMenuEvent(event);
}

void VertexItem::fillContextMenu(QMenu* menu) {
    ShapeItem::fillContextMenu(menu);
    if (!editsVertices())
        return;
    menu->addSeparator();
    createMenuAction(menu, QIcon(), tr("Simplify..."), false, nullptr, SimplifyCommand)
        ->setEnabled(!m_locked && m_mline.size() > minimumVertices());
    const int index = vertexToDelete(m_menuPos);
    createMenuAction(menu, QIcon(), tr("Delete vertex"), false, nullptr, DeleteVertexCommand)
        ->setEnabled(!m_locked && index >= 0 && m_mline.size() > minimumVertices());
}

void VertexItem::applyContextMenu(int data) {
    if (data == DeleteVertexCommand) {
        removeVertex(vertexToDelete(m_menuPos));
    } else if (data == SimplifyCommand) {
        bool ok = false;
        const double tolerance = QInputDialog::getDouble(nullptr, tr("Simplify"), tr("Tolerance (pixels):"),
                                                         1.0, 0.01, 1000.0, 2, &ok);
        if (ok)
            simplify(tolerance);
    } else {
        ShapeItem::applyContextMenu(data);
    }
}

// --- XML

QString VertexItem::coordsText(const QPolygonF& points) {
    QString text;
    text.reserve(points.size() * 16);
    for (const QPointF& p : points)
        text += variantToString(p) + QLatin1Char(';');
    return text;
}

QPolygonF VertexItem::readCoords(const QString& text) {
    return QPolygonF(readPointList(text));
}

void VertexItem::writeGeometry(XmlAttributes& e) const {
    e.setAttribute(QStringLiteral("coords"), coordsText(mapToParent(vertices())));
}

void VertexItem::readGeometry(const XmlAttributes& e) {
    // The saved measures stand when they are numbers; otherwise they are measured again.
    double saved[MesuresCount], savedP[MesuresCount];
    std::copy(std::begin(m_mesure), std::end(m_mesure), saved);
    std::copy(std::begin(m_mesureP), std::end(m_mesureP), savedP);
    const auto number = [](double v) { return std::isfinite(v) && std::abs(v) <= 1e300; };
    const bool keep = std::all_of(std::begin(saved), std::end(saved), number) &&
                      std::all_of(std::begin(savedP), std::end(savedP), number) &&
                      std::any_of(std::begin(savedP), std::end(savedP), [](double v) { return v != 0; });
    setPos(0, 0);
    m_modeEdition = EditionComplete;
    transmitFont(m_font2);
    if (!setVertices(readCoords(e.attribute(QStringLiteral("coords")))))
        setVertices(QPolygonF());
    if (!keep || m_mline.size() < minimumVertices())
        return;
    std::copy(std::begin(saved), std::end(saved), m_mesure);
    std::copy(std::begin(savedP), std::end(savedP), m_mesureP);
    commonUpdateText();
}
