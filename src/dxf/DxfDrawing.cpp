#include "DxfDrawing.h"

#include <cmath>

namespace dxf {

QString real(double v) {
    if (std::abs(v) < 1e-12)
        v = 0.0;
    return QString::number(v, 'g', 12);
}

QString encodeText(const QString& text) {
    QString out;
    const QList<uint> codes = text.toUcs4();
    auto escape = [&out](uint unit) {
        out += QStringLiteral("\\U+%1").arg(unit, 4, 16, QChar('0')).toUpper();
    };
    for (qsizetype i = 0; i < codes.size(); ++i) {
        const uint c = codes[i];
        const bool percentPair =
            c == '%' && ((i > 0 && codes[i - 1] == '%') || (i + 1 < codes.size() && codes[i + 1] == '%'));
        if (c < 32)
            continue;
        if (QChar::requiresSurrogates(c)) {
            // Readers take exactly four digits after \U+, as one UTF-16 code unit.
            escape(QChar::highSurrogate(c));
            escape(QChar::lowSurrogate(c));
        } else if (c > 126 || c == '\\') {
            escape(c);
        } else if (percentPair) {
            out += QStringLiteral("%%%"); // "%%" starts a control code; "%%%" is a literal percent sign
        } else if (c == '^') {
            out += QStringLiteral("^ "); // a caret escapes the next character
        } else {
            out += QChar(char16_t(c));
        }
    }
    return out;
}

void Drawing::add(const QString& type, const EntityStyle& style, QList<Tag>&& tags,
                  const QList<QPointF>& bounds, int image) {
    bool ok = writable(style.linetypeScale);
    for (const Tag& t : tags)
        ok = ok && (!t.text.isNull() || writable(t.number));
    for (const QPointF& p : bounds)
        ok = ok && writable(p.x()) && writable(p.y());
    if (!ok) {
        ++m_refused;
        return;
    }
    m_entities.append({type, style, std::move(tags), image});
    for (const QPointF& p : bounds) {
        if (!m_hasExtents) {
            m_extents = QRectF(p, p);
            m_hasExtents = true;
        } else {
            m_extents.setLeft(std::min(m_extents.left(), p.x()));
            m_extents.setRight(std::max(m_extents.right(), p.x()));
            m_extents.setTop(std::min(m_extents.top(), p.y()));
            m_extents.setBottom(std::max(m_extents.bottom(), p.y()));
        }
    }
}

void Drawing::addLine(const QPointF& from, const QPointF& to, const EntityStyle& style) {
    add("LINE", style,
        {{100, "AcDbLine"}, {10, from.x()}, {20, from.y()}, {30, 0}, {11, to.x()}, {21, to.y()}, {31, 0}},
        {from, to});
}

void Drawing::addPolyline(const QPolygonF& points, bool closed, const EntityStyle& style) {
    // Flag 128 keeps the linetype pattern running across vertices of flattened curves.
    QList<Tag> tags = {
        {100, "AcDbPolyline"}, {90, int(points.size())}, {70, (closed ? 1 : 0) | 128}, {43, 0}};
    tags.reserve(tags.size() + 2 * points.size());
    for (const QPointF& p : points) {
        tags.append({10, p.x()});
        tags.append({20, p.y()});
    }
    add("LWPOLYLINE", style, std::move(tags), points);
}

void Drawing::addBezierSpline(const QPolygonF& controls, const EntityStyle& style) {
    const int pieces = int((controls.size() - 1) / 3);
    if (pieces < 1)
        return;
    const int count = 3 * pieces + 1;
    // Planar (8), degree 3; every inner knot three times, so that each piece is its own Bezier curve.
    QList<Tag> tags = {{100, "AcDbSpline"}, {210, 0},    {220, 0}, {230, 1},    {70, 8},    {71, 3},
                       {72, count + 4},     {73, count}, {74, 0},  {42, 1e-10}, {43, 1e-10}};
    for (int k = 0; k < 4; ++k)
        tags.append({40, 0});
    for (int piece = 1; piece < pieces; ++piece)
        for (int k = 0; k < 3; ++k)
            tags.append({40, piece});
    for (int k = 0; k < 4; ++k)
        tags.append({40, pieces});
    const QList<QPointF> used = controls.mid(0, count);
    for (const QPointF& p : used) {
        tags.append({10, p.x()});
        tags.append({20, p.y()});
        tags.append({30, 0});
    }
    // A Bezier curve stays within the hull of its control points.
    add("SPLINE", style, std::move(tags), used);
}

void Drawing::addCircle(const QPointF& centre, double radius, const EntityStyle& style) {
    add("CIRCLE", style, {{100, "AcDbCircle"}, {10, centre.x()}, {20, centre.y()}, {30, 0}, {40, radius}},
        {centre - QPointF(radius, radius), centre + QPointF(radius, radius)});
}

void Drawing::addEllipse(const QPointF& centre, const QPointF& majorAxis, double ratio,
                         const EntityStyle& style) {
    const QPointF minor = QPointF(-majorAxis.y(), majorAxis.x()) * ratio;
    add("ELLIPSE", style,
        {{100, "AcDbEllipse"},
         {10, centre.x()},
         {20, centre.y()},
         {30, 0},
         {11, majorAxis.x()},
         {21, majorAxis.y()},
         {31, 0},
         {210, 0},
         {220, 0},
         {230, 1},
         {40, ratio},
         {41, 0},
         {42, 2.0 * M_PI}},
        {centre + majorAxis + minor, centre - majorAxis - minor, centre + majorAxis - minor,
         centre - majorAxis + minor});
}

void Drawing::addArc(const QPointF& centre, double radius, double startDegrees, double endDegrees,
                     const EntityStyle& style) {
    const auto at = [&](double degrees) {
        const double a = degrees * M_PI / 180.0;
        return centre + QPointF(std::cos(a), std::sin(a)) * radius;
    };
    // The extents take the ends and every quarter point the arc passes.
    const double sweep = std::fmod(std::fmod(endDegrees - startDegrees, 360.0) + 360.0, 360.0);
    QList<QPointF> bounds = {at(startDegrees), at(endDegrees)};
    for (int quarter = 0; quarter < 4; ++quarter) {
        const double from = std::fmod(std::fmod(quarter * 90.0 - startDegrees, 360.0) + 360.0, 360.0);
        if (from <= sweep)
            bounds.append(at(quarter * 90.0));
    }
    add("ARC", style,
        {{100, "AcDbCircle"},
         {10, centre.x()},
         {20, centre.y()},
         {30, 0},
         {40, radius},
         {100, "AcDbArc"},
         {50, startDegrees},
         {51, endDegrees}},
        bounds);
}

void Drawing::addSolidHatch(const QList<QPolygonF>& loops, const EntityStyle& style) {
    QList<Tag> tags = {{100, "AcDbHatch"},
                       {10, 0},
                       {20, 0},
                       {30, 0},
                       {210, 0},
                       {220, 0},
                       {230, 1},
                       {2, "SOLID"},
                       {70, 1},
                       {71, 0},
                       {91, int(loops.size())}};
    QList<QPointF> bounds;
    for (const QPolygonF& loop : loops) {
        // Polyline boundary (2), no bulges, closed.
        tags.append({{92, 2}, {72, 0}, {73, 1}, {93, int(loop.size())}});
        for (const QPointF& p : loop) {
            tags.append({10, p.x()});
            tags.append({20, p.y()});
        }
        tags.append({97, 0});
        bounds.append(loop);
    }
    tags.append({{75, 0}, {76, 1}, {98, 0}});
    add("HATCH", style, std::move(tags), bounds);
}

void Drawing::addText(const TextRun& run, const EntityStyle& style) {
    QList<Tag> tags = {{100, "AcDbText"}, {10, run.baseline.x()}, {20, run.baseline.y()},
                       {30, 0},           {40, run.height},       {1, encodeText(run.text)}};
    if (run.rotationDegrees != 0.0)
        tags.append({50, run.rotationDegrees});
    if (run.widthFactor != 1.0)
        tags.append({41, run.widthFactor});
    tags.append({7, "Standard"});
    if (run.upsideDown)
        tags.append({71, 4});
    tags.append({100, "AcDbText"});
    const double a = run.rotationDegrees * M_PI / 180.0;
    const QPointF along = QPointF(std::cos(a), std::sin(a)) * run.advance;
    const QPointF up = QPointF(-std::sin(a), std::cos(a)) * (run.upsideDown ? -run.height : run.height);
    add("TEXT", style, std::move(tags),
        {run.baseline, run.baseline + along, run.baseline + up, run.baseline + along + up});
}

void Drawing::addImage(const QImage& image, const QPointF& insert, const QPointF& u, const QPointF& v) {
    int index = m_imageIndex.value(image.cacheKey(), int(m_images.size()));
    const QPointF width = u * image.width(), height = v * image.height();
    const int before = int(m_entities.size());
    add("IMAGE", EntityStyle(),
        {{100, "AcDbRasterImage"},
         {90, 0},
         {10, insert.x()},
         {20, insert.y()},
         {30, 0},
         {11, u.x()},
         {21, u.y()},
         {31, 0},
         {12, v.x()},
         {22, v.y()},
         {32, 0},
         {13, image.width()},
         {23, image.height()}},
        {insert, insert + width, insert + height, insert + width + height}, index);
    if (m_entities.size() > before && index == m_images.size()) {
        m_imageIndex.insert(image.cacheKey(), index);
        m_images.append(image);
    }
}

} // namespace dxf
