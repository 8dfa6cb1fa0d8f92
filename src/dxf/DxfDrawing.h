#pragma once

#include "DxfStyle.h"

#include <QHash>
#include <QImage>
#include <QList>
#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <QString>

// A drawing held in memory: model-space entities in drawing units (y up), each kept as the DXF
// records it will be written as, and the raster images its IMAGE entities show.
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

// One group code and its value: a number, formatted when written, or a text.
struct Tag {
    Tag(int code, double number)
        : code(code)
        , number(number) {}
    Tag(int code, int number)
        : code(code)
        , number(number) {}
    Tag(int code, const QString& text)
        : code(code)
        , text(text) {}
    Tag(int code, const char* text)
        : code(code)
        , text(QString::fromLatin1(text)) {}

    int code;
    double number = 0.0;
    QString text; // written instead of the number when not null
};

// An entity's records after the common AcDbEntity part, which the writer adds with handle and owner.
// An IMAGE entity names its image by index; the writer adds the records that link it to the image.
struct Entity {
    QString type;
    EntityStyle style;
    QList<Tag> tags;
    int image = -1;
};

// Whether a drawing can hold a number: finite, and small enough that sums of coordinates stay finite.
inline bool writable(double v) {
    return v >= -1e15 && v <= 1e15; // false for NaN too
}

class Drawing {
public:
    void addLine(const QPointF& from, const QPointF& to, const EntityStyle& style);
    void addPolyline(const QPolygonF& points, bool closed, const EntityStyle& style);
    // A cubic spline made of Bezier pieces: the first point, then per piece two control points and
    // its end (3 n + 1 points for n pieces).
    void addBezierSpline(const QPolygonF& controls, const EntityStyle& style);
    void addCircle(const QPointF& centre, double radius, const EntityStyle& style);
    void addEllipse(const QPointF& centre, const QPointF& majorAxis, double ratio, const EntityStyle& style);
    // The arc runs anticlockwise (y up) from startDegrees to endDegrees.
    void addArc(const QPointF& centre, double radius, double startDegrees, double endDegrees,
                const EntityStyle& style);
    void addSolidHatch(const QList<QPolygonF>& loops, const EntityStyle& style);
    void addText(const TextRun& run, const EntityStyle& style);
    // The image with its lower left corner at insert; u and v are the sides of one pixel along its
    // rows and up its columns. Images drawn again (same cache key) are stored once.
    void addImage(const QImage& image, const QPointF& insert, const QPointF& u, const QPointF& v);

    const QList<Entity>& entities() const { return m_entities; }
    const QList<QImage>& images() const { return m_images; }
    bool isEmpty() const { return m_entities.isEmpty(); }
    // Bounding box of everything added; meaningless while the drawing is empty.
    QRectF extents() const { return m_extents; }
    // Entities left out because a number in them was not writable.
    int refused() const { return m_refused; }

private:
    void add(const QString& type, const EntityStyle& style, QList<Tag>&& tags, const QList<QPointF>& bounds,
             int image = -1);

    QList<Entity> m_entities;
    QList<QImage> m_images;
    QHash<qint64, int> m_imageIndex; // cache key to index in m_images
    QRectF m_extents;
    bool m_hasExtents = false;
    int m_refused = 0;
};

// DXF text of a real number.
QString real(double v);
// Text as a TEXT entity stores it: printable ASCII, everything else as \U+XXXX escapes of its UTF-16
// code units (a character beyond the basic plane as its surrogate pair).
QString encodeText(const QString& text);

} // namespace dxf
