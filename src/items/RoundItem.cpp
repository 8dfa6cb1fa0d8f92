#include "RoundItem.h"

#include "EllipseOutlineItem.h"
#include "VariantText.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QGraphicsEllipseItem>
#include <QGraphicsPathItem>
#include <QGraphicsSceneMouseEvent>
#include <QLocale>

#include <algorithm>
#include <cmath>

namespace {

constexpr double Pi = 3.141592653589793;

QPointF onCircle(const QPointF& c, double r, double degrees) {
    return c + r * QPointF(std::cos(degrees * Pi / 180), std::sin(degrees * Pi / 180));
}

QRectF square(const RoundShape& s) {
    return QRectF(s.centre - QPointF(s.radius, s.radius), QSizeF(2 * s.radius, 2 * s.radius));
}

bool scenePoint(const QPointF& p) {
    return isSceneNumber(p.x()) && isSceneNumber(p.y());
}

} // namespace

QString exactPointsText(const QList<QPointF>& points) {
    QStringList parts;
    for (const QPointF& p : points)
        parts << exactNumber(p.x()) + QLatin1Char('x') + exactNumber(p.y());
    return parts.join(QLatin1Char(';'));
}

QList<QPointF> readScenePoints(const XmlAttributes& e, const QString& key) {
    return readPointList(e.attribute(key));
}

double degreesOf(const QPointF& v) {
    return std::atan2(v.y(), v.x()) * 180 / Pi;
}

double turnDegrees(double a) {
    if (a > -180 && a <= 180)
        return a;
    const double w = std::fmod(std::fmod(a, 360.0) + 360.0, 360.0);
    return w > 180 ? w - 360 : w;
}

RoundShape::RoundShape(const Circle& circle)
    : RoundShape() {
    centre = circle.centre;
    radius = circle.radius;
}

QString exactNumber(double v) {
    return QString::number(v, 'g', QLocale::FloatingPointShortest);
}

bool saneMesures(const AbstractBaseItem& item) {
    for (unsigned i = 0; i < unsigned(item.maxMesuresNum()); ++i) {
        for (double v : {item.accessmesure(i), item.accessmesureP(i)})
            if (!(std::abs(v) <= 1e15))
                return false;
    }
    return true;
}

RoundItem::RoundItem(QGraphicsItem* parent, bool arc, Start start)
    : ShapeItem(parent, arc ? static_cast<QGraphicsItem*>(new QGraphicsPathItem) : new EllipseOutlineItem,
                1, 0)
    , m_arc(arc)
    , m_start(start) {}

std::optional<RoundShape> RoundItem::shapeFrom(const QList<QPointF>& points) const {
    if (points.size() < 3)
        return std::nullopt;
    if (m_arc) {
        const std::optional<Arc> arc = arcThroughPoints(points[0], points[1], points[2]);
        return arc ? std::optional<RoundShape>(*arc) : std::nullopt;
    }
    const std::optional<Circle> circle = circleThroughPoints(points[0], points[1], points[2]);
    return circle ? std::optional<RoundShape>(*circle) : std::nullopt;
}

void RoundItem::initialise(int id, void* context, const char* mesureKey, int mesureDefault) {
    const _AUTOPOINTPARAMS* params = initGenerated(id, context, mesureKey, mesureDefault);
    if (!params)
        return;
    const QList<QPointF> points = recordPoints(*params);
    m_refusedRecord = points.isEmpty() || !setPoints(fromScene(points));
    if (m_refusedRecord)
        return;
    copyCommonData(this, params->source);
    computeMesures(nullptr);
    m_drawingDone = true;
}

QList<QPointF> RoundItem::recordPoints(const _AUTOPOINTPARAMS& params) const {
    QList<QPointF> points = params.points;
    if (clicksToComplete() > 0)
        points = points.mid(0, clicksToComplete());
    if (points.size() < minimumPoints()) {
        const QRectF& r = params.rect;
        if (params.radius != 0)
            points = pointsOnCircle(params.center, params.radius);
        else if (r.isValid())
            points = pointsOnCircle(r.center(), std::min(r.width(), r.height()) / 2);
        else
            points.clear();
    }
    const bool usable = std::all_of(points.begin(), points.end(), scenePoint);
    return usable && points.size() >= minimumPoints() ? points : QList<QPointF>();
}

