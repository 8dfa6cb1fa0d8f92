#include "AbstractBaseItem.h"

#include "AbstractScene.h"
#include "CommonParams.h"
#include "HoverEventItem.h"
#include "ToolLayer.h"
#include "SimpleTextItem.h"

#include <QAction>
#include <QActionGroup>
#include <QCoreApplication>
#include <QCursor>
#include <QDomDocument>
#include <QGraphicsSceneContextMenuEvent>
#include <QHash>
#include <QMenu>
#include <QUuid>

#include <cmath>

AbstractBaseItem::AbstractBaseItem(QGraphicsItem* parent, int, void*)
    : QGraphicsObject(parent)
    , m_label(new SimpleTextItem(this)) {
    // Rotations and scales reach itemChange, which keeps the centroid grip's size on screen.
    setFlag(ItemSendsGeometryChanges, true);
    m_label->setTextColor(Qt::red);
    // One pen shared by every new item: copies of a pen share its data.
    static const QPen leader = [] {
        QPen pen(Qt::red, 1, Qt::DotLine);
        pen.setCosmetic(true);
        return pen;
    }();
    m_penCentroidText = leader;
}

// The handgrips and the label are graphics children and go with the item.
AbstractBaseItem::~AbstractBaseItem() = default;

AbstractBaseItem* AbstractBaseItem::fromGraphicsItem(QGraphicsItem* item) {
    return item ? qobject_cast<AbstractBaseItem*>(item->toGraphicsObject()) : nullptr;
}

AbstractBaseItem* AbstractBaseItem::sceneTool(QGraphicsItem* item) {
    AbstractBaseItem* tool = fromGraphicsItem(item);
    return tool && tool->isSceneTool() ? tool : nullptr;
}

bool AbstractBaseItem::isSceneTool() const {
    const QGraphicsItem* parent = parentItem();
    return !parent || parent->type() == ToolLayer::Type;
}

AbstractScene* AbstractBaseItem::hostScene() const {
    return m_linkScene ? m_linkScene : qobject_cast<AbstractScene*>(scene());
}

QVariant AbstractBaseItem::getCommonParams(const QString& key, const QVariant& defaultValue) {
    return ::getCommonParams(key, defaultValue);
}

void AbstractBaseItem::setCommonParams(QString key, QVariant& value) {
    ::setCommonParams(key, value);
}

QString AbstractBaseItem::getSimpleHELP() {
    return tr("no help");
}

void AbstractBaseItem::edit() {
    if (m_previewed && !editMenuInPreview())
        return;
    QMenu menu;
    fillEditMenu(&menu);
    if (menu.isEmpty())
        return;
    if (QAction* chosen = menu.exec(QCursor::pos()))
        applyEditMenu(chosen->data().toInt());
}

void AbstractBaseItem::contextMenuEvent(QGraphicsSceneContextMenuEvent* event) {
    if (m_previewed && !menuInPreview())
        return;
    QMenu menu;
    fillContextMenu(&menu);
    if (menu.isEmpty())
        return;
    if (QAction* chosen = menu.exec(menuPosition(event)))
        applyContextMenu(chosen->data().toInt());
}

QPoint AbstractBaseItem::menuPosition(QGraphicsSceneContextMenuEvent*) const {
    return QCursor::pos();
}

void AbstractBaseItem::chooseMesure(int index, const QString& commonKey) {
    m_mesureIndex = index;
    QVariant value = index;
    setCommonParams(commonKey, value);
    commonUpdateText();
    emit mesureChanged(this);
}

void AbstractBaseItem::addMenuEntries(QMenu* menu, const QList<MenuEntry>& entries, int checked) {
    for (const MenuEntry& entry : entries)
        createMenuAction(menu, QIcon(), QCoreApplication::translate(metaObject()->className(), entry.text),
                         entry.data == checked, nullptr, entry.data);
}

QPointF AbstractBaseItem::centroid() {
    const QRectF r = childrenBoundingRect();
    return QPointF(r.x() + r.width() * 0.5, r.y() + r.height() * 0.5);
}

void AbstractBaseItem::setPen(const QPen& pen) {
    m_pen = pen;
    m_label->setTextColor(pen.color());
}

void AbstractBaseItem::setFont(const QFont& font) {
    m_font = font;
    m_label->setLabelFont(font);
    m_label->setTextColor(m_pen.color());
}

void AbstractBaseItem::transmitFont(const QFont& font) {
    m_font2 = font;
    m_gripFontSet = true;
    for (HoverEventItem* grip : std::as_const(m_handgripItems))
        grip->setFont(font, m_pen.color());
    if (m_handgripCentroid)
        m_handgripCentroid->setFont(font, m_pen.color());
}

void AbstractBaseItem::transmitFontColor(const QColor& color) {
    m_gripFontColor = color;
    for (HoverEventItem* grip : std::as_const(m_handgripItems))
        grip->setFontColor(color);
    if (m_handgripCentroid)
        m_handgripCentroid->setFontColor(color);
}

void AbstractBaseItem::setLockstate(const bool& state) {
    m_locked = state;
    lockunlockHandgrips(m_locked);
}

void AbstractBaseItem::forceSelection() {
    setFlag(ItemIsSelectable, true);
    setFlag(ItemIsMovable, !m_locked);
    setFocus(Qt::MouseFocusReason);
    setSelected(true);
}

void AbstractBaseItem::forceSelectionNoMove() {
    setFlag(ItemIsSelectable, true);
    setFlag(ItemIsMovable, false);
    setFocus(Qt::MouseFocusReason);
    setSelected(true);
}

bool AbstractBaseItem::computeMesures(QList<AbstractBaseItem*>, void*) {
    return false;
}

