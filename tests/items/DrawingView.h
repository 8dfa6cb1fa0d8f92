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
    QPoint at(const QPointF& p) const { return view.mapFromScene(p); }

    void drag(const QPointF& from, const QPointF& to, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mousePress(view.viewport(), Qt::LeftButton, modifiers, at(from));
        if (from != to)
            QTest::mouseMove(view.viewport(), at(to));
        QTest::mouseRelease(view.viewport(), Qt::LeftButton, modifiers, at(to));
    }

    // Draws an item of the class; null when it was rejected (and deleted).
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

    // Drags the item's handgrip with this id (the first one, in creation order).
    void dragGrip(AbstractBaseItem* item, int id, const QPointF& to) {
        for (HoverEventItem* grip : item->handgripItems()) {
            if (grip->getId() == id)
                return drag(grip->scenePos(), to);
        }
        QFAIL("no such handgrip");
    }
};

inline QAction* findAction(const QMenu& menu, const QString& text) {
    for (QAction* action : menu.actions()) {
        if (action->text() == text)
            return action;
    }
    return nullptr;
}

// Applies a menu entry the way a click does: through the action's data.
template <class Fill, class Apply> bool chooseInMenu(const QString& text, Fill fill, Apply apply) {
    QMenu menu;
    fill(&menu);
    QAction* action = findAction(menu, text);
    if (action)
        apply(action->data().toInt());
    return action;
}

inline QStringList menuTexts(QMenu& menu) {
    QStringList texts;
    for (QAction* action : menu.actions()) {
        if (!action->isSeparator())
            texts << action->text();
    }
    return texts;
}

inline QDomElement saved(const AbstractBaseItem* item) {
    QDomDocument doc;
    QDomElement e = doc.createElement(QStringLiteral("item"));
    item->toXml(e);
    return e;
}

inline QMap<QString, QString> attributes(const QDomElement& e) {
    QMap<QString, QString> result;
    const QDomNamedNodeMap map = e.attributes();
    for (int i = 0; i < map.count(); ++i)
        result.insert(map.item(i).nodeName(), map.item(i).nodeValue());
    return result;
}

// Saves the item, loads it into a factory-made item of its class and saves that: both forms agree,
// and so does a clone's.
inline void checkXmlRoundTrip(AbstractBaseItem* item) {
    const QDomElement first = saved(item);
    QString className = item->getType();
    std::unique_ptr<AbstractBaseItem> loaded(XBaseItemToolCreate(className, nullptr, 3, nullptr));
    QVERIFY(loaded);
    QVERIFY(loaded->fromXml(first));
    QCOMPARE(attributes(saved(loaded.get())), attributes(first));
    std::unique_ptr<AbstractBaseItem> copy(item->clone(4));
    QCOMPARE(attributes(saved(copy.get())), attributes(first));
}
