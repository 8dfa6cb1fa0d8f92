#pragma once

#include "graphicsobjects_export.h"

#include <QGraphicsSimpleTextItem>

// A plain, non-editable text: the measure label of an item.
class GRAPHICSOBJECTS_EXPORT SimpleTextItem : public QGraphicsSimpleTextItem {
public:
    explicit SimpleTextItem(QGraphicsItem* parent = nullptr);

    void setTextColor(const QColor& color);
    // The font of a measure label: the given one, laid out without the optional shaping of simple
    // scripts (kerning, ligatures). A label is a short run of digits, letters and unit signs, and
    // its layout then costs half as much; complex scripts are still shaped.
    void setLabelFont(const QFont& font);
    QColor textColor() const;
    // Text too small to read on the device is not drawn; readable text stands on a translucent plate
    // when the scene asks for label backgrounds.
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

protected:
    // A label never hides a handgrip: a press over a visible grip goes on to the grip.
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
};
