#include "VDxfPaintDevice.h"

#include "DxfPaintEngine.h"
#include "DxfWriter.h"

#include <QSaveFile>
#include <QtDebug>

#include <cmath>

VDxfPaintDevice::VDxfPaintDevice()
    : m_engine(std::make_unique<DxfPaintEngine>()) {}

VDxfPaintDevice::~VDxfPaintDevice() {
    writeFile();
}

QPaintEngine* VDxfPaintDevice::paintEngine() const {
    return m_engine.get();
}

int VDxfPaintDevice::metric(PaintDeviceMetric metric) const {
    const double mmPerDot = 25.4 / m_resolution;
    switch (metric) {
    case PdmWidth:
        return m_size.width();
    case PdmHeight:
        return m_size.height();
    case PdmWidthMM:
        return int(std::lround(m_size.width() * mmPerDot));
    case PdmHeightMM:
        return int(std::lround(m_size.height() * mmPerDot));
    case PdmNumColors:
        return int(0xffffffff);
    case PdmDepth:
        return 32;
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
        return int(std::lround(m_resolution));
    case PdmDevicePixelRatio:
        return 1;
    case PdmDevicePixelRatioScaled:
        return int(devicePixelRatioFScale());
    }
    return QPaintDevice::metric(metric);
}

void VDxfPaintDevice::writeFile() const {
    if (m_fileName.isEmpty() && !m_engine->hasPainted())
        return; // never used
    QSaveFile file(m_fileName);
    if (!file.open(QIODevice::WriteOnly)) {
        qWarning("VDxfPaintDevice: cannot write DXF file \"%s\": %s", qPrintable(m_fileName),
                 qPrintable(file.errorString()));
        return;
    }
    dxf::write(file, m_engine->drawing(), m_insunits, QRectF(0, 0, m_size.width(), m_size.height()));
    if (!file.commit())
        qWarning("VDxfPaintDevice: cannot write DXF file \"%s\": %s", qPrintable(m_fileName),
                 qPrintable(file.errorString()));
}
