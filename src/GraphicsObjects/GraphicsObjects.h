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
#include "ItemLinks.h"
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
#include "SceneDocument.h"

// DXF output
#include "VDxfPaintDevice.h"

// DXF input
#include "DxfReader.h"

// Geometry
#include "Geometry.h"
#include "GeometryAngles.h"
#include "GeometryArcs.h"
#include "GeometryCircleFits.h"
#include "GeometryEllipseMetrics.h"
#include "GeometryFitting.h"
#include "GeometryHull.h"
#include "GeometryIntersections.h"
#include "GeometryNumbers.h"
#include "GeometryOutlines.h"
#include "GeometryPolygonMetrics.h"
#include "GeometryPolygons.h"
#include "GeometrySegments.h"
#include "GeometrySelfIntersection.h"
#include "GeometrySimplify.h"
#include "GeometrySplines.h"

// Image filters
#include "ImageFilters.h"
#include "ImageProbes.h"

// Items
#include "AnchorPointItem.h"
#include "Angle.h"
#include "Arrow2Item.h"
#include "ArrowItem.h"
#include "Circle3.h"
#include "CircleItem.h"
#include "ConstructionItem.h"
#include "CrossHItem.h"
#include "CrossItem.h"
#include "CrossVItem.h"
#include "Custom1.h"
#include "Distance.h"
#include "GuideItem.h"
#include "Intersection.h"
#include "LineItem.h"
#include "PointItem.h"
#include "PositionItem.h"
#include "Projection.h"
#include "RectCalibItem.h"
#include "RectangleItem.h"
#include "RectangleItemFeret.h"
#include "RulerItem.h"
#include "Tangent.h"
#include "TextEdit.h"
#include "TextItem.h"
#include "TextItemDialog.h"
#include "VickersPItem.h"
#include "eTextItem.h"
