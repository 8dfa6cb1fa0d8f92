#include "VickersPItem.h"

#include "GeometryFitting.h"
#include "GeometryPolygons.h"
#include "HoverEventItem.h"
#include "SimpleTextItem.h"
#include "VariantText.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QGraphicsPolygonItem>
#include <QLineF>
#include <QMenu>

#include <algorithm>
#include <cmath>

namespace {

// F * 0.001 / 0.00980665: newtons to kilogram-force by standard gravity.
constexpr double NewtonsToKgf = 0.001 / 0.00980665;

struct SlotText {
    int slot;
    const char* name;
    const char* unit; // null: the calibrated unit of length
};

const SlotText slotTexts[] = {
    {VickersPItem::DiagonalSlot1, QT_TRANSLATE_NOOP("VickersPItem", "d1:"), nullptr},
    {VickersPItem::DiagonalSlot2, QT_TRANSLATE_NOOP("VickersPItem", "d2:"), nullptr},
    {VickersPItem::LoadSlot, QT_TRANSLATE_NOOP("VickersPItem", "F:"), "N"},
    {VickersPItem::LoadKgfSlot, QT_TRANSLATE_NOOP("VickersPItem", "F:"), "kgf"},
    {VickersPItem::HardnessSlot, QT_TRANSLATE_NOOP("VickersPItem", "hardness:"), "HV"},
};

// v (positive, finite) rounded to the given number of significant digits, in fixed notation.
QString significant(double v, int digits, bool trimZeros) {
    int magnitude = int(std::floor(std::log10(v)));
    double scale = std::pow(10.0, digits - 1 - magnitude);
    double rounded = std::round(v * scale) / scale;
    // Rounding up may gain a digit (9.996 -> 10.0).
    if (int(std::floor(std::log10(rounded))) > magnitude) {
        ++magnitude;
        scale /= 10;
        rounded = std::round(v * scale) / scale;
    }
    QString text = QString::number(rounded, 'f', std::max(0, digits - 1 - magnitude));
    if (trimZeros && text.contains(QLatin1Char('.'))) {
        while (text.endsWith(QLatin1Char('0')))
            text.chop(1);
        if (text.endsWith(QLatin1Char('.')))
            text.chop(1);
    }
    return text;
}

} // namespace

VickersPItem::VickersPItem(QGraphicsItem* parent, int id, void* context)
    : ClickedPointsItem(parent, new QGraphicsPolygonItem, 1, CornerCount)
    , m_polygon(child<QGraphicsPolygonItem>()) {
    initIdentity(id);
    // The hardness is what the user measures an indentation for.
    m_mesureIndex = HardnessSlot;
    m_polygon->setAcceptedMouseButtons(Qt::NoButton);
    setFlag(ItemIsSelectable, true);
    if (const _AUTOPOINTPARAMS* params = startGenerated(context))
        takeOverContext(*params);
}

void VickersPItem::takeOverContext(const _AUTOPOINTPARAMS& params) {
    takeMesuresFrom(params.source);
    if (params.load > 0)
        m_charge = params.load;
    if (params.points.size() != CornerCount)
        return;
    for (const QPointF& p : params.points)
        addCorner(p);
    drawPoints(m_mline);
    recompute(false);
    m_modeEdition = EditionComplete;
}

AbstractBaseItem* VickersPItem::clone(int id) {
    auto* copy = static_cast<VickersPItem*>(ClickedPointsItem::clone(id));
    copy->setParentItem(parentItem());
    copy->m_highPrecision = m_highPrecision;
    return copy;
}

QString VickersPItem::getSimpleHELP() {
    return tr("Click the four corners of the indentation");
}

void VickersPItem::setCharge(double newtons) {
    if (!(newtons >= 0) || !isSceneNumber(newtons))
        return;
    m_charge = newtons;
    recompute(false);
}

void VickersPItem::setHighPrecision(bool high) {
    m_highPrecision = high;
    recompute(false);
}

void VickersPItem::suspendComputation(bool suspended) {
    m_suspended = suspended;
    if (!suspended)
        recompute(false);
}

