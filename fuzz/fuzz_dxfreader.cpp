// Feeds arbitrary bytes to the DXF reader: reading must neither crash nor hang, and whatever it keeps
// must be finite and stay within the bounds it was given.
#include <GraphicsObjects/GraphicsObjects.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {

bool finite(const QPointF& p) {
    return std::isfinite(p.x()) && std::isfinite(p.y());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    DxfReadOptions options;
    options.maxEntities = 20000;
    options.maxVertices = 200000;
    const DxfModel model =
        readDxf(QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size)), options);
    qint64 vertices = 0;
    bool ok = finite(model.extents.topLeft()) && finite(model.extents.bottomRight());
    for (const DxfLayer& layer : model.layers) {
        vertices += layer.path.elementCount() + layer.points.size() + layer.texts.size();
        for (const DxfText& text : layer.texts)
            ok = ok && finite(text.position) && std::isfinite(text.height) &&
                 std::isfinite(text.rotationDegrees);
    }
    model.report.toText();
    if (!ok || model.report.placed > options.maxEntities + 1 || vertices > options.maxVertices)
        std::abort();
    return 0;
}
