#pragma once

#include "ItemTypes.h"
#include "VertexItem.h"

#include <QImage>
#include <QMetaObject>

// Region segmentation: a click on the scene's image grows the region of 8-connected pixels whose grey
// level (for a colour image: every channel) lies within the tolerance of the clicked pixel's. Dragging
// while the button is held sets the tolerance, one grey level per screen pixel away from the press
// (shown in the label meanwhile); the menu sets it exactly. The region's outer outline, simplified to
// within half a pixel, is the item's polygon and its holes are kept as inner outlines. Measures as a
// PolygonItem, except the area: the region's pixel count times the calibration squared. Each completed
// segmentation emits itemChanged(this, "segmented", nullptr).
//
// All lassos share what they segmented, which a new region never overlaps; InitToolsNames starts it
// afresh. A click outside the image or on a region segmented before is refused (the drawing is
// rejected); a lasso placed on a scene without an image keeps its seed and segments when an image
// arrives. Its seed has a grip: dragging it segments again from there.
class GRAPHICSOBJECTS_EXPORT LassoItem : public VertexItem {
    Q_OBJECT
public:
    // context: optional _AUTOPOINTPARAMS: center is the starting pixel (scene), radius the tolerance when
    // positive; its source gives the calibration. The region is grown at once when the item is on a
    // scene with an image (setLinkScene before, or segment() after).
    GRAPHICSOBJECTS_MEASURED_ITEM(LassoItem, "lasso_mesureIndex", Aera)
    enum MenuCommand { ToleranceCommand = -1 };
    // Grey levels: the tolerance of the first region, before any was segmented, and the largest.
    static constexpr int DefaultTolerance = 32, MaxTolerance = 255;

    ~LassoItem() override;

    // The shared state: regions segmented since the last reset, the latest tolerance (where new lassos
    // start; 0 before any), and the outer outlines (clockwise on screen) and holes (anticlockwise) of
    // the regions the lassos hold now, in scene coordinates.
    static int regionsSegmented();
    static int lastTolerance();
    static QList<QPolygonF> segmentedOutlines();
    static void resetShared();

    QPointF seed() const { return m_seed; }
    int tolerance() const { return m_tolerance; }
    // Clamped to 0..MaxTolerance; segments again.
    void setTolerance(int tolerance);
    // The holes, in item coordinates, and the region's pixel count.
    QList<QPolygonF> holes() const { return m_holes; }
    qint64 pixelCount() const { return m_pixels; }
    // Grows the region from its starting pixel on the scene's image; false, with the reason in refusal(),
    // when there is no image, that pixel lies off it or on another lasso's region.
    bool segment();
    QString refusal() const { return m_refusal; }

    GRAPHICSOBJECTS_ITEM_DRAWING
    typModeEdition mouseRelease(QGraphicsSceneMouseEvent* event) override;
    bool drawnByClicks() const override { return false; }
    QList<MenuEntry> mesureMenu() const override { return outlineMesureMenu(); }
    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;
    void handleReleased(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) override;

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;
    QPainterPath pathThrough(const QPolygonF& points) const override;
    bool editsVertices() const override { return false; }
    void measure(bool live) override;
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;

private:
    // Grows the region; final ones are shared, counted and announced.
    bool grow(bool final);
    void clearRegion();
    void share();
    void unshare();
    void sceneImageChanged();

    QPointF m_seed;
    int m_tolerance = DefaultTolerance;
    QList<QPolygonF> m_holes;
    qint64 m_pixels = 0;
    QString m_refusal;
    // The region's exact pixel-edge outlines in scene coordinates, oriented for sharing, and whether
    // they are shared now.
    QList<QPolygonF> m_shared;
    bool m_isShared = false;
    bool m_counted = false;
    bool m_waitsForImage = false;
    QPoint m_pressScreen;
    QMetaObject::Connection m_imageConnection;
};
