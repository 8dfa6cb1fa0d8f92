#include "StampItem.h"

#include "AbstractScene.h"
#include "HoverEventItem.h"
#include "VariantText.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QFontMetricsF>
#include <QGraphicsRectItem>
#include <QGraphicsSceneMouseEvent>
#include <QInputDialog>
#include <QMenu>
#include <QPainter>
#include <QRegularExpression>

#include <cmath>

namespace {

// Sizes in units of the bar's length: the label's height, the bar's thickness.
constexpr double TextShare = 0.1;
constexpr double ThicknessShare = 0.04;
// The label is laid out in a font of this pixel size, then scaled.
constexpr int LayoutPixelSize = 100;

// Menu entries whose data is the divisor of the width.
const AbstractBaseItem::MenuEntry fractionEntries[] = {
    {QT_TRANSLATE_NOOP("StampItem", "1/10 of the width"), 10},
    {QT_TRANSLATE_NOOP("StampItem", "1/5 of the width"), 5},
    {QT_TRANSLATE_NOOP("StampItem", "1/4 of the width"), 4},
    {QT_TRANSLATE_NOOP("StampItem", "1/3 of the width"), 3}};
const char* const styleNames[] = {QT_TRANSLATE_NOOP("StampItem", "Solid bar"),
                                  QT_TRANSLATE_NOOP("StampItem", "Bar with end ticks"),
                                  QT_TRANSLATE_NOOP("StampItem", "Bar with graduations")};
const char* const cornerNames[] = {QT_TRANSLATE_NOOP("StampItem", "Top left corner"),
                                   QT_TRANSLATE_NOOP("StampItem", "Top right corner"),
                                   QT_TRANSLATE_NOOP("StampItem", "Bottom left corner"),
                                   QT_TRANSLATE_NOOP("StampItem", "Bottom right corner")};

// Graduations of a bar whose length starts with the digit d: whole tenths, halves or fifths of it.
int graduationCount(double length) {
    const double digit = length / std::pow(10.0, std::floor(std::log10(length)));
    if (std::abs(digit - 2) < 1e-9)
        return 4;
    if (std::abs(digit - 5) < 1e-9)
        return 5;
    return std::abs(digit - 1) < 1e-9 ? 10 : 4;
}

// "50.00" reads "50", "0.50" "0.5".
QString trimmedNumber(double v, int decimals) {
    static const QRegularExpression trailingZeros(QStringLiteral("\\.?0+$"));
    const QString text = QString::number(v, 'f', decimals);
    return text.contains(QLatin1Char('.')) ? QString(text).remove(trailingZeros) : text;
}

} // namespace

StampItem::StampItem(QGraphicsItem* parent, int id, void*)
    : ShapeItem(parent, new QGraphicsRectItem, 1, 2) {
    initIdentity(id);
    // The stamp draws its own label; the measure label stays hidden.
    m_textusage = false;
    m_mesureIndex = Dist1;
    child<QGraphicsRectItem>()->setPen(Qt::NoPen);
    // A stamp moved by the user leaves its corner.
    setFlag(ItemSendsGeometryChanges);
}

double StampItem::roundLength(double v) {
    if (!(v > 0) || !std::isfinite(v))
        return 0;
    const double power = std::pow(10.0, std::floor(std::log10(v)));
    double best = 0;
    for (const double step : {1.0, 2.0, 5.0, 10.0}) {
        const double candidate = step * power;
        if (best == 0 || std::abs(std::log(candidate / v)) < std::abs(std::log(best / v)))
            best = candidate;
    }
    return best;
}

QString StampItem::text() const {
    const double v = length();
    if (!(v > 0))
        return QString();
    // A round length below the calibration's last decimal gets the decimals it needs.
    const int needed = std::max(0, int(-std::floor(std::log10(v))));
    const int decimals = std::clamp(std::max(m_calibration.decimals, needed), 0, 12);
    return trimmedNumber(v, decimals) + QLatin1Char(' ') + m_calibration.unitName;
}

QRectF StampItem::referenceRect() const {
    if (const AbstractScene* host = hostScene(); host && !host->image().isNull())
        return QRectF(QPointF(0, 0), host->image().size());
    return scene() ? scene()->sceneRect() : QRectF();
}

bool StampItem::setFraction(double fraction) {
    if (!(fraction > 0 && fraction <= 1))
        return false;
    m_fraction = fraction;
    changed();
    return true;
}

bool StampItem::setTypedLength(double length) {
    const double factor = m_calibration.factor;
    if (!std::isfinite(length) || length < 0 || !(factor > 0) || length / factor > MaxBarPixels)
        return false;
    m_typed = length;
    changed();
    return true;
}

void StampItem::setStyle(int style) {
    if (style < SolidBar || style > Graduations)
        return;
    m_style = style;
    update();
}

void StampItem::setBox(bool box) {
    m_box = box;
    update();
}

