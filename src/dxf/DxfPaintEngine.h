#pragma once

#include "DxfDrawing.h"

#include <QBrush>
#include <QPaintEngine>
#include <QPen>
#include <QTransform>

// Records painter calls as DXF entities: device coordinates with y turned upwards. The device tells
// the engine its height and resolution before painting starts.
class DxfPaintEngine : public QPaintEngine {
public:
    DxfPaintEngine();

    // Height in device units (where y turns round) and dots per inch (for lineweights).
    void setCanvas(double height, double resolution);

    bool begin(QPaintDevice* device) override;
    bool end() override;
    Type type() const override { return QPaintEngine::User; }
    void updateState(const QPaintEngineState& state) override;

    void drawLines(const QLineF* lines, int lineCount) override;
    void drawPolygon(const QPointF* points, int pointCount, PolygonDrawMode mode) override;
    void drawPath(const QPainterPath& path) override;
    void drawEllipse(const QRectF& rect) override;
    void drawTextItem(const QPointF& p, const QTextItem& textItem) override;
    void drawPixmap(const QRectF& r, const QPixmap& pm, const QRectF& sr) override;
    void drawImage(const QRectF& r, const QImage& image, const QRectF& sr,
                   Qt::ImageConversionFlags flags = Qt::AutoColor) override;

    const dxf::Drawing& drawing() const { return m_drawing; }
    bool hasPainted() const { return m_hasPainted; }

    using QPaintEngine::drawLines;
    using QPaintEngine::drawPolygon;

private:
    dxf::EntityStyle penStyle() const;
    dxf::EntityStyle brushStyle() const;
    // Fully transparent pens and brushes draw nothing.
    bool hasPen() const { return m_pen.style() != Qt::NoPen && m_penColor.alpha() > 0; }
    bool hasBrush() const { return m_brush.style() != Qt::NoBrush && m_brushColor.alpha() > 0; }
    void fill(const QPainterPath& path);
    void stroke(const QPolygonF& polygon, bool closed);

    dxf::Drawing m_drawing;
    QPen m_pen;
    QBrush m_brush;
    QColor m_penColor;    // the pen's mean colour
    QColor m_brushColor;  // the brush's mean colour
    QTransform m_toDxf;   // painter transform, then the device's y flip
    QTransform m_painter; // painter transform alone, for pen widths
    QTransform m_flip;
    double m_height = 0.0;
    double m_resolution = 72.0;
    bool m_hasPainted = false;
};
