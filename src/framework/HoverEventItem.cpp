#include "HoverEventItem.h"

#include "AbstractBaseItem.h"

#include <QBrush>
#include <QCursor>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsSimpleTextItem>
#include <QHash>
#include <QPainter>
#include <QPixmap>
#include <QRadialGradient>

#include <cmath>

namespace {

struct GripSettings {
    int size = 10;
    QColor outline = QColor(0, 90, 110);
    QColor text = QColor(20, 20, 20);
    QColor frame = QColor(31, 197, 193);
};

GripSettings& settings() {
    static GripSettings s;
    return s;
}

constexpr double TwoPi = 6.283185307179586;

QGradient gripGradient(int type, double size) {
    QRadialGradient g(QPointF(0, 0), size);
    switch (type) {
    case HoverEventItem::Rotation:
        g.setColorAt(0, QColor(200, 255, 255));
        g.setColorAt(0, QColor(255, 50, 0));
        g.setColorAt(1, QColor(255, 190, 0));
        break;
    case HoverEventItem::CentroidGrip:
        g.setColorAt(0, QColor(200, 255, 255));
        g.setColorAt(0, QColor(200, 255, 255));
        g.setColorAt(1, QColor(255, 190, 0));
        break;
    default:
        g.setColorAt(0, QColor(200, 255, 255, 0));
        g.setColorAt(0, QColor(200, 255, 255, 0));
        g.setColorAt(1, QColor(31, 197, 193, 0));
        break;
    }
    return g;
}

QCursor gripCursor(int type) {
    switch (type) {
    case HoverEventItem::Move:
        return QCursor(Qt::CrossCursor);
    case HoverEventItem::ResizeHorizontal:
        return QCursor(Qt::SizeHorCursor);
    case HoverEventItem::ResizeVertical:
        return QCursor(Qt::SizeVerCursor);
    default: {
        const QPixmap pixmap(QStringLiteral(":/cursor_rotate.png"));
        return pixmap.isNull() ? QCursor(Qt::CrossCursor) : QCursor(pixmap);
    }
    }
}

// The cosmetic outline of a colour, shared by the grips that use it.
QPen outlinePen(const QColor& colour) {
    static QHash<QRgb, QPen> pens;
    auto it = pens.find(colour.rgba());
    if (it == pens.end()) {
        QPen pen(colour, 1);
        pen.setCosmetic(true);
        it = pens.insert(colour.rgba(), pen);
    }
    return *it;
}

// Copies share one font: a grip carries no font of its own until it is given one.
const QFont& defaultGripFont() {
    static const QFont font(QStringLiteral("Courier"), 12, QFont::Normal, false);
    return font;
}

// The look every grip of a kind and size shares: built once, shared by all grips.
struct GripLook {
    QBrush brush;
    QPainterPath path;
};

const GripLook& gripLook(int type, int size) {
    static QHash<quint64, GripLook> looks;
    const quint64 key = (quint64(quint32(type)) << 32) | quint32(size);
    auto it = looks.find(key);
    if (it == looks.end()) {
        QPainterPath path;
        path.addRoundedRect(QRectF(-size / 2.0, -size / 2.0, size, size), 2, 2);
        it = looks.insert(key, {QBrush(gripGradient(type, size)), path});
    }
    return *it;
}

const QCursor& cachedCursor(int type) {
    static QHash<int, QCursor> cursors;
    auto it = cursors.find(type);
    if (it == cursors.end())
        it = cursors.insert(type, gripCursor(type));
    return *it;
}

} // namespace

void HoverEventItemSetup(QList<double> sizes, QList<QColor> colours) {
    // Truncated to whole pixels; sizes no grip can have are refused.
    if (!sizes.isEmpty() && std::isfinite(sizes.first()) && sizes.first() >= 1 && sizes.first() <= 1e6)
        settings().size = int(sizes.first());
    if (colours.size() > 0)
        settings().outline = colours[0];
    if (colours.size() > 1)
        settings().text = colours[1];
    if (colours.size() > 2)
        settings().frame = colours[2];
}

int HoverEventItemSize() {
    return settings().size;
}

