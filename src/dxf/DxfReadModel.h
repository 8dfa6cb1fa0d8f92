#pragma once

#include "graphicsobjects_export.h"

#include <QColor>
#include <QList>
#include <QMap>
#include <QPainterPath>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QStringList>

// A DXF drawing as read for display: model space only, in drawing units, y pointing up.

// A TEXT, ATTRIB or MTEXT entity, its formatting codes removed; MTEXT paragraphs are split by '\n'.
struct DxfText {
    QString text;
    QPointF position;             // the point the alignment refers to
    double height = 0.0;          // character height, drawing units
    double rotationDegrees = 0.0; // counter-clockwise from +x
    Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignBaseline;
};

struct DxfLayer {
    QString name;
    QColor color = Qt::white; // AutoCAD colour 7, drawn black on a light background
    bool visible = true;      // neither off nor frozen
    // Every curve of the layer: circles, arcs and ellipses as path arcs, splines flattened.
    QPainterPath path;
    QList<QPointF> points;
    QList<DxfText> texts;
};

// What reading found, by entity type. Entities inside block definitions are counted once each.
struct GRAPHICSOBJECTS_EXPORT DxfReadReport {
    QString error;                     // why nothing could be read; empty when the file was read
    QMap<QString, qint64> read;        // entities taken into the model
    QMap<QString, qint64> unsupported; // entities of types that are not drawn
    QMap<QString, qint64> refused;     // entities refused for non-finite, absurd or inconsistent values
    QStringList problems;              // anything else, each once: truncation, cycles, nesting, limits
    qint64 placed = 0;                 // entities drawn, block contents once per insertion
    bool limitReached = false;         // the entity or vertex bound stopped reading: the model is partial

    // One line per finding, for a log or a tooltip.
    QString toText() const;
};

struct GRAPHICSOBJECTS_EXPORT DxfModel {
    QList<DxfLayer> layers; // the layer table's order, then layers named only by entities
    // Bounding box of every layer's paths and points and of the texts' positions; null when empty.
    QRectF extents;
    int insunits = 0; // $INSUNITS: 0 unitless, 1 inches, 4 millimetres, 5 centimetres, 6 metres...
    QString version;  // $ACADVER, such as "AC1009" (R12) or "AC1024" (R2010)
    DxfReadReport report;

    const DxfLayer* layer(const QString& name) const; // DXF names ignore case
    bool isEmpty() const;
};
