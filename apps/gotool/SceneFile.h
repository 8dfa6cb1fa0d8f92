#pragma once

#include <QList>
#include <QString>

class AbstractBaseItem;
class AbstractScene;

// A saved scene: a <scene> element with the calibration as attributes, an optional
// <commonparams> element and one <item class="..."> element per item, in the items' own XML form.
struct SceneFile {
    QString unitName = QStringLiteral("mm");
    double factor = 1.0;
    int decimals = 2;
    QList<AbstractBaseItem*> items; // owned by the scene they were loaded into
    QStringList warnings;           // items that could not be read
};

// Reads fileName into scene; on failure returns false with a message for the user in error.
bool loadScene(const QString& fileName, AbstractScene* scene, SceneFile& out, QString& error);
