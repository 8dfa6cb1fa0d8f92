#pragma once

#include <QString>

// The class name a tool name stands for: a displayed name goes through the inverse name table,
// anything else is taken as a class name.
QString classNameFor(const QString& name);

// Registers the library's icons with the resource system (once; later calls do nothing).
void ensureIconResources();
