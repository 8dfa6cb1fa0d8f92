#include "ItemSnapshots.h"

#include "AbstractScene.h"

#include <QPainter>

namespace {

QRect pixelsUnder(const QImage& image, const QRectF& area) {
    return area.normalized().toAlignedRect().intersected(image.rect());
}

} // namespace

QImage sceneImageArea(const AbstractScene* scene, const QRectF& area) {
    if (!scene || scene->image().isNull())
        return QImage();
    const QImage image = scene->image();
    const QRect pixels = pixelsUnder(image, area);
    return pixels.isEmpty() ? QImage() : image.copy(pixels);
}

QImage renderedSceneArea(AbstractScene* scene, const QRectF& area) {
    const QRect pixels = area.normalized().toAlignedRect();
    if (!scene || pixels.isEmpty())
        return QImage();
    QImage result(pixels.size(), QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    scene->render(&painter, QRectF(QPointF(0, 0), pixels.size()), pixels, Qt::IgnoreAspectRatio);
    return result;
}

QImage sceneImageEllipse(const AbstractScene* scene, const QRectF& ellipse) {
    if (!scene || scene->image().isNull())
        return QImage();
    const QImage image = scene->image();
    const QRectF e = ellipse.normalized();
    const QRect pixels = pixelsUnder(image, e);
    if (pixels.isEmpty() || e.width() <= 0 || e.height() <= 0)
        return QImage();
    QImage result = image.copy(pixels).convertToFormat(QImage::Format_ARGB32);
    const QPointF c = e.center();
    const double rx = e.width() * 0.5;
    const double ry = e.height() * 0.5;
    for (int y = 0; y < result.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(result.scanLine(y));
        const double dy = (pixels.top() + y + 0.5 - c.y()) / ry;
        for (int x = 0; x < result.width(); ++x) {
            const double dx = (pixels.left() + x + 0.5 - c.x()) / rx;
            if (dx * dx + dy * dy > 1.0)
                line[x] = qRgba(0, 0, 0, 0);
        }
    }
    return result;
}
