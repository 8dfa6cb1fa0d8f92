#pragma once

#include "graphicsobjects_export.h"

#include <QString>

class AbstractScene;

// Writes everything the scene shows, as it paints itself, into a DXF drawing of the scene rectangle's
// size (one scene unit per drawing unit). Returns 0.
GRAPHICSOBJECTS_EXPORT int tools2DXF(QString fileName, AbstractScene* scene);
