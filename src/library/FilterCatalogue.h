#pragma once

#include "graphicsobjects_export.h"

#include <QImage>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

// The image filters by name, with the range of their arguments: what a command line, a menu or a
// dialog offers of ImageFilters.h.
struct GRAPHICSOBJECTS_EXPORT ImageFilterInfo {
    const char* name;      // "gaussian-blur"
    const char* title;     // "Gaussian blur", translated in the context "FilterCatalogue"
    const char* arguments; // "RADIUS SIGMA", empty for a filter without arguments
    double low;
    double high;
    bool whole; // the arguments are whole numbers
    QList<double> defaults;
    std::function<void(QImage&, const QList<double>&)> apply;

    QStringList argumentNames() const;
    QString displayedTitle() const;
    // Whether values fit the filter: as many as its arguments, each in range; error says which not.
    bool accepts(const QList<double>& values, QString* error = nullptr) const;
};

GRAPHICSOBJECTS_EXPORT const QList<ImageFilterInfo>& imageFilters();
// The filter of that name, or null.
GRAPHICSOBJECTS_EXPORT const ImageFilterInfo* findImageFilter(const QString& name);