void VickersPItem::setSpecificparameters(QString, void* params) {
    if (!params || m_suspended)
        return;
    setCharge(static_cast<const _AUTOPOINTPARAMS*>(params)->load);
}

QString VickersPItem::hardnessDesignation() const {
    const double hv = m_mesure[HardnessSlot];
    const double kgf = m_mesure[LoadKgfSlot];
    if (!std::isfinite(hv) || hv <= 0 || !std::isfinite(kgf) || kgf <= 0)
        return QString();
    return QStringLiteral("%1 HV %2").arg(significant(hv, 3, false), significant(kgf, 2, true));
}

bool VickersPItem::diagonalsDiffer(QString* warning) const {
    if (warning)
        warning->clear();
    const double d1 = m_mesureP[DiagonalSlot1];
    const double d2 = m_mesureP[DiagonalSlot2];
    // More than 5 % of the mean: |d1 - d2| > 0.05 (d1 + d2) / 2, kept free of divisions.
    if (!(d1 + d2 > 0) || !(std::abs(d1 - d2) * 40 > d1 + d2))
        return false;
    if (warning) {
        const double percent = std::abs(d1 - d2) * 200 / (d1 + d2);
        *warning =
            tr("Diagonals differ by %1 % (limit 5 %): check the indentation or the specimen's flatness")
                .arg(QString::number(percent, 'f', 1));
    }
    return true;
}

QPointF VickersPItem::centroid() {
    return m_polygon->polygon().boundingRect().center();
}

QRectF VickersPItem::itemRectF(void*) {
    return mapRectToScene(m_polygon->polygon().boundingRect());
}

QRectF VickersPItem::boundingRect() const {
    // The leader line runs from the centroid to the label.
    QRectF r = m_polygon->boundingRect();
    if (m_label && m_label->isVisible())
        r = r.united(mapRectFromItem(m_label, m_label->boundingRect()));
    return r;
}

void VickersPItem::pointClicked() {
    refreshHandgrips();
    showHandgrips();
    ClickedPointsItem::pointClicked();
}

AbstractBaseItem::typModeEdition VickersPItem::mouseRelease(QGraphicsSceneMouseEvent* event) {
    if (ClickedPointsItem::mouseRelease(event) == EditionComplete)
        hideHandgrips();
    return m_modeEdition;
}

bool VickersPItem::endEdition() {
    return m_mline.size() == CornerCount;
}

void VickersPItem::fillContextMenu(QMenu* menu) {
    createMenuAction(menu, QIcon(), tr("High Precision"), m_highPrecision, nullptr, HighPrecisionCommand);
    createMenuAction(menu, QIcon(), tr("Std Precision"), !m_highPrecision, nullptr, StdPrecisionCommand);
}

void VickersPItem::applyContextMenu(int data) {
    if (data == HighPrecisionCommand || data == StdPrecisionCommand)
        setHighPrecision(data == HighPrecisionCommand);
}

bool VickersPItem::computeMesures(void*) {
    return recompute(false);
}

void VickersPItem::handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers) {
    if (id < 0 || id >= m_mline.size())
        return;
    m_mline[id] = mapFromScene(scenePos);
    if (HoverEventItem* grip = handgrip(id))
        grip->setPos(m_mline[id]);
    drawPoints(m_mline);
    recompute(false);
}