AbstractBaseItem::typModeEdition AbstractBaseItem::pickItem(AbstractBaseItem*, const QPointF&, QString*) {
    return m_modeEdition;
}

QString AbstractBaseItem::ensureUid() {
    if (m_uid.isEmpty())
        m_uid = QUuid::createUuid().toString(QUuid::WithoutBraces);
    return m_uid;
}

bool AbstractBaseItem::resolveLinks(const QHash<QString, AbstractBaseItem*>&, QStringList*) {
    return true;
}

AbstractBaseItem::typModeEdition AbstractBaseItem::mouseRelease(QGraphicsSceneMouseEvent*) {
    return m_modeEdition;
}

QAction* AbstractBaseItem::createMenuAction(QMenu* menu, const QIcon& icon, const QString& text, bool checked,
                                            QActionGroup* group, const QVariant& data) {
    QAction* action = menu->addAction(icon, text);
    action->setCheckable(true);
    action->setChecked(checked);
    if (group)
        group->addAction(action);
    action->setData(data);
    return action;
}

QTransform AbstractBaseItem::makeRotation(double angle, const QPointF& c) {
    return QTransform().translate(c.x(), c.y()).rotate(angle, Qt::ZAxis).translate(-c.x(), -c.y());
}

QTransform AbstractBaseItem::makeRotation(double angle, const QRectF& r) {
    return makeRotation(angle, QPointF(r.x() + r.width() * 0.5, r.y() + r.height() * 0.5));
}

void AbstractBaseItem::associate(AbstractBaseItem* item, void*) {
    if (item)
        m_linkName = item->getGUIDname();
}

void AbstractBaseItem::unassociate(AbstractBaseItem*, void*) {
    m_linkName.clear();
}

void AbstractBaseItem::setLinkName(AbstractBaseItem*, QString& name) {
    m_linkName = name;
}

QVariant AbstractBaseItem::itemChange(GraphicsItemChange change, const QVariant& value) {
    // The host's scene tells of its tools coming and going.
    if (isSceneTool()) {
        if (change == ItemSceneChange) {
            if (auto* old = qobject_cast<AbstractScene*>(scene()))
                emit old->itemRemoved(this);
        } else if (change == ItemSceneHasChanged) {
            if (auto* now = qobject_cast<AbstractScene*>(scene()))
                emit now->itemAdded(this);
        }
    }
    switch (change) {
    case ItemRotationHasChanged:
    case ItemScaleHasChanged:
    case ItemTransformHasChanged:
    case ItemSceneHasChanged:
    case ItemParentHasChanged:
        fitCentroidGripToZoom();
        break;
    default:
        break;
    }
    if (change == ItemSelectedHasChanged) {
        if (value.toBool()) {
            showHandgrips();
        } else {
            hideHandgrips();
            releaseHandgrips();
        }
    }
    QGraphicsObject::itemChange(change, value);
    return value;
}

void AbstractBaseItem::computeGUID(const QString& name, int index) {
    // A per-run identity: the address of a scratch copy of the name, offset by the index.
    const QByteArray bytes = name.toLatin1();
    m_guid = static_cast<unsigned long>(reinterpret_cast<quintptr>(bytes.constData()) & 0xffffffffu) +
             static_cast<unsigned long>((index + 1) % 100);
}

void AbstractBaseItem::initIdentity(int id, const char* mesureKey, int mesureDefault) {
    // One copy of each class name, shared by all its items.
    static QHash<const QMetaObject*, QString> typeNames;
    auto type = typeNames.find(metaObject());
    if (type == typeNames.end())
        type = typeNames.insert(metaObject(), QString::fromLatin1(metaObject()->className()));
    m_type = *type;
    computeGUID(m_type, id);
    if (m_guidName.isEmpty())
        m_guidName = m_type + QString::number(id);
    m_mesureKey = mesureKey;
    if (mesureKey)
        m_mesureIndex = getCommonParams(QString::fromLatin1(mesureKey), mesureDefault).toInt();
}

const _AUTOPOINTPARAMS* AbstractBaseItem::startGenerated(void* context) {
    if (!context)
        return nullptr;
    m_creationStarted = true;
    m_generated = true;
    return static_cast<const _AUTOPOINTPARAMS*>(context);
}

void AbstractBaseItem::takeMesuresFrom(const AbstractBaseItem* source) {
    if (!source)
        return;
    for (int i = 0; i < MesuresCount; ++i) {
        m_mesure[i] = source->accessmesure(unsigned(i));
        m_mesureP[i] = source->accessmesureP(unsigned(i));
    }
}

void AbstractBaseItem::fillContextMenu(QMenu* menu) {
    addMenuEntries(menu, mesureMenu(), m_mesureIndex);
}

void AbstractBaseItem::applyContextMenu(int data) {
    if (m_mesureKey)
        chooseMesure(data, QString::fromLatin1(m_mesureKey));
}

QPointF AbstractBaseItem::childCentre(const QGraphicsItem* child) const {
    const QRectF r = mapRectFromScene(child->sceneBoundingRect());
    return QPointF(r.x() + r.width() * 0.5, r.y() + r.height() * 0.5);
}

void AbstractBaseItem::copyDataTo(AbstractBaseItem* other) {
    QDomDocument doc;
    QDomElement e = doc.createElement(QStringLiteral("dummy"));
    toXml(e);
    other->fromXml(e);
    other->m_uid.clear();
}

double AbstractBaseItem::distancePointToLine(QPointF p, QPointF a, QPointF b) const {
    const double dx = b.x() - a.x();
    const double dy = b.y() - a.y();
    const double len = std::hypot(dx, dy);
    if (len == 0)
        return std::hypot(p.x() - a.x(), p.y() - a.y());
    return std::abs((p.x() - a.x()) * dy - (p.y() - a.y()) * dx) / len;
}
