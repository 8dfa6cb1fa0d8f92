#include "LineItem.h"

#include "AbstractScene.h"
#include "HoverEventItem.h"
#include "VariantText.h"
#include "XmlRead.h"

#include "CachedLineItem.h"
#include "XmlAttributes.h"
#include <QGraphicsSceneContextMenuEvent>
#include <QGraphicsSceneMouseEvent>
#include <QMenu>
#include <QPainter>

#include <cmath>

namespace {

const QString ArrowTailKey = QStringLiteral("line_arrowTail");
const QString ArrowHeadKey = QStringLiteral("line_arrowHead");
const QString ArrowFactorKey = QStringLiteral("line_arrowFactor");

constexpr double Pi = 3.14159265358979323846;
constexpr int MaxArrowFactor = 1000;

using MenuEntry = AbstractBaseItem::MenuEntry;

const QList<MenuEntry> lineMesures = {
    {QT_TRANSLATE_NOOP("LineItem", "Distance1"), AbstractBaseItem::Dist1},
    {QT_TRANSLATE_NOOP("LineItem", "Ang1"), AbstractBaseItem::Ang1},
    {QT_TRANSLATE_NOOP("LineItem", "Ang2"), AbstractBaseItem::Ang2},
    {QT_TRANSLATE_NOOP("LineItem", "None"), AbstractBaseItem::NoMesure},
};

const MenuEntry arrowEntries[] = {
    {QT_TRANSLATE_NOOP("LineItem", "noArrow"), LineItem::NoArrow},
    {QT_TRANSLATE_NOOP("LineItem", "ArrowHead"), LineItem::ArrowHeadOnly},
    {QT_TRANSLATE_NOOP("LineItem", "ArrowTail"), LineItem::ArrowTailOnly},
    {QT_TRANSLATE_NOOP("LineItem", "ArrowBoth"), LineItem::ArrowBoth},
};

const QList<MenuEntry> orthoEntries = {
    {QT_TRANSLATE_NOOP("LineItem", "Ortho on"), LineItem::OrthoOn},
    {QT_TRANSLATE_NOOP("LineItem", "Ortho off"), LineItem::OrthoOff},
};

// The arrow setting each arrow entry stands for: {head, tail}.
struct ArrowState {
    bool head;
    bool tail;
};

ArrowState arrowStateFor(int command) {
    switch (command) {
    case LineItem::ArrowHeadOnly:
        return {true, false};
    case LineItem::ArrowTailOnly:
        return {false, true};
    case LineItem::ArrowBoth:
        return {true, true};
    default:
        return {false, false};
    }
}

// Triangle of an arrow head at tip, its two wings at angles around the reversed line direction.
QPolygonF arrowTriangle(const QPointF& tip, double wing1, double wing2, double size) {
    return QPolygonF() << tip << QPointF(tip.x() + std::sin(wing1) * size, tip.y() + std::cos(wing1) * size)
                       << QPointF(tip.x() + std::sin(wing2) * size, tip.y() + std::cos(wing2) * size);
}

} // namespace

LineItem::LineItem(QGraphicsItem* parent, int id, void* context)
    : ShapeItem(parent, new CachedLineItem, 1, 2) {
    initIdentity(id, MesureKey, MesureDefault);
    m_arrowFactor = getCommonParams(ArrowFactorKey, 2).toInt();
    m_arrowHead = getCommonParams(ArrowHeadKey, 0).toInt() != 0;
    m_arrowTail = getCommonParams(ArrowTailKey, 0).toInt() != 0;
    const _AUTOPOINTPARAMS* params = startGenerated(context);
    if (!params)
        return;
    takeMesuresFrom(params->source);
    const QRectF& r = params->rect;
    m_mline = fromScene(params->points.size() >= 2 ? params->points.mid(0, 2)
                                                   : QList<QPointF>{r.topLeft(), r.bottomRight()});
    placeLine();
    computeMesures(nullptr);
}

QList<AbstractBaseItem::MenuEntry> LineItem::mesureMenu() const {
    return lineMesures;
}

QLineF LineItem::line() const {
    return child<QGraphicsLineItem>()->line();
}

