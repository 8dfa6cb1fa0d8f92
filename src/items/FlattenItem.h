#pragma once

#include "ItemTypes.h"
#include "VertexItem.h"

#include <QImage>
#include <QPainterPath>

// Straightening along a path: the user clicks a polyline along a curved structure (a fibre, a weld
// seam, a root, a coating layer) and sets the band's width with its grip. "Straighten" in the menu
// samples the scene's image across the band, column by column along the path (one pixel steps, each
// column along the path's normal, bilinear), and hands the straight image to the host through
// itemChanged(this, "flattened", &image) and straightenedImage(); each block of 256 columns emits
// transformIndex(this, block, last). Measures: path length (dist1) and band width (dist2).
class GRAPHICSOBJECTS_EXPORT FlattenItem : public VertexItem {
    Q_OBJECT
public:
    // context: optional _AUTOPOINTPARAMS whose points (scene) are the path and radius, when positive,
    // half the band width; its source gives the calibration.
    GRAPHICSOBJECTS_MEASURED_ITEM(FlattenItem, "flatten_mesureIndex", Dist1)
    // The band grip's id, apart from the vertices', and the menu's command.
    enum { BandGrip = -1, StraightenCommand = -1 };
    // Band widths, in pixels.
    static constexpr double DefaultBand = 20, MaxBand = 10000;

    double bandWidth() const { return m_band; }
    // Clamped to 1..MaxBand; refused when not a number.
    void setBandWidth(double width);
    // Straightens the scene's image along the path; false without an image or a path of a pixel.
    bool straighten();
    QImage straightenedImage() const { return m_straightened; }

    QList<MenuEntry> mesureMenu() const override;
    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;
    QList<Handle> handles() const override;
    void handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) override;
    void handleReleased(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) override;

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

protected:
    void measure(bool live) override;
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;

private:
    // Where the band grip stands: on the band's edge, across the path halfway along it.
    QPointF bandGripPos() const;

    double m_band = DefaultBand;
    // The band's outline, drawn dashed.
    QPainterPath m_bandPath;
    QImage m_straightened;
};
