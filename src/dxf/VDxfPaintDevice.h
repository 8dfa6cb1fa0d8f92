#pragma once

#include "graphicsobjects_export.h"

#include <QPaintDevice>
#include <QSize>
#include <QString>

#include <memory>

class DxfPaintEngine;

// A paint device that turns what is painted on it into a DXF drawing (AutoCAD 2000, ASCII), in the
// manner of QSvgGenerator. One device unit is one drawing unit; y points up in the file. Raster images
// become IMAGE entities that refer to PNG files written beside the drawing, "<name>-image-<n>.png"
// for a drawing "<name>.dxf" (n from 1). The files are written by finish(), or when the device is
// destroyed if nobody called it.
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

    enum Error { NoError, WriteError, NumberError };

    VDxfPaintDevice();
    ~VDxfPaintDevice() override;
    VDxfPaintDevice(const VDxfPaintDevice&) = delete;
    VDxfPaintDevice& operator=(const VDxfPaintDevice&) = delete;

    QString fileName() const { return m_fileName; }
    void setFileName(const QString& fileName) { m_fileName = fileName; }
    QSize size() const { return m_size; }
    // A negative side counts as zero.
    void setSize(const QSize& size);
    // Dots per inch: sets the physical size Qt sees and how pen widths become lineweights. A value that
    // is not a positive finite number counts as 72.
    double resolution() const { return m_resolution; }
    void setResolution(double dpi);
    VarInsunits insunits() const { return m_insunits; }
    void setInsunits(const VarInsunits& units) { m_insunits = units; }

    // Writes the drawing and its images, each to a temporary file renamed over the target once all are
    // written, so that a failure leaves any previous files as they were. Returns whether the drawing
    // was written; later calls return the same. A device never painted on and without a file name
    // writes nothing and succeeds.
    bool finish();
    // Why finish() failed: the file could not be written, or something painted lay at a non-finite
    // or absurd position (beyond 1e15 units), which no file may hold.
    Error error() const { return m_error; }
    QString errorString() const { return m_errorString; }

    QPaintEngine* paintEngine() const override;

protected:
    int metric(PaintDeviceMetric metric) const override;

private:
    bool write();
    bool fail(Error error, const QString& reason);

    QString m_fileName;
    QSize m_size;
    double m_resolution = 72.0;
    VarInsunits m_insunits = Unitless;
    std::unique_ptr<DxfPaintEngine> m_engine;
    bool m_finished = false;
    Error m_error = NoError;
    QString m_errorString;
};
