#pragma once

#include <QList>
#include <QPolygonF>

// State that all lasso segmentation items share; InitToolsNames starts it afresh.
extern int g_lassoItemCount;
extern int g_lassoRegionCount;
extern QList<QPolygonF> g_lassoRegions;