void LineItem::placeLine() {
    const QLineF l(m_mline[0], m_mline[1]);
    if (l == child<QGraphicsLineItem>()->line())
        return;
    // The item's bounding rectangle is its child's.
    prepareGeometryChange();
    child<QGraphicsLineItem>()->setLine(l);
    refreshHandgrips();
    update();
}

QList<AbstractBaseItem::Handle> LineItem::handles() const {
    return {{0, HoverEventItem::Move, m_mline[0]}, {1, HoverEventItem::Move, m_mline[1]}};
}

bool LineItem::computeMesures(void*) {
    placeCentroidHandgrip();
    const QPointF d = m_mline[1] - m_mline[0];
    m_mesureP[Dist1] = std::sqrt(d.x() * d.x() + d.y() * d.y());
    const QLineF segment = child<QGraphicsLineItem>()->line();
    m_mesureP[Ang1] = segment.angle();
    m_mesureP[Ang2] = segment.angleTo(QLineF(0, 0, double(referenceLength()), 0));
    calibrateMesures({Dist1, Ang1, Ang2});
    commonUpdateText();
    return true;
}

void LineItem::mousePress(QGraphicsSceneMouseEvent* event) {
    if (m_creationStarted)
        return;
    m_creationStarted = true;
    m_mline[0] = m_mline[1] = mapFromScene(event->scenePos());
    showHandgrips();
}

void LineItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    m_showStartMark = true;
    const QPointF p = mapFromScene(event->scenePos());
    if (m_constrained) {
        m_mline[1] = m_mline[0];
        // Compared as truncated pixels: a tie gives a vertical line.
        const int dx = int(std::abs(p.x() - m_mline[0].x()));
        const int dy = int(std::abs(p.y() - m_mline[0].y()));
        if (dx > dy)
            m_mline[1].setX(p.x());
        else
            m_mline[1].setY(p.y());
    } else {
        m_mline[1] = p;
    }
    placeLine();
    computeMesures(nullptr);
}

AbstractBaseItem::typModeEdition LineItem::mouseRelease(QGraphicsSceneMouseEvent*) {
    // Orthogonal drawing has to be asked for again for the next line.
    m_showStartMark = false;
    m_constrained = false;
    update();
    return EditionComplete;
}

bool LineItem::endEdition() {
    if (m_handgripCentroid)
        connect(m_handgripCentroid, &HoverEventItem::initPos, this, &LineItem::selectfromPoint,
                Qt::UniqueConnection);
    const QPointF d = m_mline[1] - m_mline[0];
    return d.manhattanLength() >= 3.0 && m_mesureP[Dist1] >= 8.0;
}

void LineItem::selectfromPoint(const QPointF&) {
    forceSelection();
}

void LineItem::fixupForTransform(_AUTOPOINTPARAMS& params, int, void*) {
    params.texts.clear();
}

void LineItem::handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers) {
    if (id < 0 || id > 1)
        return;
    m_showStartMark = true;
    QList<QPointF> points = mline();
    points[id] = scenePos;
    setPos(0, 0);
    m_mline = points;
    placeLine();
    computeMesures(nullptr);
    if (HoverEventItem* grip = handgrip(id))
        grip->setTooltip(formatTextMesure(Ang1));
    emit mesureChanged(this);
    m_showStartMark = false;
}

void LineItem::fillContextMenu(QMenu* menu) {
    AbstractBaseItem::fillContextMenu(menu);
    menu->addSeparator();
    const bool checked[] = {!m_arrowHead && !m_arrowTail, m_arrowHead, m_arrowTail,
                            m_arrowHead && m_arrowTail};
    for (int i = 0; i < 4; ++i)
        createMenuAction(menu, QIcon(), tr(arrowEntries[i].text), checked[i], nullptr, arrowEntries[i].data);
    menu->addSeparator();
    addMenuEntries(menu, orthoEntries, 0);
}

