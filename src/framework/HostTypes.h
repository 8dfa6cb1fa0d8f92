#pragma once

#include <QList>
#include <QMap>
#include <QPointF>
#include <QRectF>
#include <QString>

class AbstractBaseItem;

// Context record a host hands to an item's constructor (or to fixupForTransform) to generate it
// without the mouse. Each item reads only the members it needs.
struct _AUTOPOINTPARAMS {
    AbstractBaseItem* source = nullptr; // item whose measures or calibration are taken over
    QList<QPointF> points;              // defining points (line: the first two; Vickers: four corners)
    QRectF rect;                        // defining rectangle when there are no points
    QPointF center;                     // centre of a circle, anchor of a text
    double radius = 0;                  // radius of a circle
    double load = 0;                    // test load of a hardness indentation, in newtons
    QMap<QString, QString> texts;       // named texts an item may add to or clear
};

// What a host tells items about a camera whose live video they overlay.
struct cameraInfos {
    QString name;
    int width = 0;
    int height = 0;
    double fps = 0;
};
