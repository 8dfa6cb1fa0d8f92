#pragma once

#include "ItemTypes.h"
#include "ShapeItem.h"

#include <QLineF>

// A magnifier callout: a small circle on the image (the region) and a larger circle elsewhere (the
// note) showing the region's pixels enlarged 2, 4 or 8 times, joined by the two outer tangent lines.
// Drawn as a press on the region's centre, a drag to its radius, then a click where the note goes
// (Return leaves the note where it is offered). It paints from the scene's image and follows it:
// when that image changes it repaints and emits imageChanged("scene", whether the region lies on it).
// rad1 is the region's calibrated radius, cust the magnification; every edit ends with mesureChangedEND.
class GRAPHICSOBJECTS_EXPORT CircleNote : public ShapeItem {
    Q_OBJECT
public:
    GRAPHICSOBJECTS_MEASURED_ITEM(CircleNote, "circlenote_mesureIndex", Rad1)
    enum Grip { RegionCentre = 0, RegionEdge = 1, NoteCentre = 2 };
    // A click without a drag gives a region of this radius; radii beyond the maximum are cut to it.
    static constexpr double DefaultRadius = 20;
    static constexpr double MaxRadius = 1e5;

    // Centres in item coordinates (points 0 and 1), radii in pixels.
    QPointF regionCentre() const { return m_mline[0]; }
    QPointF noteCentre() const { return m_mline[1]; }
    double regionRadius() const { return m_radius1; }
    double noteRadius() const { return m_radius1 * m_zoom; }
    int magnification() const { return m_zoom; }
    void setMagnification(int zoom);
    void setRegion(const QPointF& centre, double radius);
    void setNoteCentre(const QPointF& centre);
    // The outer tangents, each from the region's circle to the note's; none when one circle holds
    // the other.
    QList<QLineF> tangents() const;

    GRAPHICSOBJECTS_UNMEASURED
    QPointF centroid() override;
    MesureText mesureText(int i) const override;
    GRAPHICSOBJECTS_ITEM_DRAWN_BY_CLICKS
    typModeEdition completeCreation() override;
    QList<MenuEntry> mesureMenu() const override;
    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;

    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

public slots:
    bool computeMesures(void* arg) override;

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;

private:
    enum Stage { Idle, DrawingRegion, PlacingNote };
    // The note up and to the right of the region, clear of it.
    QPointF offeredNoteCentre() const;
    // The scene image's pixels under the region, in scene coordinates; empty when none.
    QRect regionPixels(const QImage& image) const;
    void rebuild();
    void sceneImageChanged();

    Stage m_stage = Idle;
    int m_zoom = 4;
    QMetaObject::Connection m_imageConnection;
};
