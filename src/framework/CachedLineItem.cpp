#include "CachedLineItem.h"

QRectF CachedLineItem::boundingRect() const {
    const QLineF l = line();
    const QPen p = pen();
    if (!m_valid || l != m_line || p != m_pen) {
        m_line = l;
        m_pen = p;
        m_rect = QGraphicsLineItem::boundingRect();
        m_valid = true;
    }
    return m_rect;
}
