#include "ItemFactory.h"

#include "ClassNames.h"
#include "ItemRegistry.h"

namespace {

using ItemRegistry::List;

bool inMesureFactory(const ItemRegistry::Row& row) {
    return row.list == List::Mesures;
}

AbstractBaseItem* build(bool mesureFactory, const QString& name, QGraphicsItem* parent, int id,
                        void* context) {
    const ItemRegistry::Row* row = ItemRegistry::find(classNameFor(name));
    if (!row || !row->construct || inMesureFactory(*row) != mesureFactory)
        return nullptr;
    return row->construct(parent, id, context);
}

QStringList classNames(bool mesureFactory) {
    QStringList result;
    for (const ItemRegistry::Row& row : ItemRegistry::rows()) {
        if (inMesureFactory(row) == mesureFactory)
            result << QString::fromLatin1(row.className);
    }
    return result;
}

} // namespace

AbstractBaseItem* XBaseItemToolCreate(QString& name, QGraphicsItem* parent, int id, void* context) {
    return build(false, name, parent, id, context);
}

AbstractBaseItem* XBaseItemMesureCreate(QString& name, QGraphicsItem* parent, int id, void* context) {
    return build(true, name, parent, id, context);
}

QStringList toolFactoryClassNames() {
    return classNames(false);
}

QStringList mesureFactoryClassNames() {
    return classNames(true);
}

bool factoryBuilds(const QString& className) {
    const ItemRegistry::Row* row = ItemRegistry::find(className);
    return row && row->construct;
}
