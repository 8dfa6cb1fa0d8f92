#pragma once

#include "graphicsobjects_export.h"

#include <QGraphicsTextItem>

// The editor of a text annotation: a graphics text item that reports its changes as signals.
class GRAPHICSOBJECTS_EXPORT TextItem : public QGraphicsTextItem {
    Q_OBJECT
public:
    enum { Type = UserType + 3 };

    explicit TextItem(QGraphicsItem* parent = nullptr);

    int type() const override { return Type; }

    // Its own rotation (degrees) and shear, changed only while the item is selected.
    double angle() const { return m_angle; }
    void setAngle(double degrees);
    double shearHorizontal() const { return m_shearH; }
    double shearVertical() const { return m_shearV; }
    void setShear(double horizontal, double vertical);

    // Whether the text shows the measure of another item.
    bool isLinked() const { return m_linked; }
    void setLinked(bool linked) { m_linked = linked; }

signals:
    // Its geometry changed other than by editing: moved, rotated or sheared.
    void dirty();
    void lostFocus();
    void selectedChange(QGraphicsItem* item);

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event) override;

private:
    void updateTransform();

    double m_angle = 0;
    double m_shearH = 0;
    double m_shearV = 0;
    bool m_linked = false;
};
