#include "DxfPaintEngine.h"

#include "VDxfCurvesAsSplines.h"

#include <QFontMetricsF>
#include <QPainterPath>
#include <QPixmap>
#include <QTextItem>

#include <cmath>
#include <optional>

namespace {

// DXF has flat colours only: gradient, pattern and texture brushes are taken and drawn in their mean
// colour, so that shapes keep their outlines and fills. Perspective is taken too: points are mapped
// through it, so that no shape goes through QPainter's bitmap fallback, which a non-finite transform
// (read as a perspective one) would send there. Compositing modes are ignored. Transparency is
// accepted and written opaque, so that translucent items still appear.
QPaintEngine::PaintEngineFeatures dxfFeatures() {
    return QPaintEngine::AllFeatures &
           ~(QPaintEngine::BlendModes | QPaintEngine::PorterDuff | QPaintEngine::RasterOpModes);
}

double length(const QPointF& v) {
    return std::hypot(v.x(), v.y());
}

// Polygons with at least three distinct corners, without the repeated closing point.
QPolygonF openedLoop(QPolygonF polygon) {
    if (polygon.size() > 1 && polygon.first() == polygon.last())
        polygon.removeLast();
    return polygon;
}

// An arc in drawing coordinates: anticlockwise (y up) from start to end, in degrees.
struct CircularArc {
    QPointF centre;
    double radius = 0;
    double startDegrees = 0;
    double endDegrees = 0;
};

double degreesOf(const QPointF& v) {
    return std::atan2(v.y(), v.x()) * 180.0 / M_PI;
}

// v brought into (-180, 180].
double turn(double degrees) {
    const double w = std::fmod(std::fmod(degrees, 360.0) + 360.0, 360.0);
    return w > 180.0 ? w - 360.0 : w;
}

QPointF bezierAt(const QPointF& p0, const QPointF& c1, const QPointF& c2, const QPointF& p1, double t) {
    const double s = 1 - t;
    return s * s * s * p0 + 3 * s * s * t * c1 + 3 * s * t * t * c2 + t * t * t * p1;
}

// A path that is one open run of cubic curves on one circle, each within 1e-6 of its radius, as
// arcPath (GeometryArcs.h) draws an arc, is written as that arc. QPainterPath::arcTo strays 3e-4 of
// the radius from its circle, too far to tell the circle of a short arc: such arcs stay polylines.
std::optional<CircularArc> circularArc(const QPainterPath& path, const QTransform& t) {
    const int count = path.elementCount();
    if (!t.isAffine() || count < 4 || (count - 1) % 3 != 0 || !path.elementAt(0).isMoveTo())
        return std::nullopt;
    // Points on the curve: the ends and three inner points of each segment.
    QList<QPointF> on = {t.map(QPointF(path.elementAt(0)))};
    for (int i = 1; i < count; i += 3) {
        if (path.elementAt(i).type != QPainterPath::CurveToElement)
            return std::nullopt;
        const QPointF start = on.last();
        const QPointF c1 = t.map(QPointF(path.elementAt(i)));
        const QPointF c2 = t.map(QPointF(path.elementAt(i + 1)));
        const QPointF end = t.map(QPointF(path.elementAt(i + 2)));
        for (double at : {0.25, 0.5, 0.75})
            on.append(bezierAt(start, c1, c2, end, at));
        on.append(end);
    }
    const QPointF a = on.first(), b = on[on.size() / 2], c = on.last();
    const QPointF u = b - a, v = c - a;
    const double cross = u.x() * v.y() - u.y() * v.x();
    const double uu = QPointF::dotProduct(u, u), vv = QPointF::dotProduct(v, v);
    if (!(std::abs(cross) > 1e-9 * std::max(uu, vv)))
        return std::nullopt;
    const QPointF offset((v.y() * uu - u.y() * vv) / (2 * cross), (u.x() * vv - v.x() * uu) / (2 * cross));
    CircularArc arc{a + offset, length(offset)};
    double sweep = 0, previous = degreesOf(a - arc.centre);
    for (const QPointF& p : on) {
        if (!(std::abs(length(p - arc.centre) - arc.radius) <= 1e-6 * arc.radius))
            return std::nullopt;
        const double step = turn(degreesOf(p - arc.centre) - previous);
        if (step * sweep < 0)
            return std::nullopt;
        sweep += step;
        previous += step;
    }
    if (!(std::abs(sweep) < 360.0))
        return std::nullopt;
    arc.startDegrees = degreesOf((sweep > 0 ? a : c) - arc.centre);
    arc.endDegrees = degreesOf((sweep > 0 ? c : a) - arc.centre);
    for (double* angle : {&arc.startDegrees, &arc.endDegrees})
        *angle = *angle < 0 ? *angle + 360.0 : *angle;
    return arc;
}

// The subpaths of a path, each on its own.
QList<QPainterPath> subpaths(const QPainterPath& path) {
    QList<QPainterPath> out;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element e = path.elementAt(i);
        if (e.isMoveTo() || out.isEmpty()) {
            out.append(QPainterPath(e));
        } else if (e.isLineTo()) {
            out.last().lineTo(e);
        } else if (e.isCurveTo() && i + 2 < path.elementCount()) {
            out.last().cubicTo(e, path.elementAt(i + 1), path.elementAt(i + 2));
            i += 2;
        }
    }
    return out;
}

