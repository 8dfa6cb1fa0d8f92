#pragma once

#include "graphicsobjects_export.h"

#include <QString>

class AbstractBaseItem;
class AbstractScene;

// Starts drawing a new item on the scene (AbstractScene::startTool), made from a class name or a
// displayed name by the tool or the measure factory; null, and nothing started, for a name neither
// factory knows.
GRAPHICSOBJECTS_EXPORT AbstractBaseItem* startTool(AbstractScene* scene, const QString& name, int id = 0);
