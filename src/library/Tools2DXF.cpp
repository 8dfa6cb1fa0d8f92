#include "Tools2DXF.h"

#include "AbstractBaseItem.h"
#include "AbstractScene.h"
#include "VDxfPaintDevice.h"

#include <QGraphicsItem>
#include <QPainter>
#include <QStyleOptionGraphicsItem>

#include <cmath>
#include <memory>
#include <typeinfo>
#if __has_include(<cxxabi.h>)
#include <cxxabi.h>
#endif

namespace {

// The largest scene side that still converts to a device size.
constexpr double kLargestSide = 1e9;

QString className(const QGraphicsItem* item) {
    if (const QGraphicsObject* object = const_cast<QGraphicsItem*>(item)->toGraphicsObject())
        return QString::fromLatin1(object->metaObject()->className());
    const char* name = typeid(*item).name();
#if __has_include(<cxxabi.h>)
    int status = 0;
    std::unique_ptr<char, void (*)(void*)> demangled(abi::__cxa_demangle(name, nullptr, nullptr, &status),
                                                     std::free);
    if (status == 0 && demangled)
        return QString::fromLatin1(demangled.get());
#endif
    return QString::fromLatin1(name);
}

// The item the user knows: the measuring item a label or handgrip belongs to, else the item itself.
QString itemName(QGraphicsItem* item) {
    for (QGraphicsItem* i = item; i; i = i->parentItem())
        if (auto* base = qobject_cast<AbstractBaseItem*>(i->toGraphicsObject()))
            return base->getGUIDname().isEmpty() ? base->getType() : base->getGUIDname();
    return className(item);
}

// QGraphicsScene::render's mapping of the scene rectangle onto the device.
QTransform renderTransform(const QRectF& source, const QSize& device) {
    const double ratio = std::min(device.width() / source.width(), device.height() / source.height());
    return QTransform::fromTranslate(-source.left(), -source.top()) * QTransform::fromScale(ratio, ratio);
}

// Paints each item the scene renders on its own, as the scene paints it, until one of them yields a
// number no drawing may hold. Only run once an export has failed so.
QGraphicsItem* unwritableItem(AbstractScene* scene, const QSize& device) {
    const QRectF source = scene->sceneRect();
    const QTransform view = renderTransform(source, device);
    for (QGraphicsItem* item : scene->items(source, Qt::IntersectsItemBoundingRect, Qt::AscendingOrder)) {
        if (!item->isVisible() || (item->flags() & QGraphicsItem::ItemHasNoContents))
            continue;
        VDxfPaintDevice probe;
        probe.setSize(device);
        {
            QPainter painter(&probe);
            painter.setTransform(item->sceneTransform() * view);
            QStyleOptionGraphicsItem option;
            option.exposedRect = item->boundingRect();
            item->paint(&painter, &option, nullptr);
        }
        if (!probe.finish() && probe.error() == VDxfPaintDevice::NumberError)
            return item;
    }
    return nullptr;
}

bool finiteSize(const QRectF& rect) {
    return std::isfinite(rect.left()) && std::isfinite(rect.top()) && rect.width() >= 0 &&
           rect.height() >= 0 && rect.width() <= kLargestSide && rect.height() <= kLargestSide;
}

} // namespace

bool exportSceneToDxf(const QString& fileName, AbstractScene* scene, QString* error) {
    auto fail = [&](const QString& reason) {
        if (error)
            *error = reason;
        return false;
    };
    if (!scene)
        return fail(QStringLiteral("cannot export \"%1\": there is no scene").arg(fileName));
    const QRectF sceneRect = scene->sceneRect();
    if (!finiteSize(sceneRect))
        return fail(QStringLiteral("cannot export \"%1\": the scene rectangle is not finite or too large")
                        .arg(fileName));
    VDxfPaintDevice device;
    device.setFileName(fileName);
    device.setSize(sceneRect.size().toSize());
    device.setResolution(72.0);
    device.setInsunits(VDxfPaintDevice::VarInsunits(0));
    {
        QPainter painter(&device);
        // A rectangle without area shows nothing; rendering it would scale by 0 / 0.
        if (!sceneRect.isEmpty())
            scene->render(&painter, QRectF(), QRectF(), Qt::KeepAspectRatio);
    }
    if (device.finish())
        return true;
    if (device.error() == VDxfPaintDevice::NumberError)
        if (QGraphicsItem* item = unwritableItem(scene, device.size()))
            return fail(QStringLiteral("cannot export \"%1\": %2 is drawn at a position that is not finite "
                                       "or too large")
                            .arg(fileName, itemName(item)));
    return fail(device.errorString());
}

int tools2DXF(QString fileName, AbstractScene* scene) {
    QString error;
    if (!exportSceneToDxf(fileName, scene, &error))
        qWarning("tools2DXF: %s", qPrintable(error));
    return 0;
}
