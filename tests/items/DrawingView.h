#pragma once

#include "AbstractBaseItem.h"
#include "AbstractScene.h"
#include "HoverEventItem.h"
#include "ItemFactory.h"

#include <QAction>
#include <QDomDocument>
#include <QGraphicsView>
#include <QMenu>
#include <QPointer>
#include <QTest>

// A real scene in an offscreen view, and the mouse gestures the item tests draw with.
struct DrawingView {
    AbstractScene scene{QRectF(0, 0, 400, 300)};
    QGraphicsView view{&scene};
    bool exposed = false;

    DrawingView() {
        view.setFixedSize(420, 320);
        view.show();
        exposed = QTest::qWaitForWindowExposed(&view);
    }
    void drag(const QPointF& from, const QPointF& to, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mousePress(view.viewport(), Qt::LeftButton, modifiers, view.mapFromScene(from));
        if (from != to)
            QTest::mouseMove(view.viewport(), view.mapFromScene(to));
        QTest::mouseRelease(view.viewport(), Qt::LeftButton, modifiers, view.mapFromScene(to));
    }
    // Draws an item of the class with this calibration factor; null when it was rejected.
    AbstractBaseItem* draw(const QString& className, const QPointF& from, const QPointF& to,
                           double factor = 1.0, Qt::KeyboardModifiers modifiers = {}) {
        if (!exposed)
            return nullptr;
        QPointer<AbstractBaseItem> item = scene.startTool(className);
        Calibration calibration;
        calibration.factor = factor;
        item->setCalibration(calibration);
        drag(from, to, modifiers);
        return item.data();
    }
    void dragGrip(AbstractBaseItem* item, int id, const QPointF& to) {
        for (HoverEventItem* grip : item->handgripItems()) {
            if (grip->getId() == id)
                return drag(grip->scenePos(), to);
        }
    }
};

// The entries of the item's context menu (or edit menu), by text.
inline QMap<QString, QAction*> menuOf(AbstractBaseItem* item, QMenu& menu, bool edit = false) {
    edit ? item->fillEditMenu(&menu) : item->fillContextMenu(&menu);
    QMap<QString, QAction*> actions;
    for (QAction* action : menu.actions())
        actions.insert(action->text(), action);
    return actions;
}

// Applies a menu entry the way a click does: through the action's data.
inline bool choose(AbstractBaseItem* item, const QString& text, bool edit = false) {
    QMenu menu;
    const QAction* action = menuOf(item, menu, edit).value(text);
    if (action)
        edit ? item->applyEditMenu(action->data().toInt()) : item->applyContextMenu(action->data().toInt());
    return action;
}

inline QMap<QString, QString> saved(const AbstractBaseItem* item) {
    QDomDocument doc;
    QDomElement e = doc.createElement(QStringLiteral("item"));
    item->toXml(e);
    QMap<QString, QString> result;
    for (int i = 0; i < e.attributes().count(); ++i)
        result.insert(e.attributes().item(i).nodeName(), e.attributes().item(i).nodeValue());
    return result;
}

// Saved, loaded into a factory-made item of the same class and saved again, an item reads the same;
// so does its clone.
inline void checkXmlRoundTrip(AbstractBaseItem* item) {
    QDomDocument doc;
    QDomElement e = doc.createElement(QStringLiteral("item"));
    item->toXml(e);
    QString className = item->getType();
    std::unique_ptr<AbstractBaseItem> loaded(XBaseItemToolCreate(className, nullptr, 3, nullptr));
    QVERIFY(loaded && loaded->fromXml(e));
    QCOMPARE(saved(loaded.get()), saved(item));
    QCOMPARE(saved(std::unique_ptr<AbstractBaseItem>(item->clone(4)).get()), saved(item));
}
