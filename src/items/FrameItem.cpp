#include "FrameItem.h"

#include "AbstractScene.h"
#include "HoverEventItem.h"
#include "RectHandgrips.h"
#include "VariantText.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QDir>
#include <QGraphicsRectItem>
#include <QGraphicsSceneMouseEvent>
#include <QPainter>

#include <cmath>

namespace {

// A press and release closer than this (scene units, both ways) is a click.
constexpr double ClickSlack = 4;
// The rotation grip stands this far above the frame.
constexpr double RotationGripOffset = 20;

double sign(double v) {
    return v < 0 ? -1 : 1;
}

} // namespace

FrameItem::FrameItem(QGraphicsItem* parent, QGraphicsItem* shape, unsigned long subType)
    : ShapeItem(parent, shape, subType, 2) {}

FrameItem::FrameItem(QGraphicsItem* parent, unsigned long subType)
    : FrameItem(parent, new QGraphicsRectItem, subType) {
    m_invisible = true;
    child<QGraphicsRectItem>()->setPen(Qt::NoPen);
}

void FrameItem::setPen(const QPen& pen) {
    if (!m_invisible) {
        ShapeItem::setPen(pen);
        return;
    }
    AbstractBaseItem::setPen(pen);
    update();
}

QPointF FrameItem::centroid() {
    return frame().center();
}

QRectF FrameItem::boundingRect() const {
    const double margin = m_pen.widthF() / 2 + 1;
    return frame().adjusted(-margin, -margin, margin, margin).united(ShapeItem::boundingRect());
}

void FrameItem::setFrameRect(const QRectF& frame) {
    if (!isSceneNumber(frame.x()) || !isSceneNumber(frame.y()) || !isSceneNumber(frame.width()) ||
        !isSceneNumber(frame.height()))
        return;
    const QRectF r = frame.normalized();
    prepareGeometryChange();
    m_mline = {r.topLeft(), r.bottomRight()};
    setTransformOriginPoint(r.center());
    if (auto* rect = qgraphicsitem_cast<QGraphicsRectItem*>(childShape()))
        rect->setRect(r);
    frameChanged();
    update();
    refreshHandgrips();
}

void FrameItem::setFrameRectKeeping(const QRectF& frame, const QPointF& kept) {
    const QPointF before = mapToScene(kept);
    setFrameRect(frame);
    setPos(pos() + before - mapToScene(kept));
}

void FrameItem::rotate(double angle) {
    if (!std::isfinite(angle))
        return;
    setTransformOriginPoint(frame().center());
    setRotation(angle);
    m_rotation = angle;
}

void FrameItem::mousePress(QGraphicsSceneMouseEvent* event) {
    if (m_creationStarted)
        return;
    m_creationStarted = true;
    m_press = mapFromScene(event->scenePos());
    setFrameRect(QRectF(m_press, laidSize()));
}

void FrameItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    const QPointF d = mapFromScene(event->scenePos()) - m_press;
    if (std::abs(d.x()) < ClickSlack && std::abs(d.y()) < ClickSlack) {
        setFrameRect(QRectF(m_press, laidSize()));
        return;
    }
    QPointF span = d;
    if (m_constrained || keepsAspect()) {
        const double aspect = laidSize().width() / laidSize().height();
        const double w = std::max(std::abs(d.x()), std::abs(d.y()) * aspect);
        span = QPointF(sign(d.x()) * w, sign(d.y()) * w / aspect);
    }
    setFrameRect(QRectF(m_press, m_press + span));
}

QList<AbstractBaseItem::Handle> FrameItem::handles() const {
    const QRectF r = frame();
    QList<Handle> result = RectHandgrips::cornerHandles(r, HoverEventItem::Move);
    if (turns())
        result.append(
            {RotationGrip, HoverEventItem::Rotation, QPointF(r.center().x(), r.top() - RotationGripOffset)});
    return result;
}

void FrameItem::handlePressed(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) {
    m_pressFrame = frame();
    m_pressShift = modifiers & Qt::ShiftModifier;
    m_pressRotation = QGraphicsItem::rotation();
    m_currentRotation = 0;
    ShapeItem::handlePressed(id, scenePos, modifiers);
}

