#pragma once

#include "ItemLinks.h"
#include "ItemTypes.h"
#include "PositionItem.h"

// A reference point. Its menu makes it the scene's origin ("Set as origin"), which point items
// measure from and a host's cursor read-out shows, and anchors the selected items to it ("Anchor
// selected items"): moving the anchor moves them with it, so that a set of measures placed on one
// specimen moves onto the next image in one drag. Both are saved; the anchored items are found
// again by their uid once a document is loaded.
class GRAPHICSOBJECTS_EXPORT AnchorPointItem : public PositionItem {
    Q_OBJECT
public:
    // context: optional _AUTOPOINTPARAMS; its first point, else its centre, places the anchor.
    GRAPHICSOBJECTS_ITEM(AnchorPointItem)
    enum MenuCommand { SetAsOrigin = -1, AnchorSelected = -2, ReleaseAnchored = -3 };

    ~AnchorPointItem() override;

    long mesuresFlag() const override { return 0; }
    bool isOrigin() const { return m_origin; }
    // Makes the anchor the scene's origin, following it as it moves, or gives the role up.
    void setAsOrigin(bool origin);
    // item moves with the anchor from now on. Refused (false) for the anchor itself, other anchors
    // and the construction measures, which follow their own sources.
    bool anchorItem(AbstractBaseItem* item);
    void releaseItems();
    QList<AbstractBaseItem*> anchoredItems() const;

    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;
    // Missing anchored items are reported and left out; the anchor itself always stands.
    bool resolveLinks(const QHash<QString, AbstractBaseItem*>& byUid, QStringList* missing) override;

protected:
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;

private:
    void carry(const QPointF& delta);
    void follow(AbstractBaseItem* item);
    void originMoved(const QPointF& origin);
    AbstractScene* sceneOfAnchor() const;

    QList<ItemReference> m_anchored;
    bool m_origin = false;
    // Read from a document and not yet resolved: the references wait for their items.
    bool m_waiting = false;
};
