#pragma once

#include "AbstractBaseItem.h"
#include "AbstractScene.h"
#include "CommonParams.h"
#include "HostTypes.h"
#include "HoverEventItem.h"
#include "ItemFactory.h"
#include "ItemRegistry.h"
#include "SimpleTextItem.h"
#include "StartTool.h"

#include <QAction>
#include <QDomDocument>
#include <QGraphicsView>
#include <QMenu>
#include <QPointer>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <memory>

using Attributes = QMap<QString, QString>;

// A calibration of `factor` units a pixel.
inline Calibration calibration(double factor, const QString& unit = QStringLiteral("mm"), int decimals = 2) {
    Calibration c;
    c.factor = factor;
    c.unitName = unit;
    c.decimals = decimals;
    return c;
}

// A table of one row a class the factories build, in the column "className".
inline void builtClasses() {
    QTest::addColumn<QString>("className");
    for (const ItemRegistry::Row& row : ItemRegistry::rows()) {
        if (row.construct)
            QTest::newRow(row.className) << QString(row.className);
    }
}

// A real scene in an active offscreen view, and the mouse gestures the item tests draw with.
struct DrawingView {
    AbstractScene scene{QRectF(0, 0, 400, 300)};
    QGraphicsView view{&scene};
    bool exposed = false;

    DrawingView() {
        view.setFixedSize(420, 320);
        view.show();
        view.activateWindow();
        exposed = QTest::qWaitForWindowActive(&view);
        // Every gesture needs an active window: without one no test here means anything.
        if (!exposed)
            qFatal("The drawing view did not become active");
    }
    QPoint at(const QPointF& p) const { return view.mapFromScene(p); }
    void press(const QPointF& p, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mousePress(view.viewport(), Qt::LeftButton, modifiers, at(p));
    }
    void move(const QPointF& p) { QTest::mouseMove(view.viewport(), at(p)); }
    void release(const QPointF& p, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseRelease(view.viewport(), Qt::LeftButton, modifiers, at(p));
    }
    void drag(const QPointF& from, const QPointF& to, Qt::KeyboardModifiers modifiers = {}) {
        press(from, modifiers);
        if (from != to)
            move(to);
        release(to, modifiers);
    }
    // Ten view pixels per scene unit around the centre, so that the mouse reaches tenths.
    void zoom(const QPointF& centre) {
        view.scale(10, 10);
        view.centerOn(centre);
    }
    // Draws an item of the class with this calibration factor; null when it was rejected.
    AbstractBaseItem* draw(const QString& className, const QPointF& from, const QPointF& to,
                           double factor = 1.0, Qt::KeyboardModifiers modifiers = {}) {
        QPointer<AbstractBaseItem> item = startTool(&scene, className);
        if (!scene.hasCalibration())
            item->setCalibration(calibration(factor));
        drag(from, to, modifiers);
        return item.data();
    }
    // The same for the class T, cast to it.
    template <typename T>
    T* draw(const QPointF& from, const QPointF& to, double factor = 1.0,
            Qt::KeyboardModifiers modifiers = {}) {
        return qgraphicsitem_cast<T*>(draw(T::staticMetaObject.className(), from, to, factor, modifiers));
    }
    // Creates an item of the class by single clicks (Vickers corners, a text's place).
    AbstractBaseItem* click(const QString& className, const QList<QPointF>& points) {
        QPointer<AbstractBaseItem> item = startTool(&scene, className);
        for (const QPointF& p : points) {
            move(p);
            QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, at(p));
        }
        return item.data();
    }
    // The gesture every class of the registry is drawn with: one drag and, for the items drawn click
    // by click, more clicks and Return. Seed 0 draws a fixed figure, the other seeds random ones.
    AbstractBaseItem* drawAny(const QString& className, int seed = 0) {
        QPointer<AbstractBaseItem> item = startTool(&scene, className);
        QRandomGenerator random{quint32(seed)};
        const auto somewhere = [&random] {
            return QPointF(40 + random.bounded(320.0), 40 + random.bounded(220.0));
        };
        const QPointF start = seed ? somewhere() : QPointF(100, 100);
        const double angle = random.bounded(2 * M_PI), length = 30 + random.bounded(60.0);
        drag(start,
             seed ? start + length * QPointF(std::cos(angle), std::sin(angle)) / 2 : QPointF(160, 130));
        QList<QPointF> clicks{{200, 160}, {150, 220}, {90, 170}, {120, 130}};
        for (QPointF& p : clicks)
            p = seed ? somewhere() : p;
        for (int i = 0; i < clicks.size() && scene.itemInCreation(); ++i)
            QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, at(clicks[i]));
        if (scene.itemInCreation())
            QTest::keyClick(view.viewport(), Qt::Key_Return);
        return item.data();
    }
    void dragGrip(AbstractBaseItem* item, int id, const QPointF& to) {
        for (HoverEventItem* grip : item->handgripItems()) {
            if (grip->getId() == id)
                return drag(grip->scenePos(), to);
        }
    }
};

