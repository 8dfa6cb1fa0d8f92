#pragma once

#include "ShapeItem.h"

// Base of the items laid in the rectangle their two points span (a ruler, a block arrow). A grip stands
// on each of the frame's eight positions: the sides resize it, the corners are of the kind the class
// gives. A side dragged past the opposite one stays under the cursor until the release, which
// normalises the points; a drawing ends with them normalised and spanning an area.
class GRAPHICSOBJECTS_EXPORT SpanItem : public ShapeItem {
    Q_OBJECT
public:
    bool endEdition() override;
    QList<Handle> handles() const override;
    void handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) override;
    void handleReleased(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) override;

protected:
    // The corner grips are of cornerKind (HoverEventItem::Kind); the item starts with two points at
    // the origin.
    SpanItem(QGraphicsItem* parent, QGraphicsItem* shape, unsigned long subType, int cornerKind);

    // Shows the points' new span.
    virtual void spanChanged() = 0;

private:
    int m_cornerKind;
};
