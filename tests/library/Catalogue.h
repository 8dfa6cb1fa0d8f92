#pragma once

#include <QCoreApplication>
#include <QMap>
#include <QStringList>
#include <QTranslator>

// The catalogue as hosts see it: the three lists in their order, then the unlisted classes by how
// their displayed name is made (translated, the class name itself, or none).
namespace catalogue {
inline const QStringList tools = {"LineItem",   "PointItem",     "AnchorPointItem",   "EllipseItem",
                                  "CircleItem", "CirclePItem",   "Circle3PointsItem", "Arc3PointsItem",
                                  "CurveItem",  "RectangleItem", "PolygonItem",       "PolylineItem",
                                  "CrossItem"};
inline const QStringList mesures = {"Distance", "Angle", "Circle3", "Projection", "Intersection", "Tangent"};
inline const QStringList annotations = {"eTextItem",  "ArrowItem",  "Arrow2Item", "SmileyItem",
                                        "PixmapItem", "VideoItem",  "RulerItem",  "StampItem",
                                        "Custom1",    "CrossHItem", "CrossVItem", "CircleNote"};
inline const QStringList translatedUnlisted = {"CirclePointsItem", "ArcPointsItem", "LassoItem"};
inline const QStringList untranslated = {"RectCalibItem", "FlattenItem", "PolygonShapeItem"};
inline const QStringList withoutName = {"VickersPItem", "ArcItem", "DXFItem", "RectangleItemFeret"};

inline QStringList translated() {
    return tools + mesures + annotations + translatedUnlisted;
}
inline QStringList all() {
    return translated() + untranslated + withoutName;
}
} // namespace catalogue

// A translator for the context "NAMES" only, from a table of class name -> displayed name.
class NamesTranslator : public QTranslator {
public:
    explicit NamesTranslator(QMap<QString, QString> names)
        : m_names(std::move(names)) {}
    // A language in which every translated class name gets a prefix.
    static NamesTranslator prefixing(const QString& prefix) {
        QMap<QString, QString> names;
        for (const QString& className : catalogue::translated())
            names.insert(className, prefix + className);
        return NamesTranslator(names);
    }

    QString translate(const char* context, const char* sourceText, const char*, int) const override {
        return qstrcmp(context, "NAMES") == 0 ? m_names.value(QString::fromLatin1(sourceText)) : QString();
    }
    bool isEmpty() const override { return false; }

    // Runs f with this translator installed.
    template <typename F> void whileInstalled(F f) {
        QCoreApplication::installTranslator(this);
        f();
        QCoreApplication::removeTranslator(this);
    }

private:
    QMap<QString, QString> m_names;
};
