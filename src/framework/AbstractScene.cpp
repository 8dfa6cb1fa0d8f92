#include "AbstractScene.h"

#include "AbstractBaseItem.h"
#include "ToolLayer.h"

#include <QCoreApplication>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsView>
#include <QKeyEvent>
#include <QPainter>
#include <QSet>

#include <algorithm>
#include <cmath>

AbstractScene::AbstractScene(QObject* parent)
    : QGraphicsScene(parent) {}

AbstractScene::AbstractScene(const QRectF& sceneRect, QObject* parent)
    : QGraphicsScene(sceneRect, parent) {}

// Qt lists the items added since the event loop last ran until it polishes them, and looks each
// deleted item up in that list: a scene filled and deleted with no event loop between (a command
// line tool, a loaded document closed at once) would go in quadratic time. The polish runs first;
// the other pending work (the scene's bounding rectangle, its update signals) is for a scene that
// stays, and would walk every item.
AbstractScene::~AbstractScene() {
    QMetaObject::invokeMethod(this, "_q_polishItems", Qt::DirectConnection);
    QCoreApplication::removePostedEvents(this, QEvent::MetaCall);
}

void AbstractScene::addItems(const QList<AbstractBaseItem*>& items) {
    const int capacity = ToolLayer::capacityFor(items.size());
    ToolLayer* layer = nullptr;
    int held = 0;
    // Each layer is filled before it enters the scene, which then takes its tools with it.
    const auto place = [&] {
        if (layer)
            addItem(layer);
    };
    for (AbstractBaseItem* item : items) {
        if (!item || item->scene() || item->parentItem())
            continue;
        if (!layer || held == capacity) {
            place();
            layer = new ToolLayer;
            held = 0;
        }
        item->setParentItem(layer);
        ++held;
    }
    place();
}

void AbstractScene::deleteItems(const QList<AbstractBaseItem*>& items) {
    QSet<QGraphicsItem*> going;
    QSet<QGraphicsItem*> layers;
    for (AbstractBaseItem* item : items) {
        if (item && item->scene() == this && item->isSceneTool()) {
            going.insert(item);
            if (item->parentItem())
                layers.insert(item->parentItem());
        }
    }
    if (going.isEmpty())
        return;
    // As on closing, the polish runs first.
    QMetaObject::invokeMethod(this, "_q_polishItems", Qt::DirectConnection);
    // Qt looks each removed top-level item (and each one not indexed yet) up from the bottom of
    // the stack: taken bottom first, each is found after the items below it that stay, at once
    // when all go.
    QList<QGraphicsItem*> ordered;
    ordered.reserve(going.size());
    qsizetype staying = 0;
    for (QGraphicsItem* item : this->items(Qt::AscendingOrder)) {
        if (going.contains(item))
            ordered << item;
        else if (!item->parentItem())
            ++staying;
    }
    // Items not indexed yet would each be looked for past those that stay: any search of an area
    // indexes them all, once.
    if (staying > 0)
        this->items(QRectF(0, 0, 1, 1));
    for (QGraphicsItem* item : std::as_const(ordered)) {
        removeItem(item);
        delete item;
    }
    for (QGraphicsItem* layer : std::as_const(layers)) {
        if (layer->childItems().isEmpty())
            delete layer;
    }
}

void AbstractScene::setZoomFactors(double horizontal, double vertical) {
    if (m_zoomX == horizontal && m_zoomY == vertical)
        return;
    m_zoomX = horizontal;
    m_zoomY = vertical;
    fitLabelsToZoom();
}

void AbstractScene::setVerticalZoomInForce(bool inForce) {
    if (m_verticalZoomInForce == inForce)
        return;
    m_verticalZoomInForce = inForce;
    fitLabelsToZoom();
}

void AbstractScene::fitLabelsToZoom() {
    for (QGraphicsItem* item : items()) {
        if (AbstractBaseItem* tool = AbstractBaseItem::fromGraphicsItem(item))
            tool->fitCentroidGripToZoom();
    }
}

void AbstractScene::setOrthoReferenceAngle(double degrees) {
    if (m_orthoAngle == degrees)
        return;
    m_orthoAngle = degrees;
    emit orthoReferenceAngleChanged(degrees);
}

void AbstractScene::setOrigin(const QPointF& origin) {
    if (m_hasOrigin && m_origin == origin)
        return;
    m_origin = origin;
    m_hasOrigin = true;
    emit originChanged(origin);
}

void AbstractScene::clearOrigin() {
    if (!m_hasOrigin)
        return;
    m_origin = QPointF();
    m_hasOrigin = false;
    emit originChanged(m_origin);
}

void AbstractScene::setLabelBackground(bool on) {
    if (m_labelBackground == on)
        return;
    m_labelBackground = on;
    update();
}

void AbstractScene::setImage(const QImage& image) {
    m_image = image;
    if (!image.isNull() && sceneRect().isEmpty())
        setSceneRect(QRectF(QPointF(0, 0), image.size()));
    update();
    emit imageChanged();
}

void AbstractScene::setCalibration(const Calibration& calibration) {
    m_calibration = calibration;
    m_hasCalibration = true;
    for (QGraphicsItem* item : items()) {
        if (AbstractBaseItem* tool = AbstractBaseItem::fromGraphicsItem(item))
            tool->setCalibration(calibration);
    }
}

void AbstractScene::drawBackground(QPainter* painter, const QRectF& rect) {
    QGraphicsScene::drawBackground(painter, rect);
    if (!m_image.isNull())
        painter->drawImage(QPointF(0, 0), m_image);
}

