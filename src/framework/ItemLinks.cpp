#include "ItemLinks.h"

#include "AbstractBaseItem.h"
#include "XmlRead.h"

#include "XmlAttributes.h"

namespace {

// Names are the user's; a message quotes a bounded part of them.
QString quoted(const QString& name) {
    return QLatin1Char('"') + name.left(60) + QLatin1Char('"');
}

} // namespace

ItemReference ItemReference::to(AbstractBaseItem* item) {
    return item ? ItemReference{item, item->ensureUid(), item->getGUIDname()} : ItemReference{};
}

namespace ItemLinks {

void write(XmlAttributes& e, const QString& prefix, const QList<ItemReference>& references) {
    for (int i = 0; i < references.size(); ++i) {
        const ItemReference& reference = references[i];
        e.setAttribute(prefix + QString::number(i), reference.uid);
        // The name the item has now, if it was renamed since.
        e.setAttribute(prefix + QStringLiteral("Name") + QString::number(i),
                       reference.item ? reference.item->getGUIDname() : reference.name);
    }
}

QList<ItemReference> read(const XmlAttributes& e, const QString& prefix, int max) {
    QList<ItemReference> references;
    for (int i = 0; i < max; ++i) {
        const QString uid = readUid(e, prefix + QString::number(i));
        if (uid.isEmpty())
            break;
        references.append({nullptr, uid, e.attribute(prefix + QStringLiteral("Name") + QString::number(i))});
    }
    return references;
}

bool resolve(QList<ItemReference>& references, const QHash<QString, AbstractBaseItem*>& byUid,
             const AbstractBaseItem* owner, QStringList* missing) {
    bool all = true;
    for (ItemReference& reference : references) {
        reference.item = byUid.value(reference.uid);
        if (reference.item)
            continue;
        all = false;
        if (missing)
            *missing << QStringLiteral("%1: the item %2 it refers to is missing")
                            .arg(quoted(owner->getGUIDname()), quoted(reference.name));
    }
    return all;
}

QList<AbstractBaseItem*> targets(const QList<ItemReference>& references) {
    QList<AbstractBaseItem*> items;
    for (const ItemReference& reference : references) {
        if (reference.item)
            items.append(reference.item);
    }
    return items;
}

} // namespace ItemLinks

ItemLinkReport linkLoadedItems(const QList<AbstractBaseItem*>& items) {
    ItemLinkReport report;
    QHash<QString, AbstractBaseItem*> byUid;
    for (AbstractBaseItem* item : items) {
        if (!item || item->uid().isEmpty())
            continue;
        if (AbstractBaseItem* first = byUid.value(item->uid())) {
            report.messages << QStringLiteral("%1 and %2 carry the same reference; links go to the first")
                                   .arg(quoted(first->getGUIDname()), quoted(item->getGUIDname()));
            continue;
        }
        byUid.insert(item->uid(), item);
    }
    for (AbstractBaseItem* item : items) {
        if (item && !item->resolveLinks(byUid, &report.messages))
            report.skipped << item;
    }
    return report;
}