// An item generated from a context record, as a host generates one without the mouse.
template <typename T> std::unique_ptr<T> generated(_AUTOPOINTPARAMS params) {
    return std::make_unique<T>(nullptr, 1, &params);
}

// Records the three signals of a measure edit.
struct EditSpy {
    QSignalSpy start, changed, end;
    explicit EditSpy(AbstractBaseItem* item)
        : start(item, &AbstractBaseItem::mesureChangedSTART)
        , changed(item, &AbstractBaseItem::mesureChanged)
        , end(item, &AbstractBaseItem::mesureChangedEND) {}
    QList<qsizetype> counts() const { return {start.count(), changed.count(), end.count()}; }
};

// The entries of the item's context menu (or edit menu), by text.
inline QMap<QString, QAction*> menuOf(AbstractBaseItem* item, QMenu& menu, bool edit = false) {
    edit ? item->fillEditMenu(&menu) : item->fillContextMenu(&menu);
    QMap<QString, QAction*> actions;
    for (QAction* action : menu.actions())
        actions.insert(action->text(), action);
    return actions;
}

// The checked entries of the item's context menu, in menu order.
inline QStringList checkedEntries(AbstractBaseItem* item) {
    QMenu menu;
    item->fillContextMenu(&menu);
    QStringList texts;
    for (QAction* action : menu.actions()) {
        if (action->isChecked())
            texts << action->text();
    }
    return texts;
}

// Applies a menu entry the way a click does: through the action's data.
inline bool choose(AbstractBaseItem* item, const QString& text, bool edit = false) {
    QMenu menu;
    const QAction* action = menuOf(item, menu, edit).value(text);
    if (action)
        edit ? item->applyEditMenu(action->data().toInt()) : item->applyContextMenu(action->data().toInt());
    return action;
}

inline Attributes saved(const AbstractBaseItem* item) {
    QDomDocument doc;
    QDomElement e = doc.createElement(QStringLiteral("item"));
    item->toXml(e);
    Attributes result;
    for (int i = 0; i < e.attributes().count(); ++i)
        result.insert(e.attributes().item(i).nodeName(), e.attributes().item(i).nodeValue());
    return result;
}

// An item element with these attributes.
inline QDomElement element(const Attributes& attributes) {
    QDomDocument doc;
    QDomElement e = doc.createElement(QStringLiteral("item"));
    for (auto it = attributes.begin(); it != attributes.end(); ++it)
        e.setAttribute(it.key(), it.value());
    return e;
}

// A factory-made item of the class, loaded from these attributes.
inline std::unique_ptr<AbstractBaseItem> loaded(QString className, const Attributes& attributes) {
    const ItemRegistry::Row* row = ItemRegistry::find(className);
    std::unique_ptr<AbstractBaseItem> item(row && row->construct ? row->construct(nullptr, 3, nullptr)
                                                                 : nullptr);
    if (item)
        item->fromXml(element(attributes));
    return item;
}

// The same, loaded on the scene as a host loads it (so that it sees the scene's document folder).
inline AbstractBaseItem* loadedOn(AbstractScene& scene, const QString& className,
                                  const Attributes& attributes) {
    AbstractBaseItem* item = ItemRegistry::find(className)->construct(nullptr, 5, nullptr);
    scene.addItem(item);
    item->setLinkScene(&scene);
    item->fromXml(element(attributes));
    return item;
}

// Saved, loaded into a factory-made item of the same class and saved again, an item reads the same;
// so does its clone.
inline void checkXmlRoundTrip(AbstractBaseItem* item) {
    const Attributes first = saved(item);
    std::unique_ptr<AbstractBaseItem> back = loaded(item->getType(), first);
    QVERIFY(back);
    QCOMPARE(saved(back.get()), first);
    QCOMPARE(saved(std::unique_ptr<AbstractBaseItem>(item->clone(4)).get()), first);
}
