#pragma once

#include "AbstractBaseItem.h"
#include "AbstractScene.h"

#include <QDomDocument>
#include <QGraphicsView>
#include <QTest>

// A 400 x 300 scene shown in a view, for tests that drive items with the mouse.
struct ShownScene {
    AbstractScene scene{QRectF(0, 0, 400, 300)};
    QGraphicsView view{&scene};

    ShownScene() {
        view.setFixedSize(420, 320);
        view.show();
    }
    bool exposed() { return QTest::qWaitForWindowExposed(&view); }
    QWidget* viewport() const { return view.viewport(); }
    QPoint at(double x, double y) const { return view.mapFromScene(x, y); }
};

inline QMap<QString, QString> attributesOf(const QDomElement& e) {
    QMap<QString, QString> out;
    const QDomNamedNodeMap map = e.attributes();
    for (int i = 0; i < map.count(); ++i)
        out.insert(map.item(i).nodeName(), map.item(i).nodeValue());
    return out;
}

inline QDomElement saved(const AbstractBaseItem& item, QDomDocument& doc) {
    QDomElement e = doc.createElement(QStringLiteral("item"));
    item.toXml(e);
    return e;
}
