#pragma once

#include "graphicsobjects_export.h"

#include <QList>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QStringView>

class XmlAttributes;

// Attribute readers shared by every item: a number that is missing, malformed, not finite or
// beyond any scene (|v| > 1e9) reads as the fallback, so no such value reaches a label or a file.
GRAPHICSOBJECTS_EXPORT double readNumber(const XmlAttributes& e, const QString& key, double fallback = 0);
// "x" "y" as written by variantToString; (0, 0) unless both parts are acceptable numbers.
GRAPHICSOBJECTS_EXPORT QPointF readPoint(const XmlAttributes& e, const QString& key);
// "x" "y" "w" "h"; the null rectangle unless all four are acceptable numbers.
GRAPHICSOBJECTS_EXPORT QRectF readRect(const XmlAttributes& e, const QString& key);
// An item reference (see AbstractBaseItem::uid): up to 64 letters, digits, '-', '_', '.', '{' or
// '}'; anything else reads as empty.
GRAPHICSOBJECTS_EXPORT QString readUid(const XmlAttributes& e, const QString& key);
// Points written "XxY" and joined by ';' (the items' "coords"); parts that are no point a scene can
// hold are left out.
GRAPHICSOBJECTS_EXPORT QList<QPointF> readPointList(QStringView text);
// The value and verdict of QString::toDouble, reached without its locale machinery for the plain
// decimals documents are made of ("-12.5", "3e-05"); anything else goes through QString::toDouble.
GRAPHICSOBJECTS_EXPORT double parseDouble(QStringView text, bool* ok = nullptr);
// Whether v is a number a scene can hold.
GRAPHICSOBJECTS_EXPORT bool isSceneNumber(double v);
