#pragma once

#include "graphicsobjects_export.h"

#include <QMap>
#include <QPixmap>
#include <QString>
#include <QStringList>

// The tools the library offers, by class name (the one identity of an item kind) and by the name
// displayed for it: its translation in the context "NAMES".

// class name -> displayed name, and its inverse; the tables themselves, which the host may change.
GRAPHICSOBJECTS_EXPORT QMap<QString, QString>* getTools_NamesRef();
GRAPHICSOBJECTS_EXPORT QMap<QString, QString>* getTools_NamesInvRef();

// Fills both tables from the translators installed now; call again after a change of language.
// The inverse table keeps the names of earlier languages.
GRAPHICSOBJECTS_EXPORT void InitToolsNames();

// The three catalogue lists, as class names or as displayed names (empty where the name table
// has no entry), always in the catalogue's order.
GRAPHICSOBJECTS_EXPORT QStringList toolsAvailable();
GRAPHICSOBJECTS_EXPORT QStringList toolsAvailableNoTr();
GRAPHICSOBJECTS_EXPORT QStringList mesuresAvailable();
GRAPHICSOBJECTS_EXPORT QStringList mesuresAvailableNoTr();
GRAPHICSOBJECTS_EXPORT QStringList annotationsAvailable();
GRAPHICSOBJECTS_EXPORT QStringList annotationsAvailableNoTr();

// Resource path of the icon of a class, given by class name or displayed name; ":/pencil.png" for
// a name that matches no class.
GRAPHICSOBJECTS_EXPORT QString getIconPathFor(const QString& name);
// That icon; on a high-density screen its @2x image, with the matching device pixel ratio.
GRAPHICSOBJECTS_EXPORT QPixmap getIconFor(QString name);

// Library, revision, date, author.
GRAPHICSOBJECTS_EXPORT QStringList toolInterfaceVersion(void*);
