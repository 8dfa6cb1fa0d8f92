// Measures, their texts and the label of AbstractBaseItem.
#include "AbstractBaseItem.h"

#include "AbstractScene.h"
#include "HoverEventItem.h"
#include "SimpleTextItem.h"

#include <QPainter>

namespace {

// Lengths carry the unit name; angles, areas and custom values do not.
bool hasUnit(int i) {
    return i == AbstractBaseItem::Dist1 || i == AbstractBaseItem::Dist2 || i == AbstractBaseItem::Perim ||
           i == AbstractBaseItem::Rad1 || i == AbstractBaseItem::Rad2 || i == AbstractBaseItem::Diam;
}

bool zoomInLeaderWindow(double zoom) {
    return zoom >= 0.9 && zoom <= 1.25;
}

} // namespace

double AbstractBaseItem::accessmesure(unsigned i) const {
    return i < MesuresCount ? m_mesure[i] : 0.0;
}

double AbstractBaseItem::accessmesureP(unsigned i) const {
    return i < MesuresCount ? m_mesureP[i] : 0.0;
}

// The value with its unit, without the measure's name; nothing for the centroid and the reserved slot.
QString AbstractBaseItem::mesure2QString(int i) const {
    if (i < Dist1 || i > Cust)
        return QString();
    MesureText text = tableMesureText(i, m_mesure[i]);
    text.name.clear();
    return text.label();
}

QString AbstractBaseItem::MesureText::label() const {
    return unit.isEmpty() ? name + number : name + number + QLatin1Char('*') + unit;
}

QString AbstractBaseItem::MesureText::inText() const {
    return unit.isEmpty() ? name + number : name + number + QLatin1Char(' ') + unit;
}

QString AbstractBaseItem::formatTextMesure(int i) const {
    return mesureIndexToName(i, accessmesure(i < 0 ? MesuresCount : unsigned(i)));
}

QString AbstractBaseItem::displayedMesure(int i) const {
    return mesureText(i).label();
}

QString AbstractBaseItem::formatTextMesureP(int i) const {
    return mesureIndexToName(i, accessmesureP(i < 0 ? MesuresCount : unsigned(i)));
}

AbstractBaseItem::MesureText AbstractBaseItem::mesureText(int i) const {
    return tableMesureText(i, accessmesure(i < 0 ? MesuresCount : unsigned(i)));
}

QString AbstractBaseItem::mesureIndexToName(int i, double v) const {
    return tableMesureText(i, v).label();
}

AbstractBaseItem::MesureText AbstractBaseItem::tableMesureText(int i, double v) const {
    static const char* const names[] = {
        QT_TR_NOOP("centroid:"), QT_TR_NOOP("dist1:"), QT_TR_NOOP("dist2:"), QT_TR_NOOP("ang1:"),
        QT_TR_NOOP("ang2:"),     QT_TR_NOOP("aera:"),  QT_TR_NOOP("perim:"), QT_TR_NOOP("rad1:"),
        QT_TR_NOOP("rad2:"),     QT_TR_NOOP("diam:"),  QT_TR_NOOP("cust:"),
    };
    MesureText text;
    if (i < Centroid || i > Cust) {
        text.name = tr("");
        return text;
    }
    text.name = tr(names[i]);
    if (i == Centroid)
        return text;
    text.number = QString::number(v, 'f', m_calibration.decimals);
    if (hasUnit(i))
        text.unit = m_calibration.unitName;
    return text;
}

void AbstractBaseItem::commonUpdateText() {
    if (!m_label || !m_textusage)
        return;
    m_labelPending = m_refreshDeferred;
    if (m_refreshDeferred)
        return;
    const QString text = displayedMesure(m_mesureIndex);
    if (m_label->text() != text)
        m_label->setText(text);
    m_label->setVisible(true);
}

void AbstractBaseItem::commonPaintCentroidText(QPainter* painter) {
    if (!m_textusage || !m_handgripCentroid || !m_label)
        return;
    // The leader is only legible near the natural size.
    const AbstractScene* host = hostScene();
    if (!host || !zoomInLeaderWindow(host->horizontalZoom()))
        return;
    if (host->verticalZoomInForce() && !zoomInLeaderWindow(host->verticalZoom()))
        return;
    const QPointF c = centroid();
    const QRectF labelRect = mapRectFromScene(m_label->sceneBoundingRect());
    if (labelRect.contains(c))
        return;
    painter->setPen(m_penCentroidText);
    painter->drawLine(
        c, QPointF(labelRect.left() + labelRect.width() * 0.5, labelRect.top() + labelRect.height() * 0.5));
}
