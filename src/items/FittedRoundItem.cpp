#include "FittedRoundItem.h"

#include "AbstractScene.h"
#include "ImageProbes.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QGraphicsPathItem>
#include <QMenu>

#include <algorithm>
#include <cmath>

namespace {

constexpr double MarkSize = 3;
constexpr int rayChoices[] = {12, 24, 36, 72, 180, 360};

// Largest and root-mean-square distance of the kept points from the shape's circle.
void measureDeviations(RoundShape& shape, const QList<QPointF>& points) {
    double largest = 0, sum = 0;
    int n = 0;
    for (int i : std::as_const(shape.kept)) {
        if (i < 0 || i >= points.size())
            continue;
        const QPointF d = points[i] - shape.centre;
        const double e = std::abs(std::hypot(d.x(), d.y()) - shape.radius);
        largest = std::max(largest, e);
        sum += e * e;
        ++n;
    }
    shape.maxDeviation = largest;
    shape.rmsDeviation = n > 0 ? std::sqrt(sum / n) : 0;
}

QList<int> allIndices(qsizetype n) {
    QList<int> indices;
    for (int i = 0; i < n; ++i)
        indices.append(i);
    return indices;
}

} // namespace

FittedRoundItem::FittedRoundItem(QGraphicsItem* parent, bool arc, const char* wayKey)
    : RoundItem(parent, arc)
    , m_marks(new QGraphicsPathItem(this))
    , m_wayKey(wayKey) {
    m_marks->setPen(m_pen);
    m_way = getCommonParams(QString::fromLatin1(wayKey), 0).toInt() == FoundOnImage ? FoundOnImage
                                                                                    : ClickedPoints;
}

bool FittedRoundItem::searchesImage() const {
    const AbstractScene* host = hostScene();
    return m_way == FoundOnImage && host && !host->image().isNull();
}

int FittedRoundItem::clicksToComplete() const {
    return searchesImage() ? imageClicks() : 0;
}

int FittedRoundItem::minimumPoints() const {
    return searchesImage() && imageClicks() > 0 ? imageClicks() : 3;
}

bool FittedRoundItem::refusesClick(const QList<QPointF>& points) const {
    return !searchesImage() && RoundItem::refusesClick(points);
}

// Points found on the image are fitted robustly; clicked points are all kept.
std::optional<RoundShape> FittedRoundItem::shapeFrom(const QList<QPointF>& points) const {
    std::optional<CircleFit> fit;
    if (m_fromImage)
        fit = fitCircleRobust(points);
    else if (const std::optional<Circle> circle = fitCircle(points))
        fit = CircleFit{circle->centre, circle->radius, allIndices(points.size()), 0, 0};
    std::optional<RoundShape> shape = fit ? shapeOfFit(points, *fit) : std::nullopt;
    if (shape) {
        shape->kept = fit->kept;
        measureDeviations(*shape, points);
    }
    return shape;
}

void FittedRoundItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    if (!searchesImage())
        RoundItem::mouseMove(event);
}

bool FittedRoundItem::finishPoints() {
    if (!searchesImage()) {
        m_fromImage = false;
        const bool fitted = RoundItem::finishPoints();
        if (fitted)
            emit transformIndex(this, FitStep, true);
        return fitted;
    }
    const std::optional<std::pair<double, double>> sector = sectorOf(m_mline);
    return m_mline.size() >= minimumPoints() && sector &&
           searchImage(mapToScene(m_mline[0]), sector->first, sector->second);
}

