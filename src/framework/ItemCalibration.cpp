// Calibration of AbstractBaseItem: the factor, unit and decimals that turn pixel measures into the
// values the user reads.
#include "AbstractBaseItem.h"

double AbstractBaseItem::calibratedDistance1() const {
    return m_mesureP[Dist1] * m_calibration.factor;
}

double AbstractBaseItem::calibratedDistance2() const {
    return m_mesureP[Dist2] * m_calibration.factor;
}

double AbstractBaseItem::calibrateValue(double v) const {
    return v * m_calibration.factor;
}

double AbstractBaseItem::uncalibrateValue(double v) const {
    return v / m_calibration.factor;
}

void AbstractBaseItem::copyCommonData(AbstractBaseItem* dst, AbstractBaseItem* src) {
    if (dst && src && dst != src)
        dst->m_calibration = src->m_calibration;
}

void AbstractBaseItem::setCalibration(const Calibration& calibration) {
    if (m_calibration == calibration)
        return;
    m_calibration = calibration;
    recalibrate();
}

void AbstractBaseItem::recalibrate() {
    if (m_creationStarted && computeMesures(nullptr)) {
        commonUpdateText();
        emit mesureChanged(this);
        emit mesureChangedEND(this);
    }
    update();
}

AbstractBaseItem::MesureUnit AbstractBaseItem::mesureUnit(int i) const {
    switch (i) {
    case Dist1:
    case Dist2:
    case Perim:
    case Rad1:
    case Rad2:
    case Diam:
        return MesureUnit::Length;
    case Aera:
        return MesureUnit::Area;
    case Ang1:
    case Ang2:
        return MesureUnit::Angle;
    default:
        return MesureUnit::None;
    }
}

void AbstractBaseItem::calibrateMesures(std::initializer_list<int> kinds) {
    const double k = m_calibration.factor;
    for (int i : kinds) {
        if (i < 0 || i >= MesuresCount)
            continue;
        const double v = m_mesureP[i];
        switch (mesureUnit(i)) {
        case MesureUnit::Length:
            m_mesure[i] = v * k;
            break;
        case MesureUnit::Area:
            m_mesure[i] = v * k * k;
            break;
        case MesureUnit::Angle:
        case MesureUnit::None:
            m_mesure[i] = v;
            break;
        }
    }
}
