#pragma once

#include "graphicsobjects_export.h"

#include <QHash>
#include <QList>
#include <QPointer>
#include <QString>
#include <QStringList>

class AbstractBaseItem;
class XmlAttributes;

// Links between items that survive save and load. An item that refers to others (a construction
// to its sources, an anchor to the items anchored to it) keeps an ItemReference per item: the
// target while it lives, and the target's uid and GUID name, which its XML keeps. After loading a
// document, linkLoadedItems points every reference at the loaded item of the same uid.
struct GRAPHICSOBJECTS_EXPORT ItemReference {
    QPointer<AbstractBaseItem> item;
    QString uid;
    QString name; // the target's GUID name when the link was made: what a message calls it

    // A reference to item, which gets a uid if it has none.
    static ItemReference to(AbstractBaseItem* item);
};

namespace ItemLinks {

// Writes the references as the attributes <prefix>0, <prefix>1... (uids) and <prefix>Name0...
GRAPHICSOBJECTS_EXPORT void write(XmlAttributes& e, const QString& prefix,
                                  const QList<ItemReference>& references);
// Reads at most max references back, without targets; a reference without a valid uid ends the list.
GRAPHICSOBJECTS_EXPORT QList<ItemReference> read(const XmlAttributes& e, const QString& prefix, int max);
// Sets each reference's target from byUid. Returns false when one is missing, after appending to
// missing (if given) a text that names owner and the missing item.
GRAPHICSOBJECTS_EXPORT bool resolve(QList<ItemReference>& references,
                                    const QHash<QString, AbstractBaseItem*>& byUid,
                                    const AbstractBaseItem* owner, QStringList* missing);
// The targets that still live, in order.
GRAPHICSOBJECTS_EXPORT QList<AbstractBaseItem*> targets(const QList<ItemReference>& references);

} // namespace ItemLinks

// What linking the items of a loaded document found.
struct GRAPHICSOBJECTS_EXPORT ItemLinkReport {
    // Items that cannot stand without an item that is missing (a construction that lost a
    // source): the loader leaves them out, that is removes and deletes them.
    QList<AbstractBaseItem*> skipped;
    // One line per missing item or repeated uid, naming the items.
    QStringList messages;
};

// Call once every item of a document is loaded (added to the scene or not): each item resolves
// its references to the others by uid (AbstractBaseItem::resolveLinks). Where two items carry the
// same uid, the first in the list keeps it.
GRAPHICSOBJECTS_EXPORT ItemLinkReport linkLoadedItems(const QList<AbstractBaseItem*>& items);
