#pragma once

#include "ItemSnapshot.h"
#include "graphicsobjects_export.h"

#include <QHash>
#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QUndoStack>

class AbstractBaseItem;
class AbstractScene;
class QMenu;

// Puts the user's changes of a scene on the host's undo stack as they happen: items drawn, items
// moved with the mouse, handgrip drags (one step per drag) and choices in the items' context menus
// and edit menus (which it shows itself, so that a choice goes through MenuChoiceCommand). The
// host pushes the other commands (deletions, calibrations, filters, dialogs) itself.
class GRAPHICSOBJECTS_EXPORT UndoRecorder : public QObject {
    Q_OBJECT
public:
    UndoRecorder(AbstractScene* scene, QUndoStack* stack, QObject* parent = nullptr);

    QUndoStack* stack() const { return m_stack; }

signals:
    // The item's context menu is about to show: the host may add actions of its own, which it
    // handles itself.
    void contextMenuAboutToShow(AbstractBaseItem* item, QMenu* menu);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void watch(AbstractBaseItem* item);
    void accepted(AbstractBaseItem* item);
    // From the items' mesureChangedSTART and mesureChangedEND.
    void dragStarted();
    void dragStep();
    void pressed();
    void released();
    // Shows the item's menu; true when it had one.
    bool showMenu(AbstractBaseItem* item, const QPoint& screenPos, bool editMenu);

    QPointer<AbstractScene> m_scene;
    QPointer<QUndoStack> m_stack;
    ItemSnapshot m_dragBefore;
    int m_drag = 0; // the number of the drag going on, 0 between drags
    int m_drags = 0;
    QHash<QString, QPointF> m_pressPositions; // by uid
};