void AbstractScene::startTool(AbstractBaseItem* item) {
    cancelTool();
    if (!item)
        return;
    if (item->scene() != this)
        addItem(item);
    item->setLinkScene(this);
    if (m_hasCalibration)
        item->setCalibration(m_calibration);
    // Items drawn click by click follow the cursor between the clicks.
    for (QGraphicsView* view : views())
        view->viewport()->setMouseTracking(true);
    clearSelection();
    m_creating = item;
}

AbstractBaseItem* AbstractScene::itemInCreation() const {
    return m_creating;
}

void AbstractScene::cancelTool() {
    AbstractBaseItem* item = m_creating;
    m_creating = nullptr;
    if (item)
        discard(item);
}

void AbstractScene::discard(AbstractBaseItem* item) {
    const QString type = item->getType();
    removeItem(item);
    delete item;
    emit itemRejected(type);
}

void AbstractScene::finishCreation() {
    AbstractBaseItem* item = m_creating;
    m_creating = nullptr;
    if (!item->endEdition()) {
        discard(item);
        return;
    }
    // The picked items were selected to show the picks; the new item alone is selected now.
    if (item->picksNeeded() > 0)
        clearSelection();
    item->forceSelection();
    emit itemAccepted(item);
}

void AbstractScene::mousePressEvent(QGraphicsSceneMouseEvent* event) {
    if (!m_creating) {
        QGraphicsScene::mousePressEvent(event);
        return;
    }
    event->accept();
    if (event->button() == Qt::RightButton) {
        cancelTool();
        return;
    }
    if (event->button() != Qt::LeftButton)
        return;
    if (m_creating->picksNeeded() > 0) {
        pick(event);
        return;
    }
    if (event->modifiers() & Qt::ShiftModifier)
        m_creating->setConstrainstate(true);
    m_creating->mousePress(event);
}

AbstractBaseItem* AbstractScene::pickableItemAt(const QPointF& scenePos, double tolerance,
                                                const AbstractBaseItem* except) const {
    const QPointF margin(tolerance, tolerance);
    const QList<QGraphicsItem*> found =
        items(QRectF(scenePos - margin, scenePos + margin), Qt::IntersectsItemShape, Qt::DescendingOrder);
    for (QGraphicsItem* graphics : found) {
        // A grip or a label stands for the item it belongs to.
        AbstractBaseItem* item = nullptr;
        for (QGraphicsItem* g = graphics; g && !item; g = g->parentItem())
            item = AbstractBaseItem::fromGraphicsItem(g);
        if (item && item != except && item->isVisible())
            return item;
    }
    return nullptr;
}

void AbstractScene::pick(QGraphicsSceneMouseEvent* event) {
    // A few screen pixels around the click, whatever the zoom of the view clicked in.
    double scale = 1.0;
    if (auto* view =
            event->widget() ? qobject_cast<QGraphicsView*>(event->widget()->parentWidget()) : nullptr)
        scale = std::max(1e-9, std::abs(view->transform().m11()));
    // A click on nothing reaches the item too: it has begun, and Return may end it.
    AbstractBaseItem* target = pickableItemAt(event->scenePos(), 4.0 / scale, m_creating);
    QString refusal;
    m_creating->pickItem(target, event->scenePos(), &refusal);
    if (!target && refusal.isEmpty())
        refusal = tr("There is no item under the click");
    else if (target && refusal.isEmpty() && (target->flags() & QGraphicsItem::ItemIsSelectable))
        target->setSelected(true);
    if (!refusal.isEmpty())
        emit pickRefused(m_creating, refusal);
}

void AbstractScene::mouseMoveEvent(QGraphicsSceneMouseEvent* event) {
    // Moves before the first press belong to no item yet.
    if (!m_creating || !m_creating->creationStarted()) {
        QGraphicsScene::mouseMoveEvent(event);
        return;
    }
    event->accept();
    if (event->modifiers() & Qt::ShiftModifier)
        m_creating->setConstrainstate(true);
    m_creating->mouseMove(event);
}

void AbstractScene::mouseReleaseEvent(QGraphicsSceneMouseEvent* event) {
    if (!m_creating) {
        QGraphicsScene::mouseReleaseEvent(event);
        return;
    }
    event->accept();
    if (event->button() != Qt::LeftButton || !m_creating->creationStarted())
        return;
    const AbstractBaseItem::typModeEdition mode = m_creating->mouseRelease(event);
    if (m_creating && (!m_creating->drawnByClicks() || mode != AbstractBaseItem::EditionCreating))
        finishCreation();
}

void AbstractScene::mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event) {
    if (!m_creating) {
        QGraphicsScene::mouseDoubleClickEvent(event);
        return;
    }
    event->accept();
    // Two quick picks are two picks, not a request to finish.
    if (event->button() == Qt::LeftButton && m_creating->picksNeeded() > 0) {
        pick(event);
        return;
    }
    if (event->button() == Qt::LeftButton && m_creating->creationStarted() &&
        m_creating->completeCreation() != AbstractBaseItem::EditionCreating)
        finishCreation();
}

void AbstractScene::keyPressEvent(QKeyEvent* event) {
    if (!m_creating) {
        QGraphicsScene::keyPressEvent(event);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Escape:
        cancelTool();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_creating->creationStarted() &&
            m_creating->completeCreation() != AbstractBaseItem::EditionCreating)
            finishCreation();
        break;
    default:
        QGraphicsScene::keyPressEvent(event);
        return;
    }
    event->accept();
}
