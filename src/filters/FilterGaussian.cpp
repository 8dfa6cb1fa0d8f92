#include "FilterKernels.h"
#include "FilterRows.h"
#include "ImageFilters.h"

#include <QtDebug>

#include <cmath>
#include <cstring>
#include <vector>

using namespace filterpixels;

namespace {

constexpr double Pi = 3.14159265358979323846;

// Square kernels are as wide as asked; wider ones than this are refused rather than narrowed, since
// their buffers and their time grow with the width.
constexpr int MaxSquareWidth = 8191;

// The blur drops the taps that fall outside the image, so its kernel never needs to reach further
// than across the whole image.
int blurWidthCap(const QImage& image) {
    return 2 * std::max(image.width(), image.height()) + 3;
}

double gauss1D(int u, double sigma) {
    return std::exp(-double(u) * u / (2 * sigma * sigma)) / (sigma * std::sqrt(2 * Pi));
}

// Width of the square kernels: 2 ceil(radius) + 1, or else the first candidate whose outermost
// normalised weight vanishes at 16-bit precision, less two. 0 when wider than MaxSquareWidth.
int squareKernelWidth(float radius, double sigma) {
    if (radius > 0) {
        const double width = 2.0 * std::ceil(double(radius)) + 1.0;
        return width <= MaxSquareWidth ? int(width) : 0;
    }
    double sum = 0;
    for (int u = -2; u <= 2; ++u)
        sum += gauss1D(u, sigma);
    for (int w = 5; w <= MaxSquareWidth + 2; w += 2) {
        if (w > 5)
            sum += 2 * gauss1D(w / 2, sigma);
        if (int(gauss1D(w / 2, sigma) / sum * 65535) <= 0)
            return w - 2;
    }
    return 0;
}

// The one-dimensional blur kernel, each weight gathering three sub-samples.
std::vector<float> blurKernel(int w, double sigma) {
    std::vector<double> k(w + 1, 0.0);
    const int bias = 3 * w / 2;
    for (int i = -bias; i <= bias; ++i)
        k[(i + bias) / 3] += std::exp(-double(i) * i / (18 * sigma * sigma)) / (sigma * std::sqrt(2 * Pi));
    double sum = 0;
    for (int i = 0; i < w; ++i)
        sum += k[i];
    std::vector<float> out(w);
    for (int i = 0; i < w; ++i)
        out[i] = float(k[i] / sum);
    return out;
}

int blurWidth(float radius, double sigma, int cap) {
    if (radius > 0)
        return int(std::min(2.0 * std::ceil(double(radius)) + 1.0, double(cap)));
    int last = 1;
    for (int w = 3; w <= cap && int(blurKernel(w, sigma)[0] * 255) > 0; w += 2)
        last = w;
    return last;
}

FILTER_ROW_LOOP void toFloat(const uchar* in, float* out, int n) {
    for (int j = 0; j < n; ++j)
        out[j] = in[j];
}

inline uchar toByte(float v) {
    return uchar(int(std::min(std::max(v, 0.0f), 255.0f) + 0.5f));
}

using Floats4 = float __attribute__((vector_size(16)));
using Floats8 = float __attribute__((vector_size(32)));
using Floats16 = float __attribute__((vector_size(64)));

// The sums over taps i of k[i] * rows[i][j], added tap after tap in the order of i to init[j] (or to
// zero when init is null), handed to finish(j, sums, count) for count outputs from j. Blocks of eight
// vectors keep their sums in registers, enough to hide the latency of the additions, instead of
// streaming the row through the cache once per tap. Every vector width adds the same products in
// the same order.
template <typename V, typename Finish>
[[gnu::always_inline]] inline void weightedSums(const float* const* rows, const float* k, int taps, int n,
                                                const float* init, Finish finish) {
    constexpr int Lanes = int(sizeof(V) / sizeof(float)), Vectors = 8, Block = Lanes * Vectors;
    int j = 0;
    for (; j + Block <= n; j += Block) {
        V a[Vectors] = {};
        if (init)
            std::memcpy(a, init + j, sizeof a);
        for (int i = 0; i < taps; ++i) {
            const float* r = rows[i] + j;
            const float weight = k[i];
            for (int v = 0; v < Vectors; ++v) {
                V x;
                std::memcpy(&x, r + Lanes * v, sizeof x);
                a[v] += weight * x;
            }
        }
        float sums[Block];
        std::memcpy(sums, a, sizeof a);
        finish(j, sums, Block);
    }
    for (; j < n; ++j) {
        float a = init ? init[j] : 0.0f;
        for (int i = 0; i < taps; ++i)
            a += k[i] * rows[i][j];
        finish(j, &a, 1);
    }
}

// The blur's row pass: sums rounded to the bytes the column pass reads, but kept as floats.
template <typename V>
[[gnu::always_inline]] inline void roundedFloats(const float* const* rows, const float* k, int taps,
                                                 float* out, int n) {
    weightedSums<V>(rows, k, taps, n, nullptr, [out](int j, const float* sums, int count) {
        for (int l = 0; l < count; ++l)
            out[j + l] = toByte(sums[l]);
    });
}

// The blur's column pass: sums renormalised by `scale` and rounded.
template <typename V>
[[gnu::always_inline]] inline void scaledBytes(const float* const* rows, const float* k, int taps,
                                               float scale, uchar* out, int n) {
    weightedSums<V>(rows, k, taps, n, nullptr, [out, scale](int j, const float* sums, int count) {
        for (int l = 0; l < count; ++l)
            out[j + l] = toByte(sums[l] * scale);
    });
}

// init[j] (zero when init is null) plus the weighted sum, kept as floats or rounded.
template <typename V>
[[gnu::always_inline]] inline void accumulated(const float* const* rows, const float* k, int taps,
                                               const float* init, float* out, int n) {
    weightedSums<V>(rows, k, taps, n, init,
                    [out](int j, const float* sums, int count) { std::copy_n(sums, count, out + j); });
}

template <typename V>
[[gnu::always_inline]] inline void roundedBytes(const float* const* rows, const float* k, int taps,
                                                const float* init, uchar* out, int n) {
    weightedSums<V>(rows, k, taps, n, init, [out](int j, const float* sums, int count) {
        for (int l = 0; l < count; ++l)
            out[j + l] = toByte(sums[l]);
    });
}

// The four sums for one vector unit.
struct Sums {
    void (*roundedFloats)(const float* const*, const float*, int, float*, int);
    void (*scaledBytes)(const float* const*, const float*, int, float, uchar*, int);
    void (*accumulated)(const float* const*, const float*, int, const float*, float*, int);
    void (*roundedBytes)(const float* const*, const float*, int, const float*, uchar*, int);
};

#define FILTER_SUMS(Unit, Attributes, V)                                                                     \
    Attributes void roundedFloats##Unit(const float* const* r, const float* k, int t, float* o, int n) {     \
        roundedFloats<V>(r, k, t, o, n);                                                                     \
    }                                                                                                        \
    Attributes void scaledBytes##Unit(const float* const* r, const float* k, int t, float s, uchar* o,       \
                                      int n) {                                                               \
        scaledBytes<V>(r, k, t, s, o, n);                                                                    \
    }                                                                                                        \
    Attributes void accumulated##Unit(const float* const* r, const float* k, int t, const float* i,          \
                                      float* o, int n) {                                                     \
        accumulated<V>(r, k, t, i, o, n);                                                                    \
    }                                                                                                        \
    Attributes void roundedBytes##Unit(const float* const* r, const float* k, int t, const float* i,         \
                                       uchar* o, int n) {                                                    \
        roundedBytes<V>(r, k, t, i, o, n);                                                                   \
    }                                                                                                        \
    constexpr Sums sums##Unit = {roundedFloats##Unit, scaledBytes##Unit, accumulated##Unit,                  \
                                 roundedBytes##Unit};

