#pragma once

#include "ItemLinks.h"
#include "ItemTypes.h"
#include "ShapeItem.h"

#include <QPainterPath>

#include <optional>

class QGraphicsPathItem;

// Declares what a construction declares: its type, measure key and build(), and its constructor, which
// builds the construction its class's kind() describes. Like Q_OBJECT it leaves the class in a section
// of its own (here public).
#define GRAPHICSOBJECTS_CONSTRUCTION(Class, mesureKey, mesureDefault)                                        \
    GRAPHICSOBJECTS_ITEM_TYPE(Class)                                                                         \
    GRAPHICSOBJECTS_MESURE_KEY(mesureKey, mesureDefault)                                                     \
    Q_INVOKABLE Class(QGraphicsItem* parent, int id, void*)                                                  \
        : ConstructionItem(parent, kind()) {                                                                 \
        initIdentity(id, MesureKey, MesureDefault);                                                          \
    }                                                                                                        \
                                                                                                             \
protected:                                                                                                   \
    static Kind kind();                                                                                      \
    QString build(Drawing& drawing) override;                                                                \
                                                                                                             \
public:

// Base of the construction measures: items that relate items already on the scene. The user
// picks the sources with clicks (the scene's picking mode), or a host passes them to
// computeMesures(QList<AbstractBaseItem*>, void*). A construction draws its construction lines
// dashed and its results (points, arcs, circles, tangents) with the plain pen, and follows its
// sources live: it recomputes when their measures or their places change and, when one is
// deleted, announces objectDeleted and removes itself. A construction without a result (missing
// picks, parallel lines, a point inside the circle...) keeps zero measures and says why in its
// label and in problem().
//
// Its XML keeps the sources as references (their uids and names) and the pick places; a loaded
// construction waits for linkLoadedItems (ItemLinks.h) to find its sources again.
class GRAPHICSOBJECTS_EXPORT ConstructionItem : public ShapeItem {
    Q_OBJECT
public:
    // What a pick must be: any item (by its centroid, or as the circle or line it is), an item with
    // a straight part, a line, straight side, circle or ellipse, or a circle unless an earlier pick
    // is one.
    enum class Need { Anything, Straight, Figure, Circle };

    // The copy follows the same sources.
    AbstractBaseItem* clone(int id) override;
    int picksNeeded() const override { return int(m_needs.size()); }
    long mesuresFlag() const override { return m_mesuresFlag; }
    QList<MenuEntry> mesureMenu() const override { return m_menu; }
    typModeEdition pickItem(AbstractBaseItem* item, const QPointF& scenePos, QString* refusal) override;
    // Links the construction to items, in pick order, and computes. False, leaving the
    // construction as it was and the reason in lastRefusal(), for a list it cannot use (wrong
    // count, kind, an item twice). A usable list may still give no result (see problem()).
    bool computeMesures(QList<AbstractBaseItem*> items, void* arg) override;
    // Why the last pick or list was refused; empty when it was taken.
    QString lastRefusal() const { return m_lastRefusal; }

    // The live sources, in pick order.
    QList<AbstractBaseItem*> sources() const;
    bool hasResult() const { return m_problem.isEmpty(); }
    // Why there is no result, in the user's words; empty when there is one.
    QString problem() const { return m_problem; }
    // The result points (scene): a foot, the intersections, the tangent points...
    QList<QPointF> resultPoints() const { return m_points; }
    QPainterPath constructionLines() const;
    QPainterPath resultPath() const;

    QPointF centroid() override;
    void setPen(const QPen& pen) override;
    bool drawnByClicks() const override { return true; }
    // For a host that forwards the mouse itself: the press picks the item under it.
    void mousePress(QGraphicsSceneMouseEvent* event) override;
    void mouseMove(QGraphicsSceneMouseEvent*) override {}
    typModeEdition mouseRelease(QGraphicsSceneMouseEvent*) override { return m_modeEdition; }
    // A construction ended before its last pick stays, marked with the picks it lacks.
    bool endEdition() override;
    // False, with a message per missing source, when a source is missing: the loader drops it.
    bool resolveLinks(const QHash<QString, AbstractBaseItem*>& byUid, QStringList* missing) override;

public slots:
    bool computeMesures(void*) override;

protected:
    // What a construction class is: one need per pick, in pick order; the measures its context menu
    // offers, before the "None" that ends every construction's menu; its sub-type and the kind of its
    // measures (mesuresFlag).
    struct Kind {
        QList<Need> needs;
        QList<MenuEntry> menu;
        unsigned long subType = 1;
        long mesuresFlag = 5;
    };
    ConstructionItem(QGraphicsItem* parent, const Kind& kind);

    // What a construction draws and where its label goes, in scene coordinates.
    struct Drawing {
        QPainterPath lines;
        QPainterPath results;
        QList<QPointF> points;
        QPointF anchor;
    };
    // Fills the pixel measures and the drawing from the sources; returns why there is no result,
    // or nothing.
    virtual QString build(Drawing& drawing) = 0;
    AbstractBaseItem* source(int i) const;
    // Where source i was picked (scene), following the source since; none when a host gave it.
    std::optional<QPointF> hint(int i) const;

    void commonUpdateText() override;
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;

private slots:
    void sourceChanged();
    void sourceFinished();
    void sourceDestroyed();

private:
    QString refuse(const QList<AbstractBaseItem*>& earlier, AbstractBaseItem* item,
                   const std::optional<QPointF>& hint) const;
    void addSource(AbstractBaseItem* item, const std::optional<QPointF>& scenePos);
    void follow(AbstractBaseItem* item);
    void unlink();
    void show(const Drawing& drawing);
    // Dashed construction lines, plain results; the label keeps its colour until a pen is chosen.
    void applyPen(const QPen& pen);
    QString missingPicks() const;

    struct Hint {
        bool set = false;
        QPointF local; // in the source's coordinates
    };
    QList<Need> m_needs;
    QList<MenuEntry> m_menu;
    long m_mesuresFlag;
    QList<ItemReference> m_sources;
    QList<Hint> m_hints;
    QGraphicsPathItem* m_results;
    QList<QPointF> m_points;
    QPointF m_anchor;
    QString m_problem;
    QString m_lastRefusal;
    // Picking goes on: a source deleted now is only a pick to make again.
    bool m_picking = true;
    bool m_computing = false;
};
