#pragma once

#include "graphicsobjects_export.h"

#include <QImage>
#include <QList>
#include <QPoint>
#include <QPointF>
#include <QPolygonF>
#include <QRect>

#include <functional>
#include <optional>

// Measurements read from an image. Positions are in pixel units: pixel (i, j) covers the square
// [i, i + 1) x [j, j + 1), so its centre is (i + 0.5, j + 0.5). Intensities are bilinear between
// pixel centres. None of these functions changes the image.

struct RadialEdgeOptions {
    // Number of rays, clamped to 12..360.
    int rays = 36;
    // Sector searched, in degrees in scene orientation (as addArc: positive turns clockwise on screen);
    // a span of 360 or more searches all round with evenly spaced rays, a smaller one puts the first
    // and last rays on the sector's ends.
    double startAngle = 0;
    double spanAngle = 360;
    // How far a ray searches; 0 or less: up to the image's edge.
    double maxRadius = 0;
    // Difference of grey levels between inside and outside below which the image counts as flat.
    double minContrast = 8;
};

struct RadialEdges {
    // One edge point per ray that found one, in ray order, and that ray's index.
    QList<QPointF> points;
    QList<int> foundRays;
    // Rays without an edge.
    QList<int> missedRays;
    // Grey level around the start point and beyond the edges; the edges are where the intensity
    // crosses their mean.
    double innerLevel = 0;
    double outerLevel = 0;
};

// Casts rays from `centre` and takes, on each, the first point where the intensity crosses halfway
// between the inner level (around the centre) and the outer level, interpolated between samples half a
// pixel apart. The outer level is the mean of the samples, over all rays, that an Otsu split puts in the
// class without the inner level. A ray that reaches its end without crossing finds nothing; so does
// every ray on a flat image or from a centre off the image.
GRAPHICSOBJECTS_EXPORT RadialEdges findRadialEdges(const QImage& image, const QPointF& centre,
                                                   const RadialEdgeOptions& options = {});

// Called after each block of columns of a straightened image (256 columns each), with the block's
// index from 0 and whether it was the last.
using StraightenProgress = std::function<void(int block, bool last)>;

// The band of the image along `path`, straightened: column k samples the path at arc length k (one
// pixel steps, the last column at most one pixel before the end), row j the normal there at offset
// j - (rows - 1) / 2, rows being the band width rounded (at least 1). The normal turns the path's
// direction a quarter turn clockwise on screen, so a path running right has row 0 on its upper side.
// Colours are bilinear in premultiplied form; outside the image they are transparent. The result is
// in QImage::Format_ARGB32_Premultiplied, null for a path shorter than a pixel, a non-finite
// coordinate or width, or a result of more than 2^26 pixels.
GRAPHICSOBJECTS_EXPORT QImage straightenAlongPath(const QImage& image, const QPolygonF& path,
                                                  double bandWidth, const StraightenProgress& progress = {});

struct RegionOutline {
    // Outline of the region along its pixels' edges, simplified to within `simplification` of them.
    QPolygonF outer;
    // Outlines of the enclosed areas outside the region, in the same way.
    QList<QPolygonF> holes;
    // Exact number of pixels in the region.
    qint64 pixelCount = 0;
    // The pixels the region spans.
    QRect bounds;
};

// The 8-connected region of pixels whose colour lies within `tolerance` of the clicked pixel's in every
// channel (for a grey image: whose grey level does), with its outlines. The tolerance is clamped to
// 0..255 (255 takes the whole image); simplification 0 keeps the exact pixel-edge outlines, which
// then enclose exactly pixelCount unit squares. Pixels set in `barrier` (an image of the same size,
// non-zero grey level) never join the region, so regions can be kept apart; a barrier of another size
// is ignored. Empty for a seed off the image or on the barrier.
GRAPHICSOBJECTS_EXPORT std::optional<RegionOutline> growRegion(const QImage& image, const QPoint& seed,
                                                               int tolerance, double simplification = 0.5,
                                                               const QImage& barrier = QImage());
