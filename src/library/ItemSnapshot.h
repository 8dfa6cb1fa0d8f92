#pragma once

#include "Calibration.h"
#include "graphicsobjects_export.h"

#include <QDomDocument>
#include <QHash>
#include <QList>
#include <QString>

class AbstractBaseItem;
class AbstractScene;

// An item's whole state as its XML form, with what the XML leaves to the host: its calibration,
// the item a text follows and its place in the scene's stacking order. Items are found again by
// their uid (given on taking), so that a snapshot outlives the item it was taken from.
class GRAPHICSOBJECTS_EXPORT ItemSnapshot {
public:
    ItemSnapshot() = default;
    // Gives the item a uid if it has none.
    static ItemSnapshot take(AbstractBaseItem* item);
    // The same, given the item above it in stacking order (null for the topmost), for callers that
    // take many at once.
    static ItemSnapshot take(AbstractBaseItem* item, AbstractBaseItem* above);

    bool isNull() const { return m_className.isEmpty(); }
    QString className() const { return m_className; }
    QString uid() const { return m_uid; }
    // The XML form as one text, attributes sorted: equal texts, equal states.
    QString text() const { return m_text; }

    // Loads the state into an existing item of the same class; false for another class.
    bool applyTo(AbstractBaseItem* item) const;
    // Makes the item again on the scene, under the item it was under when taken (when that one
    // is there); null when the class cannot be made. A caller making many passes the scene's
    // items by uid (SceneItems::byUid), which the new item joins; items made from the top down
    // then find the one above them.
    AbstractBaseItem* recreate(AbstractScene* scene,
                               QHash<QString, AbstractBaseItem*>* byUid = nullptr) const;
    // Makes a text follow again the item it followed when taken, if both are on the scene, or
    // follow none if it followed none.
    void restoreTextLink(AbstractScene* scene) const;

    bool operator==(const ItemSnapshot& other) const { return m_text == other.m_text; }
    bool operator!=(const ItemSnapshot& other) const { return m_text != other.m_text; }

private:
    QString m_className;
    QString m_uid;
    QDomDocument m_dom;
    QString m_text;
    Calibration m_calibration;
    int m_flags = 0;      // the QGraphicsItem flags the user's work gave it (selectable, movable)
    QString m_linkTarget; // uid of the item a text follows
    QString m_above;      // uid of the next tool in stacking order
};

namespace SceneItems {

// The scene's tools (AbstractBaseItem::isSceneTool), bottom first.
GRAPHICSOBJECTS_EXPORT QList<AbstractBaseItem*> topLevel(const AbstractScene* scene);
// The tool with that uid, or null.
GRAPHICSOBJECTS_EXPORT AbstractBaseItem* find(const AbstractScene* scene, const QString& uid);
// The tools that have a uid, by uid.
GRAPHICSOBJECTS_EXPORT QHash<QString, AbstractBaseItem*> byUid(const AbstractScene* scene);
// Links every item that keeps others by uid (constructions, anchors) again after items were
// made or loaded anew.
GRAPHICSOBJECTS_EXPORT void relink(const AbstractScene* scene);

} // namespace SceneItems
