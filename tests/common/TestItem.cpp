#include "TestItem.h"

#include "HoverEventItem.h"

#include <QDomElement>
#include <QGraphicsSceneMouseEvent>
#include <QMenu>
#include <QPainter>

TestItem::TestItem(QGraphicsItem* parent, int id, void* context)
    : AbstractBaseItem(parent, id, context) {
    m_type = QStringLiteral("TestItem");
    computeGUID(m_type, id);
}

AbstractBaseItem* TestItem::clone(int id) {
    auto* item = new TestItem(nullptr, id, nullptr);
    copyDataTo(item);
    return item;
}

bool TestItem::toXml(QDomElement& e) const {
    commonWriteXML(e);
    commonMesuresWriteXML(e);
    return true;
}

bool TestItem::fromXml(const QDomElement& e) {
    commonReadXML(e);
    commonMesuresReadXML(e);
    return true;
}

void TestItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
    const QPen before = painter->pen();
    commonPaintCentroidText(painter);
    if (painter->pen() != before)
        ++m_leaderLines;
}

void TestItem::setMesure(int i, double calibrated, double pixels) {
    if (i < 0 || i >= MesuresCount)
        return;
    m_mesure[i] = calibrated;
    m_mesureP[i] = pixels;
}

void TestItem::addGrip(int id, int kind, const QPointF& pos) {
    m_handles.append({id, kind, pos});
    refreshHandgrips();
}

void TestItem::mousePress(QGraphicsSceneMouseEvent* event) {
    m_creationStarted = true;
    presses.append(event->scenePos());
}

void TestItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    moves.append(event->scenePos());
}

AbstractBaseItem::typModeEdition TestItem::mouseRelease(QGraphicsSceneMouseEvent*) {
    return presses.size() < pressesToComplete ? EditionCreating : EditionComplete;
}

void TestItem::fillContextMenu(QMenu* menu) {
    createMenuAction(menu, QIcon(), QStringLiteral("Distance1"), m_mesureIndex == 1, nullptr, 1);
    createMenuAction(menu, QIcon(), QStringLiteral("None"), m_mesureIndex == 100, nullptr, 100);
}
