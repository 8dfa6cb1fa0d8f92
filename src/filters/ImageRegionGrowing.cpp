#include "ImageProbes.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <new>
#include <vector>

namespace {

// Outlines are traced on the region's mask at twice the resolution, where every pixel is a 2 x 2
// block; the contour then runs through the sub-pixels along the region's edge, and each of them maps to
// the corner of its pixel it touches: (X, Y) -> (ceil(X / 2), ceil(Y / 2)), a point of the pixel-edge
// outline. `origin` is the region's top-left pixel.
QPolygonF pixelEdgeOutline(const std::vector<cv::Point>& contour, const QPoint& origin,
                           double simplification) {
    std::vector<cv::Point> corners;
    corners.reserve(contour.size());
    for (const cv::Point& q : contour) {
        const cv::Point c((q.x + 1) / 2 + origin.x(), (q.y + 1) / 2 + origin.y());
        if (corners.empty() || corners.back() != c)
            corners.push_back(c);
    }
    while (corners.size() > 1 && corners.back() == corners.front())
        corners.pop_back();
    std::vector<cv::Point> simplified;
    cv::approxPolyDP(corners, simplified, simplification, true);
    QPolygonF out;
    out.reserve(qsizetype(simplified.size()));
    for (const cv::Point& c : simplified)
        out.append(QPointF(c.x, c.y));
    return out;
}

// The flood fill and its outlines; OpenCV reports failures (memory) by exceptions.
std::optional<RegionOutline> traceRegion(const QImage& image, const QPoint& seed, int tolerance,
                                         double simplification, const QImage& barrier) {
    QImage rgb = image.convertToFormat(QImage::Format_RGB888);
    cv::Mat pixels(rgb.height(), rgb.width(), CV_8UC3, rgb.bits(), size_t(rgb.bytesPerLine()));
    cv::Mat mask = cv::Mat::zeros(rgb.height() + 2, rgb.width() + 2, CV_8UC1);
    // The flood fill never crosses non-zero mask pixels; its own pixels are 255, the barrier's 1.
    if (barrier.size() == image.size()) {
        QImage grey = barrier.convertToFormat(QImage::Format_Grayscale8);
        const cv::Mat blocked(grey.height(), grey.width(), CV_8UC1, grey.bits(), size_t(grey.bytesPerLine()));
        if (blocked.at<uchar>(seed.y(), seed.x()) != 0)
            return std::nullopt;
        mask(cv::Rect(1, 1, rgb.width(), rgb.height())).setTo(1, blocked);
    }
    const double range = std::clamp(tolerance, 0, 255);
    cv::Rect box;
    const int flags = 8 | cv::FLOODFILL_FIXED_RANGE | cv::FLOODFILL_MASK_ONLY | (255 << 8);
    const int count = cv::floodFill(pixels, mask, cv::Point(seed.x(), seed.y()), cv::Scalar(), &box,
                                    cv::Scalar::all(range), cv::Scalar::all(range), flags);

    // The region's own pixels (the flood mask has a one-pixel margin), doubled, with an empty border so
    // that no contour runs along the array's edge.
    cv::Mat doubled;
    const cv::Mat own = mask(cv::Rect(box.x + 1, box.y + 1, box.width, box.height)) == 255;
    cv::resize(own, doubled, cv::Size(), 2, 2, cv::INTER_NEAREST);
    cv::copyMakeBorder(doubled, doubled, 1, 1, 1, 1, cv::BORDER_CONSTANT, cv::Scalar(0));
    std::vector<std::vector<cv::Point>> contours;
    std::vector<cv::Vec4i> hierarchy;
    cv::findContours(doubled, contours, hierarchy, cv::RETR_CCOMP, cv::CHAIN_APPROX_NONE, cv::Point(-1, -1));

    // A connected region has one outer contour; the largest is taken should rounding ever split one.
    int outer = -1;
    for (int i = 0; i < int(contours.size()); ++i)
        if (hierarchy[i][3] < 0 && (outer < 0 || std::fabs(cv::contourArea(contours[i])) >
                                                     std::fabs(cv::contourArea(contours[outer]))))
            outer = i;
    if (outer < 0)
        return std::nullopt;
    RegionOutline region;
    const QPoint origin(box.x, box.y);
    region.outer = pixelEdgeOutline(contours[outer], origin, simplification);
    for (int hole = hierarchy[outer][2]; hole >= 0; hole = hierarchy[hole][0])
        region.holes.append(pixelEdgeOutline(contours[hole], origin, simplification));
    region.pixelCount = count;
    region.bounds = QRect(box.x, box.y, box.width, box.height);
    return region;
}

} // namespace

std::optional<RegionOutline> growRegion(const QImage& image, const QPoint& seed, int tolerance,
                                        double simplification, const QImage& barrier) {
    if (image.isNull() || !image.rect().contains(seed))
        return std::nullopt;
    if (!std::isfinite(simplification) || simplification < 0)
        simplification = 0;
    // Beyond the image's size a coarser simplification changes nothing (and OpenCV squares it).
    simplification = std::min(simplification, double(image.width()) + image.height());
    try {
        return traceRegion(image, seed, tolerance, simplification, barrier);
    } catch (const cv::Exception&) {
        return std::nullopt;
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}
