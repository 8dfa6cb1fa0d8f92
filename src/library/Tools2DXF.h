#pragma once

#include "graphicsobjects_export.h"

#include <QString>

class AbstractScene;

// Writes everything the scene shows, as it paints itself, into a DXF drawing of the scene rectangle's
// size (one scene unit per drawing unit); raster content goes to PNG files beside it (see
// VDxfPaintDevice). Returns 0 in every case: a failure is only logged, as a warning.
GRAPHICSOBJECTS_EXPORT int tools2DXF(QString fileName, AbstractScene* scene);

// The same export, telling whether it worked. On failure error (when given) says why: the file that
// could not be written, or the item drawn at a position that is not finite or too large. A failed
// export leaves any previous file as it was.
GRAPHICSOBJECTS_EXPORT bool exportSceneToDxf(const QString& fileName, AbstractScene* scene,
                                             QString* error = nullptr);
