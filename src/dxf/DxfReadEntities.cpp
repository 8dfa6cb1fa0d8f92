#include "DxfReadEntities.h"

#include "DxfReadSpline.h"
#include "DxfReadText.h"

#include <algorithm>
#include <cmath>

namespace dxf::read {

namespace {

constexpr double kTurn = 2.0 * M_PI;
constexpr double kDegree = M_PI / 180.0;
constexpr size_t kMostUnsupportedNames = 1000;
constexpr double kDefaultTextHeight = 2.5;

// The sweep from start to end going counter-clockwise, in (0, 2 pi]; equal angles make a full turn.
double sweepBetween(double start, double end) {
    double sweep = std::fmod(end - start, kTurn);
    if (sweep < 0)
        sweep += kTurn;
    return sweep < 1e-9 || sweep > kTurn - 1e-9 ? kTurn : sweep;
}

Vector3 cross(const Vector3& a, const Vector3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

Vector3 normalized(const Vector3& v) {
    const double l = std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
    return l > 0 ? Vector3{v.x / l, v.y / l, v.z / l} : Vector3{0, 0, 1};
}

Qt::Alignment textAlignment(int horizontal, int vertical) {
    if (horizontal == 3 || horizontal == 5) // aligned or fitted between two points: placed by the first
        return Qt::AlignLeft | Qt::AlignBaseline;
    if (horizontal == 4) // "middle": centred both ways
        return Qt::AlignHCenter | Qt::AlignVCenter;
    const Qt::Alignment h = horizontal == 1   ? Qt::AlignHCenter
                            : horizontal == 2 ? Qt::AlignRight
                                              : Qt::AlignLeft;
    const Qt::Alignment v = vertical == 1   ? Qt::AlignBottom
                            : vertical == 2 ? Qt::AlignVCenter
                            : vertical == 3 ? Qt::AlignTop
                                            : Qt::AlignBaseline;
    return h | v;
}

// MTEXT attachment points 1..9: top, middle, bottom rows of left, centre, right.
Qt::Alignment attachment(int point) {
    const int i = point >= 1 && point <= 9 ? point - 1 : 0;
    const Qt::Alignment h = i % 3 == 0 ? Qt::AlignLeft : i % 3 == 1 ? Qt::AlignHCenter : Qt::AlignRight;
    const Qt::Alignment v = i / 3 == 0 ? Qt::AlignTop : i / 3 == 1 ? Qt::AlignVCenter : Qt::AlignBottom;
    return h | v;
}

} // namespace

EntityBuilder::EntityBuilder(Store& store, qint64 mostRecords, qint64 mostVertices)
    : m_store(store)
    , m_mostRecords(mostRecords)
    , m_mostVertices(mostVertices) {}

void EntityBuilder::clear() {
    m_has.fill(false);
    m_hasExtrusion.fill(false);
    m_embedded = false;
    m_bad = false;
    m_invisible = false;
    m_pending = 0;
    m_chunks.clear();
    m_list.clear();
    m_knots.clear();
    m_weights.clear();
    m_fit.clear();
}

void EntityBuilder::begin(std::string_view type, bool utf8) {
    clear();
    m_utf8 = utf8;
    m_typeName = type;
    if (type == "VERTEX") {
        m_handler = m_polyline.open ? Handler::Vertex : Handler::None;
        return;
    }
    if (type == "SEQEND") {
        m_handler = Handler::Seqend;
        return;
    }
    finishPolyline(); // one whose SEQEND is missing
    m_handler = Handler::Unsupported;
    for (int t = 0; t < TypeCount; ++t) {
        if (type == kTypeNames[size_t(t)]) {
            m_type = Type(t);
            m_handler = Handler::Known;
        }
    }
}

void EntityBuilder::add(const Pair& pair) {
    if (m_handler == Handler::None || m_handler == Handler::Seqend || m_embedded)
        return;
    const int code = pair.code;
    if (code == 101) {
        m_embedded = true;
        return;
    }
    if (code < 100) {
        const bool listed = (m_handler == Handler::Known) &&
                            ((m_type == LwPolyline && (code == 10 || code == 20 || code == 42)) ||
                             (m_type == Spline && (code == 10 || code == 20 || code == 40 || code == 41 ||
                                                   code == 11 || code == 21)) ||
                             (m_type == MText && code == 3));
        if (listed) {
            streamed(pair);
        } else {
            m_values[size_t(code)] = pair.value;
            m_has[size_t(code)] = true;
        }
    } else if (code == 210 || code == 220 || code == 230) {
        const size_t axis = size_t(code - 210) / 10;
        m_extrusion[axis] = pair.value;
        m_hasExtrusion[axis] = true;
    }
}

// Repeated codes, kept in order as they come.
void EntityBuilder::streamed(const Pair& pair) {
    if (pair.code == 3) {
        if (roomFor(1))
            m_chunks.push_back(pair.value);
        return;
    }
    bool ok = false;
    const double v = toReal(pair.value, &ok);
    if (!ok || !sane(v))
        m_bad = true;
    switch (pair.code) {
    case 10: // a new LWPOLYLINE vertex (x y bulge) or SPLINE control point (x y)
        if (roomFor(3)) {
            m_list.push_back(v);
            m_list.push_back(0.0);
            if (m_type == LwPolyline)
                m_list.push_back(0.0);
        }
        break;
    case 20:
        if (!m_list.empty())
            m_list[m_list.size() - (m_type == LwPolyline ? 2 : 1)] = v;
        break;
    case 42:
        if (!m_list.empty())
            m_list.back() = v;
        break;
    case 40:
        if (roomFor(1))
            m_knots.push_back(v);
        break;
    case 41:
        if (roomFor(1))
            m_weights.push_back(v);
        break;
    case 11:
        if (roomFor(2)) {
            m_fit.push_back(v);
            m_fit.push_back(0.0);
        }
        break;
    case 21:
        if (!m_fit.empty())
            m_fit.back() = v;
        break;
    default:
        break;
    }
}

bool EntityBuilder::roomFor(size_t numbers) {
    // Numbers held for all vertices, three for each at most.
    const qint64 held = qint64(m_store.numbers.size() + m_polyline.vertices.size());
    const auto room = size_t(std::max<qint64>(0, 3 * m_mostVertices - held));
    if (m_pending + numbers > room) {
        m_overLimit = true;
        return false;
    }
    m_pending += numbers;
    return true;
}

bool EntityBuilder::has(int code) const {
    return m_has[size_t(code)];
}

std::string_view EntityBuilder::text(int code) const {
    return m_has[size_t(code)] ? m_values[size_t(code)] : std::string_view();
}

QString EntityBuilder::string(int code) const {
    return decodeString(text(code), m_utf8);
}

double EntityBuilder::real(int code, double fallback) {
    if (!has(code))
        return fallback;
    bool ok = false;
    const double v = toReal(m_values[size_t(code)], &ok);
    if (!ok || !sane(v)) {
        m_bad = true;
        return fallback;
    }
    return v;
}

int EntityBuilder::integer(int code, int fallback) {
    if (!has(code))
        return fallback;
    bool ok = false;
    const int v = toInt(m_values[size_t(code)], &ok);
    if (!ok) {
        m_bad = true;
        return fallback;
    }
    return v;
}

int EntityBuilder::layer() {
    // Looked up by the name's bytes first: decoding and folding its case for every entity is slow.
    const std::string_view name = text(8);
    const auto found = m_layers.find(name);
    if (found != m_layers.end())
        return found->second;
    const int index = m_store.layerFor(decodeString(name, m_utf8));
    m_layers.emplace(name, index);
    return index;
}

Vector3 EntityBuilder::normal() {
    std::array<double, 3> n = {0, 0, 1};
    for (size_t axis = 0; axis < 3; ++axis) {
        if (!m_hasExtrusion[axis])
            continue;
        bool ok = false;
        const double v = toReal(m_extrusion[axis], &ok);
        if (!ok || !sane(v))
            m_bad = true;
        else
            n[axis] = v;
    }
    return normalized({n[0], n[1], n[2]});
}

// The arbitrary axis algorithm: the plane's x axis is perpendicular to its normal and to world y
// for normals near world z, to world z otherwise.
QTransform EntityBuilder::plane(double elevation) {
    const Vector3 n = normal();
    if (n.x == 0 && n.y == 0 && n.z == 1)
        return QTransform();
    const Vector3 ax = normalized(std::abs(n.x) < 1.0 / 64 && std::abs(n.y) < 1.0 / 64 ? cross({0, 1, 0}, n)
                                                                                       : cross({0, 0, 1}, n));
    const Vector3 ay = normalized(cross(n, ax));
    return QTransform(ax.x, ax.y, ay.x, ay.y, elevation * n.x, elevation * n.y);
}

void EntityBuilder::refuse(Type type) {
    ++m_store.counts.refused[size_t(type)];
}

void EntityBuilder::unsupported(const std::string& name) {
    auto& counts = m_store.counts.unsupported;
    if (counts.size() < kMostUnsupportedNames || counts.count(name))
        ++counts[name];
    else
        ++counts["(other types)"];
}

void EntityBuilder::append(std::vector<Record>& records, Kind kind, Type type, int layer, int ref) {
    ++m_store.counts.read[size_t(type)];
    if (m_invisible)
        return;
    if (m_store.records >= m_mostRecords ||
        qint64(m_store.numbers.size() + m_numbers.size()) > 3 * m_mostVertices) {
        m_overLimit = true;
        return;
    }
    records.push_back(
        Record{kind, type, layer, quint32(m_store.numbers.size()), quint32(m_numbers.size()), ref});
    m_store.numbers.insert(m_store.numbers.end(), m_numbers.begin(), m_numbers.end());
    ++m_store.records;
}

void EntityBuilder::finish(std::vector<Record>* records) {
    switch (m_handler) {
    case Handler::None:
        return;
    case Handler::Vertex:
        vertex();
        return;
    case Handler::Seqend:
        finishPolyline();
        return;
    case Handler::Unsupported:
    case Handler::Known:
        break;
    }
    if (!records)
        return;
    if (integer(67) == 1) {
        ++m_store.counts.paperSpace;
        if (m_handler == Handler::Known && m_type == Polyline)
            m_polyline = PolylineState{true, true, false, false, nullptr, 0, false, QTransform(), {}};
        return;
    }
    if (m_handler == Handler::Unsupported) {
        unsupported(std::string(m_typeName));
        return;
    }
    m_invisible = integer(60) == 1;
    m_numbers.clear();
    std::vector<Record>& into = *records;
    switch (m_type) {
    case Line:
        line(into);
        break;
    case Point:
        point(into);
        break;
    case Circle:
    case Arc:
        circle(into, m_type == Arc);
        break;
    case Ellipse:
        ellipse(into);
        break;
    case LwPolyline:
        lwpolyline(into);
        break;
    case Polyline:
        polyline(records);
        break;
    case Spline:
        spline(into);
        break;
    case Text:
    case Attrib:
        text(into);
        break;
    case MText:
        mtext(into);
        break;
    case Attdef: // templates, shown through the ATTRIBs of each insert
        ++m_store.counts.read[Attdef];
        break;
    case Insert:
        insert(into);
        break;
    case TypeCount:
        break;
    }
}

void EntityBuilder::line(std::vector<Record>& records) {
    m_numbers = {real(10), real(20), real(11), real(21)};
    if (m_bad)
        return refuse(Line);
    append(records, Kind::Line, Line, layer());
}

void EntityBuilder::point(std::vector<Record>& records) {
    m_numbers = {real(10), real(20)};
    if (m_bad)
        return refuse(Point);
    append(records, Kind::Point, Point, layer());
}

void EntityBuilder::circle(std::vector<Record>& records, bool arc) {
    const QPointF centre(real(10), real(20));
    const double radius = real(40);
    const QTransform p = plane(real(30));
    const double start = arc ? real(50) * kDegree : 0.0;
    const double sweep = arc ? sweepBetween(start, real(51) * kDegree) : kTurn;
    if (m_bad || radius < 0)
        return refuse(m_type);
    const QPointF c = p.map(centre);
    m_numbers = {c.x(), c.y(), p.m11() * radius, p.m12() * radius, p.m21() * radius, p.m22() * radius,
                 start, sweep};
    append(records, Kind::Curve, m_type, layer());
}

void EntityBuilder::ellipse(std::vector<Record>& records) {
    const Vector3 major{real(11), real(21), real(31)};
    const double ratio = real(40, 1.0);
    const double start = real(41, 0.0);
    const double sweep = sweepBetween(start, real(42, kTurn));
    const Vector3 n = normal(); // an ellipse is given in world coordinates, turning around its normal
    if (m_bad || ratio < 0)
        return refuse(Ellipse);
    const Vector3 minor = cross(n, major);
    m_numbers = {real(10), real(20), major.x, major.y, minor.x * ratio, minor.y * ratio, start, sweep};
    append(records, Kind::Curve, Ellipse, layer());
}

void EntityBuilder::lwpolyline(std::vector<Record>& records) {
    const bool closed = integer(70) & 1;
    const QTransform p = plane(real(38));
    if (m_bad || m_list.empty())
        return refuse(LwPolyline);
    m_numbers = {p.m11(), p.m12(), p.m21(), p.m22(), p.dx(), p.dy(), closed ? 1.0 : 0.0};
    m_numbers.insert(m_numbers.end(), m_list.begin(), m_list.end());
    append(records, Kind::Polyline, LwPolyline, layer());
}

void EntityBuilder::polyline(std::vector<Record>* records) {
    const int flags = integer(70);
    if (flags & (16 | 64)) { // polygon and polyface meshes
        unsupported("POLYLINE (mesh)");
        m_polyline = PolylineState{true, true, false, false, nullptr, 0, false, QTransform(), {}};
        return;
    }
    // 3D polylines have world vertices; 2D ones lie in their plane at the elevation of their point.
    const QTransform p = flags & 8 ? QTransform() : plane(real(30));
    m_polyline = PolylineState{true, false, m_invisible, m_bad, records, layer(), (flags & 1) != 0, p, {}};
}

void EntityBuilder::vertex() {
    if (m_polyline.skip || integer(70) & 16) // spline frame control points are not on the curve
        return;
    const double x = real(10), y = real(20), bulge = real(42);
    if (m_bad)
        m_polyline.bad = true;
    if (roomFor(3))
        m_polyline.vertices.insert(m_polyline.vertices.end(), {x, y, bulge});
}

void EntityBuilder::finishPolyline() {
    if (!m_polyline.open)
        return;
    const PolylineState done = std::move(m_polyline);
    m_polyline = PolylineState();
    if (done.skip || !done.records || m_overLimit)
        return;
    if (done.bad || done.vertices.empty())
        return refuse(Polyline);
    const QTransform& p = done.plane;
    m_numbers = {p.m11(), p.m12(), p.m21(), p.m22(), p.dx(), p.dy(), done.closed ? 1.0 : 0.0};
    m_numbers.insert(m_numbers.end(), done.vertices.begin(), done.vertices.end());
    m_invisible = done.invisible;
    append(*done.records, Kind::Polyline, Polyline, done.layer);
}

void EntityBuilder::spline(std::vector<Record>& records) {
    const int degree = integer(71, 3);
    const bool closed = integer(70) & 1;
    if (m_bad)
        return refuse(Spline);
    if (m_list.empty()) {
        if (m_fit.size() < 4)
            return refuse(Spline);
        const double sx = real(12), sy = real(22), ex = real(13), ey = real(23);
        if (m_bad)
            return refuse(Spline);
        m_numbers = {closed ? 1.0 : 0.0, sx, sy, ex, ey};
        m_numbers.insert(m_numbers.end(), m_fit.begin(), m_fit.end());
        return append(records, Kind::FitSpline, Spline, layer());
    }
    Nurbs curve;
    curve.degree = degree;
    curve.knots = m_knots;
    curve.weights = m_weights;
    for (size_t i = 0; i + 1 < m_list.size(); i += 2)
        curve.points.emplace_back(m_list[i], m_list[i + 1]);
    if (!makeValid(curve))
        return refuse(Spline);
    m_numbers = {double(curve.degree), double(curve.points.size())};
    m_numbers.insert(m_numbers.end(), curve.knots.begin(), curve.knots.end());
    for (size_t i = 0; i < curve.points.size(); ++i)
        m_numbers.insert(m_numbers.end(), {curve.points[i].x(), curve.points[i].y(), curve.weights[i]});
    append(records, Kind::Spline, Spline, layer());
}

void EntityBuilder::text(std::vector<Record>& records) {
    if (m_type == Attrib && integer(70) & 1)
        m_invisible = true;
    const int horizontal = integer(72);
    const int vertical = integer(m_type == Attrib ? 74 : 73);
    const QPointF first(real(10), real(20));
    const QPointF second(real(11), real(21));
    const double height = real(40, kDefaultTextHeight);
    const double rotation = real(50) * kDegree;
    const QTransform p = plane(real(30));
    if (m_bad || height < 0)
        return refuse(m_type);
    // Left-aligned text, and text fitted or aligned between two points, is placed by its first point.
    const bool bySecond = (horizontal != 0 || vertical != 0) && horizontal != 3 && horizontal != 5 && has(11);
    const QPointF along = p.map(QPointF(std::cos(rotation), std::sin(rotation))) - p.map(QPointF());
    const QPointF up = p.map(QPointF(-std::sin(rotation), std::cos(rotation))) - p.map(QPointF());
    DxfText t;
    t.text = plainText(string(1));
    t.position = p.map(bySecond ? second : first);
    t.height = height * std::hypot(up.x(), up.y());
    t.rotationDegrees = std::atan2(along.y(), along.x()) / kDegree;
    t.alignment = textAlignment(horizontal, vertical);
    m_store.texts.push_back(t);
    append(records, Kind::Text, m_type, layer(), int(m_store.texts.size() - 1));
}

void EntityBuilder::mtext(std::vector<Record>& records) {
    const QPointF position(real(10), real(20));
    const double height = real(40, kDefaultTextHeight);
    double degrees = real(50); // degrees, as AutoCAD writes them
    const double dx = real(11), dy = real(21);
    if (m_bad || height < 0)
        return refuse(MText);
    if (dx != 0 || dy != 0)
        degrees = std::atan2(dy, dx) / kDegree;
    QByteArray raw;
    for (std::string_view chunk : m_chunks)
        raw.append(chunk.data(), qsizetype(chunk.size()));
    raw.append(text(1).data(), qsizetype(text(1).size()));
    DxfText t;
    t.text = plainMText(decodeString(std::string_view(raw.constData(), size_t(raw.size())), m_utf8));
    t.position = position;
    t.height = height;
    t.rotationDegrees = degrees;
    t.alignment = attachment(integer(71, 1));
    m_store.texts.push_back(t);
    append(records, Kind::Text, MText, layer(), int(m_store.texts.size() - 1));
}

void EntityBuilder::insert(std::vector<Record>& records) {
    const QString name = string(2);
    const QTransform p = plane(real(30));
    m_numbers = {p.m11(),
                 p.m12(),
                 p.m21(),
                 p.m22(),
                 p.dx(),
                 p.dy(),
                 real(10),
                 real(20),
                 real(41, 1.0),
                 real(42, 1.0),
                 real(50),
                 double(std::max(1, integer(70, 1))),
                 double(std::max(1, integer(71, 1))),
                 real(44),
                 real(45)};
    if (m_bad || name.isEmpty())
        return refuse(Insert);
    append(records, Kind::Insert, Insert, layer(), m_store.blockFor(name));
}

} // namespace dxf::read
