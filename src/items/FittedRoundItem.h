#pragma once

#include "RoundItem.h"

#include <utility>

class AbstractScene;
class QGraphicsPathItem;

// Base of the circle and the arc fitted to any number of points. The points are clicked (a double
// click or Return ends them) or found on the scene's image: rays cast from a click inside a round
// feature each take the first edge where the intensity crosses halfway between the inner and outer
// levels; points further from the fitted circle than three median absolute deviations are dropped and
// the rest fitted again. Besides the shape's measures, rad2 is the largest and cust the root-mean-square
// distance of the kept points from the circle (both lengths). Each step of a search and fit emits
// transformIndex(this, step, whether it is the last). The points are marked: kept ones by an upright
// cross, dropped ones by a slanted one. With "follow image", a new scene image is searched again from
// the same click; every new image emits imageChanged("scene", whether the shape was found on it).
class GRAPHICSOBJECTS_EXPORT FittedRoundItem : public RoundItem {
    Q_OBJECT
public:
    enum Way { ClickedPoints = 0, FoundOnImage = 1 };
    enum Step { SearchStep = 1, FitStep = 2, RefitStep = 3 };
    // Context-menu commands; the measure indices are not negative.
    enum MenuCommand { ClickedCommand = -1, ImageCommand = -2, FollowCommand = -3, RaysCommand = -1000 };
    static constexpr int DefaultRays = 36;
    static constexpr int MinRays = 12;
    static constexpr int MaxRays = 360;

    Way way() const { return m_way; }
    // Also the way of the class's next items. On a drawn item, the image way searches again from the
    // centre, the clicked way fits all the points again.
    void setWay(Way way);
    // Whether the next points come from the image: its way, on a scene that has an image.
    bool searchesImage() const;
    int rays() const { return m_rays; }
    // Clamped to 12..360; an item found on the image searches again.
    void setRays(int rays);
    bool followsImage() const { return m_follow; }
    void setFollowImage(bool follow) { m_follow = follow; }
    // Whether the points were found on the image, and where the search started (scene coordinates).
    bool foundOnImage() const { return m_fromImage; }
    QPointF searchOrigin() const { return mapToScene(m_origin); }
    // Searches the scene's image from origin (scene coordinates) in the sector (degrees, as the arcs'
    // angles; 360 all round) and fits the points found. False, and the item unchanged, when there is no
    // image or fewer than half the rays found an edge.
    bool searchImage(const QPointF& origin, double sectorStart, double sectorSpan);

    long mesuresFlag() const override { return 0x200; }
    MesureUnit mesureUnit(int i) const override;
    MesureText mesureText(int i) const override;
    void setPen(const QPen& pen) override;
    void mouseMove(QGraphicsSceneMouseEvent* event) override;
    QList<MenuEntry> mesureMenu() const override;
    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;

protected:
    FittedRoundItem(QGraphicsItem* parent, bool arc, const char* wayKey);

    // The shape of a fit to the points: the circle, or its arc from the first kept point to the last.
    virtual std::optional<RoundShape> shapeOfFit(const QList<QPointF>& points,
                                                 const CircleFit& fit) const = 0;
    // The sector searched from the first of the clicks, or none.
    virtual std::optional<std::pair<double, double>> sectorOf(const QList<QPointF>& clicks) const = 0;
    // Clicks that start an image search; 0 when a double click or Return does.
    virtual int imageClicks() const = 0;

    std::optional<RoundShape> shapeFrom(const QList<QPointF>& points) const override;
    int clicksToComplete() const override;
    int minimumPoints() const override;
    bool refusesClick(const QList<QPointF>& points) const override;
    bool finishPoints() override;
    void pointsChanged() override;
    void fillMesures() override;
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;

private:
    // Searches again on the images the host scene shows from now on.
    void followScene(AbstractScene* host);
    void sceneImageChanged();
    void searchAgain();

    QGraphicsPathItem* m_marks;
    const char* m_wayKey;
    Way m_way = ClickedPoints;
    int m_rays = DefaultRays;
    bool m_follow = false;
    bool m_fromImage = false;
    // Where the last search started (item coordinates) and its sector.
    QPointF m_origin;
    double m_sectorStart = 0;
    double m_sectorSpan = 360;
    QMetaObject::Connection m_imageConnection;
};
