#pragma once

#include "graphicsobjects_export.h"

#include <QImage>

// In-place image filters. Each one replaces the image's contents and never reports failure; the
// comments name the pixel handling, which decides the format the image is left in.

// Threads the filters split an image's rows over: 0 (the default) uses every core, 1 keeps the
// filters' own loops on the caller's thread (Qt may still convert an image's format on threads of its
// own). The results are the same whatever the setting.
GRAPHICSOBJECTS_EXPORT void setFilterThreads(int threads);
GRAPHICSOBJECTS_EXPORT int filterThreads();

// Point operations on the colour bytes of 32-bit pixels; alpha is never changed and the format kept.
GRAPHICSOBJECTS_EXPORT void filterBrightness(QImage& image, int delta);
GRAPHICSOBJECTS_EXPORT void filterContrast(QImage& image, int amount);
GRAPHICSOBJECTS_EXPORT void filterGamma(QImage& image, double gamma);
// Adds the first value to blue, the second to green and the third to red.
GRAPHICSOBJECTS_EXPORT void filterColorize(QImage& image, int blue, int green, int red);

// Straight-colour operations, in place: the format is kept.
GRAPHICSOBJECTS_EXPORT void filterAutoContrast(QImage& image);
GRAPHICSOBJECTS_EXPORT void filterEqualize(QImage& image);
GRAPHICSOBJECTS_EXPORT void filterDesaturate(QImage& image, float amount);

// The remaining filters leave the image in QImage::Format_ARGB32_Premultiplied.
GRAPHICSOBJECTS_EXPORT void filterGrayscale(QImage& image);
GRAPHICSOBJECTS_EXPORT void filterBlur(QImage& image, int radius);
GRAPHICSOBJECTS_EXPORT void filterSharpen(QImage& image, int enable);
GRAPHICSOBJECTS_EXPORT void filterEdge(QImage& image);
GRAPHICSOBJECTS_EXPORT void filterDespeckle(QImage& image);
GRAPHICSOBJECTS_EXPORT void filterAntialias(QImage& image);
GRAPHICSOBJECTS_EXPORT void filterGaussianBlur(QImage& image, float radius, float sigma);
// The sharpen and emboss kernels are as wide as the radius (or, when it is not positive, sigma) asks;
// one wider than 8191 pixels, or a sigma too small for float weights, is refused with a warning and
// leaves the image unchanged.
GRAPHICSOBJECTS_EXPORT void filterGaussianSharpen(QImage& image, float radius, float sigma);
GRAPHICSOBJECTS_EXPORT void filterEmboss(QImage& image, float radius, float sigma);
GRAPHICSOBJECTS_EXPORT void filterCharcoal(QImage& image);
GRAPHICSOBJECTS_EXPORT void filterSwirl(QImage& image, float degrees);
GRAPHICSOBJECTS_EXPORT void filterImplode(QImage& image, float amount);
