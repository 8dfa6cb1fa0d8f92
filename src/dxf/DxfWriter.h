#pragma once

#include "DxfDrawing.h"

#include <QStringList>

class QIODevice;

namespace dxf {

// Writes the drawing as an AutoCAD 2000 ASCII file: insunits is the $INSUNITS code, paper the area
// shown while the drawing is empty, imageFiles the file names its IMAGE entities refer to, one per
// image of the drawing. False when a number was not finite: it is left out, and the output is unusable.
bool write(QIODevice& out, const Drawing& drawing, int insunits, const QRectF& paper,
           const QStringList& imageFiles);

} // namespace dxf
