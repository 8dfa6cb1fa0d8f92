// A host that only knows the installed package.
#include <GraphicsObjects/GraphicsObjects.h>

#include <QDomDocument>
#include <QGuiApplication>
#include <cstdio>

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    QDomDocument doc;
    QDomElement e = doc.createElement(QStringLiteral("params"));
    toCommonParams(e);
    // The region growing runs on OpenCV, which the package links privately.
    QImage pixel(1, 1, QImage::Format_RGB32);
    pixel.fill(Qt::white);
    const std::optional<RegionOutline> region = growRegion(pixel, QPoint(0, 0), 0);
    const bool ok = e.attribute(QStringLiteral("line_mesureIndex")) == QLatin1String("1") &&
                    Types::convertBetweenUnitsOfLength(1.0, Types::Inch, Types::Centimetre) > 2.53 &&
                    region && region->pixelCount == 1;
    std::puts(ok ? "package ok" : "package broken");
    return ok ? 0 : 1;
}