FILTER_SUMS(Baseline, , Floats4)
#ifdef FILTER_X86
FILTER_SUMS(Avx2, FILTER_AVX2, Floats8)
FILTER_SUMS(Avx512, FILTER_AVX512, Floats16)
#endif
#undef FILTER_SUMS

const Sums& sums() {
#ifdef FILTER_X86
    switch (isa()) {
    case Isa::Avx512:
        return sumsAvx512;
    case Isa::Avx2:
        return sumsAvx2;
    case Isa::Baseline:
        break;
    }
#endif
    return sumsBaseline;
}

// Blurs one row with k into `out`, rounded to bytes but kept as floats for the column pass; taps
// past the ends are dropped and the rest renormalised.
// `rows` is scratch room for one pointer per tap.
void blurRow(const uchar* src, int w, const std::vector<float>& k, float* row, const float** rows,
             float* out) {
    const int m = int(k.size()) / 2, taps = int(k.size()), bytes = 4 * w;
    toFloat(src, row, bytes);
    const int first = std::min(m, w), end = std::max(w - m, first);
    if (end > first) {
        for (int i = 0; i < taps; ++i)
            rows[i] = row + 4 * (first + i - m);
        sums().roundedFloats(rows, k.data(), taps, out + 4 * first, 4 * (end - first));
    }
    auto renormalised = [&](int x) {
        float used = 0, sum[4] = {0, 0, 0, 0};
        for (int i = std::max(0, m - x); i < taps && x + i - m < w; ++i) {
            used += k[i];
            for (int c = 0; c < 4; ++c)
                sum[c] += k[i] * row[4 * (x + i - m) + c];
        }
        for (int c = 0; c < 4; ++c)
            out[4 * x + c] = toByte(sum[c] / used);
    };
    for (int x = 0; x < first; ++x)
        renormalised(x);
    for (int x = end; x < w; ++x)
        renormalised(x);
}