QList<QPointF> RoundItem::pointsOnCircle(const QPointF& c, double r) const {
    if (!scenePoint(c) || !isSceneNumber(r) || r <= 0)
        return {};
    QList<QPointF> points;
    const int n = minimumPoints();
    for (int i = 0; i < n; ++i)
        points.append(onCircle(c, r, 90.0 + 360.0 * i / n));
    return points;
}

QPointF RoundItem::centroid() {
    if (!m_arc)
        return m_shape.centre;
    return onCircle(m_shape.centre, m_shape.radius, m_shape.startAngle + m_shape.spanAngle / 2);
}

void RoundItem::placePoints(const QList<QPointF>& points) {
    m_mline = points;
    refreshHandgrips();
    pointsChanged();
}

void RoundItem::applyShape(const RoundShape& shape) {
    prepareGeometryChange();
    m_shape = shape;
    m_hasShape = true;
    if (m_arc)
        child<QGraphicsPathItem>()->setPath(arcPath(shape));
    else
        child<QGraphicsEllipseItem>()->setRect(square(shape));
    update();
}

void RoundItem::showShape(const RoundShape& shape) {
    applyShape(shape);
    computeMesures(nullptr);
}

bool RoundItem::setPoints(const QList<QPointF>& points) {
    const std::optional<RoundShape> shape = shapeFrom(points);
    if (shape)
        showShape(*shape);
    placePoints(shape ? settledPoints(points, *shape) : points);
    setStale(!shape && m_hasShape);
    return shape.has_value();
}

void RoundItem::setStale(bool stale, const QString& why) {
    m_stale = stale;
    const QString none = m_arc ? tr("These points define no arc: the last one they defined is shown")
                               : tr("These points define no circle: the last one they defined is shown");
    setToolTip(!stale ? QString() : why.isEmpty() ? none : why);
}

void RoundItem::mousePress(QGraphicsSceneMouseEvent* event) {
    if (m_drawingDone)
        return;
    if (!m_creationStarted && m_start == Start::Announced)
        emit mesureChangedSTART(this);
    m_creationStarted = true;
    const QPointF p = mapFromScene(event->scenePos());
    if (std::any_of(m_mline.begin(), m_mline.end(), [&](const QPointF& q) { return q == p; }))
        return;
    const QList<QPointF> points = QList<QPointF>(m_mline) << p;
    if (refusesClick(points)) {
        setStale(true, tr("These points lie on one line: click another one"));
        return;
    }
    setStale(false);
    placePoints(points);
}

bool RoundItem::refusesClick(const QList<QPointF>& points) const {
    return points.size() == clicksToComplete() && !shapeFrom(points);
}

void RoundItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    if (m_drawingDone || m_mline.size() + 1 < minimumPoints())
        return;
    const QList<QPointF> points = QList<QPointF>(m_mline) << mapFromScene(event->scenePos());
    if (const std::optional<RoundShape> preview = shapeFrom(points))
        showShape(*preview);
}

AbstractBaseItem::typModeEdition RoundItem::mouseRelease(QGraphicsSceneMouseEvent*) {
    const bool complete = clicksToComplete() > 0 && m_mline.size() >= clicksToComplete();
    m_modeEdition = complete ? EditionComplete : EditionCreating;
    return m_modeEdition;
}

bool RoundItem::finishPoints() {
    return m_mline.size() >= minimumPoints() && setPoints(m_mline);
}

bool RoundItem::endEdition() {
    m_drawingDone = true;
    m_modeEdition = EditionComplete;
    if (!finishPoints())
        return false;
    emit mesureChangedEND(this);
    return true;
}

QList<AbstractBaseItem::Handle> RoundItem::handles() const {
    return pointHandles();
}

void RoundItem::handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers) {
    QList<QPointF> points = m_mline;
    if (id < 0 || id >= points.size())
        return;
    points[id] = mapFromScene(scenePos);
    setPoints(points);
    emit mesureChanged(this);
}