bool FittedRoundItem::searchImage(const QPointF& origin, double sectorStart, double sectorSpan) {
    const AbstractScene* host = hostScene();
    if (!host || host->image().isNull())
        return false;
    RadialEdgeOptions options;
    options.rays = std::clamp(m_rays, MinRays, MaxRays);
    options.startAngle = sectorStart;
    options.spanAngle = sectorSpan;
    const RadialEdges edges = findRadialEdges(host->image(), origin, options);
    emit transformIndex(this, SearchStep, false);
    // A round feature is one whose edge most rays find.
    if (edges.points.size() < 3 || 2 * edges.points.size() < options.rays || !fitCircle(edges.points))
        return false;
    emit transformIndex(this, FitStep, false);
    const bool wasFromImage = m_fromImage;
    m_fromImage = true;
    const QList<QPointF> points = fromScene(edges.points);
    if (!shapeFrom(points)) {
        m_fromImage = wasFromImage;
        return false;
    }
    m_origin = mapFromScene(origin);
    m_sectorStart = sectorStart;
    m_sectorSpan = sectorSpan;
    setPoints(points);
    emit transformIndex(this, RefitStep, true);
    emit mesureChanged(this);
    return true;
}

void FittedRoundItem::searchAgain() {
    if (!searchImage(mapToScene(m_origin), m_sectorStart, m_sectorSpan))
        setStale(true, tr("The feature was not found on the image: the last shape found is shown"));
}

void FittedRoundItem::setWay(Way way) {
    m_way = way;
    QVariant remembered = int(way);
    setCommonParams(QString::fromLatin1(m_wayKey), remembered);
    if (!drawingDone() || !hasShape())
        return;
    if (way == FoundOnImage && searchesImage()) {
        const RoundShape shape = roundShape();
        m_origin = shape.centre;
        m_sectorStart = isArc() ? shape.startAngle : 0;
        m_sectorSpan = isArc() ? shape.spanAngle : 360;
        searchAgain();
    } else if (way == ClickedPoints && m_fromImage) {
        m_fromImage = false;
        setPoints(m_mline);
        emit mesureChanged(this);
    }
}

void FittedRoundItem::setRays(int rays) {
    m_rays = std::clamp(rays, MinRays, MaxRays);
    if (m_fromImage && drawingDone())
        searchAgain();
}

// Kept points show an upright cross, dropped ones a slanted cross.
void FittedRoundItem::pointsChanged() {
    const QList<int> kept = roundShape().kept;
    QPainterPath marks;
    for (int i = 0; i < m_mline.size(); ++i) {
        const bool upright = kept.isEmpty() || kept.contains(i);
        const QPointF a = upright ? QPointF(MarkSize, 0) : QPointF(MarkSize, MarkSize) * M_SQRT1_2;
        const QPointF b = upright ? QPointF(0, MarkSize) : QPointF(-MarkSize, MarkSize) * M_SQRT1_2;
        for (const QPointF& arm : {a, b}) {
            marks.moveTo(m_mline[i] - arm);
            marks.lineTo(m_mline[i] + arm);
        }
    }
    m_marks->setPath(marks);
}

void FittedRoundItem::setPen(const QPen& pen) {
    RoundItem::setPen(pen);
    m_marks->setPen(pen);
}

void FittedRoundItem::fillMesures() {
    RoundItem::fillMesures();
    const RoundShape shape = roundShape();
    m_mesureP[Rad2] = shape.maxDeviation;
    m_mesureP[Cust] = shape.rmsDeviation;
    calibrateMesures({Rad2, Cust});
}

AbstractBaseItem::MesureUnit FittedRoundItem::mesureUnit(int i) const {
    return i == Cust ? MesureUnit::Length : RoundItem::mesureUnit(i);
}

AbstractBaseItem::MesureText FittedRoundItem::mesureText(int i) const {
    MesureText text = RoundItem::mesureText(i);
    if (i == Cust)
        text.unit = m_calibration.unitName;
    return text;
}

QList<AbstractBaseItem::MenuEntry> FittedRoundItem::mesureMenu() const {
    return RoundItem::mesureMenu() << MenuEntry{QT_TR_NOOP("Max deviation"), Rad2}
                                   << MenuEntry{QT_TR_NOOP("RMS deviation"), Cust};
}

