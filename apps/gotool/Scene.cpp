#include "Scene.h"

#include "Console.h"

#include <QPainter>

#include <cmath>

bool openDocument(const QString& fileName, AbstractScene& scene, SceneDocument& document, bool needImage) {
    // gotool draws whole scenes and never looks items up by place: without an index, adding and
    // removing thousands of items stays linear.
    scene.setItemIndexMethod(QGraphicsScene::NoIndex);
    if (!document.open(fileName, &scene)) {
        fail(document.errorString());
        return false;
    }
    if (needImage && !document.imageError().isEmpty()) {
        fail(fileName + QStringLiteral(": ") + document.imageError());
        return false;
    }
    for (const QString& message : document.messages())
        err() << "gotool: " << fileName << ": " << message << '\n';
    err().flush();
    return true;
}

QStringList documentInputs(const QString& fileName, const SceneDocument& document) {
    return {fileName, document.imageFilePath()};
}

QImage renderScene(AbstractScene& scene, double scale) {
    const QRectF area = scene.sceneRect();
    const double width = std::ceil(area.width() * scale);
    const double height = std::ceil(area.height() * scale);
    // Checked in doubles: the scene rectangle of a document without a size follows its items.
    if (!(width >= 1 && height >= 1 && width <= SceneDocument::MaxSide && height <= SceneDocument::MaxSide) ||
        !SceneDocument::sizeAllowed(QSize(int(width), int(height)))) {
        fail(QStringLiteral("a picture of %1 x %2 pixels is beyond the limit of %3 x %3 and %4 pixels in all")
                 .arg(width)
                 .arg(height)
                 .arg(SceneDocument::MaxSide)
                 .arg(SceneDocument::MaxPixels));
        return QImage();
    }
    QImage picture(int(width), int(height), QImage::Format_ARGB32_Premultiplied);
    if (picture.isNull()) {
        fail(QStringLiteral("not enough memory for a picture of %1 x %2 pixels").arg(width).arg(height));
        return QImage();
    }
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    scene.clearSelection();
    scene.render(&painter, QRectF(picture.rect()), area);
    painter.end();
    return picture;
}