// Blurs the rows, then the columns of the blurred rows, renormalising where the kernel reaches past
// an end. Blurred rows are made as the column pass first needs them and kept in a ring, so each
// output row is ready once the source row it replaces has been read.
void separableBlur(ResultRows::Band& band, int w, int h, const std::vector<float>& k) {
    const int m = int(k.size()) / 2, taps = int(k.size()), bytes = 4 * w;
    const int ringRows = std::min(taps, h);
    std::vector<float> ring(size_t(ringRows) * bytes), row(bytes);
    std::vector<const float*> rows(taps);
    int made = std::max(0, band.begin - m);
    for (int y = band.begin; y < band.end; ++y) {
        for (; made < h && made <= y + m; ++made)
            blurRow(band.in(made), w, k, row.data(), rows.data(),
                    ring.data() + size_t(made % ringRows) * bytes);
        const int firstTap = std::max(0, m - y), endTap = std::min(taps, h - y + m);
        float used = 0;
        for (int i = firstTap; i < endTap; ++i) {
            rows[i - firstTap] = ring.data() + size_t((y + i - m) % ringRows) * bytes;
            used += k[i];
        }
        sums().scaledBytes(rows.data(), k.data() + firstTap, endTap - firstTap, 1.0f / used, band.row(y),
                           bytes);
        band.stored(y);
    }
}

// A square kernel written as a sum of separable terms plus a few single taps, so that the
// convolution costs a few times the width per sample instead of its square.
struct Kernel {
    struct Term {
        std::vector<float> horizontal, vertical;
    };
    struct Tap {
        int u, v;
        float weight;
    };
    int radius = 0;
    std::vector<Term> terms;
    std::vector<Tap> taps;

    // Scales the kernel to a sum of one, as convolution with a weighted mean does; a kernel summing
    // to zero is used as it is.
    void normalise() {
        double sum = 0;
        for (const Term& t : terms) {
            double h = 0, v = 0;
            for (float x : t.horizontal)
                h += x;
            for (float x : t.vertical)
                v += x;
            sum += h * v;
        }
        for (const Tap& t : taps)
            sum += t.weight;
        if (std::abs(sum) < 1e-12)
            return;
        for (Term& t : terms)
            for (float& x : t.horizontal)
                x = float(x / sum);
        for (Tap& t : taps)
            t.weight = float(t.weight / sum);
    }
};

