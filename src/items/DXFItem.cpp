#include "DXFItem.h"

#include "AbstractScene.h"
#include "DxfReader.h"
#include "VariantText.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QFileInfo>
#include <QFontMetricsF>
#include <QMenu>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

// Millimetres in one unit of each $INSUNITS code (0: unitless).
constexpr double insunitsMillimetres[] = {0,
                                          25.4,
                                          304.8,
                                          1609344,
                                          1,
                                          10,
                                          1000,
                                          1e6,
                                          25.4e-6,
                                          0.0254,
                                          914.4,
                                          1e-7,
                                          1e-6,
                                          1e-3,
                                          100,
                                          1e4,
                                          1e5,
                                          1e12,
                                          1.495978707e14,
                                          9.4607304725808e18,
                                          3.0856775814913673e19};

// Millimetres in one calibrated unit, by the calibration's unit name; 0 when unknown.
double calibrationMillimetres(const QString& name) {
    static const QHash<QString, double> units = {
        {QStringLiteral("nm"), 1e-6},     {QStringLiteral("µm"), 1e-3},  {QStringLiteral("um"), 1e-3},
        {QStringLiteral("mm"), 1},        {QStringLiteral("cm"), 10},    {QStringLiteral("dm"), 100},
        {QStringLiteral("m"), 1000},      {QStringLiteral("km"), 1e6},   {QStringLiteral("in"), 25.4},
        {QStringLiteral("inch"), 25.4},   {QStringLiteral("ft"), 304.8}, {QStringLiteral("mil"), 0.0254},
        {QStringLiteral("pt"), 25.4 / 72}};
    return units.value(name.trimmed(), 0);
}

struct UnitEntry {
    const char* text;
    int code;
};
const UnitEntry unitEntries[] = {{QT_TRANSLATE_NOOP("DXFItem", "Units of the file"), DXFItem::FileUnits},
                                 {QT_TRANSLATE_NOOP("DXFItem", "Pixels"), 0},
                                 {QT_TRANSLATE_NOOP("DXFItem", "Inches"), 1},
                                 {QT_TRANSLATE_NOOP("DXFItem", "Millimetres"), 4},
                                 {QT_TRANSLATE_NOOP("DXFItem", "Micrometres"), 13}};

bool isUnitCode(int code) {
    return code >= DXFItem::FileUnits && code < int(std::size(insunitsMillimetres));
}

// Texts are laid out in a font of this pixel size, then scaled to their height.
constexpr int LayoutPixelSize = 100;

} // namespace

DXFItem::DXFItem(QGraphicsItem* parent, int id, void* context)
    : FrameItem(parent, 1) {
    const _AUTOPOINTPARAMS* params = initGenerated(id, context);
    if (!params)
        return;
    setFileName(params->texts.value(QStringLiteral("file")));
    placeOrigin(params->center);
}

double DXFItem::unitPixels() const {
    const int code = m_units == FileUnits ? m_drawing.insunits : m_units;
    if (code <= 0 || code >= int(std::size(insunitsMillimetres)))
        return 1.0;
    const double k =
        insunitsMillimetres[code] / calibrationMillimetres(m_calibration.unitName) / m_calibration.factor;
    return k > 0 && std::isfinite(k) ? k : 1.0;
}

double DXFItem::scale() const {
    return m_pixelsPerUnit / m_unitPixels;
}

QTransform DXFItem::drawingTransform() const {
    return QTransform(m_pixelsPerUnit, 0, 0, -m_pixelsPerUnit, m_origin.x(), m_origin.y());
}

QRectF DXFItem::extents() const {
    if (m_drawing.isEmpty())
        return QRectF();
    QRectF e = m_drawing.extents;
    const double side = std::max(e.width(), e.height());
    const double least = side > 0 ? side * 0.01 : 1.0;
    e.adjust(-std::max(0.0, least - e.width()) / 2, -std::max(0.0, least - e.height()) / 2,
             std::max(0.0, least - e.width()) / 2, std::max(0.0, least - e.height()) / 2);
    return e;
}

QRectF DXFItem::frameAt(double s) const {
    const QRectF e = extents();
    return QRectF(m_origin.x() + e.left() * s, m_origin.y() - e.bottom() * s, e.width() * s, e.height() * s);
}

