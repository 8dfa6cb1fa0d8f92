#include "AnchorPointItem.h"

#include "AbstractScene.h"

#include "XmlAttributes.h"
#include <QMenu>
#include <QPainterPath>

namespace {

constexpr double MarkRadius = 7;
// Anchored items read back from a document: more than any scene holds.
constexpr int MaxAnchored = 100000;

} // namespace

AnchorPointItem::AnchorPointItem(QGraphicsItem* parent, int id, void* context)
    : PositionItem(parent, 2) {
    initIdentity(id);
    // A reference shows no measure unless asked to.
    m_mesureIndex = NoMesure;
    QPainterPath mark;
    mark.addEllipse(QPointF(), MarkRadius, MarkRadius);
    mark.moveTo(-2 * MarkRadius, 0);
    mark.lineTo(2 * MarkRadius, 0);
    mark.moveTo(0, -2 * MarkRadius);
    mark.lineTo(0, 2 * MarkRadius);
    setPath(mark);
    connect(this, &PositionItem::pointMoved, this, &AnchorPointItem::carry);
    if (const _AUTOPOINTPARAMS* params = startGenerated(context)) {
        copyCommonData(this, params->source);
        setPoint(params->points.isEmpty() ? params->center : params->points.first());
        computeMesures(nullptr);
    }
}

// While the scene is being destroyed it is no AbstractScene any more, and there is no origin to
// give back.
AnchorPointItem::~AnchorPointItem() {
    if (AbstractScene* host = sceneOfAnchor(); host && m_origin)
        host->clearOrigin();
}

AbstractScene* AnchorPointItem::sceneOfAnchor() const {
    return qobject_cast<AbstractScene*>(scene());
}

void AnchorPointItem::setAsOrigin(bool origin) {
    m_origin = origin;
    AbstractScene* host = sceneOfAnchor();
    if (!host)
        return;
    if (origin)
        host->setOrigin(point());
    else if (host->hasOrigin() && host->origin() == point())
        host->clearOrigin();
}

// Another anchor, or the host, took the origin elsewhere.
void AnchorPointItem::originMoved(const QPointF& origin) {
    const AbstractScene* host = sceneOfAnchor();
    if (m_origin && (!host || !host->hasOrigin() || origin != point()))
        m_origin = false;
}

bool AnchorPointItem::anchorItem(AbstractBaseItem* item) {
    if (!item || item == this || item->type() == Type || item->picksNeeded() > 0)
        return false;
    for (const ItemReference& reference : std::as_const(m_anchored)) {
        if (reference.item == item)
            return true;
    }
    m_anchored.append(ItemReference::to(item));
    follow(item);
    return true;
}

void AnchorPointItem::follow(AbstractBaseItem* item) {
    connect(item, &QObject::destroyed, this, [this] {
        if (!m_waiting)
            m_anchored.removeIf([](const ItemReference& reference) { return !reference.item; });
    });
}

void AnchorPointItem::releaseItems() {
    for (const ItemReference& reference : std::as_const(m_anchored)) {
        if (reference.item)
            disconnect(reference.item, nullptr, this, nullptr);
    }
    m_anchored.clear();
}

QList<AbstractBaseItem*> AnchorPointItem::anchoredItems() const {
    return ItemLinks::targets(m_anchored);
}

void AnchorPointItem::carry(const QPointF& delta) {
    if (m_origin) {
        if (AbstractScene* host = sceneOfAnchor())
            host->setOrigin(point());
    }
    // While the mouse drags a selection, its movable items move by themselves.
    const QGraphicsItem* grabber = scene() ? scene()->mouseGrabberItem() : nullptr;
    const bool selectionDrag = grabber && grabber->isSelected() && (grabber->flags() & ItemIsMovable);
    for (AbstractBaseItem* item : anchoredItems()) {
        if (!(selectionDrag && item->isSelected() && (item->flags() & ItemIsMovable)))
            item->moveBy(delta.x(), delta.y());
    }
}

void AnchorPointItem::fillContextMenu(QMenu* menu) {
    createMenuAction(menu, QIcon(), tr("Set as origin"), m_origin, nullptr, SetAsOrigin);
    createMenuAction(menu, QIcon(), tr("Anchor selected items"), false, nullptr, AnchorSelected)
        ->setEnabled(scene() && !scene()->selectedItems().isEmpty());
    createMenuAction(menu, QIcon(), tr("Release anchored items"), false, nullptr, ReleaseAnchored)
        ->setEnabled(!m_anchored.isEmpty());
}

void AnchorPointItem::applyContextMenu(int data) {
    switch (data) {
    case SetAsOrigin:
        setAsOrigin(!m_origin);
        break;
    case AnchorSelected:
        if (scene()) {
            for (QGraphicsItem* selected : scene()->selectedItems())
                anchorItem(fromGraphicsItem(selected));
        }
        break;
    case ReleaseAnchored:
        releaseItems();
        break;
    default:
        break;
    }
}

bool AnchorPointItem::resolveLinks(const QHash<QString, AbstractBaseItem*>& byUid, QStringList* missing) {
    ItemLinks::resolve(m_anchored, byUid, this, missing);
    m_waiting = false;
    m_anchored.removeIf([](const ItemReference& reference) { return !reference.item; });
    for (const ItemReference& reference : std::as_const(m_anchored))
        follow(reference.item);
    return true;
}

void AnchorPointItem::writeGeometry(XmlAttributes& e) const {
    PositionItem::writeGeometry(e);
    e.setAttribute(QStringLiteral("origin"), m_origin ? 1 : 0);
    ItemLinks::write(e, QStringLiteral("anchored"), m_anchored);
}

void AnchorPointItem::readGeometry(const XmlAttributes& e) {
    releaseItems();
    PositionItem::readGeometry(e);
    m_anchored = ItemLinks::read(e, QStringLiteral("anchored"), MaxAnchored);
    m_waiting = !m_anchored.isEmpty();
    setAsOrigin(e.attribute(QStringLiteral("origin")).toInt(nullptr, 10) != 0);
}

QVariant AnchorPointItem::itemChange(GraphicsItemChange change, const QVariant& value) {
    // Leaving a scene gives its origin back; the role goes on in the next scene.
    if (change == ItemSceneChange) {
        if (AbstractScene* host = sceneOfAnchor()) {
            disconnect(host, &AbstractScene::originChanged, this, &AnchorPointItem::originMoved);
            if (m_origin && host->origin() == point())
                host->clearOrigin();
        }
    }
    const QVariant result = PositionItem::itemChange(change, value);
    if (change == ItemSceneHasChanged) {
        if (AbstractScene* host = sceneOfAnchor()) {
            connect(host, &AbstractScene::originChanged, this, &AnchorPointItem::originMoved,
                    Qt::UniqueConnection);
            if (m_origin)
                host->setOrigin(point());
        }
    }
    return result;
}
