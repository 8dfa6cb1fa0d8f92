#pragma once

// Everything the GraphicsObjects library exports.

#include "graphicsobjects_export.h"

// Item framework
#include "AbstractBaseItem.h"
#include "AbstractScene.h"
#include "Calibration.h"
#include "CommonParams.h"
#include "HostTypes.h"
#include "HoverEventItem.h"
#include "ItemTypes.h"
#include "ShapeItem.h"
#include "SimpleTextItem.h"
#include "Types.h"
#include "VariantText.h"
#include "XmlRead.h"

// Library interface
#include "ItemFactory.h"
#include "ItemRegistry.h"
#include "PointList.h"
#include "StartTool.h"
#include "Tools2DXF.h"
#include "ToolsCatalogue.h"
#include "qtrans.h"

// DXF output
#include "VDxfPaintDevice.h"

// DXF input
#include "DxfReader.h"

// Geometry
#include "Geometry.h"
#include "GeometryAngles.h"
#include "GeometryFitting.h"
#include "GeometryIntersections.h"
#include "GeometryNumbers.h"
#include "GeometryOutlines.h"
#include "GeometryPolygons.h"

// Image filters
#include "ImageFilters.h"

// Items
#include "Arrow2Item.h"
#include "ArrowItem.h"
#include "CircleItem.h"
#include "CircleNote.h"
#include "DXFItem.h"
#include "FrameItem.h"
#include "LineItem.h"
#include "PixmapItem.h"
#include "RectCalibItem.h"
#include "RectangleItem.h"
#include "RectangleItemFeret.h"
#include "RulerItem.h"
#include "SmileyItem.h"
#include "StampItem.h"
#include "TextEdit.h"
#include "TextItem.h"
#include "TextItemDialog.h"
#include "VickersPItem.h"
#include "VideoItem.h"
#include "eTextItem.h"
