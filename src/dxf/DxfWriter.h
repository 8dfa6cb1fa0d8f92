#pragma once

#include "DxfDrawing.h"

class QIODevice;

namespace dxf {

// Writes the drawing as an AutoCAD 2000 ASCII file: insunits is the $INSUNITS code, paper the area
// shown while the drawing is empty.
void write(QIODevice& out, const Drawing& drawing, int insunits, const QRectF& paper);

} // namespace dxf
