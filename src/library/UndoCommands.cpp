#include "UndoCommands.h"

#include "AbstractBaseItem.h"
#include "AbstractScene.h"
#include "CommonParams.h"
#include "FilterCatalogue.h"
#include "ItemLinks.h"
#include "eTextItem.h"

#include <QCoreApplication>
#include <QSet>

namespace {

int replayDepth = 0;

using SceneUndo::Replay;

QString translated(const char* text) {
    return QCoreApplication::translate("SceneUndo", text);
}

void deleteItem(AbstractScene* scene, AbstractBaseItem* item) {
    scene->removeItem(item);
    delete item;
}

} // namespace

bool SceneUndo::replaying() {
    return replayDepth > 0;
}

SceneUndo::Replay::Replay() {
    ++replayDepth;
}

SceneUndo::Replay::~Replay() {
    --replayDepth;
}

CreateItemCommand::CreateItemCommand(AbstractScene* scene, AbstractBaseItem* item, QUndoCommand* parent)
    : QUndoCommand(parent)
    , m_scene(scene)
    , m_item(ItemSnapshot::take(item)) {
    setText(translated(QT_TRANSLATE_NOOP("SceneUndo", "Draw %1")).arg(item->getGUIDname()));
}

void CreateItemCommand::undo() {
    AbstractBaseItem* item = SceneItems::find(m_scene, m_item.uid());
    if (!item)
        return;
    Replay replay;
    // Taken again: the state to come back to is the one the later commands left.
    m_item = ItemSnapshot::take(item);
    deleteItem(m_scene, item);
    m_done = false;
}

void CreateItemCommand::redo() {
    if (m_done || !m_scene)
        return;
    Replay replay;
    if (m_item.recreate(m_scene)) {
        m_item.restoreTextLink(m_scene);
        SceneItems::relink(m_scene);
    }
    m_done = true;
}

DeleteItemsCommand::DeleteItemsCommand(AbstractScene* scene, const QList<AbstractBaseItem*>& items,
                                       QUndoCommand* parent)
    : QUndoCommand(parent)
    , m_scene(scene) {
    // The items that would be left without an item they need go too.
    QSet<AbstractBaseItem*> going(items.begin(), items.end());
    const QList<AbstractBaseItem*> all = SceneItems::topLevel(scene);
    for (bool grew = true; grew;) {
        QList<AbstractBaseItem*> staying;
        for (AbstractBaseItem* item : all) {
            if (!going.contains(item))
                staying << item;
        }
        const QList<AbstractBaseItem*> stranded = linkLoadedItems(staying).skipped;
        grew = !stranded.isEmpty();
        going.unite(QSet<AbstractBaseItem*>(stranded.begin(), stranded.end()));
    }
    // Linking above left those that go without their sources: they are linked again to all.
    linkLoadedItems(all);
    for (AbstractBaseItem* item : all) {
        if (going.contains(item))
            m_uids << item->ensureUid();
    }
    setText(QCoreApplication::translate("SceneUndo", "Delete %n item(s)", nullptr, int(m_uids.size())));
}

void DeleteItemsCommand::redo() {
    if (!m_scene)
        return;
    Replay replay;
    const QList<AbstractBaseItem*> all = SceneItems::topLevel(m_scene);
    const QSet<QString> going(m_uids.begin(), m_uids.end());
    m_deleted.clear();
    m_followers.clear();
    QSet<AbstractBaseItem*> goingItems;
    for (int i = 0; i < all.size(); ++i) {
        AbstractBaseItem* item = all.at(i);
        if (!going.contains(item->uid()))
            continue;
        m_deleted << ItemSnapshot::take(item, i + 1 < all.size() ? all.at(i + 1) : nullptr);
        goingItems.insert(item);
    }
    for (AbstractBaseItem* item : all) {
        auto* text = qobject_cast<eTextItem*>(item);
        if (text && !goingItems.contains(text) && goingItems.contains(text->linkedItem()))
            m_followers << ItemSnapshot::take(text);
    }
    m_scene->deleteItems(goingItems.values());
}

void DeleteItemsCommand::undo() {
    if (!m_scene)
        return;
    Replay replay;
    QHash<QString, AbstractBaseItem*> byUid = SceneItems::byUid(m_scene);
    // From the top down, each item finds the one it was under.
    for (auto it = m_deleted.crbegin(); it != m_deleted.crend(); ++it)
        it->recreate(m_scene, &byUid);
    SceneItems::relink(m_scene);
    for (const ItemSnapshot& text : std::as_const(m_followers)) {
        text.applyTo(byUid.value(text.uid()));
        text.restoreTextLink(m_scene);
    }
    for (const ItemSnapshot& item : std::as_const(m_deleted))
        item.restoreTextLink(m_scene);
}

ItemStateCommand::ItemStateCommand(AbstractScene* scene, const QList<ItemSnapshot>& before,
                                   const QList<ItemSnapshot>& after, const QString& text, int mergeKey,
                                   QUndoCommand* parent)
    : QUndoCommand(text, parent)
    , m_scene(scene)
    , m_before(before)
    , m_after(after)
    , m_mergeKey(mergeKey) {
    if (before == after)
        setObsolete(true);
}

