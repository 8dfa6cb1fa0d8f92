#pragma once

#include "DxfReadModel.h"
#include "graphicsobjects_export.h"

#include <QByteArray>
#include <QRectF>
#include <QString>
#include <QTransform>

class QIODevice;

// Reads ASCII DXF files, AutoCAD R12 to 2018, into a DxfModel: LINE, LWPOLYLINE and POLYLINE (bulges
// as arcs), CIRCLE, ARC, ELLIPSE, SPLINE, POINT, TEXT, MTEXT, ATTRIB and INSERT (nested, scaled,
// rotated, in column and row arrays), with the layers' colours and visibility. Model space only; each
// entity takes its layer's colour (block contents on layer 0 take their insert's layer). Splines
// given by fit points alone are drawn as smooth cubics through them, which may bend a little
// differently from AutoCAD's between the points. Other entity types (HATCH, DIMENSION, IMAGE,
// SOLID...) are counted in the report. Bad input is never fatal: whatever could be read is kept and
// the report says what was left out and why.
//
// Overlaying a drawing: DXF has y pointing up, a scene or an image y pointing down. A drawing is shown
// over an image at s pixels per drawing unit with its origin at pixel (ox, oy) by
// QTransform(s, 0, 0, -s, ox, oy). Files written by tools2DXF hold the scene as painted on a device of
// the scene rectangle's size, y turned up on that height: dxfExportToScene gives the way back.

struct DxfReadOptions {
    // Largest distance between a flattened spline and its curve, in drawing units (0.1 suits drawings
    // shown at one pixel per unit; divide by the pixels per unit otherwise).
    double tolerance = 0.1;
    // Bounds on the work a file may ask for: entities placed (block contents once per insertion,
    // array cells included) and vertices kept (path elements, points and texts); 2^30 at most.
    qint64 maxEntities = 2'000'000;
    qint64 maxVertices = 8'000'000;
    int maxNesting = 16; // inserts within inserts, 100 at most
};

GRAPHICSOBJECTS_EXPORT DxfModel readDxf(const QByteArray& data, const DxfReadOptions& options = {});
GRAPHICSOBJECTS_EXPORT DxfModel readDxf(QIODevice& device, const DxfReadOptions& options = {});
GRAPHICSOBJECTS_EXPORT DxfModel readDxfFile(const QString& fileName, const DxfReadOptions& options = {});

// Maps the drawing units of a file that tools2DXF wrote from a scene with this scene rectangle back to
// scene coordinates: the scene was scaled to fit a device of sceneRect.size().toSize() (aspect kept,
// top left at the origin) and y was turned up on the device's height.
GRAPHICSOBJECTS_EXPORT QTransform dxfExportToScene(const QRectF& sceneRect);