// "Distance" is the diameter, as for the circle drawn from its centre.
QList<AbstractBaseItem::MenuEntry> RoundItem::mesureMenu() const {
    if (m_arc)
        return {{QT_TR_NOOP("Radius"), Rad1},
                {QT_TR_NOOP("Angle"), Ang1},
                {QT_TR_NOOP("Chord"), Dist1},
                {QT_TR_NOOP("Length"), Perim},
                {QT_TR_NOOP("Sagitta"), Dist2}};
    return {{QT_TR_NOOP("Area"), Aera},
            {QT_TR_NOOP("Perimeter"), Perim},
            {QT_TR_NOOP("Radius"), Rad1},
            {QT_TR_NOOP("Distance"), Diam}};
}

bool RoundItem::computeMesures(void*) {
    setupCentroidHandgrip();
    if (!m_hasShape)
        return false;
    fillMesures();
    m_centroidPoint = centroid();
    placeCentroidHandgrip();
    commonUpdateText();
    return true;
}

void RoundItem::fillMesures() {
    const double r = m_shape.radius;
    if (m_arc) {
        const double span = m_shape.spanAngle;
        m_mesureP[Rad1] = r;
        m_mesureP[Ang1] = std::abs(span);
        m_mesureP[Dist1] = arcChord(r, span);
        m_mesureP[Perim] = arcLength(r, span);
        m_mesureP[Dist2] = arcSagitta(r, span);
        calibrateMesures({Rad1, Ang1, Dist1, Perim, Dist2});
        return;
    }
    m_mesureP[Dist2] = m_mesureP[Diam] = 2 * r;
    m_mesureP[Aera] = Pi * r * r;
    m_mesureP[Perim] = 2 * Pi * r;
    m_mesureP[Rad1] = m_mesureP[Rad2] = r;
    calibrateMesures({Dist2, Aera, Perim, Rad1, Rad2, Diam});
}

void RoundItem::fixupForTransform(_AUTOPOINTPARAMS& params, int, void*) {
    params.center = sceneCentre();
    params.radius = m_shape.radius;
    params.points = mline();
    params.rect = mapRectToScene(square(m_shape));
}

void RoundItem::writeGeometry(XmlAttributes& e) const {
    e.setAttribute(QStringLiteral("coords"), exactPointsText(m_mline));
    e.setAttribute(QStringLiteral("centroid"), exactPointsText({m_shape.centre}));
    e.setAttribute(QStringLiteral("radius1"), exactNumber(m_shape.radius));
    if (m_arc) {
        e.setAttribute(QStringLiteral("startAngle"), exactNumber(m_shape.startAngle));
        e.setAttribute(QStringLiteral("spanAngle"), exactNumber(m_shape.spanAngle));
    }
    e.setAttribute(QStringLiteral("pos"), exactPointsText({pos()}));
}

// The shape comes back as saved, and so do the measures, which were computed with the calibration of
// their time; a shape or measures that cannot be are taken from the points again.
void RoundItem::readGeometry(const XmlAttributes& e) {
    m_drawingDone = true;
    m_modeEdition = EditionComplete;
    const QList<QPointF> points = readScenePoints(e, QStringLiteral("coords"));
    const QList<QPointF> centre = readScenePoints(e, QStringLiteral("centroid"));
    RoundShape saved;
    saved.radius = readNumber(e, QStringLiteral("radius1"));
    if (m_arc) {
        saved.startAngle = readNumber(e, QStringLiteral("startAngle"));
        saved.spanAngle = std::clamp(readNumber(e, QStringLiteral("spanAngle")), -360.0, 360.0);
    }
    setPos(readScenePoints(e, QStringLiteral("pos")).value(0));
    const bool usable = centre.size() == 1 && saved.radius > 0 && (!m_arc || saved.spanAngle != 0);
    if (usable) {
        saved.centre = centre[0];
        applyShape(saved);
    }
    const std::optional<RoundShape> defined = shapeFrom(points);
    placePoints(points);
    if (!usable && defined)
        applyShape(*defined);
    setStale(m_hasShape && !defined);
    const bool saneSaved = saneMesures(*this);
    if (!saneSaved) {
        std::fill(std::begin(m_mesure), std::end(m_mesure), 0.0);
        std::fill(std::begin(m_mesureP), std::end(m_mesureP), 0.0);
    }
    if (!usable || !saneSaved)
        computeMesures(nullptr);
    placeCentroidHandgrip();
    commonUpdateText();
}
