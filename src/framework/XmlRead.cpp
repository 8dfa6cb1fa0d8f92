#include "XmlRead.h"

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

namespace {

bool isAsciiSpace(char16_t c) {
    return c == u' ' || (c >= u'\t' && c <= u'\r');
}

// Splits text as the variant texts are split (at 'x', and with spaces also at each run of ASCII
// white space), empty parts kept; false unless there are exactly count parts.
template <qsizetype count> bool splitParts(QStringView text, bool spaces, QStringView (&parts)[count]) {
    qsizetype n = 0;
    qsizetype begin = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        const bool atEnd = i == text.size();
        const bool cut = atEnd || text[i] == u'x' || (spaces && isAsciiSpace(text[i].unicode()));
        if (!cut)
            continue;
        if (n == count)
            return false;
        parts[n++] = text.sliced(begin, i - begin);
        if (!atEnd && text[i] != u'x')
            while (i + 1 < text.size() && isAsciiSpace(text[i + 1].unicode()))
                ++i;
        begin = i + 1;
    }
    return n == count;
}

// A part that is no finite number reads as 0, as in the variant texts.
double coordinate(QStringView text) {
    bool ok = false;
    const double v = parseDouble(text, &ok);
    return ok && std::isfinite(v) ? v : 0.0;
}

} // namespace

QPointF readPoint(const XmlAttributes& e, const QString& key) {
    QStringView parts[2];
    if (!splitParts(e.view(key), false, parts))
        return QPointF();
    const QPointF p(coordinate(parts[0]), coordinate(parts[1]));
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
        QStringView xy[2];
        if (part.isEmpty() || !splitParts(part, false, xy))
            continue;
        bool okX = false, okY = false;
        const QPointF p(parseDouble(xy[0], &okX), parseDouble(xy[1], &okY));
        if (okX && okY && isSceneNumber(p.x()) && isSceneNumber(p.y()))
            points.append(p);
    }
    return points;
}

QRectF readRect(const XmlAttributes& e, const QString& key) {
    QStringView parts[4];
    if (!splitParts(e.view(key), true, parts))
        return QRectF();
    const QRectF r(coordinate(parts[0]), coordinate(parts[1]), coordinate(parts[2]), coordinate(parts[3]));
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
