#include "XmlRead.h"

#include "VariantText.h"
#include "XmlAttributes.h"

#include <charconv>
#include <cmath>

double parseDouble(QStringView text, bool* ok) {
    // A plain decimal: an optional minus, then digits, point and exponent, in a short ASCII text.
    constexpr qsizetype MaxPlain = 40;
    const qsizetype n = text.size();
    // A single digit, as most measures a kind lacks are written.
    if (n == 1 && text[0] >= u'0' && text[0] <= u'9') {
        if (ok)
            *ok = true;
        return text[0].unicode() - u'0';
    }
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
    const double v = parseDouble(e.view(key), &ok);
    return ok && isSceneNumber(v) ? v : fallback;
}

QPointF readPoint(const XmlAttributes& e, const QString& key) {
    QPointF p;
    if (!pointFromText(e.view(key), p))
        return QPointF();
    return isSceneNumber(p.x()) && isSceneNumber(p.y()) ? p : QPointF();
}

QList<QPointF> readPointList(QStringView text) {
    QList<QPointF> points;
    qsizetype begin = 0;
    for (qsizetype end = 0; end <= text.size(); ++end) {
        if (end < text.size() && text[end] != u';')
            continue;
        const QStringView part = text.sliced(begin, end - begin);
        begin = end + 1;
        const qsizetype x = part.indexOf(u'x');
        if (x < 0 || part.indexOf(u'x', x + 1) >= 0)
            continue;
        bool okX = false, okY = false;
        const QPointF p(parseDouble(part.first(x), &okX), parseDouble(part.sliced(x + 1), &okY));
        if (okX && okY && isSceneNumber(p.x()) && isSceneNumber(p.y()))
            points.append(p);
    }
    return points;
}

QRectF readRect(const XmlAttributes& e, const QString& key) {
    QRectF r;
    if (!rectFromText(e.view(key), r))
        return QRectF();
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
