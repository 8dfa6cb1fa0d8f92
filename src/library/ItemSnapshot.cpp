#include "ItemSnapshot.h"

#include "AbstractBaseItem.h"
#include "AbstractScene.h"
#include "ItemFactory.h"
#include "ItemLinks.h"
#include "eTextItem.h"

#include <algorithm>

namespace {

// Tag, sorted attributes and children, one per line.
void canonical(const QDomElement& e, QString& out) {
    const QDomNamedNodeMap attributes = e.attributes();
    QStringList pairs;
    for (int i = 0; i < attributes.count(); ++i)
        pairs << attributes.item(i).nodeName() + QLatin1Char('=') + attributes.item(i).nodeValue();
    std::sort(pairs.begin(), pairs.end());
    out += QLatin1Char('<') + e.tagName() + QLatin1Char('\n') + pairs.join(QLatin1Char('\n'));
    for (QDomNode n = e.firstChild(); !n.isNull(); n = n.nextSibling()) {
        if (n.isElement())
            canonical(n.toElement(), out);
        else if (n.isText())
            out += QLatin1Char('\n') + n.nodeValue();
    }
    out += QStringLiteral("\n>");
}

} // namespace

ItemSnapshot ItemSnapshot::take(AbstractBaseItem* item) {
    AbstractBaseItem* above = nullptr;
    if (const auto* scene = item ? qobject_cast<AbstractScene*>(item->scene()) : nullptr) {
        const QList<AbstractBaseItem*> items = SceneItems::topLevel(scene);
        const qsizetype at = items.indexOf(item);
        if (at >= 0 && at + 1 < items.size())
            above = items.at(at + 1);
    }
    return take(item, above);
}

ItemSnapshot ItemSnapshot::take(AbstractBaseItem* item, AbstractBaseItem* above) {
    ItemSnapshot s;
    if (!item)
        return s;
    s.m_className = item->getType();
    s.m_uid = item->ensureUid();
    QDomElement e = s.m_dom.createElement(QStringLiteral("item"));
    s.m_dom.appendChild(e);
    item->toXml(e);
    canonical(e, s.m_text);
    s.m_calibration = item->calibration();
    s.m_flags = int(item->flags());
    if (auto* text = qobject_cast<eTextItem*>(item); text && text->linkedItem())
        s.m_linkTarget = text->linkedItem()->ensureUid();
    if (above)
        s.m_above = above->ensureUid();
    return s;
}

bool ItemSnapshot::applyTo(AbstractBaseItem* item) const {
    if (!item || item->getType() != m_className)
        return false;
    // Calibrated first: a change of calibration recomputes, which the measures read after it
    // would otherwise contradict; the geometry some items write rounded must not be measured again.
    item->setCalibration(m_calibration);
    item->fromXml(m_dom.documentElement());
    item->update();
    return true;
}

AbstractBaseItem* ItemSnapshot::recreate(AbstractScene* scene,
                                         QHash<QString, AbstractBaseItem*>* byUid) const {
    QString name = m_className;
    AbstractBaseItem* item = XBaseItemToolCreate(name, nullptr, 0, nullptr);
    if (!item)
        item = XBaseItemMesureCreate(name, nullptr, 0, nullptr);
    if (!item)
        return nullptr;
    // Whole before it enters the scene: whoever watches the scene sees it as it was.
    item->setLinkScene(scene);
    applyTo(item);
    item->setFlags(QGraphicsItem::GraphicsItemFlags(m_flags));
    scene->addItem(item);
    AbstractBaseItem* above = byUid ? byUid->value(m_above) : SceneItems::find(scene, m_above);
    if (above && above != item) {
        // Items stack among their siblings: back in the layer of the one it stood under.
        if (above->parentItem())
            item->setParentItem(above->parentItem());
        item->stackBefore(above);
    }
    if (byUid)
        byUid->insert(m_uid, item);
    return item;
}

void ItemSnapshot::restoreTextLink(AbstractScene* scene) const {
    if (m_className != QLatin1String("eTextItem"))
        return;
    auto* text = qobject_cast<eTextItem*>(SceneItems::find(scene, m_uid));
    if (!text)
        return;
    AbstractBaseItem* target = SceneItems::find(scene, m_linkTarget);
    if (target && target != text->linkedItem())
        text->associate(target, nullptr);
    else if (m_linkTarget.isEmpty() && text->linkedItem())
        text->unassociate(text->linkedItem(), nullptr);
}

namespace SceneItems {

QList<AbstractBaseItem*> topLevel(const AbstractScene* scene) {
    QList<AbstractBaseItem*> items;
    if (!scene)
        return items;
    for (QGraphicsItem* g : scene->items(Qt::AscendingOrder)) {
        if (AbstractBaseItem* item = AbstractBaseItem::sceneTool(g))
            items << item;
    }
    return items;
}

QHash<QString, AbstractBaseItem*> byUid(const AbstractScene* scene) {
    QHash<QString, AbstractBaseItem*> items;
    for (AbstractBaseItem* item : topLevel(scene)) {
        if (!item->uid().isEmpty() && !items.contains(item->uid()))
            items.insert(item->uid(), item);
    }
    return items;
}

AbstractBaseItem* find(const AbstractScene* scene, const QString& uid) {
    if (uid.isEmpty())
        return nullptr;
    for (AbstractBaseItem* item : topLevel(scene)) {
        if (item->uid() == uid)
            return item;
    }
    return nullptr;
}

void relink(const AbstractScene* scene) {
    linkLoadedItems(topLevel(scene));
}

} // namespace SceneItems
