#include "ToolsCatalogue.h"

#include "ClassNames.h"
#include "ItemRegistry.h"
#include "LassoItem.h"

#include <QCoreApplication>
#include <QGuiApplication>

// Outside any namespace: Q_INIT_RESOURCE declares the resource's initialiser at its own scope.
static void initIconResources() {
    Q_INIT_RESOURCE(icons);
}

void ensureIconResources() {
    static const bool registered = (initIconResources(), true);
    Q_UNUSED(registered);
}

namespace {

using ItemRegistry::Displayed;
using ItemRegistry::List;

const char* const pencil = ":/pencil.png";

QMap<QString, QString>& names() {
    static QMap<QString, QString> table;
    return table;
}

QMap<QString, QString>& namesInv() {
    static QMap<QString, QString> table;
    return table;
}

QStringList classNamesOf(List list) {
    QMap<int, QString> byPosition;
    for (const ItemRegistry::Row& row : ItemRegistry::rows()) {
        if (row.list == list)
            byPosition.insert(row.position, QString::fromLatin1(row.className));
    }
    return byPosition.values();
}

QStringList displayedNamesOf(List list) {
    QStringList result;
    for (const QString& className : classNamesOf(list))
        result << names().value(className);
    return result;
}

} // namespace

QString classNameFor(const QString& name) {
    const QString className = namesInv().value(name);
    return className.isEmpty() ? name : className;
}

QMap<QString, QString>* getTools_NamesRef() {
    return &names();
}

QMap<QString, QString>* getTools_NamesInvRef() {
    return &namesInv();
}

void InitToolsNames() {
    ensureIconResources();
    LassoItem::resetShared();

    names().clear();
    for (const ItemRegistry::Row& row : ItemRegistry::rows()) {
        const QString className = QString::fromLatin1(row.className);
        if (row.displayed == Displayed::Translated)
            names().insert(className, QCoreApplication::translate("NAMES", row.className));
        else if (row.displayed == Displayed::Itself)
            names().insert(className, className);
    }
    // Earlier languages stay resolvable; of two classes sharing a displayed name, the later
    // class name wins.
    for (auto it = names().cbegin(); it != names().cend(); ++it)
        namesInv().insert(it.value(), it.key());
}

QStringList toolsAvailable() {
    return displayedNamesOf(List::Tools);
}

QStringList toolsAvailableNoTr() {
    return classNamesOf(List::Tools);
}

QStringList mesuresAvailable() {
    return displayedNamesOf(List::Mesures);
}

QStringList mesuresAvailableNoTr() {
    return classNamesOf(List::Mesures);
}

QStringList annotationsAvailable() {
    return displayedNamesOf(List::Annotations);
}

QStringList annotationsAvailableNoTr() {
    return classNamesOf(List::Annotations);
}

QString getIconPathFor(const QString& name) {
    const ItemRegistry::Row* row = ItemRegistry::find(classNameFor(name));
    return QString::fromLatin1(row ? row->icon : pencil);
}

QPixmap getIconFor(QString name) {
    ensureIconResources();
    const QString path = getIconPathFor(name);
    if (qGuiApp && qGuiApp->devicePixelRatio() > 1.0) {
        QString hiDpiPath = path;
        hiDpiPath.insert(hiDpiPath.lastIndexOf(QLatin1Char('.')), QLatin1String("@2x"));
        QPixmap pixmap(hiDpiPath);
        if (!pixmap.isNull()) {
            pixmap.setDevicePixelRatio(2.0);
            return pixmap;
        }
    }
    return QPixmap(path);
}

QStringList toolInterfaceVersion(void*) {
    return {QStringLiteral("GraphicsObjects"), QStringLiteral("r01010"), QStringLiteral("2020.01.13"),
            QStringLiteral("Vandrel")};
}