// Rows of floats and their weights, summed in the order they were added; zero weights add nothing.
struct WeightedRows {
    std::vector<const float*> rows;
    std::vector<float> weights;
    void add(const float* row, float weight) {
        if (weight != 0) {
            rows.push_back(row);
            weights.push_back(weight);
        }
    }
    int size() const { return int(rows.size()); }
    void clear() {
        rows.clear();
        weights.clear();
    }
};

// Convolves all four channels of a band's rows with edge replication, rounding and clamping each
// result. Each term sums its column weights down the rows, then its row weights along the sums;
// the single taps follow, all added in one running sum per output byte.
void convolve(ResultRows::Band& band, int w, int h, const Kernel& kernel) {
    const Sums& s = sums();
    const int m = kernel.radius, bytes = 4 * w;
    // Rows past the top and bottom are the edge rows again, so no more distinct rows are needed than
    // the image has.
    const int ringRows = std::min(2 * m + 1, h);
    std::vector<float> ring(size_t(ringRows) * bytes), column(size_t(bytes) + 8 * size_t(m)), acc(bytes),
        shifted(bytes);
    std::vector<int> loaded(ringRows, -1);
    auto floatRow = [&](int r) {
        r = std::clamp(r, 0, h - 1);
        float* row = ring.data() + size_t(r % ringRows) * bytes;
        if (loaded[r % ringRows] != r) {
            toFloat(band.in(r), row, bytes);
            loaded[r % ringRows] = r;
        }
        return row;
    };
    WeightedRows vertical, sum;
    bool started = false; // acc holds the running sum
    auto flush = [&] {
        if (sum.size() == 0)
            return;
        s.accumulated(sum.rows.data(), sum.weights.data(), sum.size(), started ? acc.data() : nullptr,
                      acc.data(), bytes);
        started = true;
        sum.clear();
    };
    float* centre = column.data() + 4 * size_t(m);
    for (int y = band.begin; y < band.end; ++y) {
        started = false;
        for (size_t t = 0; t < kernel.terms.size(); ++t) {
            const Kernel::Term& term = kernel.terms[t];
            flush(); // the column is about to be replaced
            for (int v = -m; v <= m; ++v)
                vertical.add(floatRow(y + v), term.vertical[v + m]);
            s.accumulated(vertical.rows.data(), vertical.weights.data(), vertical.size(), nullptr, centre,
                          bytes);
            vertical.clear();
            // Columns past the sides are the edge columns again: so are their sums.
            for (int x = 0; x < m; ++x)
                for (int c = 0; c < 4; ++c) {
                    column[4 * x + c] = centre[c];
                    centre[bytes + 4 * x + c] = centre[bytes - 4 + c];
                }
            for (int u = -m; u <= m; ++u)
                sum.add(column.data() + 4 * (u + m), term.horizontal[u + m]);
        }
        for (const Kernel::Tap& t : kernel.taps) {
            if (t.weight == 0)
                continue;
            const float* row = floatRow(y + t.v);
            if (t.u == 0) {
                sum.add(row, t.weight);
                continue;
            }
            // A tap off the centre column reads the row shifted, edge columns repeated.
            flush();
            for (int x = 0; x < w; ++x)
                std::copy_n(row + 4 * std::clamp(x + t.u, 0, w - 1), 4, shifted.data() + 4 * x);
            sum.add(shifted.data(), t.weight);
            flush();
        }
        s.roundedBytes(sum.rows.data(), sum.weights.data(), sum.size(), started ? acc.data() : nullptr,
                       band.row(y), bytes);
        sum.clear();
        band.stored(y);
    }
}

// exp(-(u^2 + v^2) / (2 sigma^2)) / (2 pi sigma^2) splits into a row and a column factor.
Kernel::Term gaussTerm(int m, double sigma, bool positiveOnly) {
    Kernel::Term t;
    for (int u = -m; u <= m; ++u) {
        const double g = std::exp(-double(u) * u / (2 * sigma * sigma));
        const bool kept = !positiveOnly || u >= 0;
        t.horizontal.push_back(kept ? float(g / (2 * Pi * sigma * sigma)) : 0.0f);
        t.vertical.push_back(kept ? float(g) : 0.0f);
    }
    return t;
}

