#include "StartTool.h"

#include "AbstractBaseItem.h"
#include "AbstractScene.h"
#include "ItemFactory.h"

AbstractBaseItem* startTool(AbstractScene* scene, const QString& name, int id) {
    if (!scene)
        return nullptr;
    QString className = name;
    AbstractBaseItem* item = XBaseItemToolCreate(className, nullptr, id, nullptr);
    if (!item)
        item = XBaseItemMesureCreate(className, nullptr, id, nullptr);
    // An unknown name still ends the tool in progress, as starting any tool does.
    scene->startTool(item);
    return item;
}
