#include "UndoRecorder.h"

#include "AbstractBaseItem.h"
#include "AbstractScene.h"
#include "UndoCommands.h"
#include "eTextItem.h"

#include <QGraphicsSceneContextMenuEvent>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsView>
#include <QMenu>
#include <QUndoStack>

namespace {

// The library item under a scene event, as the view that got it shows the scene.
AbstractBaseItem* itemUnder(const AbstractScene* scene, const QPointF& scenePos, QWidget* widget) {
    const auto* view = widget ? qobject_cast<QGraphicsView*>(widget->parentWidget()) : nullptr;
    const QTransform device = view ? view->viewportTransform() : QTransform();
    for (QGraphicsItem* g : scene->items(scenePos, Qt::IntersectsItemShape, Qt::DescendingOrder, device)) {
        for (; g; g = g->parentItem()) {
            if (AbstractBaseItem* item = AbstractBaseItem::fromGraphicsItem(g))
                return item;
        }
    }
    return nullptr;
}

// Every action of the menu and its submenus.
QList<QAction*> allActions(const QMenu* menu) {
    QList<QAction*> actions;
    for (QAction* a : menu->actions()) {
        actions << a;
        if (a->menu())
            actions << allActions(a->menu());
    }
    return actions;
}

} // namespace

UndoRecorder::UndoRecorder(AbstractScene* scene, QUndoStack* stack, QObject* parent)
    : QObject(parent)
    , m_scene(scene)
    , m_stack(stack) {
    connect(scene, &AbstractScene::itemAdded, this, &UndoRecorder::watch);
    connect(scene, &AbstractScene::itemAccepted, this, &UndoRecorder::accepted);
    for (AbstractBaseItem* item : SceneItems::topLevel(scene))
        watch(item);
    scene->installEventFilter(this);
}

void UndoRecorder::watch(AbstractBaseItem* item) {
    connect(item, &AbstractBaseItem::mesureChangedSTART, this, &UndoRecorder::dragStarted,
            Qt::UniqueConnection);
    connect(item, &AbstractBaseItem::mesureChangedEND, this, &UndoRecorder::dragStep, Qt::UniqueConnection);
}

void UndoRecorder::accepted(AbstractBaseItem* item) {
    if (m_stack && !SceneUndo::replaying())
        m_stack->push(new CreateItemCommand(m_scene, item));
}

void UndoRecorder::dragStarted() {
    auto* item = qobject_cast<AbstractBaseItem*>(sender());
    if (!item || SceneUndo::replaying() || !m_scene || item == m_scene->itemInCreation())
        return;
    m_dragBefore = ItemSnapshot::take(item);
    m_drag = ++m_drags;
}

void UndoRecorder::dragStep() {
    auto* item = qobject_cast<AbstractBaseItem*>(sender());
    if (!item || SceneUndo::replaying() || !m_stack || !m_drag || item->uid() != m_dragBefore.uid())
        return;
    // Items that signal the end of a change at every step still make one command: the steps merge.
    m_stack->push(new ItemStateCommand(m_scene, {m_dragBefore}, {ItemSnapshot::take(item)},
                                       tr("Drag %1").arg(item->getGUIDname()), m_drag));
}

void UndoRecorder::pressed() {
    m_drag = 0;
    m_pressPositions.clear();
    for (AbstractBaseItem* item : SceneItems::topLevel(m_scene)) {
        if (item->flags() & QGraphicsItem::ItemIsMovable)
            m_pressPositions.insert(item->ensureUid(), item->pos());
    }
}

void UndoRecorder::released() {
    QList<MoveItemsCommand::Move> moves;
    for (AbstractBaseItem* item : SceneItems::topLevel(m_scene)) {
        // A grip drag that moves its item is the drag's command.
        if (m_drag && item->uid() == m_dragBefore.uid())
            continue;
        const auto it = m_pressPositions.constFind(item->uid());
        if (it != m_pressPositions.constEnd() && it.value() != item->pos())
            moves.append({item->uid(), it.value(), item->pos()});
    }
    m_pressPositions.clear();
    if (!moves.isEmpty() && m_stack)
        m_stack->push(new MoveItemsCommand(m_scene, moves));
    // The grip ends its drag as it gets this release; later ends of a change are no part of it.
    QMetaObject::invokeMethod(
        this, [this] { m_drag = 0; }, Qt::QueuedConnection);
}

bool UndoRecorder::showMenu(AbstractBaseItem* item, const QPoint& screenPos, bool editMenu) {
    QMenu menu;
    editMenu ? item->fillEditMenu(&menu) : item->fillContextMenu(&menu);
    const QList<QAction*> own = allActions(&menu);
    if (!editMenu)
        emit contextMenuAboutToShow(item, &menu);
    if (menu.isEmpty())
        return false;
    QPointer<AbstractBaseItem> guarded = item;
    QAction* chosen = menu.exec(screenPos);
    if (chosen && guarded && own.contains(chosen) && m_stack)
        m_stack->push(new MenuChoiceCommand(m_scene, item, chosen->data().toInt(),
                                            chosen->text().remove(QLatin1Char('&')), editMenu));
    return true;
}

bool UndoRecorder::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_scene || m_scene->itemInCreation())
        return QObject::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::GraphicsSceneMousePress:
        if (static_cast<QGraphicsSceneMouseEvent*>(event)->button() == Qt::LeftButton)
            pressed();
        break;
    case QEvent::GraphicsSceneMouseRelease:
        if (static_cast<QGraphicsSceneMouseEvent*>(event)->button() == Qt::LeftButton)
            released();
        break;
    case QEvent::GraphicsSceneContextMenu: {
        auto* e = static_cast<QGraphicsSceneContextMenuEvent*>(event);
        AbstractBaseItem* item = itemUnder(m_scene, e->scenePos(), e->widget());
        if (item && !item->previewed())
            return showMenu(item, e->screenPos(), false);
        break;
    }
    case QEvent::GraphicsSceneMouseDoubleClick: {
        auto* e = static_cast<QGraphicsSceneMouseEvent*>(event);
        AbstractBaseItem* item = itemUnder(m_scene, e->scenePos(), e->widget());
        // A text is edited in place.
        if (e->button() == Qt::LeftButton && item && !item->previewed() && !qobject_cast<eTextItem*>(item))
            return showMenu(item, e->screenPos(), true);
        break;
    }
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
