#include "FilterCatalogue.h"

#include "ImageFilters.h"

#include <QCoreApplication>

#include <cmath>

QStringList ImageFilterInfo::argumentNames() const {
    return QString::fromLatin1(arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QString ImageFilterInfo::displayedTitle() const {
    return QCoreApplication::translate("FilterCatalogue", title);
}

bool ImageFilterInfo::accepts(const QList<double>& values, QString* error) const {
    const QStringList names = argumentNames();
    if (values.size() != names.size()) {
        if (error)
            *error = QStringLiteral("%1 takes %2 arguments").arg(QLatin1String(name)).arg(names.size());
        return false;
    }
    for (int i = 0; i < values.size(); ++i) {
        const double v = values.at(i);
        if (!(v >= low && v <= high) || (whole && v != std::floor(v))) {
            if (error)
                *error = QStringLiteral("%1: %2 must be a %3 from %4 to %5")
                             .arg(QLatin1String(name), names.at(i),
                                  whole ? QStringLiteral("whole number") : QStringLiteral("number"))
                             .arg(low)
                             .arg(high);
            return false;
        }
    }
    return true;
}

const QList<ImageFilterInfo>& imageFilters() {
    using V = const QList<double>&;
    static const QList<ImageFilterInfo> list = {
        {"brightness",
         QT_TRANSLATE_NOOP("FilterCatalogue", "Brightness"),
         "DELTA",
         -255,
         255,
         true,
         {20},
         [](QImage& i, V v) { filterBrightness(i, int(v[0])); }},
        {"contrast",
         QT_TRANSLATE_NOOP("FilterCatalogue", "Contrast"),
         "AMOUNT",
         -255,
         255,
         true,
         {20},
         [](QImage& i, V v) { filterContrast(i, int(v[0])); }},
        {"gamma",
         QT_TRANSLATE_NOOP("FilterCatalogue", "Gamma"),
         "GAMMA",
         0.01,
         10,
         false,
         {1.2},
         [](QImage& i, V v) { filterGamma(i, v[0]); }},
        {"colorize",
         QT_TRANSLATE_NOOP("FilterCatalogue", "Colorize"),
         "BLUE GREEN RED",
         -255,
         255,
         true,
         {0, 0, 40},
         [](QImage& i, V v) { filterColorize(i, int(v[0]), int(v[1]), int(v[2])); }},
        {"auto-contrast",
         QT_TRANSLATE_NOOP("FilterCatalogue", "Auto contrast"),
         "",
         0,
         0,
         false,
         {},
         [](QImage& i, V) { filterAutoContrast(i); }},
        {"equalize",
         QT_TRANSLATE_NOOP("FilterCatalogue", "Equalize"),
         "",
         0,
         0,
         false,
         {},
         [](QImage& i, V) { filterEqualize(i); }},
        {"desaturate",
         QT_TRANSLATE_NOOP("FilterCatalogue", "Desaturate"),
         "AMOUNT",
         0,
         1,
         false,
         {0.5},
         [](QImage& i, V v) { filterDesaturate(i, float(v[0])); }},
        {"grayscale",
         QT_TRANSLATE_NOOP("FilterCatalogue", "Grayscale"),
         "",
         0,
         0,
         false,
         {},
         [](QImage& i, V) { filterGrayscale(i); }},
        {"blur",
         QT_TRANSLATE_NOOP("FilterCatalogue", "Blur"),
         "RADIUS",
         1,
         100,
         true,
         {2},
         [](QImage& i, V v) { filterBlur(i, int(v[0])); }},
        {"sharpen",
         QT_TRANSLATE_NOOP("FilterCatalogue", "Sharpen"),
         "",
         0,
         0,
         false,
         {},
         [](QImage& i, V) { filterSharpen(i, 1); }},
        {"edge",
         QT_TRANSLATE_NOOP("FilterCatalogue", "Edges"),
         "",
         0,
         0,
         false,
         {},
         [](QImage& i, V) { filterEdge(i); }},
        {"despeckle",
         QT_TRANSLATE_NOOP("FilterCatalogue", "Despeckle"),
         "",
         0,
         0,
         false,
         {},
         [](QImage& i, V) { filterDespeckle(i); }},
        {"antialias",
         QT_TRANSLATE_NOOP("FilterCatalogue", "Antialias"),
         "",
         0,
         0,
         false,
         {},
         [](QImage& i, V) { filterAntialias(i); }},
        {"gaussian-blur",
         QT_TRANSLATE_NOOP("FilterCatalogue", "Gaussian blur"),
         "RADIUS SIGMA",
         0,
         100,
         false,
         {2, 1},
         [](QImage& i, V v) { filterGaussianBlur(i, float(v[0]), float(v[1])); }},
        {"gaussian-sharpen",
         QT_TRANSLATE_NOOP("FilterCatalogue", "Gaussian sharpen"),
         "RADIUS SIGMA",
         0,
         100,
         false,
         {2, 1},
         [](QImage& i, V v) { filterGaussianSharpen(i, float(v[0]), float(v[1])); }},
        {"emboss",
         QT_TRANSLATE_NOOP("FilterCatalogue", "Emboss"),
         "RADIUS SIGMA",
         0,
         100,
         false,
         {1, 1},
         [](QImage& i, V v) { filterEmboss(i, float(v[0]), float(v[1])); }},
        {"charcoal",
         QT_TRANSLATE_NOOP("FilterCatalogue", "Charcoal"),
         "",
         0,
         0,
         false,
         {},
         [](QImage& i, V) { filterCharcoal(i); }},
        {"swirl",
         QT_TRANSLATE_NOOP("FilterCatalogue", "Swirl"),
         "DEGREES",
         -3600,
         3600,
         false,
         {90},
         [](QImage& i, V v) { filterSwirl(i, float(v[0])); }},
        {"implode",
         QT_TRANSLATE_NOOP("FilterCatalogue", "Implode"),
         "AMOUNT",
         -5,
         5,
         false,
         {0.5},
         [](QImage& i, V v) { filterImplode(i, float(v[0])); }},
    };
    return list;
}

const ImageFilterInfo* findImageFilter(const QString& name) {
    for (const ImageFilterInfo& f : imageFilters()) {
        if (name == QLatin1String(f.name))
            return &f;
    }
    return nullptr;
}
