// Builds a scene from arbitrary bytes (standard and library items, pens, brushes, texts, pictures,
// transforms, and numbers up to NaN and infinity) and exports it to DXF. The export must not crash;
// when it succeeds, every real number in the file is finite, and when it fails it says why and
// leaves no file.
//
// Input: a stream of operations, each a byte choosing what to add followed by the bytes it reads, in
// order (braced initialisers and named locals keep the reads in sequence); a short input reads as zeros.
#include "FuzzApplication.h"
#include <GraphicsObjects/GraphicsObjects.h>

#include <QApplication>
#include <QFile>
#include <QGraphicsEllipseItem>
#include <QGraphicsLineItem>
#include <QGraphicsPathItem>
#include <QGraphicsPixmapItem>
#include <QGraphicsPolygonItem>
#include <QGraphicsRectItem>
#include <QGraphicsSimpleTextItem>
#include <QPainter>
#include <QTemporaryDir>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>

namespace {

class Input {
public:
    Input(const uint8_t* data, size_t size)
        : m_data(data)
        , m_size(size) {}

    bool atEnd() const { return m_at >= m_size; }
    uint8_t byte() { return m_at < m_size ? m_data[m_at++] : 0; }
    template <typename T> T raw() {
        T value{};
        uint8_t bytes[sizeof(T)];
        for (uint8_t& b : bytes)
            b = byte();
        std::memcpy(&value, bytes, sizeof(T));
        return value;
    }
    // Mostly ordinary coordinates, sometimes any double or one of the awkward ones.
    double number() {
        static const double awkward[] = {std::numeric_limits<double>::quiet_NaN(),
                                         std::numeric_limits<double>::infinity(),
                                         -std::numeric_limits<double>::infinity(),
                                         1e300,
                                         -1e300,
                                         1e15 + 1,
                                         0.0,
                                         1e-300};
        const uint8_t kind = byte() % 8;
        if (kind < 5)
            return raw<int16_t>() / 8.0;
        if (kind == 5)
            return raw<double>();
        if (kind == 6)
            return awkward[byte() % 8];
        return raw<float>();
    }
    QPointF point() { return QPointF{number(), number()}; }
    QRectF rect() { return QRectF{point(), point()}; }
    QColor color() { return QColor{byte(), byte(), byte(), byte()}; }
    QString text() {
        QByteArray bytes;
        for (int n = byte() % 24; n > 0; --n)
            bytes.append(char(byte()));
        return QString::fromUtf8(bytes);
    }
    QImage image() {
        QImage picture{1 + byte() % 12, 1 + byte() % 12,
                       byte() % 2 ? QImage::Format_ARGB32 : QImage::Format_RGB32};
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                picture.setPixel(x, y, raw<uint32_t>());
        return picture;
    }
    QBrush brush() {
        switch (byte() % 7) {
        case 0:
            return QBrush();
        case 1: {
            QLinearGradient gradient{point(), point()};
            stops(gradient);
            return gradient;
        }
        case 2: {
            // QPainter draws a radial gradient with a focal radius or an outer focal point through
            // Qt's raster engine on every device but a raster one; that allocates the shape's whole
            // bounding box and crashes on absurd gradients (Qt 6.4). Only centred ones are made.
            QRadialGradient gradient{point(), number()};
            stops(gradient);
            return gradient;
        }
        case 3: {
            QConicalGradient gradient{point(), number()};
            stops(gradient);
            return gradient;
        }
        case 4:
            return QBrush{color(), Qt::BrushStyle(1 + byte() % 14)};
        case 5:
            return QBrush(image());
        default:
            return QBrush(color());
        }
    }
    QPen pen() {
        QPen pen{brush(), number(), Qt::PenStyle(byte() % 6), Qt::PenCapStyle((byte() % 3) * 0x10),
                 Qt::PenJoinStyle((byte() % 3) * 0x40)};
        pen.setCosmetic(byte() % 2);
        return pen;
    }
    QPainterPath path() {
        QPainterPath path(point());
        for (int n = byte() % 8; n > 0; --n) {
            switch (byte() % 4) {
            case 0:
                path.lineTo(point());
                break;
            case 1: {
                const QPointF c1 = point(), c2 = point();
                path.cubicTo(c1, c2, point());
                break;
            }
            case 2: {
                const QRectF box = rect();
                const double start = number();
                path.arcTo(box, start, number());
                break;
            }
            default:
                path.closeSubpath();
            }
        }
        return path;
    }

private:
    void stops(QGradient& gradient) {
        for (int n = byte() % 4; n > 0; --n) {
            const double at = byte() / 255.0;
            gradient.setColorAt(at, color());
        }
        if (byte() % 2)
            gradient.setCoordinateMode(QGradient::ObjectBoundingMode);
    }

