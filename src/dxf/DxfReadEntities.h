#pragma once

#include "DxfReadStore.h"
#include "DxfReadTokens.h"

#include <QTransform>

#include <array>
#include <string_view>
#include <unordered_map>
#include <vector>

// Turns the group codes of one entity into a Record, or counts it as refused or unsupported.
namespace dxf::read {

struct Vector3 {
    double x, y, z;
};

class EntityBuilder {
public:
    EntityBuilder(Store& store, qint64 mostRecords, qint64 mostVertices);

    // Starts an entity of the given type (the value of its group 0).
    void begin(std::string_view type, bool utf8);
    void add(const Pair& pair);
    // Ends the entity begun last, adding it to records (nullptr: outside any block or section).
    void finish(std::vector<Record>* records);
    // POLYLINE vertices arrive as VERTEX entities closed by SEQEND.
    bool inPolyline() const { return m_polyline.open; }
    void finishPolyline();

    // Set once the file asked for more entities or vertices than allowed.
    bool overLimit() const { return m_overLimit; }

private:
    enum class Handler { None, Known, Unsupported, Vertex, Seqend };

    void clear();
    double real(int code, double fallback = 0.0);
    int integer(int code, int fallback = 0);
    std::string_view text(int code) const;
    bool has(int code) const;
    QString string(int code) const;
    // The entity's normal (group 210), of unit length.
    Vector3 normal();
    // The entity's plane at an elevation along its normal, projected on the drawing.
    QTransform plane(double elevation);
    int layer();
    void refuse(Type type);
    void append(std::vector<Record>& records, Kind kind, Type type, int layer, int ref = -1);
    bool roomFor(size_t numbers);
    void streamed(const Pair& pair);

    void unsupported(const std::string& name);
    void line(std::vector<Record>& records);
    void point(std::vector<Record>& records);
    void circle(std::vector<Record>& records, bool arc);
    void ellipse(std::vector<Record>& records);
    void lwpolyline(std::vector<Record>& records);
    void polyline(std::vector<Record>* records);
    void vertex();
    void spline(std::vector<Record>& records);
    void text(std::vector<Record>& records);
    void mtext(std::vector<Record>& records);
    void insert(std::vector<Record>& records);

    Store& m_store;
    qint64 m_mostRecords;
    qint64 m_mostVertices;
    bool m_overLimit = false;
    bool m_utf8 = false;

    // The entity being read: its type, single values by group code, lists of repeated codes.
    Handler m_handler = Handler::None;
    Type m_type = Line;
    std::string_view m_typeName;
    std::array<std::string_view, 100> m_values;
    std::array<bool, 100> m_has{};
    std::array<std::string_view, 3> m_extrusion;
    std::array<bool, 3> m_hasExtrusion{};
    bool m_embedded = false; // past group 101: an embedded object's codes, not ours
    bool m_bad = false;      // a number that is none, or absurd
    bool m_invisible = false;
    size_t m_pending = 0;                               // numbers read into the lists below
    std::unordered_map<std::string_view, int> m_layers; // layer indexes by the bytes of their names
    std::vector<std::string_view> m_chunks;
    std::vector<double> m_list; // LWPOLYLINE x y bulge; SPLINE control points x y
    std::vector<double> m_knots, m_weights, m_fit;
    std::vector<double> m_numbers; // the record's numbers, as they will be stored

    // The POLYLINE whose vertices are being read.
    struct PolylineState {
        bool open = false;
        bool skip = false; // meshes and paper space: vertices read and dropped
        bool invisible = false;
        bool bad = false;
        std::vector<Record>* records = nullptr;
        int layer = 0;
        bool closed = false;
        QTransform plane;
        std::vector<double> vertices;
    } m_polyline;
};

} // namespace dxf::read
