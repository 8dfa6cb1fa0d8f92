#pragma once

#include "graphicsobjects_export.h"

#include <QList>
#include <QString>

class AbstractBaseItem;
class QGraphicsItem;

// One row per item class: everything the catalogue, the factories, the common parameters and the
// tests need to know of it. Adding a class is one row here, its files and one CMake line.
namespace ItemRegistry {

enum class List { Tools, Mesures, Annotations, None };
// Translated: translate("NAMES", class name); Itself: the class name; Absent: no name-table entry.
enum class Displayed { Translated, Itself, Absent };
using Constructor = AbstractBaseItem* (*)(QGraphicsItem* parent, int id, void* context);

struct Row {
    const char* className;
    int type;     // QGraphicsItem::type() of the class
    List list;    // catalogue list, and so the factory: measures have their own
    int position; // 1-based place in the list; 0 in no list
    Displayed displayed;
    const char* icon;      // resource path
    const char* mesureKey; // common parameter naming the measure a new item shows, or null
    int mesureDefault;
    Constructor construct;
};

// In the order the factories try the names.
GRAPHICSOBJECTS_EXPORT const QList<Row>& rows();
// The row of a class name (exact, case-sensitive), or null.
GRAPHICSOBJECTS_EXPORT const Row* find(const QString& className);

} // namespace ItemRegistry
