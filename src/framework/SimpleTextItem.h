#pragma once

#include "graphicsobjects_export.h"

#include <QGraphicsSimpleTextItem>

// A plain, non-editable text: the measure label of an item.
class GRAPHICSOBJECTS_EXPORT SimpleTextItem : public QGraphicsSimpleTextItem {
public:
    explicit SimpleTextItem(QGraphicsItem* parent = nullptr);

    void setTextColor(const QColor& color);
    QColor textColor() const;
};