// A subpath with curves as Bezier pieces (its straight pieces as curves with controls on them); empty
// when it has no curve.
QPolygonF bezierControls(const QPainterPath& subpath) {
    QPolygonF controls;
    bool curved = false;
    for (int i = 0; i < subpath.elementCount(); ++i) {
        const QPainterPath::Element e = subpath.elementAt(i);
        if (e.isMoveTo()) {
            controls.append(e);
        } else if (e.isLineTo()) {
            const QPointF from = controls.last();
            controls << from + (QPointF(e) - from) / 3 << from + (QPointF(e) - from) * 2 / 3 << e;
        } else if (e.isCurveTo() && i + 2 < subpath.elementCount()) {
            controls << e << subpath.elementAt(i + 1) << subpath.elementAt(i + 2);
            curved = true;
            i += 2;
        }
    }
    return curved ? controls : QPolygonF();
}

} // namespace

DxfPaintEngine::DxfPaintEngine()
    : QPaintEngine(dxfFeatures()) {}

void DxfPaintEngine::setCanvas(double height, double resolution) {
    m_height = height;
    m_resolution = resolution;
}

bool DxfPaintEngine::begin(QPaintDevice*) {
    m_flip = QTransform(1, 0, 0, -1, 0, m_height);
    m_painter = QTransform();
    m_toDxf = m_flip;
    m_hasPainted = true;
    return true;
}

bool DxfPaintEngine::end() {
    return true;
}

void DxfPaintEngine::updateState(const QPaintEngineState& state) {
    const DirtyFlags flags = state.state();
    if (flags & DirtyPen) {
        m_pen = state.pen();
        m_penColor = dxf::meanColor(m_pen.brush());
    }
    if (flags & DirtyBrush) {
        m_brush = state.brush();
        m_brushColor = dxf::meanColor(m_brush);
    }
    if (flags & DirtyTransform) {
        m_painter = state.transform();
        m_toDxf = m_painter * m_flip;
    }
}

dxf::EntityStyle DxfPaintEngine::penStyle() const {
    // Cosmetic widths are in device units already; a zero width is Qt's one-unit hairline.
    double width = m_pen.widthF() > 0 ? m_pen.widthF() : 1.0;
    if (!m_pen.isCosmetic() && m_pen.widthF() > 0)
        width *= std::sqrt(std::abs(m_painter.determinant()));
    dxf::EntityStyle style;
    style.color = m_penColor;
    style.lineweight = dxf::snapLineweight(width * 25.4 / m_resolution);
    style.linetype = dxf::linetypeFor(m_pen.style());
    style.linetypeScale = std::max(width, 1.0);
    return style;
}

dxf::EntityStyle DxfPaintEngine::brushStyle() const {
    dxf::EntityStyle style;
    style.color = m_brushColor;
    style.lineweight = 0;
    return style;
}

void DxfPaintEngine::fill(const QPainterPath& path) {
    // Hatches fill by parity; merging a winding path first gives the same area.
    const QPainterPath outline = path.fillRule() == Qt::WindingFill ? path.simplified() : path;
    QList<QPolygonF> loops;
    for (const QPolygonF& polygon : outline.toSubpathPolygons(m_toDxf)) {
        const QPolygonF loop = openedLoop(polygon);
        if (loop.size() >= 3)
            loops.append(loop);
    }
    if (!loops.isEmpty())
        m_drawing.addSolidHatch(loops, brushStyle());
}

void DxfPaintEngine::stroke(const QPolygonF& polygon, bool closed) {
    if (polygon.size() < 2)
        return;
    m_drawing.addPolyline(polygon, closed, penStyle());
}

void DxfPaintEngine::drawLines(const QLineF* lines, int lineCount) {
    if (!hasPen())
        return;
    const dxf::EntityStyle style = penStyle();
    for (int i = 0; i < lineCount; ++i)
        m_drawing.addLine(m_toDxf.map(lines[i].p1()), m_toDxf.map(lines[i].p2()), style);
}

void DxfPaintEngine::drawPolygon(const QPointF* points, int pointCount, PolygonDrawMode mode) {
    const QPolygonF polygon = m_toDxf.map(QPolygonF(QList<QPointF>(points, points + pointCount)));
    if (mode == PolylineMode) {
        if (hasPen())
            stroke(polygon, false);
        return;
    }
    if (hasBrush()) {
        QPainterPath path;
        path.addPolygon(QPolygonF(QList<QPointF>(points, points + pointCount)));
        path.closeSubpath();
        path.setFillRule(mode == WindingMode ? Qt::WindingFill : Qt::OddEvenFill);
        fill(path);
    }
    if (hasPen())
        stroke(openedLoop(polygon), true);
}