double gauss2D(int u, int v, double sigma) {
    return std::exp(-(double(u) * u + double(v) * v) / (2 * sigma * sigma)) / (2 * Pi * sigma * sigma);
}

// Gaussian weights with the centre replaced by -2 times their sum.
Kernel sharpenKernel(int width, double sigma) {
    Kernel k;
    k.radius = width / 2;
    k.terms.push_back(gaussTerm(k.radius, sigma, false));
    double sum = 0;
    for (int v = -k.radius; v <= k.radius; ++v)
        for (int u = -k.radius; u <= k.radius; ++u)
            sum += gauss2D(u, v, sigma);
    k.taps.push_back({0, 0, float(-2 * sum - gauss2D(0, 0, sigma))});
    k.normalise();
    return k;
}

// Gaussian weights times -8 where u < 0 or v < 0 and +8 elsewhere (that is -8 G + 16 G on the
// quadrant u, v >= 0), with the anti-diagonal u = -v removed again.
Kernel embossKernel(int width, double sigma) {
    Kernel k;
    k.radius = width / 2;
    Kernel::Term all = gaussTerm(k.radius, sigma, false), quadrant = gaussTerm(k.radius, sigma, true);
    for (float& x : all.horizontal)
        x *= -8.0f;
    for (float& x : quadrant.horizontal)
        x *= 16.0f;
    k.terms = {all, quadrant};
    for (int v = -k.radius; v <= k.radius; ++v) {
        const double sign = (-v < 0 || v < 0) ? -8.0 : 8.0;
        k.taps.push_back({-v, v, float(-sign * gauss2D(-v, v, sigma))});
    }
    k.normalise();
    return k;
}

// Runs a square-kernel filter as a converted filter, leaving the result as `store` says; false
// (and the image untouched) when there is nothing to do or the kernel is refused.
bool squareFilter(QImage& image, float radius, float sigma, Kernel (*makeKernel)(int, double), Store store,
                  const char* name) {
    if (sigma == 0 || !std::isfinite(sigma) || image.isNull())
        return false;
    const int width = squareKernelWidth(radius, sigma);
    if (width == 0) {
        qWarning("%s: the kernel asked for (radius %g, sigma %g) is wider than %d pixels; the image is left "
                 "unchanged",
                 name, double(radius), double(sigma), MaxSquareWidth);
        return false;
    }
    const Kernel kernel = makeKernel(width, sigma);
    const int w = image.width(), h = image.height();
    ResultRows result(image, kernel.radius, 0, store);
    // Each band keeps as many float rows as its kernel reads; bands no shorter keep that to the image's size.
    result.forBands([&](ResultRows::Band& band) { convolve(band, w, h, kernel); }, 2 * kernel.radius + 1);
    result.finish();
    return true;
}

} // namespace

void filterGaussianBlur(QImage& image, float radius, float sigma) {
    if (sigma == 0 || !std::isfinite(sigma) || image.isNull())
        return;
    const int width = blurWidth(radius, sigma, blurWidthCap(image));
    if (width < 3)
        return;
    const std::vector<float> k = blurKernel(width, sigma);
    const int w = image.width(), h = image.height();
    ResultRows result(image, width / 2, 0, Store::Premultiply);
    result.forBands([&](ResultRows::Band& band) { separableBlur(band, w, h, k); });
    result.finish();
}

void filterGaussianSharpen(QImage& image, float radius, float sigma) {
    squareFilter(image, radius, sigma, sharpenKernel, Store::Premultiply, "filterGaussianSharpen");
}

void filterEmboss(QImage& image, float radius, float sigma) {
    if (!squareFilter(image, radius, sigma, embossKernel, Store::Straight, "filterEmboss"))
        return;
    filterEqualize(image);
    premultiplyInPlace(image);
}
