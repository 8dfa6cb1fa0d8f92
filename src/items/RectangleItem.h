#pragma once

#include "ItemTypes.h"
#include "ShapeItem.h"

class QGraphicsRectItem;

// A rectangle drawn from corner to corner, which may then be rotated; measures its sides, area and
// perimeter. Its geometry is the child rectangle, in item coordinates, rotated about its centre.
class GRAPHICSOBJECTS_EXPORT RectangleItem : public ShapeItem {
    Q_OBJECT
public:
    GRAPHICSOBJECTS_MEASURED_ITEM(RectangleItem, "rectangle_mesureIndex", Perim)

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

    long mesuresFlag() const override { return 0x80; }
    GRAPHICSOBJECTS_LOCKS_GRIPS_ONLY
    GRAPHICSOBJECTS_ITEM_DRAWING
    GRAPHICSOBJECTS_ITEM_TRANSFORMED
    // Sets the rotation (degrees, anticlockwise on screen) about the rectangle's centre.
    void rotate(double angle) override;

    // The rectangle in item coordinates.
    QRectF rect() const;

public slots:
    bool computeMesures(void* arg) override;
    void initRotationReferencePoint(const QPointF& p) override;

protected:
    // Builds the child; the most derived constructor then calls initialise().
    explicit RectangleItem(QGraphicsItem* parent);
    // Identity, measure index and, with a context record, the generated geometry. Runs once the
    // object is complete, so that the type and the measures are those of the derived class.
    void initialise(int id, void* context, const char* mesureKey, int mesureDefault);

    // Fills the pixel measures of a w x h rectangle and calibrates them.
    virtual void fillMesures(double w, double h);
    QList<MenuEntry> mesureMenu() const override;

    void setRect(const QRectF& r);
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;

private:
    void pointsFromRect();
    void rotateByGrip(int id, const QPointF& p);
    void resizeByGrip(int id, const QPointF& p);
    void snapImageSelection();
    void snapPixmapSelection();
};
