// Feeds arbitrary attribute text to every item class the factories build: reading must neither
// fail nor crash, and whatever was read must save again.
//
// Input: lines of "key=value"; each becomes an attribute of the element the items read.
#include "FuzzApplication.h"
#include <GraphicsObjects/GraphicsObjects.h>

#include <QApplication>
#include <QDomDocument>

#include <cstdint>
#include <cstdlib>
#include <memory>

namespace {

QDomElement elementFrom(QDomDocument& doc, const QByteArray& input) {
    QDomElement e = doc.createElement(QStringLiteral("item"));
    for (const QByteArray& line : input.split('\n')) {
        const int eq = line.indexOf('=');
        if (eq <= 0)
            continue;
        const QString key = QString::fromUtf8(line.left(eq)).trimmed();
        // Only names an XML attribute can carry.
        if (key.isEmpty() || !key.at(0).isLetter())
            continue;
        e.setAttribute(key, QString::fromUtf8(line.mid(eq + 1)));
    }
    return e;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ensureFuzzApplication();
    QDomDocument doc;
    const QDomElement e = elementFrom(doc, QByteArray(reinterpret_cast<const char*>(data), int(size)));
    for (QString className : toolFactoryClassNames() + mesureFactoryClassNames()) {
        std::unique_ptr<AbstractBaseItem> item(XBaseItemToolCreate(className, nullptr, 1, nullptr));
        if (!item)
            item.reset(XBaseItemMesureCreate(className, nullptr, 1, nullptr));
        if (!item)
            continue;
        item->fromXml(e);
        QDomElement out = doc.createElement(QStringLiteral("out"));
        item->toXml(out);
        item->computeMesures(nullptr);
    }
    return 0;
}
