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

QString AbstractBaseItem::mesure2QString(int i) const {
    QString text;
    if (i >= Dist1 && i <= Cust) {
        text = QString::number(m_mesure[i], 'f', m_calibration.decimals);
        // The "*" between number and unit is part of the stored text form.
        if (hasUnit(i))
            text += QLatin1Char('*') + m_calibration.unitName;
    }
    return text;
}

QString AbstractBaseItem::formatTextMesure(int i) const {
    return mesureIndexToName(i, accessmesure(i < 0 ? MesuresCount : unsigned(i)));
}

QString AbstractBaseItem::formatTextMesureP(int i) const {
    return mesureIndexToName(i, accessmesureP(i < 0 ? MesuresCount : unsigned(i)));
}

QString AbstractBaseItem::mesureIndexToName(int i, double v) const {
    static const char* const names[] = {
        QT_TR_NOOP("centroid:"), QT_TR_NOOP("dist1:"), QT_TR_NOOP("dist2:"), QT_TR_NOOP("ang1:"),
        QT_TR_NOOP("ang2:"),     QT_TR_NOOP("aera:"),  QT_TR_NOOP("perim:"), QT_TR_NOOP("rad1:"),
        QT_TR_NOOP("rad2:"),     QT_TR_NOOP("diam:"),  QT_TR_NOOP("cust:"),
    };
    QString text = tr("");
    if (i < Centroid || i > Cust)
        return text;
    text = tr(names[i]);
    if (i == Centroid)
        return text;
    text += QString::number(v, 'f', m_calibration.decimals);
    if (hasUnit(i))
        text += QLatin1Char('*') + m_calibration.unitName;
    return text;
}

void AbstractBaseItem::commonUpdateText() {
    if (!m_label || !m_textusage)
        return;
    m_label->setText(formatTextMesure(m_mesureIndex));
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
