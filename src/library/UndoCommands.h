#pragma once

#include "Calibration.h"
#include "ItemSnapshot.h"
#include "graphicsobjects_export.h"

#include <QHash>
#include <QImage>
#include <QList>
#include <QMap>
#include <QPointF>
#include <QPointer>
#include <QUndoCommand>

class AbstractBaseItem;
class AbstractScene;
struct ImageFilterInfo;

// The undoable changes of a scene, for a QUndoStack the host owns. Commands find their items by
// uid, so that an item deleted and made again by an undo is the same item to every command after
// it; redo after undo gives back the exact state, as the items' XML forms tell it. A command made
// for a change already done (an item drawn, a grip dragged) does nothing on its first redo.
namespace SceneUndo {

// Ids for QUndoCommand::id(): commands of one id may merge.
enum CommandId { GripDragId = 0x4701 };

// True while a command applies its change: the signals the scene and items emit then are the
// command's own, not the user's.
GRAPHICSOBJECTS_EXPORT bool replaying();

// Held by a command while it changes the scene, so that recorders do not take the change for
// the user's; the library's commands hold it, a host's own commands do too.
class GRAPHICSOBJECTS_EXPORT Replay {
public:
    Replay();
    ~Replay();
    Replay(const Replay&) = delete;
    Replay& operator=(const Replay&) = delete;
};

} // namespace SceneUndo

// An item drawn on the scene: undo deletes it, redo makes it again.
class GRAPHICSOBJECTS_EXPORT CreateItemCommand : public QUndoCommand {
public:
    CreateItemCommand(AbstractScene* scene, AbstractBaseItem* item, QUndoCommand* parent = nullptr);
    void undo() override;
    void redo() override;

private:
    QPointer<AbstractScene> m_scene;
    ItemSnapshot m_item;
    bool m_done = true;
};

// Deletes items, with the items that cannot stand without them (constructions on them); undo
// makes them all again in their places and links again the texts that followed them.
class GRAPHICSOBJECTS_EXPORT DeleteItemsCommand : public QUndoCommand {
public:
    DeleteItemsCommand(AbstractScene* scene, const QList<AbstractBaseItem*>& items,
                       QUndoCommand* parent = nullptr);
    void undo() override;
    void redo() override;
    // How many items the deletion takes, dependants included.
    int count() const { return int(m_uids.size()); }

private:
    QPointer<AbstractScene> m_scene;
    QStringList m_uids;              // the items deleted, bottom first
    QList<ItemSnapshot> m_deleted;   // their states, taken on the first redo
    QList<ItemSnapshot> m_followers; // texts that followed them
};

// Items going from one state to another: a handgrip drag, a menu choice, an edit. Undo loads the
// earlier state into them, redo the later one. Commands with the same merge key (a drag's
// number) and the same items merge, so that a drag whose steps are pushed one by one is one step.
class GRAPHICSOBJECTS_EXPORT ItemStateCommand : public QUndoCommand {
public:
    ItemStateCommand(AbstractScene* scene, const QList<ItemSnapshot>& before,
                     const QList<ItemSnapshot>& after, const QString& text, int mergeKey = 0,
                     QUndoCommand* parent = nullptr);
    void undo() override;
    void redo() override;
    int id() const override { return m_mergeKey ? SceneUndo::GripDragId : -1; }
    bool mergeWith(const QUndoCommand* other) override;

private:
    void apply(const QList<ItemSnapshot>& states);

    QPointer<AbstractScene> m_scene;
    QList<ItemSnapshot> m_before;
    QList<ItemSnapshot> m_after;
    int m_mergeKey;
    bool m_done = true;
};

// Items moved on the scene (their positions).
class GRAPHICSOBJECTS_EXPORT MoveItemsCommand : public QUndoCommand {
public:
    struct Move {
        QString uid;
        QPointF from;
        QPointF to;
    };
    MoveItemsCommand(AbstractScene* scene, const QList<Move>& moves, QUndoCommand* parent = nullptr);
    void undo() override;
    void redo() override;

private:
    void place(bool forward);

    QPointer<AbstractScene> m_scene;
    QList<Move> m_moves;
    bool m_done = true;
};

// A choice in an item's context menu (or edit menu), by the action's data: redo applies it the way
// a click does, undo gives back the item as it was, and the common parameters (which remember the
// choice for the next item of the kind) as they were.
class GRAPHICSOBJECTS_EXPORT MenuChoiceCommand : public QUndoCommand {
public:
    MenuChoiceCommand(AbstractScene* scene, AbstractBaseItem* item, int data, const QString& text,
                      bool editMenu = false, QUndoCommand* parent = nullptr);
    void undo() override;
    void redo() override;

private:
    QPointer<AbstractScene> m_scene;
    ItemSnapshot m_before;
    ItemSnapshot m_after;
    QMap<QString, QVariant> m_paramsBefore;
    QMap<QString, QVariant> m_paramsAfter;
    int m_data;
    bool m_editMenu;
};

// A new calibration of the scene and of every item on it; undo gives each item back its own.
class GRAPHICSOBJECTS_EXPORT CalibrationCommand : public QUndoCommand {
public:
    CalibrationCommand(AbstractScene* scene, const Calibration& calibration, QUndoCommand* parent = nullptr);
    void undo() override;
    void redo() override;

private:
    QPointer<AbstractScene> m_scene;
    Calibration m_before;
    Calibration m_after;
    QHash<QString, Calibration> m_items; // by uid, before
};

// A new image for the scene: a filter applied to it (FilterImageCommand) or another picture.
class GRAPHICSOBJECTS_EXPORT ImageCommand : public QUndoCommand {
public:
    ImageCommand(AbstractScene* scene, const QImage& image, const QString& text,
                 QUndoCommand* parent = nullptr);
    void undo() override;
    void redo() override;

protected:
    QPointer<AbstractScene> m_scene;
    QImage m_before;
    QImage m_after;
};

// One of the library's image filters (FilterCatalogue.h) applied to the scene's image.
class GRAPHICSOBJECTS_EXPORT FilterImageCommand : public ImageCommand {
public:
    // The values must be accepted by the filter (ImageFilterInfo::accepts).
    FilterImageCommand(AbstractScene* scene, const ImageFilterInfo& filter, const QList<double>& values,
                       QUndoCommand* parent = nullptr);
};
