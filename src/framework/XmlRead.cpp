#include "XmlRead.h"

#include "VariantText.h"

#include "XmlAttributes.h"
#include <QStringList>

#include <charconv>
#include <cmath>

double parseDouble(QStringView text, bool* ok) {
    // A plain decimal: an optional minus, then digits, point and exponent, in a short ASCII text.
    constexpr qsizetype MaxPlain = 40;
    const qsizetype n = text.size();
    bool plain = n > 0 && n <= MaxPlain && (text[0] == QLatin1Char('-') || text[0].isDigit());
    char bytes[MaxPlain];
    for (qsizetype i = 0; plain && i < n; ++i) {
        const char16_t c = text[i].unicode();
        plain = (c >= u'0' && c <= u'9') || c == u'.' || c == u'-' || c == u'e' || c == u'E';
        bytes[i] = char(c);
    }
    if (plain) {
        double value = 0;
        const std::from_chars_result r = std::from_chars(bytes, bytes + n, value);
        // Only a text read whole and in range; the rest keeps QString::toDouble's own answer.
        if (r.ec == std::errc() && r.ptr == bytes + n && std::isfinite(value)) {
            if (ok)
                *ok = true;
            return value;
        }
    }
    return text.toString().toDouble(ok);
}

bool isSceneNumber(double v) {
    return std::isfinite(v) && std::abs(v) <= 1e9;
}

double readNumber(const XmlAttributes& e, const QString& key, double fallback) {
    bool ok = false;
    const double v = parseDouble(e.attribute(key), &ok);
    return ok && isSceneNumber(v) ? v : fallback;
}

QPointF readPoint(const XmlAttributes& e, const QString& key) {
    const QPointF p = stringToVariant(e.attribute(key), QMetaType::QPointF).toPointF();
    return isSceneNumber(p.x()) && isSceneNumber(p.y()) ? p : QPointF();
}

QList<QPointF> readPointList(const QString& text) {
    QList<QPointF> points;
    for (const QString& part : text.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QStringList xy = part.split(QLatin1Char('x'));
        bool okX = false, okY = false;
        const QPointF p = xy.size() == 2 ? QPointF(xy[0].toDouble(&okX), xy[1].toDouble(&okY)) : QPointF();
        if (okX && okY && isSceneNumber(p.x()) && isSceneNumber(p.y()))
            points.append(p);
    }
    return points;
}

QRectF readRect(const XmlAttributes& e, const QString& key) {
    const QRectF r = stringToVariant(e.attribute(key), QMetaType::QRectF).toRectF();
    const bool sane =
        isSceneNumber(r.x()) && isSceneNumber(r.y()) && isSceneNumber(r.width()) && isSceneNumber(r.height());
    return sane ? r : QRectF();
}

QString readUid(const XmlAttributes& e, const QString& key) {
    const QString text = e.attribute(key);
    if (text.size() > 64)
        return QString();
    for (const QChar c : text) {
        const bool allowed = (c.isLetterOrNumber() && c.unicode() < 128) || c == QLatin1Char('-') ||
                             c == QLatin1Char('_') || c == QLatin1Char('.') || c == QLatin1Char('{') ||
                             c == QLatin1Char('}');
        if (!allowed)
            return QString();
    }
    return text;
}