void FittedRoundItem::fillContextMenu(QMenu* menu) {
    RoundItem::fillContextMenu(menu);
    menu->addSeparator();
    createMenuAction(menu, QIcon(), tr("Clicked points"), m_way == ClickedPoints, nullptr, ClickedCommand);
    const AbstractScene* host = hostScene();
    createMenuAction(menu, QIcon(), tr("Found on the image"), m_way == FoundOnImage, nullptr, ImageCommand)
        ->setEnabled(host && !host->image().isNull());
    createMenuAction(menu, QIcon(), tr("follow image"), m_follow, nullptr, FollowCommand);
    menu->addSeparator();
    for (int rays : rayChoices)
        createMenuAction(menu, QIcon(), tr("%1 rays").arg(rays), m_rays == rays, nullptr, RaysCommand - rays);
}

void FittedRoundItem::applyContextMenu(int data) {
    if (data >= 0)
        RoundItem::applyContextMenu(data);
    else if (data == ClickedCommand || data == ImageCommand)
        setWay(data == ImageCommand ? FoundOnImage : ClickedPoints);
    else if (data == FollowCommand)
        setFollowImage(!m_follow);
    else if (data <= RaysCommand)
        setRays(RaysCommand - data);
}

QVariant FittedRoundItem::itemChange(GraphicsItemChange change, const QVariant& value) {
    if (change == ItemSceneHasChanged)
        followScene(qobject_cast<AbstractScene*>(value.value<QGraphicsScene*>()));
    return RoundItem::itemChange(change, value);
}

void FittedRoundItem::followScene(AbstractScene* host) {
    disconnect(m_imageConnection);
    if (host)
        m_imageConnection =
            connect(host, &AbstractScene::imageChanged, this, &FittedRoundItem::sceneImageChanged);
}

void FittedRoundItem::sceneImageChanged() {
    const bool search = m_follow && m_fromImage && drawingDone();
    if (search)
        searchAgain();
    emit imageChanged(QStringLiteral("scene"), search && !isStale());
}

void FittedRoundItem::writeGeometry(XmlAttributes& e) const {
    RoundItem::writeGeometry(e);
    e.setAttribute(QStringLiteral("way"), int(m_way));
    e.setAttribute(QStringLiteral("rays"), m_rays);
    e.setAttribute(QStringLiteral("follow"), m_follow ? 1 : 0);
    QStringList dropped;
    const QList<int> kept = roundShape().kept;
    for (int i = 0; i < m_mline.size(); ++i)
        if (hasShape() && !kept.contains(i))
            dropped << QString::number(i);
    e.setAttribute(QStringLiteral("dropped"), dropped.join(QLatin1Char(';')));
    if (m_fromImage) {
        e.setAttribute(QStringLiteral("origin"), exactPointsText({m_origin}));
        e.setAttribute(QStringLiteral("sectorStart"), exactNumber(m_sectorStart));
        e.setAttribute(QStringLiteral("sectorSpan"), exactNumber(m_sectorSpan));
    }
}

// How the points were found comes first: it says how they are fitted.
void FittedRoundItem::readGeometry(const XmlAttributes& e) {
    m_way = readNumber(e, QStringLiteral("way")) == FoundOnImage ? FoundOnImage : ClickedPoints;
    m_rays =
        int(std::clamp(readNumber(e, QStringLiteral("rays"), DefaultRays), double(MinRays), double(MaxRays)));
    m_follow = readNumber(e, QStringLiteral("follow")) != 0;
    const QList<QPointF> origin = readScenePoints(e, QStringLiteral("origin"));
    m_fromImage = origin.size() == 1;
    m_origin = origin.value(0);
    m_sectorStart = readNumber(e, QStringLiteral("sectorStart"));
    m_sectorSpan = std::clamp(readNumber(e, QStringLiteral("sectorSpan"), 360), -360.0, 360.0);
    RoundItem::readGeometry(e);
    QList<int> kept = allIndices(m_mline.size());
    for (const QString& index :
         e.attribute(QStringLiteral("dropped")).split(QLatin1Char(';'), Qt::SkipEmptyParts))
        kept.removeOne(index.toInt());
    RoundShape shape = roundShape();
    shape.kept = kept;
    measureDeviations(shape, m_mline);
    if (hasShape())
        applyShape(shape);
    pointsChanged();
}
