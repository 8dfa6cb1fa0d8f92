#pragma once

#include "DxfStyle.h"

#include <QList>
#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <QString>

// A drawing held in memory: model-space entities in drawing units (y up), each kept as the DXF
// records it will be written as.
namespace dxf {

// One line of single-line text: the left end of its baseline, its cap height and baseline direction.
struct TextRun {
    QString text;
    QPointF baseline;
    double height = 0.0;
    double rotationDegrees = 0.0;
    double widthFactor = 1.0;
    bool upsideDown = false;
    double advance = 0.0; // length of the run along the baseline, for the drawing extents
};

// One group code and its value, as written.
struct Tag {
    int code;
    QString value;
};

// An entity's records after the common AcDbEntity part, which the writer adds with handle and owner.
struct Entity {
    QString type;
    EntityStyle style;
    QList<Tag> tags;
};

class Drawing {
public:
    void addLine(const QPointF& from, const QPointF& to, const EntityStyle& style);
    void addPolyline(const QPolygonF& points, bool closed, const EntityStyle& style);
    void addCircle(const QPointF& centre, double radius, const EntityStyle& style);
    void addEllipse(const QPointF& centre, const QPointF& majorAxis, double ratio, const EntityStyle& style);
    void addSolidHatch(const QList<QPolygonF>& loops, const EntityStyle& style);
    void addText(const TextRun& run, const EntityStyle& style);

    const QList<Entity>& entities() const { return m_entities; }
    bool isEmpty() const { return m_entities.isEmpty(); }
    // Bounding box of everything added; meaningless while the drawing is empty.
    QRectF extents() const { return m_extents; }

private:
    void add(const QString& type, const EntityStyle& style, const QList<Tag>& tags,
             const QList<QPointF>& bounds);

    QList<Entity> m_entities;
    QRectF m_extents;
    bool m_hasExtents = false;
};

// DXF text of a real number.
QString real(double v);
// Text as a TEXT entity stores it: printable ASCII, everything else as \U+XXXX.
QString encodeText(const QString& text);

} // namespace dxf