bool DXFItem::loadDrawing(const QString& fileName) {
    m_fileName = resolvedPath(fileName);
    m_drawing = DxfModel();
    const QFileInfo info(m_fileName);
    QString refused;
    if (fileName.isEmpty())
        refused = tr("no drawing");
    else if (!info.isFile())
        refused = info.exists() ? tr("not a file") : tr("file not found");
    else if (info.size() > MaxFileBytes)
        refused = tr("larger than %1 MB").arg(MaxFileBytes >> 20);
    if (!refused.isEmpty()) {
        m_warning = fileName.isEmpty() ? refused : QStringLiteral("\"%1\": %2").arg(fileName, refused);
        return false;
    }
    DxfReadOptions options;
    // Curves within a tenth of a pixel at the scale the units give.
    options.tolerance = 0.1 / unitPixels();
    m_drawing = readDxfFile(m_fileName, options);
    DxfReadReport untold = m_drawing.report;
    untold.read.clear();
    m_warning = untold.toText();
    if (m_drawing.isEmpty() && m_warning.isEmpty())
        m_warning = tr("nothing to draw");
    m_hidden.clear();
    for (const DxfLayer& layer : std::as_const(m_drawing.layers)) {
        if (!layer.visible)
            m_hidden.insert(layer.name);
    }
    return !m_drawing.isEmpty();
}

bool DXFItem::setFileName(const QString& fileName) {
    const bool drawn = loadDrawing(fileName);
    m_unitPixels = m_pixelsPerUnit = unitPixels();
    if (drawn)
        setFrameRect(frameAt(m_pixelsPerUnit));
    update();
    return drawn;
}

void DXFItem::frameChanged() {
    const QRectF e = extents();
    const QRectF f = frame();
    const double s = e.isEmpty() ? 0 : f.width() / e.width();
    if (!(s > 0) || !std::isfinite(s))
        return;
    m_pixelsPerUnit = s;
    m_origin = QPointF(f.left() - e.left() * s, f.top() + e.bottom() * s);
}

void DXFItem::followUnits() {
    const double now = unitPixels();
    if (now == m_unitPixels)
        return;
    const double s = m_pixelsPerUnit * now / m_unitPixels;
    m_unitPixels = now;
    if (!extents().isEmpty() && s > 0 && std::isfinite(s))
        setFrameRectKeeping(frameAt(s), m_origin);
}

void DXFItem::recalibrate() {
    followUnits();
    FrameItem::recalibrate();
}

void DXFItem::setUnits(int code) {
    if (!isUnitCode(code))
        return;
    m_units = code;
    followUnits();
}

void DXFItem::placeOrigin(const QPointF& scenePos) {
    const QPointF to = pos() + scenePos - mapToScene(m_origin);
    if (isSceneNumber(to.x()) && isSceneNumber(to.y()))
        setPos(to);
}

void DXFItem::setLayerVisible(const QString& name, bool visible) {
    if (visible)
        m_hidden.remove(name);
    else
        m_hidden.insert(name);
    update();
}

void DXFItem::fillContextMenu(QMenu* menu) {
    const AbstractScene* host = hostScene();
    createMenuAction(menu, QIcon(), tr("Origin at the bottom left corner"), false, nullptr,
                     OriginAtBottomLeft)
        ->setEnabled(host && (!host->image().isNull() || !host->sceneRect().isEmpty()));
    menu->addSeparator();
    for (const UnitEntry& entry : unitEntries)
        createMenuAction(menu, QIcon(), tr(entry.text), m_units == entry.code, nullptr,
                         UnitsBase - (entry.code + 1));
    menu->addSeparator();
    for (int i = 0; i < m_drawing.layers.size(); ++i) {
        const QString& name = m_drawing.layers[i].name;
        createMenuAction(menu, QIcon(), tr("Layer %1").arg(name), isLayerVisible(name), nullptr,
                         LayerBase - i);
    }
}

void DXFItem::applyContextMenu(int data) {
    if (data == OriginAtBottomLeft) {
        const AbstractScene* host = hostScene();
        if (!host)
            return;
        const QRectF area =
            host->image().isNull() ? host->sceneRect() : QRectF(QPointF(0, 0), host->image().size());
        placeOrigin(area.bottomLeft());
    } else if (data <= LayerBase && LayerBase - data < m_drawing.layers.size()) {
        const QString name = m_drawing.layers[LayerBase - data].name;
        setLayerVisible(name, !isLayerVisible(name));
    } else if (data <= UnitsBase) {
        setUnits(UnitsBase - data - 1);
    }
}

void DXFItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
    if (m_drawing.isEmpty()) {
        paintPlaceholder(painter,
                         m_fileName.isEmpty() ? m_warning : m_fileName + QLatin1Char('\n') + m_warning);
        return;
    }
    painter->save();
    painter->setTransform(drawingTransform(), true);
    painter->setBrush(Qt::NoBrush);
    for (const DxfLayer& layer : std::as_const(m_drawing.layers)) {
        if (m_hidden.contains(layer.name))
            continue;
        // Colour 7 is the colour that stands out from the background: the item's pen.
        QPen pen(layer.color == QColor(Qt::white) ? m_pen.color() : layer.color, 0);
        pen.setCosmetic(true);
        painter->setPen(pen);
        painter->drawPath(layer.path);
        painter->drawPoints(layer.points.constData(), int(layer.points.size()));
        for (const DxfText& text : layer.texts)
            paintText(painter, text);
    }
    painter->restore();
}

// Heights are cap heights, as CAD fonts draw them; lines of MTEXT follow one another downwards.
void DXFItem::paintText(QPainter* painter, const DxfText& text) const {
    QFont font = m_font;
    font.setPixelSize(LayoutPixelSize);
    const QFontMetricsF metrics(font);
    if (!(text.height > 0) || metrics.capHeight() <= 0 || text.text.isEmpty())
        return;
    const double k = text.height / metrics.capHeight();
    const QStringList lines = text.text.split(QLatin1Char('\n'));
    const Qt::Alignment a = text.alignment;
    const double first =
        a & Qt::AlignTop       ? metrics.capHeight()
        : a & Qt::AlignVCenter ? metrics.capHeight() / 2 - (lines.size() - 1) * metrics.lineSpacing() / 2
        : a & Qt::AlignBottom  ? -metrics.descent() - (lines.size() - 1) * metrics.lineSpacing()
                               : 0;
    painter->save();
    painter->translate(text.position);
    painter->rotate(text.rotationDegrees);
    painter->scale(k, -k);
    painter->setFont(font);
    for (int i = 0; i < lines.size(); ++i) {
        const double w = metrics.horizontalAdvance(lines[i]);
        const double x = a & Qt::AlignHCenter ? -w / 2 : a & Qt::AlignRight ? -w : 0;
        painter->drawText(QPointF(x, first + i * metrics.lineSpacing()), lines[i]);
    }
    painter->restore();
}

void DXFItem::writeGeometry(XmlAttributes& e) const {
    FrameItem::writeGeometry(e);
    if (!m_fileName.isEmpty())
        e.setAttribute(QStringLiteral("path"), savedPath(m_fileName));
    e.setAttribute(QStringLiteral("units"), m_units);
    e.setAttribute(QStringLiteral("unitPixels"), QString::number(m_unitPixels, 'g', 17));
    QStringList hidden(m_hidden.cbegin(), m_hidden.cend());
    hidden.sort();
    e.setAttribute(QStringLiteral("hidden"), hidden.join(QLatin1Char('|')));
}

// The frame comes back as it was saved; a calibration that differs from the one it was laid with
// (unitPixels) rescales it when it arrives.
void DXFItem::readGeometry(const XmlAttributes& e) {
    const int units = e.attribute(QStringLiteral("units"), QStringLiteral("-1")).toInt();
    m_units = isUnitCode(units) ? units : FileUnits;
    loadDrawing(e.attribute(QStringLiteral("path")));
    if (e.hasAttribute(QStringLiteral("hidden"))) {
        const QStringList hidden =
            e.attribute(QStringLiteral("hidden")).split(QLatin1Char('|'), Qt::SkipEmptyParts);
        m_hidden = QSet<QString>(hidden.cbegin(), hidden.cend());
    }
    const double saved = readNumber(e, QStringLiteral("unitPixels"));
    m_unitPixels = saved > 0 ? saved : unitPixels();
    m_pixelsPerUnit = m_unitPixels;
    FrameItem::readGeometry(e);
    if (frame().isEmpty() && !m_drawing.isEmpty())
        setFrameRect(frameAt(m_pixelsPerUnit));
}
