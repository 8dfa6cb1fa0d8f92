#include "Tools2DXF.h"

#include "AbstractScene.h"
#include "VDxfPaintDevice.h"

#include <QPainter>

int tools2DXF(QString fileName, AbstractScene* scene) {
    VDxfPaintDevice device;
    device.setFileName(fileName);
    device.setSize(scene->sceneRect().size().toSize());
    device.setResolution(72.0);
    device.setInsunits(VDxfPaintDevice::VarInsunits(0));
    {
        QPainter painter(&device);
        scene->render(&painter, QRectF(), QRectF(), Qt::KeepAspectRatio);
    }
    return 0;
}
