#pragma once

#include "graphicsobjects_export.h"

#include <QPaintDevice>
#include <QSize>
#include <QString>

#include <memory>

class DxfPaintEngine;

// A paint device that turns what is painted on it into a DXF drawing (AutoCAD 2000, ASCII), in the
// manner of QSvgGenerator. One device unit is one drawing unit; y points up in the file. The file is
// written when the device is destroyed.
class GRAPHICSOBJECTS_EXPORT VDxfPaintDevice : public QPaintDevice {
public:
    // The drawing units recorded in the file ($INSUNITS), with their DXF codes.
    enum VarInsunits {
        Unitless = 0,
        Inches = 1,
        Feet = 2,
        Miles = 3,
        Millimeters = 4,
        Centimeters = 5,
        Meters = 6,
        Kilometers = 7,
        Microinches = 8,
        Mils = 9,
        Yards = 10,
        Angstroms = 11,
        Nanometers = 12,
        Microns = 13,
        Decimeters = 14,
        Decameters = 15,
        Hectometers = 16,
        Gigameters = 17,
        AstronomicalUnits = 18,
        LightYears = 19,
        Parsecs = 20
    };

    VDxfPaintDevice();
    ~VDxfPaintDevice() override;
    VDxfPaintDevice(const VDxfPaintDevice&) = delete;
    VDxfPaintDevice& operator=(const VDxfPaintDevice&) = delete;

    QString fileName() const { return m_fileName; }
    void setFileName(const QString& fileName) { m_fileName = fileName; }
    QSize size() const { return m_size; }
    void setSize(const QSize& size) { m_size = size; }
    // Dots per inch: sets the physical size Qt sees and how pen widths become lineweights.
    double resolution() const { return m_resolution; }
    void setResolution(double dpi) { m_resolution = dpi; }
    VarInsunits insunits() const { return m_insunits; }
    void setInsunits(const VarInsunits& units) { m_insunits = units; }

    QPaintEngine* paintEngine() const override;

protected:
    int metric(PaintDeviceMetric metric) const override;

private:
    void writeFile() const;

    QString m_fileName;
    QSize m_size;
    double m_resolution = 72.0;
    VarInsunits m_insunits = Unitless;
    std::unique_ptr<DxfPaintEngine> m_engine;
};
