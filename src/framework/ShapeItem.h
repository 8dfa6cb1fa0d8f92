#pragma once

#include "AbstractBaseItem.h"

// Declares what an item that keeps no measures declares (an arrow, a ruler, a picture, a note whose
// measures follow from its geometry): no measure kind for the host, no measures in its XML. Like Q_OBJECT
// it leaves the class in a section of its own (here public).
#define GRAPHICSOBJECTS_UNMEASURED                                                                           \
    long mesuresFlag() const override {                                                                      \
        return 0;                                                                                            \
    }                                                                                                        \
                                                                                                             \
protected:                                                                                                   \
    bool savesMesures() const override {                                                                     \
        return false;                                                                                        \
    }                                                                                                        \
                                                                                                             \
public:

// Base of the items drawn through one child shape (a line, rectangle, ellipse, path or polygon
// item). The child paints; the item forwards its geometry, pen and brush to it, clones itself,
// and reads and writes the common XML around its own attributes. A concrete item keeps only what
// differs: its geometry, its pixel measures, its own XML attributes and its handles.
class GRAPHICSOBJECTS_EXPORT ShapeItem : public AbstractBaseItem {
    Q_OBJECT
public:
    // A new item of the same class (its constructor must be Q_INVOKABLE), loaded from this one.
    AbstractBaseItem* clone(int id) override;
    QPointF centroid() override;
    void setPen(const QPen& pen) override;
    void setBrush(const QBrush& brush) override;
    // A shape drawn with one drag is complete at its release.
    typModeEdition mouseRelease(QGraphicsSceneMouseEvent*) override { return EditionComplete; }

    // The common attributes, the measures when the item keeps them, then the item's own.
    bool toAttributes(XmlAttributes& e) const override;
    bool fromAttributes(const XmlAttributes& e) override;

    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

protected:
    // Takes the child shape, which becomes a graphics child of the item and draws with its pen;
    // the item starts with pointCount points at the origin.
    ShapeItem(QGraphicsItem* parent, QGraphicsItem* shape, unsigned long subType, int pointCount);

    QGraphicsItem* childShape() const { return m_shape; }
    template <class Shape> Shape* child() const { return static_cast<Shape*>(m_shape); }
    // The child's own pen, leaving the label's colour alone.
    void setShapePen(const QPen& pen);
    // Gives the child (a rectangle or ellipse item) the rectangle r, the item turning about its centre
    // when asked; the caller then refreshes the grips.
    template <class Shape> void setChildRect(const QRectF& r, bool turnsAboutCentre = false) {
        Shape* shape = child<Shape>();
        if (r == shape->rect())
            return;
        prepareGeometryChange();
        shape->setRect(r);
        if (turnsAboutCentre)
            setTransformOriginPoint(r.center());
        update();
    }
    // Starts a drawing by a drag, once: both points at the press, in item coordinates, so that a click
    // without a drag spans nothing. False when the drawing had started.
    bool startDrag(QGraphicsSceneMouseEvent* event);
    // One move grip on each point, its id the point's index.
    QList<Handle> pointHandles() const;
    // initIdentity, then startGenerated: the host record to build the item from, or null.
    const _AUTOPOINTPARAMS* initGenerated(int id, void* context, const char* mesureKey = nullptr,
                                          int mesureDefault = 0);
    // The same for a constructor that builds the item from the host record: build(record) runs when
    // there is one.
    template <class Build>
    void initGenerated(int id, void* context, const char* mesureKey, int mesureDefault, Build build) {
        if (const _AUTOPOINTPARAMS* params = initGenerated(id, context, mesureKey, mesureDefault))
            build(*params);
    }
    virtual bool savesMesures() const { return true; }
    virtual void writeGeometry(XmlAttributes& e) const = 0;
    // Runs after the common attributes, the pen, brush and font are back.
    virtual void readGeometry(const XmlAttributes& e) = 0;

    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent*) override { edit(); }

private:
    QGraphicsItem* m_shape;
};
