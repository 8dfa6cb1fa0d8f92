#pragma once

#include "DxfReadModel.h"
#include "FrameItem.h"
#include "ItemTypes.h"

#include <QSet>

// A DXF drawing laid over the image, the way an inspector compares a photographed part with its
// drawing. The drawing's units become pixels through the calibration (a drawing in mm on a
// 2 µm/pixel image is 500 pixels per mm); a unitless drawing, as tools2DXF writes, is one pixel per
// unit. The item moves, turns by the grip above it and scales by its corners (keeping the drawing's
// shape) to register the drawing on the image; the menu shows and hides layers, takes other units
// and puts the drawing's origin on the image's bottom-left corner. What the file holds that is not
// drawn (unsupported or refused entities, truncation, cycles) is told by warning().
//
// Its frame is the drawing's extents at the current scale; the drawing's origin lies at origin()
// (item coordinates) with y pointing up. A calibration or unit change rescales the drawing about
// its origin.
class GRAPHICSOBJECTS_EXPORT DXFItem : public FrameItem {
    Q_OBJECT
public:
    // A context record may name the file (texts["file"]) and where its origin goes (center).
    GRAPHICSOBJECTS_ITEM(DXFItem)
    // The units taken: those the file states ($INSUNITS), or a DXF unit code (0 for pixels).
    static constexpr int FileUnits = -1;
    // Menu data: a unit entry carries UnitsBase - (code + 1), a layer entry LayerBase - its index.
    enum MenuCommand { OriginAtBottomLeft = -1, UnitsBase = -10, LayerBase = -100 };
    static constexpr qint64 MaxFileBytes = qint64(256) << 20;

    // Reads the drawing, relative to the scene's document folder when there is one; false, with
    // warning() saying why and a placeholder shown, when nothing can be drawn.
    bool setFileName(const QString& fileName);
    QString fileName() const { return m_fileName; }
    const DxfModel& drawing() const { return m_drawing; }
    QString warning() const { return m_warning; }

    int units() const { return m_units; }
    void setUnits(int code);
    // Pixels per drawing unit as the units and the calibration give them, and the scale the grips
    // added on top.
    double unitPixels() const;
    double scale() const;
    QPointF origin() const { return m_origin; }
    // Drawing coordinates to item coordinates.
    QTransform drawingTransform() const;
    // Moves the item so that the drawing's origin lies on scenePos.
    void placeOrigin(const QPointF& scenePos);
    bool isLayerVisible(const QString& name) const { return !m_hidden.contains(name); }
    void setLayerVisible(const QString& name, bool visible);

    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

protected:
    QSizeF naturalSize() const override { return extents().size() * m_unitPixels; }
    bool keepsAspect() const override { return true; }
    void frameChanged() override;
    void recalibrate() override;
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;

private:
    bool loadDrawing(const QString& fileName);
    // The drawing's extents (drawing units), widened where they are flat.
    QRectF extents() const;
    // The frame at s pixels per unit, the origin where it is.
    QRectF frameAt(double s) const;
    void followUnits();
    void paintText(QPainter* painter, const DxfText& text) const;

    DxfModel m_drawing;
    QString m_fileName;
    QString m_warning;
    QSet<QString> m_hidden;
    int m_units = FileUnits;
    // unitPixels() when the frame was last laid, and the pixels per unit the frame shows.
    double m_unitPixels = 1;
    double m_pixelsPerUnit = 1;
    QPointF m_origin;
};
