#include "VDxfPaintDevice.h"

#include "DxfPaintEngine.h"
#include "DxfWriter.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QtDebug>

#include <cmath>
#include <vector>

VDxfPaintDevice::VDxfPaintDevice()
    : m_engine(std::make_unique<DxfPaintEngine>()) {
    m_engine->setCanvas(0.0, m_resolution);
}

VDxfPaintDevice::~VDxfPaintDevice() {
    // Nobody can ask any more: say it.
    if (!m_finished && !finish())
        qWarning("VDxfPaintDevice: %s", qPrintable(m_errorString));
}

void VDxfPaintDevice::setSize(const QSize& size) {
    m_size = size.expandedTo(QSize(0, 0));
    m_engine->setCanvas(m_size.height(), m_resolution);
}

void VDxfPaintDevice::setResolution(double dpi) {
    m_resolution = std::isfinite(dpi) && dpi > 0 ? dpi : 72.0;
    m_engine->setCanvas(m_size.height(), m_resolution);
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

bool VDxfPaintDevice::finish() {
    if (m_finished)
        return m_error == NoError;
    m_finished = true;
    if (m_fileName.isEmpty() && !m_engine->hasPainted())
        return true; // never used
    return write();
}

bool VDxfPaintDevice::fail(Error error, const QString& reason) {
    m_error = error;
    m_errorString = reason;
    return false;
}

bool VDxfPaintDevice::write() {
    if (paintingActive())
        return fail(WriteError,
                    QStringLiteral("cannot write DXF file \"%1\" while it is painted on").arg(m_fileName));
    const dxf::Drawing& drawing = m_engine->drawing();
    const QString numberError =
        QStringLiteral(
            "cannot write DXF file \"%1\": a shape lies at a position that is not finite or too large")
            .arg(m_fileName);
    if (drawing.refused() > 0)
        return fail(NumberError, numberError);
    if (m_fileName.isEmpty())
        return fail(WriteError, QStringLiteral("cannot write a DXF file without a name"));
    auto cannotWrite = [this](const QString& name, const QString& why) {
        return fail(WriteError, QStringLiteral("cannot write DXF file \"%1\": %2").arg(name, why));
    };
    QSaveFile file(m_fileName);
    if (!file.open(QIODevice::WriteOnly))
        return cannotWrite(m_fileName, file.errorString());

    // Every file is written aside first; the images are renamed into place before the drawing, so
    // that no drawing refers to an image not yet there.
    const QFileInfo info(m_fileName);
    QStringList imageFiles;
    std::vector<std::unique_ptr<QSaveFile>> images;
    for (qsizetype i = 0; i < drawing.images().size(); ++i) {
        const QString name = QStringLiteral("%1-image-%2.png").arg(info.completeBaseName()).arg(i + 1);
        imageFiles.append(name);
        images.push_back(std::make_unique<QSaveFile>(info.dir().filePath(name)));
        QSaveFile& image = *images.back();
        if (!image.open(QIODevice::WriteOnly) || !drawing.images()[i].save(&image, "PNG"))
            return cannotWrite(image.fileName(), image.errorString());
    }
    if (!dxf::write(file, drawing, m_insunits, QRectF(0, 0, m_size.width(), m_size.height()), imageFiles))
        return fail(NumberError, numberError);
    for (const auto& image : images)
        if (!image->commit())
            return cannotWrite(image->fileName(), image->errorString());
    if (!file.commit())
        return cannotWrite(m_fileName, file.errorString());
    return true;
}
