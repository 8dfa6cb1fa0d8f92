#pragma once

#include <QColor>
#include <QList>
#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <QString>

class QIODevice;

// An AutoCAD 2000 (AC1015) drawing held in memory: model-space entities in drawing units, with the
// tables, blocks and objects that readers require written around them.
namespace dxf {

struct EntityStyle {
    QColor color = Qt::black;
    int lineweight = -3; // hundredths of a millimetre; -3 is the reader's default
    QString linetype = QStringLiteral("Continuous");
    double linetypeScale = 1.0;
};

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

class Drawing {
public:
    void addLine(const QPointF& from, const QPointF& to, const EntityStyle& style);
    void addPolyline(const QPolygonF& points, bool closed, const EntityStyle& style);
    void addCircle(const QPointF& centre, double radius, const EntityStyle& style);
    void addEllipse(const QPointF& centre, const QPointF& majorAxis, double ratio, const EntityStyle& style);
    void addSolidHatch(const QList<QPolygonF>& loops, const EntityStyle& style);
    void addText(const TextRun& run, const EntityStyle& style);

    int entityCount() const { return int(m_entities.size()); }
    // Bounding box of everything added, or an empty rectangle at the origin.
    QRectF extents() const { return m_extents; }

    // insunits is the $INSUNITS code; paper is the area to show when the drawing is empty.
    void write(QIODevice& out, int insunits, const QRectF& paper) const;

private:
    struct Tag {
        int code;
        QString value;
    };
    struct Entity {
        QString type;
        EntityStyle style;
        QList<Tag> tags;
    };
    void add(const QString& type, const EntityStyle& style, const QList<Tag>& tags,
             const QList<QPointF>& bounds);

    QList<Entity> m_entities;
    QRectF m_extents;
    bool m_hasExtents = false;

    friend class Writer;
};

// The linetype drawn for a pen style, among those the file defines.
QString linetypeFor(Qt::PenStyle style);
// Index of the AutoCAD colour closest to color (1..255); 7 stands for both black and white.
int nearestAci(const QColor& color);
// The standard lineweight closest to a width in millimetres.
int snapLineweight(double millimetres);
// Text as a TEXT entity stores it: printable ASCII, everything else as \U+XXXX.
QString encodeText(const QString& text);

} // namespace dxf
