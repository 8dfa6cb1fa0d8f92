#pragma once

#include "AbstractScene.h"
#include "HostTypes.h"
#include "ItemFactory.h"
#include "TestItem.h"

#include <QDomDocument>
#include <QGraphicsEllipseItem>

// Items placed on a scene from short descriptions, as a host generates them from its records:
// "point x y", "line x1 y1 x2 y2", "circle cx cy r", "rect x y w h", "hguide x y", "vguide x y",
// "anchor x y", and "ellipse x y w h" (a test item drawing an ellipse, for kinds not built here).
inline AbstractBaseItem* place(AbstractScene& scene, const QString& description) {
    const QStringList words = description.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QList<double> v;
    for (int i = 1; i < words.size(); ++i)
        v << words[i].toDouble();
    const QString kind = words.value(0);
    if (kind == "ellipse") {
        auto* item = new TestItem;
        new QGraphicsEllipseItem(QRectF(v[0], v[1], v[2], v[3]), item);
        scene.addItem(item);
        return item;
    }
    static const QMap<QString, QString> classes{{"point", "PointItem"},       {"line", "LineItem"},
                                                {"circle", "CircleItem"},     {"rect", "RectangleItem"},
                                                {"hguide", "CrossHItem"},     {"vguide", "CrossVItem"},
                                                {"anchor", "AnchorPointItem"}};
    _AUTOPOINTPARAMS params;
    if (kind == "circle") {
        params.center = QPointF(v[0], v[1]);
        params.radius = v[2];
    } else if (kind == "rect") {
        params.rect = QRectF(v[0], v[1], v[2], v[3]);
    } else {
        for (int i = 0; i + 1 < v.size(); i += 2)
            params.points << QPointF(v[i], v[i + 1]);
    }
    QString className = classes.value(kind);
    AbstractBaseItem* item = XBaseItemToolCreate(className, nullptr, int(scene.items().size()), &params);
    if (item) {
        // As a drawn item is once accepted.
        item->setFlag(QGraphicsItem::ItemIsSelectable, true);
        scene.addItem(item);
    }
    return item;
}

inline QList<AbstractBaseItem*> placeAll(AbstractScene& scene, const QStringList& descriptions) {
    QList<AbstractBaseItem*> items;
    for (const QString& description : descriptions)
        items << place(scene, description);
    return items;
}

// A construction made by the measure factory and added to the scene.
inline AbstractBaseItem* construction(AbstractScene& scene, QString className) {
    AbstractBaseItem* item = XBaseItemMesureCreate(className, nullptr, 0, nullptr);
    if (item)
        scene.addItem(item);
    return item;
}

// A document as a host keeps one: one element per item with its class, in scene order.
inline QDomDocument savedScene(const QList<AbstractBaseItem*>& items) {
    QDomDocument doc;
    QDomElement root = doc.createElement("scene");
    doc.appendChild(root);
    for (AbstractBaseItem* item : items) {
        QDomElement e = doc.createElement("item");
        e.setAttribute("class", item->getType());
        item->toXml(e);
        root.appendChild(e);
    }
    return doc;
}

// The items of a saved document, made by their factories and loaded onto scene; not yet linked.
inline QList<AbstractBaseItem*> loadedScene(AbstractScene& scene, const QDomDocument& doc) {
    QList<AbstractBaseItem*> items;
    for (QDomElement e = doc.documentElement().firstChildElement(); !e.isNull(); e = e.nextSiblingElement()) {
        QString className = e.attribute("class");
        AbstractBaseItem* item = XBaseItemToolCreate(className, nullptr, 0, nullptr);
        if (!item)
            item = XBaseItemMesureCreate(className, nullptr, 0, nullptr);
        if (!item)
            continue;
        item->fromXml(e);
        scene.addItem(item);
        items << item;
    }
    return items;
}