    const uint8_t* m_data;
    size_t m_size;
    size_t m_at = 0;
};

// Paints straight onto the painter what a QGraphicsItem never would: any transform, any text.
class PainterItem : public QGraphicsItem {
public:
    explicit PainterItem(Input& in)
        : m_pen(in.pen())
        , m_brush(in.brush())
        , m_angle(in.number())
        , m_scale(in.point())
        , m_rect(in.rect())
        , m_text(in.text())
        , m_image(in.image()) {}
    QRectF boundingRect() const override { return QRectF(-100, -100, 200, 200); }
    void paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) override {
        painter->setPen(m_pen);
        painter->setBrush(m_brush);
        painter->rotate(m_angle);
        painter->scale(m_scale.x(), m_scale.y());
        painter->drawRect(m_rect);
        painter->drawEllipse(m_rect);
        painter->drawLine(m_rect.topLeft(), m_rect.bottomRight());
        painter->drawText(m_rect.topLeft(), m_text);
        painter->drawImage(m_rect, m_image);
    }

private:
    QPen m_pen;
    QBrush m_brush;
    double m_angle;
    QPointF m_scale;
    QRectF m_rect;
    QString m_text;
    QImage m_image;
};

void build(AbstractScene& scene, Input& in) {
    static const QStringList classNames = toolFactoryClassNames() + mesureFactoryClassNames();
    QGraphicsItem* last = nullptr;
    for (int operations = 0; operations < 48 && !in.atEnd(); ++operations) {
        switch (in.byte() % 12) {
        case 0: {
            const QLineF line{in.point(), in.point()};
            last = scene.addLine(line, in.pen());
            break;
        }
        case 1: {
            const QRectF rect = in.rect();
            const QPen pen = in.pen();
            last = scene.addRect(rect, pen, in.brush());
            break;
        }
        case 2: {
            const QRectF rect = in.rect();
            const QPen pen = in.pen();
            last = scene.addEllipse(rect, pen, in.brush());
            break;
        }
        case 3: {
            QPolygonF polygon;
            for (int n = in.byte() % 8; n > 0; --n)
                polygon.append(in.point());
            const QPen pen = in.pen();
            last = scene.addPolygon(polygon, pen, in.brush());
            break;
        }
        case 4: {
            const QPainterPath path = in.path();
            const QPen pen = in.pen();
            last = scene.addPath(path, pen, in.brush());
            break;
        }
        case 5: {
            QFont font(QStringLiteral("DejaVu Sans"));
            font.setPixelSize(1 + in.byte());
            auto* text = scene.addSimpleText(in.text(), font);
            text->setPen(in.pen());
            text->setBrush(in.brush());
            last = text;
            break;
        }
        case 6:
            last = scene.addPixmap(QPixmap::fromImage(in.image()));
            break;
        case 7:
            scene.setImage(in.image());
            break;
        case 8:
            last = new PainterItem(in);
            scene.addItem(last);
            break;
        case 9: {
            QString className = classNames.value(in.byte() % classNames.size());
            const int id = in.byte();
            if (AbstractBaseItem* item = XBaseItemToolCreate(className, nullptr, id, nullptr)) {
                scene.addItem(item);
                last = item;
            }
            break;
        }
        case 10:
            if (last) {
                last->setPos(in.point());
                last->setRotation(in.number());
                last->setScale(in.number());
                last->setOpacity(in.number());
            }
            break;
        default:
            scene.setSceneRect(in.rect());
        }
    }
}

bool isRealCode(int code) {
    return (code >= 10 && code <= 59) || (code >= 110 && code <= 149) || (code >= 210 && code <= 239) ||
           (code >= 1010 && code <= 1059);
}

// Every real group value parses as a finite number.
void checkNumbers(const QString& fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        std::abort();
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (qsizetype i = 0; i + 1 < lines.size(); i += 2) {
        bool isCode = false;
        const int code = lines[i].trimmed().toInt(&isCode);
        if (!isCode)
            std::abort();
        if (!isRealCode(code))
            continue;
        bool isNumber = false;
        const double value = lines[i + 1].toDouble(&isNumber);
        if (!isNumber || !std::isfinite(value))
            std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ensureFuzzApplication();
    static QTemporaryDir dir;
    const QString fileName = dir.filePath(QStringLiteral("fuzz.dxf"));
    QFile::remove(fileName);
    Input in(data, size);
    AbstractScene scene(QRectF(0, 0, 400, 300));
    build(scene, in);
    QString error;
    if (exportSceneToDxf(fileName, &scene, &error))
        checkNumbers(fileName);
    else if (error.isEmpty() || QFile::exists(fileName))
        std::abort();
    return 0;
}
