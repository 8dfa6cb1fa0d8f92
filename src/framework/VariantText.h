#pragma once

#include "graphicsobjects_export.h"

#include <QMetaType>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QStringView>
#include <QVariant>

// The one text form of values in XML attributes: points "12.5x-3", rectangles "0x0 10x20",
// colours "#rrggbb", fonts in Qt's description text.
GRAPHICSOBJECTS_EXPORT QString variantToString(const QVariant& value);
// The reverse of variantToString. An empty text gives an invalid variant (with success).
GRAPHICSOBJECTS_EXPORT QVariant stringToVariant(const QString& text, QMetaType::Type type,
                                                bool* ok = nullptr);
// Their text forms read without a copy: "XxY", and "XxY WxH" (also split at any run of ASCII white
// space); false unless the text has that many parts. A part that is no finite number reads as 0.
GRAPHICSOBJECTS_EXPORT bool pointFromText(QStringView text, QPointF& point);
GRAPHICSOBJECTS_EXPORT bool rectFromText(QStringView text, QRectF& rect);
