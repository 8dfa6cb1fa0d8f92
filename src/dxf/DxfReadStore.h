#pragma once

#include "DxfReadModel.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <array>
#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

// What the parser keeps of a file before it is placed: entities in a canonical form, block
// definitions and layers, with the counts that become the report.
namespace dxf::read {

// Beyond this magnitude a coordinate or a factor is taken for garbage.
constexpr double kLargest = 1e12;

inline bool sane(double v) {
    return v >= -kLargest && v <= kLargest; // false for NaN too
}

// The entity types the reader knows, in the order of kTypeNames.
enum Type : int {
    Line,
    Point,
    Circle,
    Arc,
    Ellipse,
    LwPolyline,
    Polyline,
    Spline,
    Text,
    MText,
    Attrib,
    Attdef,
    Insert,
    TypeCount
};
extern const std::array<const char*, TypeCount> kTypeNames;

enum class Kind : quint8 {
    Line,      // x1 y1 x2 y2
    Point,     // x y
    Curve,     // cx cy ux uy vx vy t0 sweep: c + u cos t + v sin t, t from t0 over sweep (radians)
    Polyline,  // m11 m12 m21 m22 dx dy (plane to world), closed, then x y bulge per vertex
    Spline,    // degree, point count, knots (count + degree + 1), then x y weight per point
    FitSpline, // closed, start tangent x y, end tangent x y (zero when not given), then x y per point
    Text,      // nothing: the text itself is Store::texts[ref]
    Insert,    // m11 m12 m21 m22 dx dy, x y, scale x y, rotation (degrees), columns, rows, spacings
};

struct Record {
    Kind kind;
    Type type;
    int layer;
    quint32 first; // index of the first number in Store::numbers
    quint32 count;
    int ref = -1; // Text: index in Store::texts; Insert: index in Store::blocks
};

struct Block {
    QString name;
    QPointF base;
    std::vector<Record> records;
    bool defined = false;
    bool external = false;
};

struct Counts {
    std::array<qint64, TypeCount> read{};
    std::array<qint64, TypeCount> refused{};
    std::unordered_map<std::string, qint64> unsupported;
    qint64 paperSpace = 0;
};

struct Store {
    std::vector<double> numbers;
    std::vector<DxfText> texts;
    std::deque<Block> blocks;       // a deque, so that entities can be added to one while others are created
    QHash<QString, int> blockIndex; // by upper-case name
    std::vector<Record> model;
    QList<DxfLayer> layers;         // names, colours and visibility; no geometry yet
    QHash<QString, int> layerIndex; // by upper-case name
    Counts counts;
    qint64 records = 0;  // entities kept, all containers together
    qint64 vertices = 0; // vertices kept

    int layerFor(const QString& name);
    int blockFor(const QString& name);
};

// The report's problem lines, each once and not too many.
class Problems {
public:
    void add(const QString& line);
    QStringList lines() const;

private:
    QStringList m_lines;
    QSet<QString> m_seen;
    int m_dropped = 0;
};

} // namespace dxf::read
