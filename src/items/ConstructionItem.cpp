#include "ConstructionItem.h"

#include "AbstractScene.h"
#include "ConstructionGeometry.h"
#include "SimpleTextItem.h"
#include "VariantText.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QGraphicsPathItem>
#include <QGraphicsSceneMouseEvent>

#include <algorithm>
#include <cmath>

ConstructionItem::ConstructionItem(QGraphicsItem* parent, const Kind& kind)
    : ShapeItem(parent, new QGraphicsPathItem, kind.subType, 0)
    , m_needs(kind.needs)
    , m_menu(kind.menu + QList<MenuEntry>{{QT_TRANSLATE_NOOP("ConstructionItem", "None"), NoMesure}})
    , m_mesuresFlag(kind.mesuresFlag)
    , m_results(new QGraphicsPathItem(this)) {
    // Its drawing is made of its sources' places: a drag of its own cannot move it.
    setFlag(ItemSendsGeometryChanges, true);
    applyPen(m_pen);
    m_problem = missingPicks();
}

AbstractBaseItem* ConstructionItem::clone(int id) {
    auto* copy = qobject_cast<ConstructionItem*>(ShapeItem::clone(id));
    if (!copy || m_sources.isEmpty() || sources().size() < m_sources.size())
        return copy;
    QHash<QString, AbstractBaseItem*> live;
    for (const ItemReference& reference : std::as_const(m_sources))
        live.insert(reference.uid, reference.item);
    copy->resolveLinks(live, nullptr);
    return copy;
}

QString ConstructionItem::missingPicks() const {
    return tr("%1 of %2 items picked").arg(m_sources.size()).arg(picksNeeded());
}

void ConstructionItem::setPen(const QPen& pen) {
    ShapeItem::setPen(pen);
    applyPen(pen);
}

void ConstructionItem::applyPen(const QPen& pen) {
    QPen dashed = pen;
    if (pen.style() != Qt::NoPen)
        dashed.setStyle(Qt::DashLine);
    setShapePen(dashed);
    m_results->setPen(pen);
}

QPainterPath ConstructionItem::constructionLines() const {
    return mapToScene(child<QGraphicsPathItem>()->path());
}

QPainterPath ConstructionItem::resultPath() const {
    return mapToScene(m_results->path());
}

QPointF ConstructionItem::centroid() {
    return mapFromScene(m_anchor);
}

QList<AbstractBaseItem*> ConstructionItem::sources() const {
    return ItemLinks::targets(m_sources);
}

AbstractBaseItem* ConstructionItem::source(int i) const {
    return i >= 0 && i < m_sources.size() ? m_sources[i].item.data() : nullptr;
}

std::optional<QPointF> ConstructionItem::hint(int i) const {
    AbstractBaseItem* item = source(i);
    if (!item || !m_hints[i].set)
        return std::nullopt;
    return item->mapToScene(m_hints[i].local);
}

QString ConstructionItem::refuse(const QList<AbstractBaseItem*>& earlier, AbstractBaseItem* item,
                                 const std::optional<QPointF>& hint) const {
    if (!item)
        return tr("There is no item to pick");
    if (item == this)
        return tr("A construction cannot use itself");
    if (earlier.contains(item))
        return tr("This item is already picked");
    if (earlier.size() >= picksNeeded())
        return tr("All the items are picked");
    switch (m_needs[earlier.size()]) {
    case Need::Straight:
        if (!Construction::straightOf(item, hint))
            return tr(
                "This item has no straight part: pick a line, a guide, a cross, a side of a rectangle or "
                "ruler, or an end of a polyline");
        break;
    case Need::Figure:
        if (!Construction::straightOf(item, hint) && !Construction::circleOf(item) &&
            !Construction::ellipseOf(item))
            return tr("Pick a line, a straight side, a circle or an ellipse");
        break;
    case Need::Circle:
        if (!Construction::circleOf(item) &&
            std::none_of(earlier.begin(), earlier.end(),
                         [](AbstractBaseItem* e) { return Construction::circleOf(e); }))
            return tr("Pick a circle: tangents need one");
        break;
    case Need::Anything:
        break;
    }
    return QString();
}

