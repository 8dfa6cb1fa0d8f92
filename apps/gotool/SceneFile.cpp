#include "SceneFile.h"

#include <GraphicsObjects/GraphicsObjects.h>

#include <QDomDocument>
#include <QFile>

namespace {

AbstractBaseItem* create(QString className) {
    AbstractBaseItem* item = XBaseItemToolCreate(className, nullptr, 0, nullptr);
    return item ? item : XBaseItemMesureCreate(className, nullptr, 0, nullptr);
}

} // namespace

bool loadScene(const QString& fileName, AbstractScene* scene, SceneFile& out, QString& error) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        error = QStringLiteral("cannot read %1: %2").arg(fileName, file.errorString());
        return false;
    }
    QDomDocument doc;
    QString message;
    int line = 0;
    int column = 0;
    if (!doc.setContent(&file, &message, &line, &column)) {
        error =
            QStringLiteral("%1:%2:%3: not a scene file: %4").arg(fileName).arg(line).arg(column).arg(message);
        return false;
    }
    const QDomElement root = doc.documentElement();
    if (root.tagName() != QLatin1String("scene")) {
        error = QStringLiteral("%1: not a scene file: the root element is <%2>, not <scene>")
                    .arg(fileName, root.tagName());
        return false;
    }

    out.unitName = root.attribute(QStringLiteral("unit"), out.unitName);
    out.factor = root.attribute(QStringLiteral("factor"), QStringLiteral("1")).toDouble();
    out.decimals = root.attribute(QStringLiteral("decimals"), QStringLiteral("2")).toInt();
    if (!(out.factor > 0) || out.decimals < 0 || out.decimals > 12) {
        error =
            QStringLiteral("%1: the calibration needs a factor above 0 and 0 to 12 decimals").arg(fileName);
        return false;
    }
    const double width = root.attribute(QStringLiteral("width")).toDouble();
    const double height = root.attribute(QStringLiteral("height")).toDouble();
    if (width > 0 && height > 0)
        scene->setSceneRect(0, 0, width, height);

    QDomElement params = root.firstChildElement(QStringLiteral("commonparams"));
    if (!params.isNull())
        fromCommonParams(params);

    Calibration calibration;
    calibration.unitName = out.unitName;
    calibration.factor = out.factor;
    calibration.decimals = out.decimals;
    int index = 0;
    for (QDomElement e = root.firstChildElement(QStringLiteral("item")); !e.isNull();
         e = e.nextSiblingElement(QStringLiteral("item"))) {
        ++index;
        const QString className = e.attribute(QStringLiteral("class"));
        AbstractBaseItem* item = create(className);
        if (!item) {
            out.warnings << QStringLiteral("item %1 (line %2): unknown class \"%3\", skipped")
                                .arg(index)
                                .arg(e.lineNumber())
                                .arg(className);
            continue;
        }
        scene->addItem(item);
        item->setLinkScene(scene);
        item->fromXml(e);
        item->setCalibration(calibration);
        item->computeMesures(nullptr);
        out.items << item;
    }
    return true;
}
