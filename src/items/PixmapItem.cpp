#include "PixmapItem.h"

#include "PictureReader.h"

#include "XmlAttributes.h"
#include <QBuffer>
#include <QMenu>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int opacities[] = {100, 75, 50, 25};

} // namespace

const int PixmapItem::MaxSide = PictureReader::MaxSide;
const qint64 PixmapItem::MaxPixels = PictureReader::MaxPixels;
const qint64 PixmapItem::MaxFileBytes = PictureReader::MaxFileBytes;

PixmapItem::PixmapItem(QGraphicsItem* parent, int id, void* context)
    : FrameItem(parent, 1) {
    const _AUTOPOINTPARAMS* params = initGenerated(id, context);
    if (!params)
        return;
    if (params->texts.contains(QStringLiteral("file")))
        setFileName(params->texts.value(QStringLiteral("file")));
    setFrameRect(params->rect.isValid() ? mapRectFromScene(params->rect)
                                        : QRectF(mapFromScene(params->center), laidSize()));
}

bool PixmapItem::setFileName(const QString& fileName) {
    m_fileName = resolvedPath(fileName);
    m_png.clear();
    QString error;
    m_image = fileName.isEmpty() ? QImage() : PictureReader::readFile(m_fileName, &error);
    if (fileName.isEmpty())
        m_warning = tr("no picture");
    else
        m_warning = m_image.isNull() ? QStringLiteral("\"%1\": %2").arg(fileName, error) : QString();
    update();
    return !m_image.isNull();
}

bool PixmapItem::setImage(const QImage& image) {
    if (!PictureReader::sizeAllowed(image.size()))
        return false;
    m_image = image;
    m_fileName.clear();
    m_png.clear();
    m_warning.clear();
    update();
    return true;
}

void PixmapItem::setEmbedded(bool embedded) {
    m_embedded = embedded;
}

void PixmapItem::setOpacityPercent(int percent) {
    m_opacity = std::clamp(percent, 0, 100);
    update();
}

void PixmapItem::transformStep(int grip, bool last) {
    m_transformIndex = grip == RotationGrip ? RotationStep : ScaleStep;
    emit transformIndex(this, m_transformIndex, last);
}

void PixmapItem::fillContextMenu(QMenu* menu) {
    for (const int percent : opacities)
        createMenuAction(menu, QIcon(), tr("%1 %").arg(percent), m_opacity == percent, nullptr, -percent);
    menu->addSeparator();
    createMenuAction(menu, QIcon(), tr("Embed picture"), isEmbedded(), nullptr, ToggleEmbedded)
        ->setEnabled(!m_fileName.isEmpty() && !m_image.isNull());
}

void PixmapItem::applyContextMenu(int data) {
    if (data == ToggleEmbedded)
        setEmbedded(!m_embedded);
    else if (std::find(std::begin(opacities), std::end(opacities), -data) != std::end(opacities))
        setOpacityPercent(-data);
}

void PixmapItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
    if (m_image.isNull()) {
        paintPlaceholder(painter, m_fileName.isEmpty() ? tr("no picture")
                                                       : m_fileName + QLatin1Char('\n') + m_warning);
        return;
    }
    painter->save();
    painter->setOpacity(painter->opacity() * m_opacity / 100.0);
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(frame(), m_image);
    painter->restore();
}

void PixmapItem::writeGeometry(XmlAttributes& e) const {
    FrameItem::writeGeometry(e);
    e.setAttribute(QStringLiteral("opacity"), m_opacity);
    if (!m_fileName.isEmpty())
        e.setAttribute(QStringLiteral("path"), savedPath(m_fileName));
    if (!isEmbedded())
        return;
    if (m_png.isEmpty() && !m_image.isNull()) {
        QBuffer buffer(&m_png);
        buffer.open(QIODevice::WriteOnly);
        m_image.save(&buffer, "PNG");
    }
    if (!m_png.isEmpty())
        e.setAttribute(QStringLiteral("data"), QString::fromLatin1(m_png.toBase64()));
}

// Embedded data wins over the path, which is then kept only to be written back.
void PixmapItem::readGeometry(const XmlAttributes& e) {
    FrameItem::readGeometry(e);
    m_opacity = e.hasAttribute(QStringLiteral("opacity"))
                    ? std::clamp(e.attribute(QStringLiteral("opacity")).toInt(), 0, 100)
                    : 100;
    const QString path = e.attribute(QStringLiteral("path"));
    const QByteArray png = QByteArray::fromBase64(e.attribute(QStringLiteral("data")).toLatin1());
    m_embedded = !png.isEmpty();
    if (!m_embedded) {
        setFileName(path);
        return;
    }
    m_fileName = resolvedPath(path);
    m_png = png;
    QString error;
    m_image = PictureReader::read(m_png, &error);
    m_warning = m_image.isNull() ? tr("embedded picture: %1").arg(error) : QString();
    update();
}
