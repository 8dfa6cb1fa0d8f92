#include "FilterPixels.h"
#include "ImageFilters.h"

#include <cmath>
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

inline void toFloat(const uchar* in, float* out, int n) {
    for (int j = 0; j < n; ++j)
        out[j] = in[j];
}

inline void toBytes(const float* in, uchar* out, int n) {
    for (int j = 0; j < n; ++j)
        out[j] = uchar(int(std::min(std::max(in[j], 0.0f), 255.0f) + 0.5f));
}

// acc[j] += weight * in[j] over n floats.
inline void addScaled(float* acc, const float* in, float weight, int n) {
    for (int j = 0; j < n; ++j)
        acc[j] += weight * in[j];
}

// Blurs each row with k; taps past the ends are dropped and the rest renormalised.
void blurRows(const QImage& src, QImage& dst, const std::vector<float>& k) {
    const int w = src.width(), m = int(k.size()) / 2, bytes = 4 * w;
    std::vector<float> row(bytes), acc(bytes);
    for (int y = 0; y < src.height(); ++y) {
        toFloat(src.constScanLine(y), row.data(), bytes);
        std::fill(acc.begin(), acc.end(), 0.0f);
        const int first = std::min(m, w), end = std::max(w - m, first);
        for (int i = 0; i < int(k.size()) && end > first; ++i)
            addScaled(acc.data() + 4 * first, row.data() + 4 * (first + i - m), k[i], 4 * (end - first));
        auto renormalised = [&](int x) {
            float used = 0, sum[4] = {0, 0, 0, 0};
            for (int i = std::max(0, m - x); i < int(k.size()) && x + i - m < w; ++i) {
                used += k[i];
                for (int c = 0; c < 4; ++c)
                    sum[c] += k[i] * row[4 * (x + i - m) + c];
            }
            for (int c = 0; c < 4; ++c)
                acc[4 * x + c] = sum[c] / used;
        };
        for (int x = 0; x < first; ++x)
            renormalised(x);
        for (int x = end; x < w; ++x)
            renormalised(x);
        toBytes(acc.data(), dst.scanLine(y), bytes);
    }
}

// Blurs each column with k, renormalising where the kernel reaches past the top or bottom.
void blurColumns(const QImage& src, QImage& dst, const std::vector<float>& k) {
    const int h = src.height(), m = int(k.size()) / 2, bytes = 4 * src.width(), taps = int(k.size());
    std::vector<float> ring(size_t(taps) * bytes), acc(bytes);
    std::vector<int> loaded(taps, -1);
    for (int y = 0; y < h; ++y) {
        std::fill(acc.begin(), acc.end(), 0.0f);
        float used = 0;
        for (int i = std::max(0, m - y); i < taps && y + i - m < h; ++i) {
            const int r = y + i - m, slot = r % taps;
            float* row = ring.data() + size_t(slot) * bytes;
            if (loaded[slot] != r) {
                toFloat(src.constScanLine(r), row, bytes);
                loaded[slot] = r;
            }
            addScaled(acc.data(), row, k[i], bytes);
            used += k[i];
        }
        const float scale = 1.0f / used;
        for (float& v : acc)
            v *= scale;
        toBytes(acc.data(), dst.scanLine(y), bytes);
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
    for (int y = 0; y < h; ++y) {
        std::fill(acc.begin(), acc.end(), 0.0f);
        for (const Kernel::Term& t : kernel.terms) {
            std::fill(column.begin(), column.end(), 0.0f);
            for (int v = -m; v <= m; ++v)
                if (t.vertical[v + m] != 0)
                    addScaled(column.data(), paddedRow(y + v), t.vertical[v + m], padded);
            for (int u = -m; u <= m; ++u)
                if (t.horizontal[u + m] != 0)
                    addScaled(acc.data(), column.data() + 4 * (u + m), t.horizontal[u + m], bytes);
        }
        for (const Kernel::Tap& t : kernel.taps)
            addScaled(acc.data(), paddedRow(y + t.v) + 4 * (t.u + m), t.weight, bytes);
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
    const QImage src = argb32Source(image);
    const int width = squareKernelWidth(radius, sigma, widthCap(src));
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
    const std::vector<float> k = blurKernel(width, sigma);
    const QImage src = argb32Source(image);
    QImage rows(src.size(), QImage::Format_ARGB32), out(src.size(), QImage::Format_ARGB32);
    blurRows(src, rows, k);
    blurColumns(rows, out, k);
    assignPremultiplied(image, std::move(out));
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
