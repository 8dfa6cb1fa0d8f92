// Times the outline functions on simple star-shaped polygons of 10^4 to 10^6 vertices, the sizes
// interleaved in every round, and prints the best time of each with its growth against n log n; the
// self-intersection sweep is also set against testing every pair of edges at 10^4 vertices.
// Usage: bench_geometry [rounds]

#include "GeometryHull.h"
#include "GeometrySelfIntersection.h"
#include "GeometrySimplify.h"
#include "GeometrySplines.h"

#include <QLineF>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <random>
#include <vector>

namespace {

double nowMs() {
    using namespace std::chrono;
    return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}

QPolygonF star(int n) {
    std::mt19937 random(20240601);
    QPolygonF p;
    for (int i = 0; i < n; ++i) {
        const double a = 2 * 3.141592653589793 * i / n, r = 1000 + random() % 1000 / 10.0;
        p.append(QPointF(r * std::cos(a), r * std::sin(a)));
    }
    return p;
}

// Every pair of non-neighbouring edges, with Qt's segment intersection.
bool everyPairCrosses(const QPolygonF& p) {
    const int n = int(p.size());
    for (int i = 0; i < n; ++i)
        for (int j = i + 2; j < n; ++j) {
            if (i == 0 && j == n - 1)
                continue;
            if (QLineF(p[i], p[(i + 1) % n]).intersects(QLineF(p[j], p[(j + 1) % n])) ==
                QLineF::BoundedIntersection)
                return true;
        }
    return false;
}

struct Case {
    const char* name;
    std::function<void(const QPolygonF&)> run;
};

} // namespace

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    const std::vector<int> sizes{10000, 100000, 1000000};
    std::vector<QPolygonF> stars;
    for (int n : sizes)
        stars.push_back(star(n));
    volatile double sink = 0;
    const std::vector<Case> cases{
        {"selfIntersects", [&](const QPolygonF& p) { sink = sink + polygonSelfIntersects(p); }},
        {"convexHull", [&](const QPolygonF& p) { sink = sink + convexHull(p).size(); }},
        {"simplify 1 px", [&](const QPolygonF& p) { sink = sink + simplifyPolyline(p, 1, true).size(); }},
        {"catmullRomLength", [&](const QPolygonF& p) { sink = sink + catmullRomLength(p, true); }},
    };
    std::vector<std::vector<double>> best(cases.size(), std::vector<double>(sizes.size(), 1e300));
    double pairs = 1e300, sweep = 1e300;
    for (int round = 0; round < rounds; ++round) {
        for (size_t c = 0; c < cases.size(); ++c)
            for (size_t s = 0; s < sizes.size(); ++s) {
                const double t0 = nowMs();
                cases[c].run(stars[s]);
                best[c][s] = std::min(best[c][s], nowMs() - t0);
            }
        double t0 = nowMs();
        sink = sink + everyPairCrosses(stars[0]);
        pairs = std::min(pairs, nowMs() - t0);
        t0 = nowMs();
        sink = sink + polygonSelfIntersects(stars[0]);
        sweep = std::min(sweep, nowMs() - t0);
    }
    std::printf("best of %d rounds, ms; growth = time ratio / (n log n ratio) between sizes\n", rounds);
    std::printf("%-18s %10s %10s %10s %8s %8s\n", "function", "1e4", "1e5", "1e6", "x10", "x100");
    for (size_t c = 0; c < cases.size(); ++c) {
        auto nlogn = [&](size_t s) { return sizes[s] * std::log2(double(sizes[s])); };
        std::printf("%-18s %10.2f %10.2f %10.2f %8.2f %8.2f\n", cases[c].name, best[c][0], best[c][1],
                    best[c][2], best[c][1] / best[c][0] / (nlogn(1) / nlogn(0)),
                    best[c][2] / best[c][0] / (nlogn(2) / nlogn(0)));
    }
    std::printf("\nself-intersection at 1e4 vertices: every pair %.1f ms, sweep %.2f ms, ratio %.0f\n", pairs,
                sweep, pairs / sweep);
    return 0;
}
