#include "ToolsCatalogue.h"

#include "ClassNames.h"
#include "LassoShared.h"

#include <QCoreApplication>
#include <QGuiApplication>

int g_lassoItemCount = 0;
int g_lassoRegionCount = 0;
QList<QPolygonF> g_lassoRegions;

// Outside any namespace: Q_INIT_RESOURCE declares the resource's initialiser at its own scope.
static void initIconResources() {
    Q_INIT_RESOURCE(icons);
}

void ensureIconResources() {
    static const bool registered = (initIconResources(), true);
    Q_UNUSED(registered);
}

namespace {

enum class List { Tools, Mesures, Annotations, None };
// Translated: translate("NAMES", class name); Itself: the class name; Absent: no name-table entry.
enum class Displayed { Translated, Itself, Absent };

struct CatalogueEntry {
    const char* className;
    List list;
    Displayed displayed;
    const char* icon;
};

const char* const pencil = ":/pencil.png";

// Within each list, rows are in the list's order. Some icons look borrowed (the intersection shows
// the tangent line, the stamp the ruler): hosts and their users know the tools by these pictures.
const CatalogueEntry catalogue[] = {
    {QT_TRANSLATE_NOOP("NAMES", "LineItem"), List::Tools, Displayed::Translated, ":/line.png"},
    {QT_TRANSLATE_NOOP("NAMES", "PointItem"), List::Tools, Displayed::Translated, ":/point.png"},
    {QT_TRANSLATE_NOOP("NAMES", "AnchorPointItem"), List::Tools, Displayed::Translated, ":/point.png"},
    {QT_TRANSLATE_NOOP("NAMES", "EllipseItem"), List::Tools, Displayed::Translated, ":/ellipse.png"},
    {QT_TRANSLATE_NOOP("NAMES", "CircleItem"), List::Tools, Displayed::Translated, ":/circle.png"},
    {QT_TRANSLATE_NOOP("NAMES", "CirclePItem"), List::Tools, Displayed::Translated, ":/circleP.png"},
    {QT_TRANSLATE_NOOP("NAMES", "Circle3PointsItem"), List::Tools, Displayed::Translated, ":/circle.png"},
    {QT_TRANSLATE_NOOP("NAMES", "Arc3PointsItem"), List::Tools, Displayed::Translated, ":/arc.png"},
    {QT_TRANSLATE_NOOP("NAMES", "CurveItem"), List::Tools, Displayed::Translated, ":/curve.png"},
    {QT_TRANSLATE_NOOP("NAMES", "RectangleItem"), List::Tools, Displayed::Translated, ":/rectangle.png"},
    {QT_TRANSLATE_NOOP("NAMES", "PolygonItem"), List::Tools, Displayed::Translated, ":/polyclosed.png"},
    {QT_TRANSLATE_NOOP("NAMES", "PolylineItem"), List::Tools, Displayed::Translated, ":/poly.png"},
    {QT_TRANSLATE_NOOP("NAMES", "CrossItem"), List::Tools, Displayed::Translated, ":/orthosnap.png"},
    {QT_TRANSLATE_NOOP("NAMES", "Distance"), List::Mesures, Displayed::Translated, ":/distance.png"},
    {QT_TRANSLATE_NOOP("NAMES", "Angle"), List::Mesures, Displayed::Translated, ":/angle.png"},
    {QT_TRANSLATE_NOOP("NAMES", "Circle3"), List::Mesures, Displayed::Translated, ":/circle.png"},
    {QT_TRANSLATE_NOOP("NAMES", "Projection"), List::Mesures, Displayed::Translated, ":/perpline.png"},
    {QT_TRANSLATE_NOOP("NAMES", "Intersection"), List::Mesures, Displayed::Translated, ":/tanline.png"},
    {QT_TRANSLATE_NOOP("NAMES", "Tangent"), List::Mesures, Displayed::Translated, ":/parallel.png"},
    {QT_TRANSLATE_NOOP("NAMES", "eTextItem"), List::Annotations, Displayed::Translated, ":/font.png"},
    {QT_TRANSLATE_NOOP("NAMES", "ArrowItem"), List::Annotations, Displayed::Translated, ":/arrow.png"},
    {QT_TRANSLATE_NOOP("NAMES", "Arrow2Item"), List::Annotations, Displayed::Translated, ":/arrow.png"},
    {QT_TRANSLATE_NOOP("NAMES", "SmileyItem"), List::Annotations, Displayed::Translated, ":/smiley.png"},
    {QT_TRANSLATE_NOOP("NAMES", "PixmapItem"), List::Annotations, Displayed::Translated, ":/image.png"},
    {QT_TRANSLATE_NOOP("NAMES", "VideoItem"), List::Annotations, Displayed::Translated, ":/zoomplus.png"},
    {QT_TRANSLATE_NOOP("NAMES", "RulerItem"), List::Annotations, Displayed::Translated, ":/qrule.png"},
    {QT_TRANSLATE_NOOP("NAMES", "StampItem"), List::Annotations, Displayed::Translated, ":/qrule.png"},
    {QT_TRANSLATE_NOOP("NAMES", "Custom1"), List::Annotations, Displayed::Translated, ":/protractor.png"},
    {QT_TRANSLATE_NOOP("NAMES", "CrossHItem"), List::Annotations, Displayed::Translated, pencil},
    {QT_TRANSLATE_NOOP("NAMES", "CrossVItem"), List::Annotations, Displayed::Translated, pencil},
    {QT_TRANSLATE_NOOP("NAMES", "CircleNote"), List::Annotations, Displayed::Translated, ":/circle.png"},
    {QT_TRANSLATE_NOOP("NAMES", "CirclePointsItem"), List::None, Displayed::Translated, ":/circle.png"},
    {QT_TRANSLATE_NOOP("NAMES", "ArcPointsItem"), List::None, Displayed::Translated, ":/arc.png"},
    {QT_TRANSLATE_NOOP("NAMES", "LassoItem"), List::None, Displayed::Translated, ":/poly.png"},
    {"VickersPItem", List::None, Displayed::Absent, ":/poly.png"},
    {"FlattenItem", List::None, Displayed::Itself, ":/arrow.png"},
    {"RectCalibItem", List::None, Displayed::Itself, pencil},
    {"PolygonShapeItem", List::None, Displayed::Itself, pencil},
    {"ArcItem", List::None, Displayed::Absent, pencil},
    {"DXFItem", List::None, Displayed::Absent, pencil},
    {"RectangleItemFeret", List::None, Displayed::Absent, pencil},
};

QMap<QString, QString>& names() {
    static QMap<QString, QString> table;
    return table;
}

QMap<QString, QString>& namesInv() {
    static QMap<QString, QString> table;
    return table;
}

QStringList classNamesOf(List list) {
    QStringList result;
    for (const CatalogueEntry& entry : catalogue) {
        if (entry.list == list)
            result << QString::fromLatin1(entry.className);
    }
    return result;
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
    g_lassoItemCount = 0;
    g_lassoRegionCount = 0;
    g_lassoRegions.clear();

    names().clear();
    for (const CatalogueEntry& entry : catalogue) {
        const QString className = QString::fromLatin1(entry.className);
        if (entry.displayed == Displayed::Translated)
            names().insert(className, QCoreApplication::translate("NAMES", entry.className));
        else if (entry.displayed == Displayed::Itself)
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
    const QString className = classNameFor(name);
    for (const CatalogueEntry& entry : catalogue) {
        if (className == QLatin1String(entry.className))
            return QString::fromLatin1(entry.icon);
    }
    return QString::fromLatin1(pencil);
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
