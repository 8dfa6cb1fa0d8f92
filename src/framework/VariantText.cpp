#include "VariantText.h"

#include "XmlRead.h"

#include <QColor>
#include <QFont>
#include <QImage>
#include <QLineF>
#include <QLocale>
#include <QPointF>
#include <QRectF>
#include <QRegion>
#include <QSizeF>
#include <QStringList>
#include <QTransform>

#include <cmath>

namespace {

QString g6(double v) {
    return QString::number(v, 'g', 6);
}

QString pointText(double x, double y) {
    return QStringLiteral("%1x%2").arg(g6(x), g6(y));
}

QString rectText(const QRectF& r) {
    return QStringLiteral("%1x%2 %3x%4").arg(g6(r.x()), g6(r.y()), g6(r.width()), g6(r.height()));
}

bool isAsciiSpace(char16_t c) {
    return c == u' ' || (c >= u'\t' && c <= u'\r');
}

// Splits text at 'x', and with spaces also at each run of ASCII white space, empty parts kept;
// false unless there are exactly count parts.
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

// A coordinate that does not read as a finite number reads as 0: scenes cannot hold the others.
double coordinate(QStringView text) {
    bool ok = false;
    const double v = parseDouble(text, &ok);
    return ok && std::isfinite(v) ? v : 0.0;
}

} // namespace

QString variantToString(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return QStringLiteral("<empty>");
    case QMetaType::QPointF:
    case QMetaType::QPoint: {
        const QPointF p = value.toPointF();
        return pointText(p.x(), p.y());
    }
    case QMetaType::QRectF:
    case QMetaType::QRect:
        return rectText(value.toRectF());
    case QMetaType::QSizeF:
    case QMetaType::QSize: {
        const QSizeF s = value.toSizeF();
        return pointText(s.width(), s.height());
    }
    case QMetaType::QLineF:
    case QMetaType::QLine: {
        const QLineF l = value.toLineF();
        return QStringLiteral("%1 x %2 at %3 x %4").arg(g6(l.x1()), g6(l.y1()), g6(l.x2()), g6(l.y2()));
    }
    case QMetaType::Double:
        // What QVariant gives, without its conversion machinery: the shortest text that reads back.
        return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case QMetaType::QColor:
        return value.value<QColor>().name(QColor::HexRgb);
    case QMetaType::QFont:
        return value.value<QFont>().toString();
    case QMetaType::QStringList:
        return value.toStringList().join(QStringLiteral(", "));
    case QMetaType::QTransform: {
        const QTransform t = value.value<QTransform>();
        return QStringLiteral("[%1 %2 %3, %4 %5 %6, %7 %8 %9]")
            .arg(g6(t.m11()), g6(t.m12()), g6(t.m13()), g6(t.m21()), g6(t.m22()), g6(t.m23()), g6(t.m31()),
                 g6(t.m32()), g6(t.m33()));
    }
    case QMetaType::QImage: {
        const QImage image = value.value<QImage>();
        if (image.isNull())
            return QStringLiteral("<no image>");
        return QStringLiteral("<%1x%2 image>").arg(image.width()).arg(image.height());
    }
    case QMetaType::QRegion: {
        const QRegion region = value.value<QRegion>();
        if (region.isEmpty())
            return QStringLiteral("<empty>");
        if (region.rectCount() == 1)
            return rectText(QRectF(region.boundingRect()));
        return QStringLiteral("<%1 rects>").arg(region.rectCount());
    }
    default:
        return value.toString();
    }
}

bool pointFromText(QStringView text, QPointF& point) {
    QStringView parts[2];
    if (!splitParts(text, false, parts))
        return false;
    point = QPointF(coordinate(parts[0]), coordinate(parts[1]));
    return true;
}

bool rectFromText(QStringView text, QRectF& rect) {
    QStringView parts[4];
    if (!splitParts(text, true, parts))
        return false;
    rect = QRectF(coordinate(parts[0]), coordinate(parts[1]), coordinate(parts[2]), coordinate(parts[3]));
    return true;
}

QVariant stringToVariant(const QString& text, QMetaType::Type type, bool* ok) {
    if (ok)
        *ok = true;
    if (text.isEmpty())
        return QVariant();

    QPointF point;
    QRectF rect;
    if (type == QMetaType::QPointF && pointFromText(text, point))
        return point;
    if (type == QMetaType::QRectF && rectFromText(text, rect))
        return rect;
    if (type == QMetaType::QPointF || type == QMetaType::QRectF) {
        if (ok)
            *ok = false;
        return QVariant();
    }

    QVariant v(text);
    if (!v.convert(QMetaType(type))) {
        if (ok)
            *ok = false;
        return QVariant();
    }
    return v;
}