void ItemStateCommand::apply(const QList<ItemSnapshot>& states) {
    if (!m_scene)
        return;
    Replay replay;
    const QHash<QString, AbstractBaseItem*> byUid = SceneItems::byUid(m_scene);
    for (const ItemSnapshot& state : states)
        state.applyTo(byUid.value(state.uid()));
    SceneItems::relink(m_scene);
    for (const ItemSnapshot& state : states)
        state.restoreTextLink(m_scene);
}

void ItemStateCommand::undo() {
    apply(m_before);
    m_done = false;
}

void ItemStateCommand::redo() {
    if (!m_done)
        apply(m_after);
    m_done = true;
}

bool ItemStateCommand::mergeWith(const QUndoCommand* other) {
    const auto* next = dynamic_cast<const ItemStateCommand*>(other);
    if (!next || next->m_mergeKey != m_mergeKey || next->m_scene != m_scene ||
        next->m_after.size() != m_after.size())
        return false;
    for (int i = 0; i < m_after.size(); ++i) {
        if (next->m_after.at(i).uid() != m_after.at(i).uid())
            return false;
    }
    m_after = next->m_after;
    setObsolete(m_before == m_after);
    return true;
}

MoveItemsCommand::MoveItemsCommand(AbstractScene* scene, const QList<Move>& moves, QUndoCommand* parent)
    : QUndoCommand(translated(QT_TRANSLATE_NOOP("SceneUndo", "Move")), parent)
    , m_scene(scene)
    , m_moves(moves) {}

void MoveItemsCommand::place(bool forward) {
    if (!m_scene)
        return;
    Replay replay;
    const QHash<QString, AbstractBaseItem*> byUid = SceneItems::byUid(m_scene);
    for (const Move& move : std::as_const(m_moves)) {
        if (AbstractBaseItem* item = byUid.value(move.uid))
            item->setPos(forward ? move.to : move.from);
    }
}

void MoveItemsCommand::undo() {
    place(false);
    m_done = false;
}

void MoveItemsCommand::redo() {
    if (!m_done)
        place(true);
    m_done = true;
}

MenuChoiceCommand::MenuChoiceCommand(AbstractScene* scene, AbstractBaseItem* item, int data,
                                     const QString& text, bool editMenu, QUndoCommand* parent)
    : QUndoCommand(text, parent)
    , m_scene(scene)
    , m_before(ItemSnapshot::take(item))
    , m_paramsBefore(*getCommonParamsRef())
    , m_data(data)
    , m_editMenu(editMenu) {}

void MenuChoiceCommand::redo() {
    AbstractBaseItem* item = SceneItems::find(m_scene, m_before.uid());
    if (!item)
        return;
    Replay replay;
    if (m_after.isNull()) {
        m_editMenu ? item->applyEditMenu(m_data) : item->applyContextMenu(m_data);
        // The choice may have taken the item away (a menu entry that deletes it).
        if (AbstractBaseItem* still = SceneItems::find(m_scene, m_before.uid()))
            m_after = ItemSnapshot::take(still);
        m_paramsAfter = *getCommonParamsRef();
        return;
    }
    setCommonParams(m_paramsAfter);
    m_after.applyTo(item);
    SceneItems::relink(m_scene);
}

void MenuChoiceCommand::undo() {
    AbstractBaseItem* item = SceneItems::find(m_scene, m_before.uid());
    if (!item)
        return;
    Replay replay;
    setCommonParams(m_paramsBefore);
    m_before.applyTo(item);
    SceneItems::relink(m_scene);
    m_before.restoreTextLink(m_scene);
}

CalibrationCommand::CalibrationCommand(AbstractScene* scene, const Calibration& calibration,
                                       QUndoCommand* parent)
    : QUndoCommand(translated(QT_TRANSLATE_NOOP("SceneUndo", "Calibrate")), parent)
    , m_scene(scene)
    , m_before(scene->calibration())
    , m_after(calibration) {
    for (AbstractBaseItem* item : SceneItems::topLevel(scene))
        m_items.insert(item->ensureUid(), item->calibration());
}

void CalibrationCommand::redo() {
    if (!m_scene)
        return;
    Replay replay;
    m_scene->setCalibration(m_after);
}

void CalibrationCommand::undo() {
    if (!m_scene)
        return;
    Replay replay;
    m_scene->setCalibration(m_before);
    for (AbstractBaseItem* item : SceneItems::topLevel(m_scene)) {
        const auto it = m_items.constFind(item->uid());
        if (it != m_items.constEnd())
            item->setCalibration(it.value());
    }
}

ImageCommand::ImageCommand(AbstractScene* scene, const QImage& image, const QString& text,
                           QUndoCommand* parent)
    : QUndoCommand(text, parent)
    , m_scene(scene)
    , m_before(scene->image())
    , m_after(image) {}

void ImageCommand::redo() {
    if (!m_scene)
        return;
    Replay replay;
    m_scene->setImage(m_after);
}

void ImageCommand::undo() {
    if (!m_scene)
        return;
    Replay replay;
    m_scene->setImage(m_before);
}

namespace {

QImage filtered(QImage image, const ImageFilterInfo& filter, const QList<double>& values) {
    if (!image.isNull() && filter.accepts(values))
        filter.apply(image, values);
    return image;
}

} // namespace

FilterImageCommand::FilterImageCommand(AbstractScene* scene, const ImageFilterInfo& filter,
                                       const QList<double>& values, QUndoCommand* parent)
    : ImageCommand(scene, filtered(scene->image(), filter, values), filter.displayedTitle(), parent) {}
