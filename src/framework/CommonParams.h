#pragma once

#include "graphicsobjects_export.h"

#include <QMap>
#include <QString>
#include <QVariant>

class QDomElement;

// The library's memory of the user's last choices for each kind of item (measure shown, arrows).
// Absent keys mean "default": every reader supplies its own.
GRAPHICSOBJECTS_EXPORT QMap<QString, QVariant>* getCommonParamsRef();
GRAPHICSOBJECTS_EXPORT void setCommonParams(const QMap<QString, QVariant>& params);
GRAPHICSOBJECTS_EXPORT void setCommonParams(QString key, QVariant& value);
GRAPHICSOBJECTS_EXPORT QVariant getCommonParams(const QString& key, const QVariant& defaultValue);
GRAPHICSOBJECTS_EXPORT void toCommonParams(QDomElement& element);
GRAPHICSOBJECTS_EXPORT void fromCommonParams(QDomElement& element);
