#include "DxfReadPlace.h"

#include "DxfReadSpline.h"

#include <algorithm>
#include <cmath>

namespace dxf::read {

namespace {

constexpr double kDegree = M_PI / 180.0;

bool sane(const QPointF& p) {
    return read::sane(p.x()) && read::sane(p.y());
}

bool sane(const QRectF& r) {
    return sane(r.topLeft()) && sane(r.bottomRight());
}

bool sane(const QTransform& t) {
    for (double v : {t.m11(), t.m12(), t.m21(), t.m22(), t.dx(), t.dy()})
        if (!read::sane(v))
            return false;
    return true;
}

// The unit circle from angle t0 over sweep (radians, counter-clockwise with y up). Qt turns its arcs
// the other way round for y down, hence the signs.
QPainterPath arcPath(double t0, double sweep) {
    const QRectF unit(-1, -1, 2, 2);
    QPainterPath path;
    path.arcMoveTo(unit, -t0 / kDegree);
    path.arcTo(unit, -t0 / kDegree, -sweep / kDegree);
    return path;
}

QPainterPath unitArc(double t0, double sweep) {
    // Circles and whole ellipses, most curves, share one path.
    static const QPainterPath circle = arcPath(0, 2 * M_PI);
    return t0 == 0 && sweep == 2 * M_PI ? circle : arcPath(t0, sweep);
}

// A polyline segment from a to b turning by 4 atan(bulge), counter-clockwise when the bulge is positive.
void bulgeTo(QPainterPath& path, const QPointF& a, const QPointF& b, double bulge) {
    const QPointF chord = b - a;
    const double length = std::hypot(chord.x(), chord.y());
    // A bulge this small is a straight line to any precision, and its radius would overflow.
    if (std::abs(bulge) < 1e-12 || length == 0) {
        path.lineTo(b);
        return;
    }
    const QPointF left(-chord.y() / length, chord.x() / length);
    const QPointF centre = (a + b) / 2 + left * (length * (1 - bulge * bulge) / (4 * bulge));
    const double radius = length * (1 + bulge * bulge) / (4 * std::abs(bulge));
    const double start = std::atan2(a.y() - centre.y(), a.x() - centre.x());
    const double sweep = 4 * std::atan(bulge);
    path.arcTo(QRectF(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius), -start / kDegree,
               -sweep / kDegree);
}

} // namespace

Placer::Placer(Store& store, const DxfReadOptions& options, DxfModel& model, Problems& problems)
    : m_store(store)
    , m_options(options)
    , m_model(model)
    , m_problems(problems)
    , m_layerZero(int(store.layerIndex.value(QStringLiteral("0"), -1))) {}

void Placer::placeModelSpace() {
    place(m_store.model, QTransform(), -1);
}

bool Placer::spend(qint64 entities, qint64 vertices) {
    if (m_stopped)
        return false;
    m_model.report.placed += entities;
    m_vertices += vertices;
    if (m_model.report.placed > m_options.maxEntities || m_vertices > m_options.maxVertices) {
        m_stopped = true;
        m_model.report.limitReached = true;
        m_problems.add(QStringLiteral("more than %1 entities or %2 vertices: the rest is left out")
                           .arg(m_options.maxEntities)
                           .arg(m_options.maxVertices));
        return false;
    }
    return true;
}

void Placer::refuse(const Record& record) {
    ++m_store.counts.refused[size_t(record.type)];
}

void Placer::place(const std::vector<Record>& records, const QTransform& transform, int inheritedLayer) {
    for (const Record& record : records) {
        if (!spend(1, 0))
            return;
        // Block contents on layer 0 take the layer of their insert.
        const int layer = record.layer == m_layerZero && inheritedLayer >= 0 ? inheritedLayer : record.layer;
        placeRecord(record, transform, layer);
    }
}

void Placer::addPath(const QPainterPath& path, const Record& record, DxfLayer& layer) {
    if (!sane(path.controlPointRect()))
        return refuse(record);
    if (spend(0, path.elementCount()))
        layer.path.addPath(path);
}

void Placer::placeRecord(const Record& record, const QTransform& t, int layerIndex) {
    DxfLayer& layer = m_model.layers[layerIndex];
    const double* n = numbers(record);
    switch (record.kind) {
    case Kind::Line: {
        const QPointF a = t.map(QPointF(n[0], n[1])), b = t.map(QPointF(n[2], n[3]));
        if (!sane(a) || !sane(b))
            return refuse(record);
        if (spend(0, 2)) {
            layer.path.moveTo(a);
            layer.path.lineTo(b);
        }
        return;
    }
    case Kind::Point: {
        const QPointF p = t.map(QPointF(n[0], n[1]));
        if (!sane(p))
            return refuse(record);
        if (spend(0, 1))
            layer.points.append(p);
        return;
    }
    case Kind::Curve: {
        const QTransform frame(n[2], n[3], n[4], n[5], n[0], n[1]);
        return addPath((frame * t).map(unitArc(n[6], n[7])), record, layer);
    }
    case Kind::Polyline: {
        const QTransform plane(n[0], n[1], n[2], n[3], n[4], n[5]);
        const bool closed = n[6] != 0;
        const double* v = n + 7;
        const quint32 count = (record.count - 7) / 3;
        if (count == 0)
            return;
        QPainterPath path(QPointF(v[0], v[1]));
        const quint32 segments = closed ? count : count - 1;
        for (quint32 i = 0; i < segments; ++i) {
            const quint32 j = (i + 1) % count;
            bulgeTo(path, QPointF(v[3 * i], v[3 * i + 1]), QPointF(v[3 * j], v[3 * j + 1]), v[3 * i + 2]);
        }
        if (closed)
            path.closeSubpath();
        return addPath((plane * t).map(path), record, layer);
    }
    case Kind::Spline: {
        Nurbs curve;
        curve.degree = int(n[0]);
        const auto count = size_t(n[1]);
        const double* knots = n + 2;
        curve.knots.assign(knots, knots + count + size_t(curve.degree) + 1);
        const double* points = knots + curve.knots.size();
        for (size_t i = 0; i < count; ++i) {
            curve.points.push_back(t.map(QPointF(points[3 * i], points[3 * i + 1])));
            curve.weights.push_back(points[3 * i + 2]);
        }
        if (!std::all_of(curve.points.begin(), curve.points.end(), [](const QPointF& p) { return sane(p); }))
            return refuse(record);
        QPolygonF polyline;
        const qint64 room = std::max<qint64>(0, m_options.maxVertices - m_vertices);
        if (!flatten(curve, m_options.tolerance, polyline, qsizetype(room))) {
            spend(0, room + 1); // passes the bound, which reports it
            return;
        }
        QPainterPath path;
        path.addPolygon(polyline);
        return addPath(path, record, layer);
    }
    case Kind::FitSpline: {
        std::vector<QPointF> points;
        for (quint32 i = 5; i + 1 < record.count; i += 2)
            points.emplace_back(n[i], n[i + 1]);
        return addPath(t.map(throughFitPoints(points, QPointF(n[1], n[2]), QPointF(n[3], n[4]), n[0] != 0)),
                       record, layer);
    }
    case Kind::Text:
        return placeText(record, t, layer);
    case Kind::Insert:
        return placeInsert(record, t, layerIndex);
    }
}

void Placer::placeText(const Record& record, const QTransform& t, DxfLayer& layer) {
    DxfText text = m_store.texts[size_t(record.ref)];
    const double angle = text.rotationDegrees * kDegree;
    const QPointF origin = t.map(QPointF());
    const QPointF along = t.map(QPointF(std::cos(angle), std::sin(angle))) - origin;
    const QPointF up = t.map(QPointF(-std::sin(angle), std::cos(angle))) - origin;
    text.position = t.map(text.position);
    text.height *= std::hypot(up.x(), up.y());
    text.rotationDegrees = std::atan2(along.y(), along.x()) / kDegree;
    if (!sane(text.position) || !read::sane(text.height))
        return refuse(record);
    if (spend(0, 1))
        layer.texts.append(text);
}

void Placer::placeInsert(const Record& record, const QTransform& t, int layer) {
    const Block& block = m_store.blocks[size_t(record.ref)];
    if (!block.defined) {
        m_problems.add(QStringLiteral("block \"%1\" is inserted but not defined").arg(block.name));
        return;
    }
    if (block.external) {
        m_problems.add(QStringLiteral("block \"%1\" is an external reference, not loaded").arg(block.name));
        return;
    }
    const auto cycle = std::find(m_inserting.begin(), m_inserting.end(), record.ref);
    if (cycle != m_inserting.end()) {
        QStringList names;
        for (auto it = cycle; it != m_inserting.end(); ++it)
            names.append(m_store.blocks[size_t(*it)].name);
        names.append(block.name);
        m_problems.add(QStringLiteral("blocks insert themselves: %1").arg(names.join(QStringLiteral(" > "))));
        return;
    }
    if (int(m_inserting.size()) >= m_options.maxNesting) {
        m_problems.add(
            QStringLiteral("blocks nested deeper than %1 levels are left out").arg(m_options.maxNesting));
        return;
    }
    const double* n = numbers(record);
    const QTransform plane(n[0], n[1], n[2], n[3], n[4], n[5]);
    const QTransform placing = QTransform::fromScale(n[8], n[9]);
    const QTransform turning = QTransform().rotate(n[10]) * QTransform::fromTranslate(n[6], n[7]) * plane * t;
    const auto columns = qint64(n[11]), rows = qint64(n[12]);
    m_inserting.push_back(record.ref);
    for (qint64 row = 0; row < rows; ++row) {
        for (qint64 column = 0; column < columns; ++column) {
            // Array cells are spaced along the insert's rotated axes, unscaled.
            if (row + column > 0 && !spend(1, 0))
                break;
            const QTransform cell = QTransform::fromTranslate(-block.base.x(), -block.base.y()) * placing *
                                    QTransform::fromTranslate(double(column) * n[13], double(row) * n[14]) *
                                    turning;
            if (!sane(cell)) {
                refuse(record);
                continue;
            }
            place(block.records, cell, layer);
        }
        if (m_stopped)
            break;
    }
    m_inserting.pop_back();
}

} // namespace dxf::read
