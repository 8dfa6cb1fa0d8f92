#include "GeometryEllipseMetrics.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double Pi = 3.141592653589793;

double finiteOrZero(double v) {
    return std::isfinite(v) ? v : 0;
}

} // namespace

double ellipsePerimeter(double a, double b) {
    if (!std::isfinite(a) || !std::isfinite(b))
        return 0;
    const double major = std::max(std::fabs(a), std::fabs(b));
    const double minor = std::min(std::fabs(a), std::fabs(b));
    if (minor == 0)
        return finiteOrZero(4 * major);
    // Perimeter = 2 pi major / M(1, k') * (1 - sum 2^(n-1) c_n^2), with k' = minor / major, the AGM
    // M and c_0^2 = 1 - k'^2, c_(n+1) = (a_n - b_n) / 2 (Legendre's relation for E(k) through K(k)).
    double an = 1, bn = minor / major;
    double cn2 = (1 - bn) * (1 + bn);
    double weight = 0.5, sum = weight * cn2;
    for (int n = 0; n < 64 && cn2 > 1e-34 * an * an; ++n) {
        const double c = (an - bn) / 2;
        const double next = (an + bn) / 2;
        bn = std::sqrt(an * bn);
        an = next;
        cn2 = c * c;
        weight *= 2;
        sum += weight * cn2;
    }
    return finiteOrZero(2 * Pi * major / an * (1 - sum));
}

double ellipseEccentricity(double a, double b) {
    if (!std::isfinite(a) || !std::isfinite(b))
        return 0;
    const double major = std::max(std::fabs(a), std::fabs(b));
    if (major == 0)
        return 0;
    const double ratio = std::min(std::fabs(a), std::fabs(b)) / major;
    return std::sqrt((1 - ratio) * (1 + ratio));
}

double ellipseArea(double a, double b) {
    if (!std::isfinite(a) || !std::isfinite(b))
        return 0;
    return finiteOrZero(Pi * std::fabs(a) * std::fabs(b));
}