AbstractBaseItem::typModeEdition ConstructionItem::pickItem(AbstractBaseItem* item, const QPointF& scenePos,
                                                            QString* refusal) {
    m_creationStarted = true;
    m_lastRefusal = m_picking ? refuse(sources(), item, scenePos) : tr("The construction is complete");
    if (refusal)
        *refusal = m_lastRefusal;
    if (!m_lastRefusal.isEmpty())
        return m_modeEdition;
    addSource(item, scenePos);
    if (m_sources.size() == picksNeeded()) {
        m_picking = false;
        m_modeEdition = EditionComplete;
    }
    computeMesures(nullptr);
    emit mesureChanged(this);
    return m_modeEdition;
}

bool ConstructionItem::computeMesures(QList<AbstractBaseItem*> items, void*) {
    m_lastRefusal =
        items.size() == picksNeeded() ? QString() : tr("%n item(s) needed", nullptr, picksNeeded());
    QList<AbstractBaseItem*> earlier;
    for (int i = 0; m_lastRefusal.isEmpty() && i < items.size(); ++i) {
        m_lastRefusal = refuse(earlier, items[i], std::nullopt);
        earlier.append(items[i]);
    }
    if (!m_lastRefusal.isEmpty())
        return false;
    unlink();
    for (AbstractBaseItem* item : std::as_const(items))
        addSource(item, std::nullopt);
    m_picking = false;
    m_creationStarted = true;
    m_modeEdition = EditionComplete;
    computeMesures(nullptr);
    emit mesureChanged(this);
    emit mesureChangedEND(this);
    return true;
}

void ConstructionItem::mousePress(QGraphicsSceneMouseEvent* event) {
    const AbstractScene* host = hostScene();
    AbstractBaseItem* target =
        host ? host->pickableItemAt(event->scenePos(), 3.0 / std::max(host->horizontalZoom(), 1e-9), this)
             : nullptr;
    pickItem(target, event->scenePos(), nullptr);
}

bool ConstructionItem::endEdition() {
    m_picking = false;
    return true;
}

void ConstructionItem::addSource(AbstractBaseItem* item, const std::optional<QPointF>& scenePos) {
    m_sources.append(ItemReference::to(item));
    m_hints.append(scenePos ? Hint{true, item->mapFromScene(*scenePos)} : Hint{});
    follow(item);
}

void ConstructionItem::follow(AbstractBaseItem* item) {
    connect(item, &AbstractBaseItem::mesureChanged, this, &ConstructionItem::sourceChanged);
    for (auto placeChanged : {&QGraphicsObject::xChanged, &QGraphicsObject::yChanged,
                              &QGraphicsObject::rotationChanged, &QGraphicsObject::scaleChanged})
        connect(item, placeChanged, this, &ConstructionItem::sourceChanged);
    connect(item, &AbstractBaseItem::mesureChangedEND, this, &ConstructionItem::sourceFinished);
    connect(item, &QObject::destroyed, this, &ConstructionItem::sourceDestroyed);
}

void ConstructionItem::unlink() {
    for (const ItemReference& reference : std::as_const(m_sources)) {
        if (reference.item)
            disconnect(reference.item, nullptr, this, nullptr);
    }
    m_sources.clear();
    m_hints.clear();
}

void ConstructionItem::sourceChanged() {
    computeMesures(nullptr);
    emit mesureChanged(this);
}

void ConstructionItem::sourceFinished() {
    computeMesures(nullptr);
    emit mesureChangedEND(this);
}

// The source is half destroyed: nothing of it may be read, and the scene may be going too, so the
// construction only announces its end and goes once control is back in the event loop.
void ConstructionItem::sourceDestroyed() {
    if (m_picking) {
        for (int i = int(m_sources.size()) - 1; i >= 0; --i) {
            if (!m_sources[i].item) {
                m_sources.removeAt(i);
                m_hints.removeAt(i);
            }
        }
        computeMesures(nullptr);
        return;
    }
    m_problem = tr("A source was deleted");
    emit objectDeleted(this, m_type, m_guid);
    deleteLater();
}

