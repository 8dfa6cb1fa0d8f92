#include "FilterRows.h"
#include "ImageFilters.h"

#include <cmath>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

using namespace filterpixels;

namespace {

constexpr float Pi = 3.14159265358979323846f;

// Bilinear sample of the straight ARGB32 source of a band; points outside give transparent black.
inline quint32 sample(const ResultRows::Band& src, int w, int h, float sx, float sy) {
    if (!(sx >= 0 && sy >= 0 && sx < float(w) && sy < float(h)))
        return 0;
    const int x0 = std::min(int(sx), w - 1), y0 = std::min(int(sy), h - 1);
    const int x1 = std::min(x0 + 1, w - 1), y1 = std::min(y0 + 1, h - 1);
    const float fx = sx - float(x0), fy = sy - float(y0);
    const uchar* top = src.in(y0);
    const uchar* bottom = src.in(y1);
#if defined(__SSE2__) && Q_BYTE_ORDER == Q_LITTLE_ENDIAN
    // The four channels in the lanes of one register: the same operations, lane by lane.
    auto lanes = [](const uchar* p) {
        quint32 word;
        std::memcpy(&word, p, 4);
        const __m128i zero = _mm_setzero_si128();
        return _mm_unpacklo_epi16(_mm_unpacklo_epi8(_mm_cvtsi32_si128(int(word)), zero), zero);
    };
    auto along = [&](const uchar* row, __m128 weight) {
        const __m128i left = lanes(row + 4 * x0);
        const __m128 step = _mm_cvtepi32_ps(_mm_sub_epi32(lanes(row + 4 * x1), left));
        return _mm_add_ps(_mm_cvtepi32_ps(left), _mm_mul_ps(weight, step));
    };
    const __m128 t = along(top, _mm_set1_ps(fx)), b = along(bottom, _mm_set1_ps(fx));
    const __m128 v =
        _mm_add_ps(_mm_add_ps(t, _mm_mul_ps(_mm_set1_ps(fy), _mm_sub_ps(b, t))), _mm_set1_ps(0.5f));
    const __m128i i = _mm_cvttps_epi32(v);
    return quint32(_mm_cvtsi128_si32(_mm_packus_epi16(_mm_packs_epi32(i, i), _mm_setzero_si128())));
#else
    quint32 out = 0;
    for (int c = 0; c < 4; ++c) {
        const float t = float(top[4 * x0 + c]) + fx * float(top[4 * x1 + c] - top[4 * x0 + c]);
        const float b = float(bottom[4 * x0 + c]) + fx * float(bottom[4 * x1 + c] - bottom[4 * x0 + c]);
        out |= quint32(clampByte(int(t + fy * (b - t) + 0.5f))) << (8 * c);
    }
    return out;
#endif
}

// Centre, radius and axis scales shared by the distortions. The scales are integer quotients of
// the sides: a 300 x 200 image is treated as round.
struct Geometry {
    float cx, cy, radius;
    float xScale = 1, yScale = 1;
    Geometry(int w, int h)
        : cx(0.5f * float(w))
        , cy(0.5f * float(h))
        , radius(std::max(cx, cy)) {
        if (w > h)
            yScale = float(w / h);
        else if (h > w)
            xScale = float(h / w);
    }
};

// Moves each pixel inside the circle to the point `map` gives for its offset from the centre;
// pixels outside are copied.
template <typename Map> void distort(QImage& image, Map map) {
    if (image.isNull())
        return;
    const int w = image.width(), h = image.height();
    const Geometry geo(w, h);
    const float limit = geo.radius * geo.radius;
    // Samples may come from any row, so the result never shares the source's buffer.
    ResultRows result(image, h, h, Store::Premultiply);
    result.forBands([&](ResultRows::Band& band) {
        for (int y = band.begin; y < band.end; ++y) {
            const auto* in = reinterpret_cast<const quint32*>(band.in(y));
            auto* o = reinterpret_cast<quint32*>(band.row(y));
            const float dy = geo.yScale * (float(y) - geo.cy);
            for (int x = 0; x < w; ++x) {
                const float dx = geo.xScale * (float(x) - geo.cx);
                const float d = dx * dx + dy * dy;
                if (d >= limit) {
                    o[x] = in[x];
                    continue;
                }
                float mx = dx, my = dy;
                map(d, geo.radius, mx, my);
                o[x] = sample(band, w, h, mx / geo.xScale + geo.cx, my / geo.yScale + geo.cy);
            }
            band.stored(y);
        }
    });
    result.finish();
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
