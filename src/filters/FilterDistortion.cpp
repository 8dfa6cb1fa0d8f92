#include "FilterPixels.h"
#include "ImageFilters.h"

#include <cmath>

using namespace filterpixels;

namespace {

constexpr float Pi = 3.14159265358979323846f;

// Bilinear sample of a straight ARGB32 image; points outside give transparent black.
inline quint32 sample(const QImage& src, float sx, float sy) {
    const int w = src.width(), h = src.height();
    if (!(sx >= 0 && sy >= 0 && sx < float(w) && sy < float(h)))
        return 0;
    const int x0 = std::min(int(sx), w - 1), y0 = std::min(int(sy), h - 1);
    const int x1 = std::min(x0 + 1, w - 1), y1 = std::min(y0 + 1, h - 1);
    const float fx = sx - float(x0), fy = sy - float(y0);
    const uchar* top = src.constScanLine(y0);
    const uchar* bottom = src.constScanLine(y1);
    quint32 out = 0;
    for (int c = 0; c < 4; ++c) {
        const float t = float(top[4 * x0 + c]) + fx * float(top[4 * x1 + c] - top[4 * x0 + c]);
        const float b = float(bottom[4 * x0 + c]) + fx * float(bottom[4 * x1 + c] - bottom[4 * x0 + c]);
        out |= quint32(clampByte(int(t + fy * (b - t) + 0.5f))) << (8 * c);
    }
    return out;
}

// Centre, radius and axis scales shared by the distortions. The scales are integer quotients of
// the sides: a 300 x 200 image is treated as round.
struct Geometry {
    float cx, cy, radius;
    float xScale = 1, yScale = 1;
    explicit Geometry(const QImage& image)
        : cx(0.5f * float(image.width()))
        , cy(0.5f * float(image.height()))
        , radius(std::max(cx, cy)) {
        if (image.width() > image.height())
            yScale = float(image.width() / image.height());
        else if (image.height() > image.width())
            xScale = float(image.height() / image.width());
    }
};

// Moves each pixel inside the circle to the point `map` gives for its offset from the centre;
// pixels outside are copied.
template <typename Map> void distort(QImage& image, Map map) {
    if (image.isNull())
        return;
    const QImage src = argb32Source(image);
    const Geometry geo(src);
    QImage out(src.size(), QImage::Format_ARGB32);
    const float limit = geo.radius * geo.radius;
    for (int y = 0; y < src.height(); ++y) {
        const auto* in = reinterpret_cast<const quint32*>(src.constScanLine(y));
        auto* o = reinterpret_cast<quint32*>(out.scanLine(y));
        const float dy = geo.yScale * (float(y) - geo.cy);
        for (int x = 0; x < src.width(); ++x) {
            const float dx = geo.xScale * (float(x) - geo.cx);
            const float d = dx * dx + dy * dy;
            if (d >= limit) {
                o[x] = in[x];
                continue;
            }
            float mx = dx, my = dy;
            map(d, geo.radius, mx, my);
            o[x] = sample(src, mx / geo.xScale + geo.cx, my / geo.yScale + geo.cy);
        }
    }
    assignPremultiplied(image, std::move(out));
}

} // namespace

void filterSwirl(QImage& image, float degrees) {
    const float angle = degrees * Pi / 180.0f;
    distort(image, [angle](float d, float radius, float& dx, float& dy) {
        const float f = 1.0f - std::sqrt(d) / radius;
        const float theta = angle * f * f;
        const float c = std::cos(theta), s = std::sin(theta);
        const float x = dx;
        dx = c * x - s * dy;
        dy = s * x + c * dy;
    });
}

void filterImplode(QImage& image, float amount) {
    distort(image, [amount](float d, float radius, float& dx, float& dy) {
        const float factor = d == 0 ? 1.0f : std::pow(std::sin(0.5f * Pi * std::sqrt(d) / radius), -amount);
        dx *= factor;
        dy *= factor;
    });
}
