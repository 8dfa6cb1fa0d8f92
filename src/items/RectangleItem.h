#pragma once

#include "AbstractBaseItem.h"

class QGraphicsRectItem;

// A rectangle drawn from corner to corner, which may then be rotated; measures its sides, area and
// perimeter. Its geometry is the child rectangle, in item coordinates, rotated about its centre.
class GRAPHICSOBJECTS_EXPORT RectangleItem : public AbstractBaseItem {
    Q_OBJECT
public:
    // Transform-menu commands that are not transform indices.
    enum TransformCommand { SnapImage = 1, SnapPixmap = 2, ToPixmap = 3 };
    // Transform indices the host acts on.
    enum TransformIndex {
        TransformNone = -1,
        ToInCircle = 8200,
        ToOutCircle = 4104,
        ImageMatching = 16416,
        PixmapMatching = 24608,
        Transfer2Pixmap = 4608
    };
    // Largest area (square pixels) a rectangle may have to serve as a matching template.
    static constexpr double MatchingAreaLimit = 65536.0;

    RectangleItem(QGraphicsItem* parent, int id, void* context);

    AbstractBaseItem* clone(int id) override;
    long mesuresFlag() const override { return 0x80; }
    QPointF centroid() override;
    void setPen(const QPen& pen) override;
    void setBrush(const QBrush& brush) override;
    void setLockstate(const bool& state) override;
    void mouseMove(QGraphicsSceneMouseEvent* event) override;
    void mousePress(QGraphicsSceneMouseEvent* event) override;
    typModeEdition mouseRelease(QGraphicsSceneMouseEvent* event) override;
    bool endEdition() override;
    void setTransformIndex(int index) override;
    bool toXml(QDomElement& e) const override;
    bool fromXml(const QDomElement& e) override;
    // Sets the rotation (degrees, clockwise on screen) about the rectangle's centre.
    void rotate(double angle) override;
    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;
    void fillEditMenu(QMenu* menu) override;
    void applyEditMenu(int data) override;

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

    // The rectangle in item coordinates.
    QRectF rect() const;

public slots:
    bool computeMesures(void* arg) override;
    void fixupForTransform(_AUTOPOINTPARAMS& params, int, void*) override;
    void pressPoint(const QPointF&) override;
    void releasePoint(const QPointF&) override;
    void updatePoint(const QPointF& p) override;
    void initRotationReferencePoint(const QPointF& p) override;
    void validRotationReferencePoint(const QPointF&) override;

protected:
    struct MenuEntry {
        const char* text;
        int data;
    };
    struct MesureChoice {
        const char* commonKey;
        int defaultIndex;
    };

    // Builds the child and the handgrips; the most derived constructor then calls initialise().
    explicit RectangleItem(QGraphicsItem* parent);
    // Identity, measure index and, with a context record, the generated geometry. Runs once the
    // object is complete, so that the type and the measures are those of the derived class.
    void initialise(int id, void* context);

    virtual void fillMesures(double w, double h);
    virtual QList<MenuEntry> mesureMenu() const;
    virtual MesureChoice mesureChoice() const;

    void setRect(const QRectF& r);
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event) override;

private:
    void pointsFromRect();
    void rotateByGrip(HoverEventItem* grip, const QPointF& p);
    void resizeByGrip(HoverEventItem* grip, const QPointF& p);
    void snapImageSelection();
    void snapPixmapSelection();

    QGraphicsRectItem* m_rectChild = nullptr;
    double m_stepStartRotation = 0;
};