void StampItem::changed() {
    computeMesures(nullptr);
    emit mesureChanged(this);
}

bool StampItem::computeMesures(void*) {
    const double factor = m_calibration.factor;
    const QRectF reference = referenceRect();
    double value = m_typed > 0 ? m_typed : roundLength(m_fraction * reference.width() * factor);
    double pixels = factor > 0 ? value / factor : 0;
    if (!(pixels > 0 && pixels <= MaxBarPixels))
        value = pixels = 0;
    prepareGeometryChange();
    m_mesureP[Dist1] = pixels;
    m_mesure[Dist1] = value;
    m_mline[1] = m_mline[0] + QPointF(pixels, 0);
    if (m_corner != NoCorner)
        moveIntoCorner();
    child<QGraphicsRectItem>()->setRect(pixels > 0 ? layout().box : QRectF());
    update();
    refreshHandgrips();
    return pixels > 0;
}

QFont StampItem::labelFont() const {
    QFont font = m_font;
    font.setPixelSize(LayoutPixelSize);
    return font;
}

StampItem::Layout StampItem::layout() const {
    const double length = barPixels();
    const QPointF a = m_mline[0];
    Layout l;
    l.thickness = std::max(1.0, length * ThicknessShare);
    const double textHeight = std::max(4.0, length * TextShare);
    const QFontMetricsF metrics(labelFont());
    l.textScale = textHeight / metrics.height();
    const double textWidth = metrics.horizontalAdvance(text()) * l.textScale;
    l.bar = QRectF(a.x(), a.y() - l.thickness, length, l.thickness);
    // Ticks rise one thickness above the bar; the label stands above them.
    l.label = QRectF(a.x() + (length - textWidth) / 2, l.bar.top() - 2 * l.thickness - textHeight, textWidth,
                     textHeight);
    const double pad = textHeight * 0.4;
    l.box = l.bar.united(l.label).adjusted(-pad, -pad, pad, pad);
    return l;
}

void StampItem::placeInCorner(int corner) {
    if (corner < NoCorner || corner > BottomRight)
        return;
    m_corner = corner;
    computeMesures(nullptr);
}

void StampItem::moveIntoCorner() {
    const QRectF reference = referenceRect();
    if (reference.isEmpty())
        return;
    const double margin = CornerMargin * std::min(reference.width(), reference.height());
    const QRectF box = mapRectToScene(layout().box);
    const bool left = m_corner == TopLeft || m_corner == BottomLeft;
    const bool top = m_corner == TopLeft || m_corner == TopRight;
    const QPointF target(left ? reference.left() + margin : reference.right() - margin - box.width(),
                         top ? reference.top() + margin : reference.bottom() - margin - box.height());
    const QPointF shift = target - box.topLeft();
    m_mline[0] += shift;
    m_mline[1] += shift;
}

QPointF StampItem::centroid() {
    return layout().bar.center();
}

// The label keeps its own colour: the pen colours the bar and its text.
void StampItem::setPen(const QPen& pen) {
    m_pen = pen;
    update();
}

void StampItem::mousePress(QGraphicsSceneMouseEvent* event) {
    m_creationStarted = true;
    m_corner = NoCorner;
    m_mline[0] = mapFromScene(event->scenePos());
    computeMesures(nullptr);
}

void StampItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    m_mline[0] = mapFromScene(event->scenePos());
    computeMesures(nullptr);
}

QList<AbstractBaseItem::Handle> StampItem::handles() const {
    const Layout l = layout();
    return {{1, HoverEventItem::ResizeHorizontal, QPointF(l.bar.right(), l.bar.center().y())}};
}

void StampItem::handleMoved(int, const QPointF& scenePos, Qt::KeyboardModifiers) {
    const double pixels = mapFromScene(scenePos).x() - m_mline[0].x();
    const double value = roundLength(pixels * m_calibration.factor);
    if (value > 0 && value != m_typed)
        setTypedLength(value);
}

QVariant StampItem::itemChange(GraphicsItemChange change, const QVariant& value) {
    if (change == ItemSceneHasChanged) {
        disconnect(m_imageConnection);
        if (auto* host = qobject_cast<AbstractScene*>(value.value<QGraphicsScene*>()))
            m_imageConnection = connect(host, &AbstractScene::imageChanged, this, &StampItem::changed);
        computeMesures(nullptr);
    } else if (change == ItemPositionHasChanged) {
        m_corner = NoCorner;
    }
    return ShapeItem::itemChange(change, value);
}

