#pragma once

#include "graphicsobjects_export.h"

#include <QString>
#include <QStringList>

class AbstractBaseItem;
class QGraphicsItem;

// Create an item by class name or displayed name, passing (parent, id, context) to its constructor.
// The tool factory makes the shapes and annotations, the measure factory the construction measures;
// each returns null for a name that is not its own. The caller owns the item.
GRAPHICSOBJECTS_EXPORT AbstractBaseItem* XBaseItemToolCreate(QString& name, QGraphicsItem* parent, int id,
                                                             void* context);
GRAPHICSOBJECTS_EXPORT AbstractBaseItem* XBaseItemMesureCreate(QString& name, QGraphicsItem* parent, int id,
                                                               void* context);

// The class names each factory answers to, in the order it tries them, and whether this build of
// the library constructs the class yet.
GRAPHICSOBJECTS_EXPORT QStringList toolFactoryClassNames();
GRAPHICSOBJECTS_EXPORT QStringList mesureFactoryClassNames();
GRAPHICSOBJECTS_EXPORT bool factoryBuilds(const QString& className);