bool ConstructionItem::computeMesures(void*) {
    if (m_computing)
        return hasResult();
    m_computing = true;
    std::fill(std::begin(m_mesureP), std::end(m_mesureP), 0.0);
    Drawing drawing;
    drawing.anchor = m_anchor;
    if (m_sources.size() < picksNeeded())
        m_problem = missingPicks();
    else if (sources().size() < picksNeeded())
        m_problem = tr("A source is missing");
    else
        m_problem = build(drawing);
    const bool finite = std::all_of(std::begin(m_mesureP), std::end(m_mesureP), isSceneNumber) &&
                        Construction::drawable(drawing.lines) && Construction::drawable(drawing.results) &&
                        isSceneNumber(drawing.anchor.x()) && isSceneNumber(drawing.anchor.y());
    if (m_problem.isEmpty() && !finite)
        m_problem = tr("No result");
    if (!m_problem.isEmpty()) {
        std::fill(std::begin(m_mesureP), std::end(m_mesureP), 0.0);
        const QPointF anchor =
            m_sources.isEmpty() || !source(0) ? m_anchor : Construction::centroidOf(source(0));
        drawing = Drawing{};
        drawing.anchor = anchor;
    }
    show(drawing);
    calibrateMesures({Dist1, Dist2, Ang1, Ang2, Aera, Perim, Rad1, Rad2, Diam, Cust});
    placeCentroidHandgrip();
    commonUpdateText();
    m_computing = false;
    return hasResult();
}

void ConstructionItem::show(const Drawing& drawing) {
    m_anchor = drawing.anchor;
    m_points = drawing.points;
    const QPainterPath lines = mapFromScene(drawing.lines);
    if (lines != child<QGraphicsPathItem>()->path()) {
        prepareGeometryChange();
        child<QGraphicsPathItem>()->setPath(lines);
    }
    QPainterPath results = mapFromScene(drawing.results);
    for (const QPointF& p : drawing.points)
        Construction::addMark(results, mapFromScene(p));
    m_results->setPath(results);
    update();
}

void ConstructionItem::commonUpdateText() {
    if (m_problem.isEmpty() || !label() || !textusage()) {
        ShapeItem::commonUpdateText();
        return;
    }
    label()->setText(m_problem);
    label()->setVisible(true);
}

bool ConstructionItem::resolveLinks(const QHash<QString, AbstractBaseItem*>& byUid, QStringList* missing) {
    for (const ItemReference& reference : std::as_const(m_sources)) {
        if (reference.item)
            disconnect(reference.item, nullptr, this, nullptr);
    }
    const bool all = ItemLinks::resolve(m_sources, byUid, this, missing);
    if (!all) {
        m_problem = tr("A source is missing");
        commonUpdateText();
        return false;
    }
    for (const ItemReference& reference : std::as_const(m_sources))
        follow(reference.item);
    computeMesures(nullptr);
    return true;
}

void ConstructionItem::writeGeometry(XmlAttributes& e) const {
    ItemLinks::write(e, QStringLiteral("source"), m_sources);
    for (int i = 0; i < m_hints.size(); ++i) {
        if (m_hints[i].set)
            e.setAttribute(QStringLiteral("hint%1").arg(i), variantToString(m_hints[i].local));
    }
    e.setAttribute(QStringLiteral("anchor"), variantToString(m_anchor));
}

// The measures come back as saved; the drawing comes once the sources are linked again.
void ConstructionItem::readGeometry(const XmlAttributes& e) {
    unlink();
    m_sources = ItemLinks::read(e, QStringLiteral("source"), picksNeeded());
    for (int i = 0; i < m_sources.size(); ++i) {
        const QString key = QStringLiteral("hint%1").arg(i);
        m_hints.append(e.hasAttribute(key) ? Hint{true, readPoint(e, key)} : Hint{});
    }
    m_picking = false;
    m_modeEdition = m_sources.size() == picksNeeded() ? EditionComplete : EditionCreating;
    m_anchor = readPoint(e, QStringLiteral("anchor"));
    m_problem = m_sources.size() < picksNeeded() ? missingPicks() : QString();
    placeCentroidHandgrip();
    commonUpdateText();
}

QVariant ConstructionItem::itemChange(GraphicsItemChange change, const QVariant& value) {
    if (change == ItemPositionChange)
        return pos();
    return ShapeItem::itemChange(change, value);
}
