#include "CommonParams.h"

#include <QDomElement>

namespace {

QMap<QString, QVariant>& table() {
    static QMap<QString, QVariant> params;
    return params;
}

// The parameters saved to XML, in their order, with the defaults their readers use.
struct Saved {
    const char* key;
    int defaultValue;
};
constexpr Saved savedParams[] = {
    {"circle_mesureIndex", 5},    {"ellipse_mesureIndex", 6}, {"polygon_mesureIndex", 5},
    {"rectangle_mesureIndex", 6}, {"line_mesureIndex", 1},    {"line_arrowFactor", 2},
    {"line_arrowHead", 0},        {"line_arrowTail", 0},
};

} // namespace

QMap<QString, QVariant>* getCommonParamsRef() {
    return &table();
}

void setCommonParams(const QMap<QString, QVariant>& params) {
    table() = params;
}

void setCommonParams(QString key, QVariant& value) {
    table().insert(key, value);
}

QVariant getCommonParams(const QString& key, const QVariant& defaultValue) {
    const auto it = table().constFind(key);
    return it == table().constEnd() ? defaultValue : it.value();
}

void toCommonParams(QDomElement& element) {
    for (const Saved& p : savedParams) {
        const QString key = QLatin1String(p.key);
        element.setAttribute(key, getCommonParams(key, p.defaultValue).toInt());
    }
}

void fromCommonParams(QDomElement& element) {
    for (const Saved& p : savedParams) {
        const QString key = QLatin1String(p.key);
        table().insert(key, element.attribute(key).toInt(nullptr, 10));
    }
}