bool VickersPItem::recompute(bool silent) {
    if (m_mline.size() < CornerCount || m_suspended)
        return false;
    prepareGeometryChange();
    // One orientation for every indentation, however its corners were clicked.
    if (locateCentroid() < 0) {
        reverseCorners();
        locateCentroid();
    }
    const double k = m_calibration.factor;
    const double d1 = QLineF(m_mline[0], m_mline[2]).length();
    const double d2 = QLineF(m_mline[1], m_mline[3]).length();
    m_mesureP[DiagonalSlot1] = d1;
    m_mesure[DiagonalSlot1] = k * d1;
    m_mesureP[DiagonalSlot2] = d2;
    m_mesure[DiagonalSlot2] = k * d2;
    // Calibrated micrometres to the millimetres of the formulas.
    const double d = (d1 + d2) * 0.5 * k / 1000;
    m_mesureP[LoadSlot] = m_mesure[LoadSlot] = m_charge;
    m_mesureP[LoadKgfSlot] = m_mesure[LoadKgfSlot] = m_charge * NewtonsToKgf;
    m_mesureP[HardnessSlot] = m_mesure[HardnessSlot] =
        m_highPrecision ? Vickers2(m_charge, d) : Vickers1(m_charge, d);
    emit mesureChanged(this);
    emit itemChanged(this, QStringLiteral("VICKERS"), &m_mesure[HardnessSlot]);
    emit mesureChangedEND(this);
    if (!silent)
        placeLabel();
    return true;
}

double VickersPItem::locateCentroid() {
    // A flat quadrilateral has no centroid of its own: the mean of its corners stands for it.
    QPointF mean;
    for (const QPointF& p : std::as_const(m_mline))
        mean += p / m_mline.size();
    double xc = mean.x();
    double yc = mean.y();
    double area = 0;
    polyCentroid2(m_mline, &xc, &yc, &area);
    m_centroidPoint = QPointF(xc, yc);
    return area;
}

void VickersPItem::placeLabel() {
    placeCentroidHandgrip();
    m_label->setPos(0, 0);
    commonUpdateText();
}

AbstractBaseItem::MesureText VickersPItem::mesureText(int i) const {
    for (const SlotText& entry : slotTexts) {
        if (entry.slot == i)
            return {tr(entry.name), QString::number(m_mesure[i], 'f', m_calibration.decimals),
                    entry.unit ? QString::fromLatin1(entry.unit) : m_calibration.unitName};
    }
    return {};
}

void VickersPItem::addCorner(const QPointF& p) {
    m_mline.append(p);
    refreshHandgrips();
}

void VickersPItem::removeCorners() {
    m_mline.clear();
    refreshHandgrips();
}

void VickersPItem::reverseCorners() {
    // The grips follow their points, so a grip being dragged keeps its corner.
    std::reverse(m_mline.begin(), m_mline.end());
    std::reverse(m_handgripItems.begin(), m_handgripItems.end());
    for (int i = 0; i < m_handgripItems.size(); ++i)
        m_handgripItems[i]->setId(i);
}

void VickersPItem::drawPoints(const QList<QPointF>& points) {
    prepareGeometryChange();
    m_polygon->setPolygon(QPolygonF(points));
}

void VickersPItem::writeGeometry(XmlAttributes& e) const {
    QString coords;
    for (const QPointF& p : m_mline)
        coords += variantToString(mapToParent(p)) + QLatin1Char(';');
    e.setAttribute(QStringLiteral("coords"), coords);
    e.setAttribute(QStringLiteral("charge"), QString::number(m_charge, 'f', 2));
}

void VickersPItem::readGeometry(const XmlAttributes& e) {
    removeCorners();
    const QStringList parts =
        e.attribute(QStringLiteral("coords")).split(QLatin1Char(';'), Qt::SkipEmptyParts);
    // Every part is a corner; one that is no usable point stands at the origin.
    for (const QString& part : parts) {
        const QPointF p = stringToVariant(part, QMetaType::QPointF).toPointF();
        addCorner(isSceneNumber(p.x()) && isSceneNumber(p.y()) ? p : QPointF());
    }
    // A load is a positive force: anything else reads as no load.
    m_charge = std::max(0.0, readNumber(e, QStringLiteral("charge")));
    m_highPrecision = true;
    m_modeEdition = m_mline.size() >= CornerCount ? EditionComplete : EditionCreating;
    // The saved measures stand: they were computed with the calibration of their time.
    transmitFont(m_font2);
    drawPoints(m_mline);
    if (m_mline.size() >= CornerCount) {
        locateCentroid();
        placeCentroidHandgrip();
    }
    commonUpdateText();
}