void LineItem::applyContextMenu(int data) {
    if (data >= 0) {
        AbstractBaseItem::applyContextMenu(data);
        storeChoices();
        return;
    }
    switch (data) {
    case NoArrow:
    case ArrowHeadOnly:
    case ArrowTailOnly:
    case ArrowBoth: {
        const ArrowState state = arrowStateFor(data);
        m_arrowHead = state.head;
        m_arrowTail = state.tail;
        break;
    }
    case ToggleStartMark:
        m_showStartMark = !m_showStartMark;
        break;
    case OrthoOn:
    case OrthoOff:
        if (AbstractScene* host = hostScene())
            host->setOrthoReferenceAngle(data == OrthoOn ? m_mesureP[Ang1] : 0.0);
        break;
    default:
        break;
    }
    storeChoices();
    update();
}

// The next line starts as this one is now.
void LineItem::storeChoices() {
    QVariant tail = m_arrowTail ? 1 : 0;
    QVariant head = m_arrowHead ? 1 : 0;
    QVariant factor = m_arrowFactor;
    QVariant mesure = m_mesureIndex;
    setCommonParams(ArrowTailKey, tail);
    setCommonParams(ArrowHeadKey, head);
    setCommonParams(ArrowFactorKey, factor);
    setCommonParams(MesureKey, mesure);
}

QPoint LineItem::menuPosition(QGraphicsSceneContextMenuEvent* event) const {
    return event->screenPos();
}

void LineItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
    const QLineF l = child<QGraphicsLineItem>()->line();
    const double x1 = l.x1(), y1 = l.y1(), x2 = l.x2(), y2 = l.y2();
    const double length = l.length();
    if (m_showStartMark || isSelected()) {
        QLineF normal(l.p1(), QPointF(x1 + (y2 - y1), y1 - (x2 - x1)));
        QLineF opposite(l.p1(), QPointF(x1 - (y2 - y1), y1 + (x2 - x1)));
        const double markLength = length / 24 * 4 + 24;
        normal.setLength(markLength);
        opposite.setLength(markLength);
        QPen dashed = m_pen;
        dashed.setStyle(Qt::DashLine);
        painter->setPen(dashed);
        painter->drawLine(normal);
        painter->drawLine(opposite);
    }
    if (m_arrowHead || m_arrowTail) {
        double a = std::acos((x2 - x1) / length);
        if (y2 - y1 >= 0)
            a = 2 * Pi - a;
        // An integer product, widened so that no factor read from a file overflows it.
        const double size = double(qint64(m_arrowFactor) * 10);
        QPen solid = m_pen;
        solid.setStyle(Qt::SolidLine);
        painter->setPen(solid);
        if (m_arrowTail)
            painter->drawPolygon(arrowTriangle(l.p1(), a + Pi / 3, a + Pi - Pi / 3, size), Qt::OddEvenFill);
        if (m_arrowHead)
            painter->drawPolygon(arrowTriangle(l.p2(), a - Pi / 3, a - Pi + Pi / 3, size), Qt::OddEvenFill);
    }
    commonPaintCentroidText(painter);
}

void LineItem::writeGeometry(XmlAttributes& e) const {
    e.setAttribute(QStringLiteral("start"), variantToString(mapToScene(m_mline[0])));
    e.setAttribute(QStringLiteral("end"), variantToString(mapToScene(m_mline[1])));
    e.setAttribute(QStringLiteral("arrowTail"), m_arrowTail ? 1 : 0);
    e.setAttribute(QStringLiteral("arrowHead"), m_arrowHead ? 1 : 0);
    e.setAttribute(QStringLiteral("arrowFactor"), m_arrowFactor);
}

void LineItem::readGeometry(const XmlAttributes& e) {
    setPos(0, 0);
    m_mline[0] = readPoint(e, QStringLiteral("start"));
    m_mline[1] = readPoint(e, QStringLiteral("end"));
    m_arrowTail = e.attribute(QStringLiteral("arrowTail")).toInt(nullptr, 10) != 0;
    m_arrowHead = e.attribute(QStringLiteral("arrowHead")).toInt(nullptr, 10) != 0;
    // Heads larger than any scene are clamped.
    m_arrowFactor = qBound(0, e.attribute(QStringLiteral("arrowFactor")).toInt(nullptr, 10), MaxArrowFactor);
    placeLine();
}