HoverEventItem::HoverEventItem(QObject* owner, QGraphicsItem* parent, int id, int type)
    : QObject(owner)
    , QGraphicsPathItem(parent)
    , m_font(defaultGripFont())
    , m_textColor(settings().text)
    , m_id(id)
    , m_type(type) {
    setAcceptHoverEvents(true);
    // Grips keep their pixel size at every zoom. The centroid grip, which every item has, is scaled
    // by its item instead (AbstractBaseItem::fitCentroidGripToZoom): Qt keeps items that ignore
    // transformations out of its spatial index and walks them all on every lookup.
    setFlag(ItemIgnoresTransformations, type != CentroidGrip);
    const GripLook& look = gripLook(type, settings().size);
    setBrush(look.brush);
    setPath(look.path);
    applyLook();
    // The centroid grip keeps whatever cursor is under it.
    if (type >= Move && type <= Rotation)
        setCursor(cachedCursor(type));
}

// The highlight frame and the tooltip text exist from the first hover on: most grips are never
// hovered.
void HoverEventItem::ensureFrame() {
    if (m_frame)
        return;
    const double size = settings().size;
    m_frame = new QGraphicsPathItem(this);
    m_text = new QGraphicsSimpleTextItem(m_frame);
    QPainterPath framePath;
    framePath.addRoundedRect(path().boundingRect().adjusted(-size / 2, -size / 2, size / 2, size / 2), 3, 3);
    m_frame->setPath(framePath);
    m_frame->setVisible(false);
    m_frame->setAcceptedMouseButtons(Qt::NoButton);
    m_text->setFont(m_font);
    m_text->setBrush(m_textColor);
    m_text->setText(m_tooltip);
    m_text->setPos(framePath.boundingRect().topRight());
    applyLook();
}

void HoverEventItem::applyLook() {
    const GripSettings& s = settings();
    setPen(outlinePen(m_lockstate ? QColor(150, 150, 150) : s.outline));
    if (!m_frame)
        return;
    QPen framePen(m_lockstate ? QColor(150, 150, 150) : s.frame);
    framePen.setCosmetic(true);
    m_frame->setPen(framePen);
    QColor fill = s.frame;
    fill.setAlpha(60);
    m_frame->setBrush(m_lockstate ? QBrush(Qt::NoBrush) : QBrush(fill));
}

void HoverEventItem::setLockstate(const bool& state) {
    m_lockstate = state;
    applyLook();
}

void HoverEventItem::setFont(const QFont& font, const QColor& color) {
    m_font = font;
    m_textColor = color;
    if (m_text) {
        m_text->setFont(font);
        m_text->setBrush(color);
    }
}

void HoverEventItem::setFontColor(const QColor& color) {
    m_textColor = color;
    if (m_text)
        m_text->setBrush(color);
}

void HoverEventItem::setTooltip(QString text, QPointF*) {
    m_tooltip = QLatin1Char(' ') + text;
    if (m_text)
        m_text->setText(m_tooltip);
}

QString HoverEventItem::tooltip() const {
    return m_tooltip;
}

bool HoverEventItem::isHighlighted() const {
    return m_frame && m_frame->isVisible();
}

double HoverEventItem::angleForPos(const QPointF& p, const QPointF& c) {
    const QPointF v = p - c;
    const double a = std::acos(v.x() / distanceToPoint(v));
    return v.y() > 0 ? TwoPi - a : a;
}

double HoverEventItem::distanceToPoint(const QPointF& v) {
    return std::sqrt(v.x() * v.x() + v.y() * v.y());
}

double HoverEventItem::applyRotation(const HoverEventItem* h, const QPointF& p, const QPointF& c,
                                     const QPointF& p0) {
    if (!h || h->getType() != Rotation)
        return 0;
    return (angleForPos(p, c) - angleForPos(p0, c)) * 180 / M_PI;
}

QPointF HoverEventItem::turnedAbout(const QPointF& p, const QPointF& c, double degrees) {
    const double a = degrees * M_PI / 180;
    const QPointF v = p - c;
    return c + QPointF(v.x() * std::cos(a) + v.y() * std::sin(a), -v.x() * std::sin(a) + v.y() * std::cos(a));
}

