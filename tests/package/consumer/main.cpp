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
    const bool ok = e.attribute(QStringLiteral("line_mesureIndex")) == QLatin1String("1") &&
                    Types::convertBetweenUnitsOfLength(1.0, Types::Inch, Types::Centimetre) > 2.53;
    std::puts(ok ? "package ok" : "package broken");
    return ok ? 0 : 1;
}
