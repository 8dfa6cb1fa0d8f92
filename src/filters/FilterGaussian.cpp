#include "FilterRows.h"
#include "ImageFilters.h"

#include <cmath>
#include <cstring>
#include <vector>

using namespace filterpixels;

namespace {

constexpr double Pi = 3.14159265358979323846;

// Kernels never need to reach further than across the whole image.
int widthCap(const QImage& image) {
    return 2 * std::max(image.width(), image.height()) + 3;
}

int widthFromRadius(float radius, int cap) {
    return int(std::min(2.0 * std::ceil(double(radius)) + 1.0, double(cap)));
}

double gauss1D(int u, double sigma) {
    return std::exp(-double(u) * u / (2 * sigma * sigma)) / (sigma * std::sqrt(2 * Pi));
}

// Width of the square kernels: the first candidate whose outermost normalised weight vanishes at
// 16-bit precision, less two.
int squareKernelWidth(float radius, double sigma, int cap) {
    if (radius > 0)
        return widthFromRadius(radius, cap);
    double sum = 0;
    for (int u = -2; u <= 2; ++u)
        sum += gauss1D(u, sigma);
    for (int w = 5; w <= cap; w += 2) {
        if (w > 5)
            sum += 2 * gauss1D(w / 2, sigma);
        if (int(gauss1D(w / 2, sigma) / sum * 65535) <= 0)
            return w - 2;
    }
    return cap;
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
        return widthFromRadius(radius, cap);
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

inline void toBytes(const float* in, uchar* out, int n) {
    for (int j = 0; j < n; ++j)
        out[j] = toByte(in[j]);
}

// The sums over taps i of k[i] * rows[i][j], added tap after tap in the order of i to init[j] (or to
// zero when init is null), handed to finish(j, sums, count) for count outputs from j. Blocks of 64
// outputs keep their sums in eight vector registers, enough to hide the latency of the additions,
// instead of streaming the row through the cache once per tap.
template <typename Finish>
[[gnu::always_inline]] inline void weightedSums(const float* const* rows, const float* k, int taps, int n,
                                                const float* init, Finish finish) {
    using Floats8 = float __attribute__((vector_size(32)));
    constexpr int Vectors = 8, Block = 8 * Vectors;
    int j = 0;
    for (; j + Block <= n; j += Block) {
        Floats8 a[Vectors] = {};
        if (init)
            std::memcpy(a, init + j, sizeof a);
        for (int i = 0; i < taps; ++i) {
            const float* r = rows[i] + j;
            const float weight = k[i];
            for (int v = 0; v < Vectors; ++v) {
                Floats8 x;
                std::memcpy(&x, r + 8 * v, sizeof x);
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

// The row pass's sums, rounded to the bytes the column pass reads but kept as floats.
FILTER_ROW_LOOP void roundedSums(const float* const* rows, const float* k, int taps, float* out, int n) {
    weightedSums(rows, k, taps, n, nullptr, [out](int j, const float* sums, int count) {
        for (int l = 0; l < count; ++l)
            out[j + l] = toByte(sums[l]);
    });
}

// acc[j] (zero when init is null, else init[j]) plus the weighted sum.
FILTER_ROW_LOOP void accumulate(const float* const* rows, const float* k, int taps, const float* init,
                                float* acc, int n) {
    weightedSums(rows, k, taps, n, init,
                 [acc](int j, const float* sums, int count) { std::copy_n(sums, count, acc + j); });
}

// The column pass's sums, renormalised by `scale` and rounded.
FILTER_ROW_LOOP void scaledSums(const float* const* rows, const float* k, int taps, float scale, uchar* out,
                                int n) {
    weightedSums(rows, k, taps, n, nullptr, [out, scale](int j, const float* sums, int count) {
        for (int l = 0; l < count; ++l)
            out[j + l] = toByte(sums[l] * scale);
    });
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
        roundedSums(rows, k.data(), taps, out + 4 * first, 4 * (end - first));
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
void separableBlur(ResultRows& result, const std::vector<float>& k) {
    const QImage& src = result.source();
    const int w = src.width(), h = src.height(), m = int(k.size()) / 2, taps = int(k.size()), bytes = 4 * w;
    const int ringRows = std::min(taps, h);
    std::vector<float> ring(size_t(ringRows) * bytes), row(bytes);
    std::vector<const float*> rows(taps);
    int made = 0;
    for (int y = 0; y < h; ++y) {
        for (; made < h && made <= y + m; ++made)
            blurRow(src.constScanLine(made), w, k, row.data(), rows.data(),
                    ring.data() + size_t(made % ringRows) * bytes);
        const int firstTap = std::max(0, m - y), endTap = std::min(taps, h - y + m);
        float used = 0;
        for (int i = firstTap; i < endTap; ++i) {
            rows[i - firstTap] = ring.data() + size_t((y + i - m) % ringRows) * bytes;
            used += k[i];
        }
        scaledSums(rows.data(), k.data() + firstTap, endTap - firstTap, 1.0f / used, result.row(y), bytes);
        result.stored(y);
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

// Convolves all four channels with edge replication, rounding and clamping each result.
void convolve(const QImage& src, QImage& dst, const Kernel& kernel) {
    const int w = src.width(), h = src.height(), m = kernel.radius, taps = 2 * m + 1;
    const int bytes = 4 * w, padded = 4 * (w + 2 * m);
    std::vector<float> ring(size_t(taps) * padded), column(padded), acc(bytes);
    std::vector<int> loaded(taps, -1);
    auto paddedRow = [&](int r) {
        r = std::clamp(r, 0, h - 1);
        float* row = ring.data() + size_t(r % taps) * padded;
        if (loaded[r % taps] != r) {
            const uchar* s = src.constScanLine(r);
            toFloat(s, row + 4 * m, bytes);
            for (int x = 0; x < m; ++x)
                for (int c = 0; c < 4; ++c) {
                    row[4 * x + c] = s[c];
                    row[4 * (m + w + x) + c] = s[bytes - 4 + c];
                }
            loaded[r % taps] = r;
        }
        return row;
    };
    // The non-zero weights of one sum and the rows they scale (a zero weight adds nothing).
    std::vector<const float*> rows;
    std::vector<float> weights;
    auto add = [&](const float* row, float weight) {
        if (weight != 0) {
            rows.push_back(row);
            weights.push_back(weight);
        }
    };
    auto sumInto = [&](float* out, const float* init, int n) {
        accumulate(rows.data(), weights.data(), int(rows.size()), init, out, n);
        rows.clear();
        weights.clear();
    };
    for (int y = 0; y < h; ++y) {
        std::fill(acc.begin(), acc.end(), 0.0f);
        for (const Kernel::Term& t : kernel.terms) {
            for (int v = -m; v <= m; ++v)
                add(paddedRow(y + v), t.vertical[v + m]);
            sumInto(column.data(), nullptr, padded);
            for (int u = -m; u <= m; ++u)
                add(column.data() + 4 * (u + m), t.horizontal[u + m]);
            sumInto(acc.data(), acc.data(), bytes);
        }
        for (const Kernel::Tap& t : kernel.taps)
            add(paddedRow(y + t.v) + 4 * (t.u + m), t.weight);
        sumInto(acc.data(), acc.data(), bytes);
        toBytes(acc.data(), dst.scanLine(y), bytes);
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

// Runs a square-kernel filter as a converted filter; returns the straight result.
template <typename MakeKernel>
bool squareFilter(QImage& image, float radius, float sigma, MakeKernel makeKernel, QImage& out) {
    if (sigma == 0 || !std::isfinite(sigma) || image.isNull())
        return false;
    const int width = squareKernelWidth(radius, sigma, widthCap(image));
    if (ownsStraightWords(image)) {
        // Each output row is written once the rows it replaces have been read into the ring.
        out = std::move(image);
        out.reinterpretAsFormat(QImage::Format_ARGB32);
        convolve(out, out, makeKernel(width, sigma));
        return true;
    }
    const QImage src = argb32Source(image);
    out = QImage(src.size(), QImage::Format_ARGB32);
    convolve(src, out, makeKernel(width, sigma));
    return true;
}

} // namespace

void filterGaussianBlur(QImage& image, float radius, float sigma) {
    if (sigma == 0 || !std::isfinite(sigma) || image.isNull())
        return;
    const int width = blurWidth(radius, sigma, widthCap(image));
    if (width < 3)
        return;
    ResultRows result(image, 0, QImage::Format_ARGB32);
    separableBlur(result, blurKernel(width, sigma));
    result.finish();
}

void filterGaussianSharpen(QImage& image, float radius, float sigma) {
    QImage out;
    if (squareFilter(image, radius, sigma, sharpenKernel, out))
        assignPremultiplied(image, std::move(out));
}

void filterEmboss(QImage& image, float radius, float sigma) {
    QImage out;
    if (!squareFilter(image, radius, sigma, embossKernel, out))
        return;
    filterEqualize(out);
    assignPremultiplied(image, std::move(out));
}
