#include "ImageProbes.h"

#include "ImageSampler.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

namespace {

constexpr double Pi = 3.141592653589793;
constexpr double Step = 0.5;

using Histogram = std::array<double, 256>;

// Distance from c (on the image) along the unit direction d to the image's edge.
double toEdge(const ImageSampler& sampler, const QPointF& c, const QPointF& d) {
    double t = std::numeric_limits<double>::infinity();
    if (d.x() > 0)
        t = std::min(t, (sampler.width() - c.x()) / d.x());
    if (d.x() < 0)
        t = std::min(t, -c.x() / d.x());
    if (d.y() > 0)
        t = std::min(t, (sampler.height() - c.y()) / d.y());
    if (d.y() < 0)
        t = std::min(t, -c.y() / d.y());
    return t;
}

std::vector<double> rayAngles(const RadialEdgeOptions& options, int rays) {
    const double start = std::isfinite(options.startAngle) ? std::fmod(options.startAngle, 360.0) : 0;
    const double span = std::isfinite(options.spanAngle) ? std::clamp(options.spanAngle, -360.0, 360.0) : 360;
    const bool allRound = std::fabs(span) >= 360;
    std::vector<double> angles(rays);
    for (int i = 0; i < rays; ++i)
        angles[i] = start + i * (allRound ? 360.0 / rays : span / (rays - 1));
    return angles;
}

// Splits the grey levels into two classes at the threshold of largest between-class variance (Otsu)
// and returns the mean of the class that does not hold `inner`, or `inner` when that class is empty.
double otherClassLevel(const Histogram& count, double inner) {
    double total = 0, sum = 0;
    for (int g = 0; g < 256; ++g) {
        total += count[g];
        sum += g * count[g];
    }
    double below = 0, belowSum = 0, best = -1;
    int split = 0;
    for (int g = 0; g < 255; ++g) {
        below += count[g];
        belowSum += g * count[g];
        const double above = total - below;
        if (below == 0 || above == 0)
            continue;
        const double difference = belowSum / below - (sum - belowSum) / above;
        const double variance = below * above * difference * difference;
        if (variance > best) {
            best = variance;
            split = g;
        }
    }
    if (best < 0)
        return inner;
    const bool innerBelow = inner <= split + 0.5;
    double n = 0, level = 0;
    for (int g = innerBelow ? split + 1 : 0; g <= (innerBelow ? 255 : split); ++g) {
        n += count[g];
        level += g * count[g];
    }
    return n > 0 ? level / n : inner;
}

} // namespace

RadialEdges findRadialEdges(const QImage& image, const QPointF& centre, const RadialEdgeOptions& options) {
    RadialEdges result;
    const int rays = std::clamp(options.rays, 12, 360);
    for (int i = 0; i < rays; ++i)
        result.missedRays.append(i);
    if (image.isNull() || !std::isfinite(centre.x()) || !std::isfinite(centre.y()))
        return result;
    const ImageSampler sampler(image);
    if (!sampler.contains(centre))
        return result;

    // Rays are sampled every half pixel from the centre to their end, twice: first for the levels, then
    // for the crossings, so that no ray's samples need to be kept.
    const std::vector<double> angles = rayAngles(options, rays);
    std::vector<QPointF> directions(rays);
    std::vector<int> counts(rays);
    const bool limited = std::isfinite(options.maxRadius) && options.maxRadius > 0;
    for (int i = 0; i < rays; ++i) {
        directions[i] = QPointF(std::cos(angles[i] * Pi / 180), std::sin(angles[i] * Pi / 180));
        double length = toEdge(sampler, centre, directions[i]);
        if (limited)
            length = std::min(length, options.maxRadius);
        counts[i] = std::isfinite(length) ? int(std::floor(length / Step)) + 1 : 1;
    }
    const auto sample = [&](int ray, int k) { return sampler.grey(centre + directions[ray] * (k * Step)); };

    // Inside: the start point and a ring one pixel out. Outside: the other class of all the samples.
    Histogram histogram{};
    double inner = sampler.grey(centre);
    for (int i = 0; i < rays; ++i) {
        inner += sample(i, std::min(2, counts[i] - 1));
        for (int k = 0; k < counts[i]; ++k)
            histogram[std::clamp(int(std::lround(sample(i, k))), 0, 255)] += 1;
    }
    result.innerLevel = inner / (rays + 1);
    result.outerLevel = otherClassLevel(histogram, result.innerLevel);
    if (std::fabs(result.outerLevel - result.innerLevel) < options.minContrast)
        return result;

    // The first step from the inner side of the threshold to the other, interpolated.
    const double threshold = (result.innerLevel + result.outerLevel) / 2;
    const double inside = result.innerLevel > threshold ? 1 : -1;
    result.missedRays.clear();
    for (int i = 0; i < rays; ++i) {
        double previous = sample(i, 0);
        int k = 1;
        for (; k < counts[i]; ++k) {
            const double current = sample(i, k);
            if ((previous - threshold) * inside > 0 && (current - threshold) * inside <= 0) {
                const double r = (k - 1 + (previous - threshold) / (previous - current)) * Step;
                result.points.append(centre + directions[i] * r);
                result.foundRays.append(i);
                break;
            }
            previous = current;
        }
        if (k >= counts[i])
            result.missedRays.append(i);
    }
    return result;
}