void StampItem::fillContextMenu(QMenu* menu) {
    for (const MenuEntry& entry : fractionEntries)
        createMenuAction(menu, QIcon(), tr(entry.text),
                         m_typed == 0 && std::abs(m_fraction * entry.data - 1) < 1e-9, nullptr, -entry.data);
    createMenuAction(menu, QIcon(), tr("Length..."), m_typed > 0, nullptr, TypeLength);
    menu->addSeparator();
    for (int style = SolidBar; style <= Graduations; ++style)
        createMenuAction(menu, QIcon(), tr(styleNames[style]), m_style == style, nullptr, StyleBase - style);
    createMenuAction(menu, QIcon(), tr("Background box"), m_box, nullptr, ToggleBox);
    menu->addSeparator();
    for (int corner = TopLeft; corner <= BottomRight; ++corner)
        createMenuAction(menu, QIcon(), tr(cornerNames[corner - 1]), m_corner == corner, nullptr,
                         CornerBase - corner)
            ->setEnabled(!referenceRect().isEmpty());
}

void StampItem::applyContextMenu(int data) {
    if (data < 0 && data > TypeLength) {
        m_typed = 0;
        setFraction(-1.0 / data);
    } else if (data == TypeLength) {
        bool ok = false;
        const double v =
            QInputDialog::getDouble(nullptr, tr("Scale bar"), tr("Length (%1)").arg(m_calibration.unitName),
                                    length(), 0, 1e9, std::clamp(m_calibration.decimals, 0, 12), &ok);
        if (ok)
            setTypedLength(v);
    } else if (data <= StyleBase && data >= StyleBase - Graduations) {
        setStyle(StyleBase - data);
    } else if (data == ToggleBox) {
        setBox(!m_box);
    } else if (data < CornerBase && data >= CornerBase - BottomRight) {
        placeInCorner(CornerBase - data);
    }
    emit mesureChangedEND(this);
}

QRectF StampItem::boundingRect() const {
    return barPixels() > 0 ? layout().box : QRectF();
}

void StampItem::paintBar(QPainter* painter, const Layout& l) const {
    const QColor colour = m_pen.color();
    const QRectF& bar = l.bar;
    if (m_style == SolidBar) {
        painter->fillRect(bar, colour);
        return;
    }
    const double y = bar.center().y();
    QPen pen(colour, std::max(1.0, l.thickness / 3), Qt::SolidLine, Qt::FlatCap);
    painter->setPen(pen);
    if (m_style == EndTicks) {
        painter->drawLine(QPointF(bar.left(), y), QPointF(bar.right(), y));
        for (const double x : {bar.left(), bar.right()})
            painter->drawLine(QPointF(x, bar.top() - l.thickness), QPointF(x, bar.bottom()));
        return;
    }
    // Graduations: every other division filled, the first one included.
    const int n = graduationCount(length());
    const double step = bar.width() / n;
    for (int i = 0; i < n; i += 2)
        painter->fillRect(QRectF(bar.left() + i * step, bar.top(), step, bar.height()), colour);
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(bar);
}

void StampItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
    if (!(barPixels() > 0))
        return;
    const Layout l = layout();
    painter->save();
    if (m_box) {
        // The box contrasts with the bar's colour.
        const QColor back =
            qGray(m_pen.color().rgb()) < 128 ? QColor(255, 255, 255, 210) : QColor(0, 0, 0, 210);
        painter->fillRect(l.box, back);
    }
    paintBar(painter, l);
    painter->setPen(m_pen.color());
    painter->setFont(labelFont());
    painter->translate(l.label.topLeft());
    painter->scale(l.textScale, l.textScale);
    painter->drawText(QRectF(QPointF(0, 0), l.label.size() / l.textScale), Qt::AlignCenter, text());
    painter->restore();
}

void StampItem::writeGeometry(XmlAttributes& e) const {
    e.setAttribute(QStringLiteral("anchor"), variantToString(m_mline[0]));
    e.setAttribute(QStringLiteral("pos"), variantToString(pos()));
    e.setAttribute(QStringLiteral("length"), QString::number(m_typed, 'g', 12));
    e.setAttribute(QStringLiteral("fraction"), QString::number(m_fraction, 'g', 12));
    e.setAttribute(QStringLiteral("barStyle"), m_style);
    e.setAttribute(QStringLiteral("box"), m_box ? 1 : 0);
    e.setAttribute(QStringLiteral("corner"), m_corner);
}

void StampItem::readGeometry(const XmlAttributes& e) {
    m_mline[0] = readPoint(e, QStringLiteral("anchor"));
    setPos(readPoint(e, QStringLiteral("pos")));
    const double fraction = readNumber(e, QStringLiteral("fraction"), DefaultFraction);
    m_fraction = fraction > 0 && fraction <= 1 ? fraction : DefaultFraction;
    const double typed = readNumber(e, QStringLiteral("length"));
    m_typed = typed > 0 ? typed : 0;
    m_style = std::clamp(e.attribute(QStringLiteral("barStyle")).toInt(), int(SolidBar), int(Graduations));
    m_box = e.attribute(QStringLiteral("box")).toInt() != 0;
    m_corner = std::clamp(e.attribute(QStringLiteral("corner")).toInt(), int(NoCorner), int(BottomRight));
    computeMesures(nullptr);
}
