#include "SmileyItem.h"

#include "XmlAttributes.h"
#include <QGraphicsPathItem>
#include <QMenu>

namespace {

const char* const moodNames[] = {QT_TRANSLATE_NOOP("SmileyItem", "happy"),
                                 QT_TRANSLATE_NOOP("SmileyItem", "neutral"),
                                 QT_TRANSLATE_NOOP("SmileyItem", "sad")};

} // namespace

SmileyItem::SmileyItem(QGraphicsItem* parent, int id, void*)
    : FrameItem(parent, new QGraphicsPathItem, 1) {
    initIdentity(id);
}

// In units of the frame: the mouth's corners and the point its curve is pulled to.
QPainterPath SmileyItem::face(const QRectF& r, int mood) {
    const auto at = [&r](double u, double v) {
        return QPointF(r.x() + u * r.width(), r.y() + v * r.height());
    };
    QPainterPath path;
    path.addEllipse(r);
    for (const double u : {0.35, 0.65})
        path.addEllipse(at(u, 0.38), 0.06 * r.width(), 0.08 * r.height());
    const double corners = mood == Sad ? 0.76 : mood == Neutral ? 0.7 : 0.64;
    const double pull = mood == Sad ? 0.56 : mood == Neutral ? 0.7 : 0.88;
    path.moveTo(at(0.28, corners));
    path.quadTo(at(0.5, pull), at(0.72, corners));
    return path;
}

void SmileyItem::frameChanged() {
    child<QGraphicsPathItem>()->setPath(face(frame(), m_mood));
}

void SmileyItem::setMood(int mood) {
    if (mood < Happy || mood > Sad || mood == m_mood)
        return;
    m_mood = mood;
    prepareGeometryChange();
    frameChanged();
}

void SmileyItem::fillContextMenu(QMenu* menu) {
    for (int mood = Happy; mood <= Sad; ++mood)
        createMenuAction(menu, QIcon(), tr(moodNames[mood]), m_mood == mood, nullptr, mood);
}

void SmileyItem::writeGeometry(XmlAttributes& e) const {
    FrameItem::writeGeometry(e);
    e.setAttribute(QStringLiteral("mood"), m_mood);
}

void SmileyItem::readGeometry(const XmlAttributes& e) {
    const int mood = e.attribute(QStringLiteral("mood")).toInt();
    m_mood = mood >= Happy && mood <= Sad ? mood : Happy;
    FrameItem::readGeometry(e);
}