QRectF HoverEventItem::applyTranslation(const HoverEventItem* h, const QRectF& r, const QPointF& scenePos,
                                        const QGraphicsItem* item) {
    if (!h || h->getType() == Rotation)
        return r;
    const QPointF p = item ? item->mapFromScene(scenePos) : scenePos;
    QRectF out = r;
    switch (h->getId()) {
    case TopLeft:
        out.setTopLeft(p);
        break;
    case TopMiddle:
        out.setTop(p.y());
        break;
    case TopRight:
        out.setTopRight(p);
        break;
    case MiddleLeft:
        out.setLeft(p.x());
        break;
    case MiddleRight:
        out.setWidth(p.x() - out.left());
        break;
    case BottomLeft:
        out.setLeft(p.x());
        out.setHeight(p.y() - out.top());
        break;
    case BottomMiddle:
        out.setHeight(p.y() - out.top());
        break;
    case BottomRight:
        out.setWidth(p.x() - out.left());
        out.setHeight(p.y() - out.top());
        break;
    default:
        break;
    }
    return out;
}

QPointF HoverEventItem::positionOnRect(const QRectF& r, int position) {
    const double x[3] = {r.x(), r.x() + r.width() * 0.5, r.x() + r.width()};
    const double y[3] = {r.y(), r.y() + r.height() * 0.5, r.y() + r.height()};
    static const int column[9] = {0, 1, 2, 0, 2, 0, 1, 2, 1};
    static const int row[9] = {0, 0, 0, 1, 1, 2, 2, 2, 1};
    if (position < 0 || position > Center)
        return r.topLeft();
    return QPointF(x[column[position]], y[row[position]]);
}

void HoverEventItem::syncHandgrips(const QRectF& r, const QList<HoverEventItem*>& grips) {
    for (HoverEventItem* grip : grips) {
        if (grip && !grip->lockstate() && grip->getId() >= 0 && grip->getId() <= Center)
            grip->setPos(positionOnRect(r, grip->getId()));
    }
}

void HoverEventItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) {
    // The centroid grip carries the label; its square shows only while its item is selected or hovered.
    if (m_type == CentroidGrip && !m_hovered && !(parentItem() && parentItem()->isSelected()))
        return;
    QGraphicsPathItem::paint(painter, option, widget);
}

void HoverEventItem::mousePressEvent(QGraphicsSceneMouseEvent* event) {
    if (m_lockstate || event->button() != Qt::LeftButton) {
        QGraphicsPathItem::mousePressEvent(event);
        return;
    }
    m_pressed = true;
    event->accept();
    emit initPos(event->scenePos());
    tellOwner(Pressed, event);
}

void HoverEventItem::mouseMoveEvent(QGraphicsSceneMouseEvent* event) {
    if (m_lockstate || !m_pressed) {
        QGraphicsPathItem::mouseMoveEvent(event);
        return;
    }
    emit moved(event->scenePos());
    tellOwner(Moved, event);
}

void HoverEventItem::mouseReleaseEvent(QGraphicsSceneMouseEvent* event) {
    if (m_lockstate || event->button() != Qt::LeftButton) {
        QGraphicsPathItem::mouseReleaseEvent(event);
        return;
    }
    m_pressed = false;
    emit releasePos(event->scenePos());
    tellOwner(Released, event);
    if (parentItem())
        parentItem()->setFocus(Qt::OtherFocusReason);
}

void HoverEventItem::tellOwner(Phase phase, QGraphicsSceneMouseEvent* event) {
    if (auto* item = qobject_cast<AbstractBaseItem*>(parent()))
        item->gripEvent(this, phase, event->scenePos(), event->modifiers());
}

void HoverEventItem::hoverEnterEvent(QGraphicsSceneHoverEvent* event) {
    m_hovered = true;
    ensureFrame();
    m_frame->setVisible(true);
    m_text->setVisible(true);
    update();
    QGraphicsPathItem::hoverEnterEvent(event);
}

void HoverEventItem::hoverLeaveEvent(QGraphicsSceneHoverEvent* event) {
    m_hovered = false;
    if (m_frame)
        m_frame->setVisible(false);
    update();
    QGraphicsPathItem::hoverLeaveEvent(event);
}