void DxfPaintEngine::drawPath(const QPainterPath& path) {
    if (hasBrush())
        fill(path);
    if (!hasPen())
        return;
    if (const std::optional<CircularArc> arc = circularArc(path, m_toDxf)) {
        m_drawing.addArc(arc->centre, arc->radius, arc->startDegrees, arc->endDegrees, penStyle());
        return;
    }
    // Asked for, subpaths with curves become splines through the same control points, which an affine
    // map keeps; the others, and every subpath under a perspective, polylines.
    const bool splines = VDxfCurvesAsSplines::active() && m_toDxf.isAffine();
    for (const QPainterPath& subpath : splines ? subpaths(path) : QList<QPainterPath>{path}) {
        const QPolygonF controls = splines ? bezierControls(subpath) : QPolygonF();
        if (!controls.isEmpty()) {
            m_drawing.addBezierSpline(m_toDxf.map(controls), penStyle());
            continue;
        }
        for (const QPolygonF& polygon : subpath.toSubpathPolygons(m_toDxf)) {
            const bool closed = polygon.size() > 2 && polygon.first() == polygon.last();
            stroke(closed ? openedLoop(polygon) : polygon, closed);
        }
    }
}

void DxfPaintEngine::drawEllipse(const QRectF& rect) {
    const QPointF centre = m_toDxf.map(rect.center());
    const QPointF u = m_toDxf.map(QPointF(rect.right(), rect.center().y())) - centre;
    const QPointF v = m_toDxf.map(QPointF(rect.center().x(), rect.bottom())) - centre;
    const double lu = length(u), lv = length(v);
    // A sheared, projected or degenerate ellipse is no DXF ellipse: draw its outline instead.
    if (!m_toDxf.isAffine() || lu <= 0 || lv <= 0 || std::abs(QPointF::dotProduct(u, v)) > 1e-9 * lu * lv) {
        QPaintEngine::drawEllipse(rect);
        return;
    }
    if (hasBrush()) {
        QPainterPath path;
        path.addEllipse(rect);
        fill(path);
    }
    if (!hasPen())
        return;
    if (std::abs(lu - lv) <= 1e-9 * std::max(lu, lv))
        m_drawing.addCircle(centre, lu, penStyle());
    else if (lu > lv)
        m_drawing.addEllipse(centre, u, lv / lu, penStyle());
    else
        m_drawing.addEllipse(centre, v, lu / lv, penStyle());
}

void DxfPaintEngine::drawTextItem(const QPointF& p, const QTextItem& textItem) {
    const QString text = textItem.text();
    if (!hasPen() || text.trimmed().isEmpty())
        return;
    const QFontMetricsF metrics(textItem.font(), paintDevice());
    const QPointF base = m_toDxf.map(p);
    const QPointF along = m_toDxf.map(p + QPointF(1, 0)) - base;
    const QPointF up = m_toDxf.map(p - QPointF(0, 1)) - base;
    const double scaleUp = length(up);
    if (scaleUp <= 0 || length(along) <= 0)
        return;

    dxf::TextRun run;
    run.text = text;
    run.baseline = base;
    // TEXT heights are cap heights, as CAD fonts are drawn.
    run.height = metrics.capHeight() * scaleUp;
    const double degrees = std::atan2(along.y(), along.x()) * 180.0 / M_PI;
    run.rotationDegrees = degrees < 0 ? degrees + 360.0 : degrees;
    const double widthFactor = length(along) / scaleUp;
    run.widthFactor = std::abs(widthFactor - 1.0) < 1e-9 ? 1.0 : widthFactor;
    run.upsideDown = along.x() * up.y() - along.y() * up.x() < 0;
    run.advance = textItem.width() * length(along);
    m_drawing.addText(run, penStyle());
}

void DxfPaintEngine::drawPixmap(const QRectF& r, const QPixmap& pm, const QRectF& sr) {
    drawImage(r, pm.toImage(), sr);
}

// Whole pixels of the source rectangle, placed where the painter puts them (under a perspective, by
// three of their corners).
void DxfPaintEngine::drawImage(const QRectF& r, const QImage& image, const QRectF& sr,
                               Qt::ImageConversionFlags) {
    const QRect source = sr.toAlignedRect() & image.rect();
    if (source.isEmpty() || sr.width() <= 0 || sr.height() <= 0)
        return;
    // Source pixel coordinates to device coordinates, y up.
    const QTransform place = QTransform(r.width() / sr.width(), 0, 0, r.height() / sr.height(),
                                        r.left() - sr.left() * r.width() / sr.width(),
                                        r.top() - sr.top() * r.height() / sr.height()) *
                             m_toDxf;
    const QPointF insert = place.map(QPointF(source.left(), source.top() + source.height()));
    const QPointF u = place.map(QPointF(source.left() + 1, source.top() + source.height())) - insert;
    const QPointF v = place.map(QPointF(source.left(), source.top() + source.height() - 1)) - insert;
    if (length(u) <= 0 || length(v) <= 0)
        return;
    m_drawing.addImage(source == image.rect() ? image : image.copy(source), insert, u, v);
}
