#pragma once

// Everything the GraphicsObjects library exports.

#include "graphicsobjects_export.h"

// Item framework
#include "AbstractBaseItem.h"
#include "AbstractScene.h"
#include "Calibration.h"
#include "HostTypes.h"
#include "HoverEventItem.h"
#include "SimpleTextItem.h"
#include "Types.h"
#include "VariantText.h"

// Library interface
#include "CommonParams.h"

// Image filters
#include "ImageFilters.h"
