// Feeds arbitrary bytes to the scene document reader as gotool and hosts use it: reading must
// never crash, and whatever was read must write again and read back with the same items.
#include "FuzzApplication.h"
#include <GraphicsObjects/GraphicsObjects.h>

#include <QApplication>
#include <QBuffer>

#include <cstdint>
#include <cstdlib>

namespace {

QStringList classesOf(const SceneDocument& document) {
    QStringList classes;
    for (AbstractBaseItem* item : document.items())
        classes << item->getType();
    return classes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ensureFuzzApplication();
    QByteArray bytes(reinterpret_cast<const char*>(data), int(size));
    QBuffer input(&bytes);
    input.open(QIODevice::ReadOnly);
    AbstractScene scene;
    scene.setItemIndexMethod(QGraphicsScene::NoIndex);
    SceneDocument document;
    // No folder: a linked image is not looked for, so the input cannot name files to read.
    if (!document.read(&input, &scene))
        return 0;

    QByteArray saved;
    QBuffer output(&saved);
    output.open(QIODevice::WriteOnly);
    if (!document.write(&output, &scene))
        std::abort();
    output.close();
    output.open(QIODevice::ReadOnly);
    AbstractScene again;
    again.setItemIndexMethod(QGraphicsScene::NoIndex);
    SceneDocument reread;
    if (!reread.read(&output, &again) || classesOf(reread) != classesOf(document))
        std::abort();
    return 0;
}
