#pragma once

#include "ShapeItem.h"

// Base of the items laid in a rectangular frame (a face, a picture, a video, a drawing): drawn by a
// drag from corner to corner or laid by a click, scaled by its corner grips (Shift keeps the aspect
// ratio) and, where the class allows it, turned about the frame's centre by a grip above the frame.
// The frame is points 0 and 1 (top-left and bottom-right, item coordinates); the item turns about
// the frame's centre.
class GRAPHICSOBJECTS_EXPORT FrameItem : public ShapeItem {
    Q_OBJECT
public:
    // Id of the grip that turns the frame: the rectangle positions come first.
    static constexpr int RotationGrip = 9;
    // A frame is never scaled below this side, in scene units.
    static constexpr double MinSide = 2;

    GRAPHICSOBJECTS_UNMEASURED
    // An invisible frame keeps no pen: the pen colours what the item paints.
    void setPen(const QPen& pen) override;
    QPointF centroid() override;
    void mousePress(QGraphicsSceneMouseEvent* event) override;
    void mouseMove(QGraphicsSceneMouseEvent* event) override;
    bool endEdition() override { return frame().width() > 0 && frame().height() > 0; }
    // Turns the frame about its centre, degrees clockwise on screen.
    void rotate(double angle) override;
    QList<Handle> handles() const override;
    void handlePressed(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) override;
    void handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) override;
    void handleReleased(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) override;

    // The edit menu (a double click) is the context menu.
    void fillEditMenu(QMenu* menu) override { fillContextMenu(menu); }
    void applyEditMenu(int data) override { applyContextMenu(data); }

    QRectF boundingRect() const override;

    // The frame in item coordinates.
    QRectF frame() const { return QRectF(m_mline[0], m_mline[1]); }
    // Sets the frame (normalised). The item turns about the frame's centre: with the second form,
    // the point `kept` (item coordinates) keeps its place in the scene as that centre moves.
    void setFrameRect(const QRectF& frame);
    void setFrameRectKeeping(const QRectF& frame, const QPointF& kept);

protected:
    // The child shape follows the frame when it is a rectangle item; without one, the frame is an
    // invisible rectangle that gives the item its shape, and the item paints its content itself.
    FrameItem(QGraphicsItem* parent, QGraphicsItem* shape, unsigned long subType);
    FrameItem(QGraphicsItem* parent, unsigned long subType);

    // The content's own size (a picture's pixels), empty when it has none: a click lays the frame
    // at that size, its top-left corner at the click, and Shift keeps that shape while it is drawn.
    virtual QSizeF naturalSize() const { return {}; }
    // The frame a click lays when there is no natural size.
    virtual QSizeF clickSize() const { return {160, 120}; }
    virtual bool turns() const { return true; }
    // Whether the frame always keeps its aspect ratio, as a drawing does.
    virtual bool keepsAspect() const { return false; }
    // Follows every change of the frame (the child shape, caches).
    virtual void frameChanged() {}
    // One step of a grip drag that scales or (RotationGrip) turns the frame; last at the release.
    virtual void transformStep(int, bool) {}

    // Files an item shows are named relative to the folder of the scene's document, when it has one.
    QString resolvedPath(const QString& path) const;
    QString savedPath(const QString& fileName) const;
    // A dashed box with its diagonals and the text: what stands for content that could not be shown.
    void paintPlaceholder(QPainter* painter, const QString& text) const;

    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;

    QSizeF laidSize() const { return naturalSize().isEmpty() ? clickSize() : naturalSize(); }

private:
    void scaleByCorner(int id, const QPointF& scenePos, bool keepAspect);

    QPointF m_press;
    QRectF m_pressFrame;
    double m_pressRotation = 0;
    // Shift at the press keeps the aspect ratio for the whole drag.
    bool m_pressShift = false;
    bool m_invisible = false;
};