void FrameItem::handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) {
    if (id == RotationGrip) {
        const QPointF centre = mapToScene(frame().center());
        const double delta =
            HoverEventItem::applyRotation(handgrip(id), scenePos, centre, m_refRotationPoint);
        if (!std::isfinite(delta))
            return;
        // Grip angles grow counter-clockwise on screen, item rotations clockwise.
        m_currentRotation = -delta;
        rotate(m_pressRotation + m_currentRotation);
    } else {
        scaleByCorner(id, scenePos, keepsAspect() || m_pressShift || (modifiers & Qt::ShiftModifier));
    }
    transformStep(id, false);
    emit mesureChanged(this);
}

void FrameItem::handleReleased(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) {
    transformStep(id, true);
    ShapeItem::handleReleased(id, scenePos, modifiers);
}

// The facing corner stays put; the dragged one follows the cursor but never crosses it.
void FrameItem::scaleByCorner(int id, const QPointF& scenePos, bool keepAspect) {
    const int anchor = HoverEventItem::BottomRight - id;
    const QPointF fixed = HoverEventItem::positionOnRect(frame(), anchor);
    const QPointF p = mapFromScene(scenePos);
    const double sx = id == HoverEventItem::TopRight || id == HoverEventItem::BottomRight ? 1 : -1;
    const double sy = id == HoverEventItem::BottomLeft || id == HoverEventItem::BottomRight ? 1 : -1;
    double w = std::max(MinSide, (p.x() - fixed.x()) * sx);
    double h = std::max(MinSide, (p.y() - fixed.y()) * sy);
    if (keepAspect && m_pressFrame.width() > 0 && m_pressFrame.height() > 0) {
        const double s = std::max(w / m_pressFrame.width(), h / m_pressFrame.height());
        w = s * m_pressFrame.width();
        h = s * m_pressFrame.height();
    }
    if (!std::isfinite(w) || !std::isfinite(h))
        return;
    setFrameRectKeeping(QRectF(fixed, fixed + QPointF(sx * w, sy * h)), fixed);
}

void FrameItem::writeGeometry(XmlAttributes& e) const {
    e.setAttribute(QStringLiteral("rect"), variantToString(frame()));
    e.setAttribute(QStringLiteral("rotation"), QString::number(QGraphicsItem::rotation(), 'f', 4));
    e.setAttribute(QStringLiteral("pos"), variantToString(pos()));
}

void FrameItem::readGeometry(const XmlAttributes& e) {
    setFrameRect(readRect(e, QStringLiteral("rect")));
    rotate(readNumber(e, QStringLiteral("rotation")));
    setPos(readPoint(e, QStringLiteral("pos")));
}

QString FrameItem::resolvedPath(const QString& path) const {
    const AbstractScene* host = hostScene();
    const QString folder = host ? host->documentFolder() : QString();
    if (folder.isEmpty() || path.isEmpty() || !QDir::isRelativePath(path))
        return path;
    return QDir::cleanPath(QDir(folder).absoluteFilePath(path));
}

QString FrameItem::savedPath(const QString& fileName) const {
    const AbstractScene* host = hostScene();
    const QString folder = host ? host->documentFolder() : QString();
    if (folder.isEmpty() || QDir::isRelativePath(fileName))
        return fileName;
    return QDir(folder).relativeFilePath(fileName);
}

void FrameItem::paintPlaceholder(QPainter* painter, const QString& text) const {
    const QRectF r = frame();
    painter->save();
    QPen pen(m_pen.color(), 0, Qt::DashLine);
    pen.setCosmetic(true);
    painter->setPen(pen);
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(r);
    painter->drawLine(r.topLeft(), r.bottomRight());
    painter->drawLine(r.topRight(), r.bottomLeft());
    painter->setFont(m_font);
    painter->drawText(r, Qt::AlignCenter | Qt::TextWrapAnywhere, text);
    painter->restore();
}
