#pragma once

#include <QColor>

namespace dxf::read {

// The standard palette of the AutoCAD Color Index; indexes outside 1..255 give colour 7, white.
QColor aciToColor(int index);
// A true colour (group 420): 0xRRGGBB.
QColor trueColor(qint64 rgb);

} // namespace dxf::read
