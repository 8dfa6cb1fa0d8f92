// Feeds arbitrary bytes to the DXF reader: reading must neither crash nor hang, and whatever it keeps
// must stay within the bounds it was given.
#include <GraphicsObjects/GraphicsObjects.h>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    DxfReadOptions options;
    options.maxEntities = 20000;
    options.maxVertices = 200000;
    const DxfModel model =
        readDxf(QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size)), options);
    qint64 vertices = 0;
    for (const DxfLayer& layer : model.layers)
        vertices += layer.path.elementCount() + layer.points.size() + layer.texts.size();
    if (model.report.placed > options.maxEntities + 1 || vertices > options.maxVertices ||
        model.report.toText().isNull())
        std::abort();
    return 0;
}
