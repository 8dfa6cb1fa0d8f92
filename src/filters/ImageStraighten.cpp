#include "ImageProbes.h"

#include "GeometryFinite.h"
#include "ImageSampler.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr int BlockColumns = 256;
constexpr double MaxPixels = 67108864;

// Walks a polyline by arc length.
class PathWalker {
public:
    explicit PathWalker(const QList<QPointF>& points)
        : p(points)
        , lengths{0} {
        for (qsizetype i = 1; i < p.size(); ++i)
            lengths.push_back(lengths.back() + std::hypot(p[i].x() - p[i - 1].x(), p[i].y() - p[i - 1].y()));
    }

    double length() const { return lengths.back(); }

    QPointF at(double s) const {
        const size_t i = segment(s);
        return p[i] + (p[i + 1] - p[i]) * ((s - lengths[i]) / (lengths[i + 1] - lengths[i]));
    }

    // Unit direction of the segment holding arc length s.
    QPointF direction(double s) const {
        const size_t i = segment(s);
        return (p[i + 1] - p[i]) / (lengths[i + 1] - lengths[i]);
    }

private:
    const QList<QPointF>& p;
    std::vector<double> lengths;

    size_t segment(double s) const {
        const auto it = std::upper_bound(lengths.begin(), lengths.end(), s);
        const size_t i = it == lengths.begin() ? 0 : size_t(it - lengths.begin()) - 1;
        return std::min(i, lengths.size() - 2);
    }
};

quint32 roundedByte(double v) {
    return quint32(std::clamp(std::lround(v), 0L, 255L));
}

} // namespace

QImage straightenAlongPath(const QImage& image, const QPolygonF& path, double bandWidth,
                           const StraightenProgress& progress) {
    if (image.isNull() || !allFinite(path) || !std::isfinite(bandWidth) || bandWidth > MaxPixels)
        return QImage();
    const QList<QPointF> points = finiteDistinct(path, false);
    if (points.size() < 2)
        return QImage();
    const PathWalker walker(points);
    const double length = walker.length();
    if (!(length >= 1) || length > MaxPixels)
        return QImage();
    const int columns = int(std::floor(length)) + 1;
    const int rows = std::max(1, int(std::lround(bandWidth)));
    if (double(columns) * rows > MaxPixels)
        return QImage();
    QImage out(columns, rows, QImage::Format_ARGB32_Premultiplied);
    if (out.isNull())
        return QImage();

    const ImageSampler sampler(image);
    const int blocks = (columns + BlockColumns - 1) / BlockColumns;
    for (int block = 0; block < blocks; ++block) {
        for (int k = block * BlockColumns; k < std::min(columns, (block + 1) * BlockColumns); ++k) {
            // The normal follows the chord from one pixel before to one pixel after, so corners of the
            // path turn the samples gradually.
            QPointF tangent = walker.at(std::min(k + 1.0, length)) - walker.at(std::max(k - 1.0, 0.0));
            const double norm = std::hypot(tangent.x(), tangent.y());
            tangent = norm > 0 ? tangent / norm : walker.direction(k);
            const QPointF normal(-tangent.y(), tangent.x());
            const QPointF base = walker.at(k);
            for (int j = 0; j < rows; ++j) {
                const QPointF q = base + normal * (j - (rows - 1) / 2.0);
                quint32 word = 0;
                if (sampler.contains(q)) {
                    const auto c = sampler.premultiplied(q);
                    word = roundedByte(c[3]) << 24 | roundedByte(c[2]) << 16 | roundedByte(c[1]) << 8 |
                           roundedByte(c[0]);
                }
                reinterpret_cast<quint32*>(out.scanLine(j))[k] = word;
            }
        }
        if (progress)
            progress(block, block == blocks - 1);
    }
    return out;
}
