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
        // Below one, as a vanishing weight that is not a number is too.
        if (!(gauss1D(w / 2, sigma) / sum * 65535 >= 1))
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
    for (int w = 3; w <= cap && blurKernel(w, sigma)[0] * 255 >= 1; w += 2)
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

template <typename V> constexpr int lanes = int(sizeof(V) / sizeof(float));

// The integer and byte vectors of as many lanes, and the low bytes of integer lanes as bytes (a byte
// shuffle: converting lane by lane would take each lane out of the register on its own).
template <int Lanes> struct LaneTypes;
template <> struct LaneTypes<4> {
    using Ints = int __attribute__((vector_size(16)));
    using Bytes = uchar __attribute__((vector_size(4)));
    static Bytes lowBytes(const Ints& i) {
        using All = uchar __attribute__((vector_size(16)));
        const All b = All(i);
        return __builtin_shufflevector(b, b, 0, 4, 8, 12);
    }
};
template <> struct LaneTypes<8> {
    using Ints = int __attribute__((vector_size(32)));
    using Bytes = uchar __attribute__((vector_size(8)));
    static Bytes lowBytes(const Ints& i) {
        using All = uchar __attribute__((vector_size(32)));
        const All b = All(i);
        return __builtin_shufflevector(b, b, 0, 4, 8, 12, 16, 20, 24, 28);
    }
};
template <> struct LaneTypes<16> {
    using Ints = int __attribute__((vector_size(64)));
    using Bytes = uchar __attribute__((vector_size(16)));
    static Bytes lowBytes(const Ints& i) { return __builtin_convertvector(i, Bytes); }
};
template <typename V> using Ints = typename LaneTypes<lanes<V>>::Ints;
template <typename V> using Bytes = typename LaneTypes<lanes<V>>::Bytes;

// toByte on every lane, with the same comparisons (a lane is all ones where the comparison holds).
// Vectors go by reference: by value their passing would depend on the vector unit.
template <typename V> [[gnu::always_inline]] inline void roundedLanes(const V& a, Ints<V>& out) {
    using I = Ints<V>;
    const V zero = {}, top = zero + 255.0f;
    const I negative = a < zero;
    V v = V(I(a) & ~negative);
    const I above = top < v;
    v = V((I(v) & ~above) | (I(top) & above));
    out = __builtin_convertvector(v + 0.5f, I);
}

// Where the sums go: block(r, j, sums) takes one vector of sums of output row r from j, one(r, j,
// sum) a single sum.
struct RoundedFloats { // rounded to bytes, kept as floats
    float* out;
    template <typename V> void block(int, int j, const V& a) const {
        Ints<V> i;
        roundedLanes(a, i);
        const V rounded = __builtin_convertvector(i, V);
        std::memcpy(out + j, &rounded, sizeof rounded);
    }
    void one(int, int j, float a) const { out[j] = toByte(a); }
};

struct ScaledBytes { // scaled, then rounded to bytes
    uchar* out[2];
    float scale;
    template <typename V> void block(int r, int j, const V& a) const {
        Ints<V> i;
        roundedLanes(V(a * scale), i);
        const Bytes<V> b = LaneTypes<lanes<V>>::lowBytes(i);
        std::memcpy(out[r] + j, &b, sizeof b);
    }
    void one(int r, int j, float a) const { out[r][j] = toByte(a * scale); }
};

struct Floats { // kept as they are
    float* out;
    template <typename V> void block(int, int j, const V& a) const { std::memcpy(out + j, &a, sizeof a); }
    void one(int, int j, float a) const { out[j] = a; }
};

struct RoundedBytes {
    uchar* out;
    template <typename V> void block(int, int j, const V& a) const {
        Ints<V> i;
        roundedLanes(a, i);
        const Bytes<V> b = LaneTypes<lanes<V>>::lowBytes(i);
        std::memcpy(out + j, &b, sizeof b);
    }
    void one(int, int j, float a) const { out[j] = toByte(a); }
};

// a = w * p, or a += w * p, over `Vectors` vectors of floats from p: the first product is the sum so
// far (0 + x differs from x in the sign of a zero only, which no rounding to a byte sees).
template <typename V, int Vectors>
[[gnu::always_inline]] inline void addProducts(V (&a)[Vectors], float w, const float* p, bool first) {
    for (int v = 0; v < Vectors; ++v) {
        V x;
        std::memcpy(&x, p + lanes<V> * v, sizeof x);
        if (first)
            a[v] = w * x;
        else
            a[v] += w * x;
    }
}

// Sums over taps i of k[i] * rows[i][j], added tap after tap in the order of i to init[j] (or to
// nothing when init is null), handed to finish as output row 0; with R = 2 also the sums over
// k[i] * rows[i + 1][j] of the next output row, which shares all but one of the rows (no init then).
// Blocks of several vectors keep their sums in registers, enough to hide the latency of the
// additions, instead of streaming the rows through the cache once per tap; the two rows of a pair
// load each shared row once. Every vector width adds the same products in the same order.
template <typename V, int R, int Vectors, typename Finish>
[[gnu::always_inline]] inline void weightedSums(const float* const* rows, const float* k, int taps, int n,
                                                const float* init, const Finish& finish) {
    static_assert(R == 1 || R == 2);
    constexpr int Block = lanes<V> * Vectors;
    int j = 0;
    if (taps > 0)
        for (; j + Block <= n; j += Block) {
            V a[Vectors], b[Vectors];
            if (init)
                std::memcpy(a, init + j, sizeof a);
            for (int i = 0; i < taps; ++i) {
                addProducts(a, k[i], rows[i] + j, i == 0 && !init);
                if (R == 2 && i > 0)
                    addProducts(b, k[i - 1], rows[i] + j, i == 1);
            }
            for (int v = 0; v < Vectors; ++v)
                finish.block(0, j + lanes<V> * v, a[v]);
            if (R == 2) {
                addProducts(b, k[taps - 1], rows[taps] + j, taps == 1);
                for (int v = 0; v < Vectors; ++v)
                    finish.block(1, j + lanes<V> * v, b[v]);
            }
        }
    for (; j < n; ++j)
        for (int r = 0; r < R; ++r) {
            float a = init ? init[j] : 0.0f;
            for (int i = 0; i < taps; ++i)
                a += k[i] * rows[r + i][j];
            finish.one(r, j, a);
        }
}

// The sums for one vector unit: the blur's row pass (rounded, kept as floats), its column pass for
// one row or a pair (scaled by the reciprocal of the weights used, rounded), and the running sums of
// the square kernels (kept as floats, or finally rounded).
struct Sums {
    void (*roundedFloats)(const float* const*, const float*, int, float*, int);
    void (*scaledBytes)(const float* const*, const float*, int, float, uchar* const*, int);
    void (*scaledBytes2)(const float* const*, const float*, int, float, uchar* const*, int);
    void (*accumulated)(const float* const*, const float*, int, const float*, float*, int);
    void (*roundedBytes)(const float* const*, const float*, int, const float*, uchar*, int);
};

// Two outputs that share rows keep twice the sums in registers: AVX-512 has 32 of them, the
// others 16.
#define FILTER_SUMS(Unit, Attributes, V, PairVectors)                                                        \
    Attributes void roundedFloats##Unit(const float* const* r, const float* k, int t, float* o, int n) {     \
        weightedSums<V, 1, 8>(r, k, t, n, nullptr, RoundedFloats{o});                                        \
    }                                                                                                        \
    Attributes void scaledBytes##Unit(const float* const* r, const float* k, int t, float s,                 \
                                      uchar* const* o, int n) {                                              \
        weightedSums<V, 1, 8>(r, k, t, n, nullptr, ScaledBytes{{o[0], nullptr}, s});                         \
    }                                                                                                        \
    Attributes void scaledBytes2##Unit(const float* const* r, const float* k, int t, float s,                \
                                       uchar* const* o, int n) {                                             \
        weightedSums<V, 2, PairVectors>(r, k, t, n, nullptr, ScaledBytes{{o[0], o[1]}, s});                  \
    }                                                                                                        \
    Attributes void accumulated##Unit(const float* const* r, const float* k, int t, const float* i,          \
                                      float* o, int n) {                                                     \
        weightedSums<V, 1, 8>(r, k, t, n, i, Floats{o});                                                     \
    }                                                                                                        \
    Attributes void roundedBytes##Unit(const float* const* r, const float* k, int t, const float* i,         \
                                       uchar* o, int n) {                                                    \
        weightedSums<V, 1, 8>(r, k, t, n, i, RoundedBytes{o});                                               \
    }                                                                                                        \
    constexpr Sums sums##Unit = {roundedFloats##Unit, scaledBytes##Unit, scaledBytes2##Unit,                 \
                                 accumulated##Unit, roundedBytes##Unit};

FILTER_SUMS(Baseline, , Floats4, 4)
#ifdef FILTER_X86
FILTER_SUMS(Avx2, FILTER_AVX2, Floats8, 4)
FILTER_SUMS(Avx512, FILTER_AVX512, Floats16, 8)
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
// output row is ready once the source row it replaces has been read. Away from the top and bottom,
// output rows are made in pairs that share their blurred rows.
void separableBlur(ResultRows::Band& band, int w, int h, const std::vector<float>& k) {
    const int m = int(k.size()) / 2, taps = int(k.size()), bytes = 4 * w;
    const int ringRows = std::min(taps + 1, h);
    std::vector<float> ring(size_t(ringRows) * bytes), row(bytes);
    std::vector<const float*> rows(taps + 1);
    float all = 0;
    for (int i = 0; i < taps; ++i)
        all += k[i];
    int made = std::max(0, band.begin - m);
    for (int y = band.begin; y < band.end;) {
        const int count = y >= m && y + 1 + m < h && y + 1 < band.end ? 2 : 1;
        for (; made < h && made <= y + count - 1 + m; ++made)
            blurRow(band.in(made), w, k, row.data(), rows.data(),
                    ring.data() + size_t(made % ringRows) * bytes);
        uchar* out[2] = {band.row(y), band.row(y + 1)};
        if (count == 2) {
            for (int i = 0; i <= taps; ++i)
                rows[i] = ring.data() + size_t((y + i - m) % ringRows) * bytes;
            sums().scaledBytes2(rows.data(), k.data(), taps, 1.0f / all, out, bytes);
        } else {
            const int firstTap = std::max(0, m - y), endTap = std::min(taps, h - y + m);
            float used = 0;
            for (int i = firstTap; i < endTap; ++i) {
                rows[i - firstTap] = ring.data() + size_t((y + i - m) % ringRows) * bytes;
                used += k[i];
            }
            sums().scaledBytes(rows.data(), k.data() + firstTap, endTap - firstTap, 1.0f / used, out, bytes);
        }
        for (int r = 0; r < count; ++r)
            band.stored(y + r);
        y += count;
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

    // True when no sum of weighted bytes can overflow a float: a sigma too small for its weights
    // to be represented gives infinite or undefined ones.
    bool usable() const {
        double bound = 0;
        for (const Term& t : terms) {
            double h = 0, v = 0;
            for (float x : t.horizontal)
                h += std::abs(x);
            for (float x : t.vertical)
                v += std::abs(x);
            bound += h * v;
        }
        for (const Tap& t : taps)
            bound += std::abs(t.weight);
        return bound * 255 < 1e37;
    }

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
    // The same rows from pixel x on.
    const float* const* from(int x, std::vector<const float*>& scratch) const {
        scratch.resize(rows.size());
        for (size_t i = 0; i < rows.size(); ++i)
            scratch[i] = rows[i] + 4 * size_t(x);
        return scratch.data();
    }
};

// Pixels [a, b) of a row of w pixels shifted by u, the edge pixels repeated past the sides.
void shiftedPixels(const float* row, int w, int u, int a, int b, float* out) {
    for (int x = a; x < b; ++x)
        std::copy_n(row + 4 * size_t(std::clamp(x + u, 0, w - 1)), 4, out + 4 * size_t(x - a));
}

// Convolves all four channels of a band's rows with edge replication, rounding and clamping each
// result. Each term sums its column weights down the rows, then its row weights along the sums (a
// column padded with the edge sums); the single taps follow, all added in one running sum per output
// byte. Taps off the centre column read their rows shifted: where a shift stays inside the row that
// is a pointer, nearer the sides a shifted copy, one tap at a time.
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
    int uMin = 0, uMax = 0;
    for (const Kernel::Tap& t : kernel.taps)
        if (t.weight != 0) {
            uMin = std::min(uMin, t.u);
            uMax = std::max(uMax, t.u);
        }
    // Outputs [inside, insideEnd) read every tap's row without passing a side.
    const int inside = std::min(w, -uMin), insideEnd = std::max(inside, w - uMax);
    WeightedRows vertical, horizontal, taps;
    std::vector<int> shifts;
    std::vector<const float*> scratch;
    float* centre = column.data() + 4 * size_t(m);
    for (int y = band.begin; y < band.end; ++y) {
        bool started = false; // acc holds the sums of the terms before the last
        for (size_t t = 0; t < kernel.terms.size(); ++t) {
            const Kernel::Term& term = kernel.terms[t];
            if (t > 0 && horizontal.size() > 0) {
                // The column is about to be replaced.
                s.accumulated(horizontal.rows.data(), horizontal.weights.data(), horizontal.size(),
                              started ? acc.data() : nullptr, acc.data(), bytes);
                started = true;
            }
            horizontal.clear();
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
                horizontal.add(column.data() + 4 * (u + m), term.horizontal[u + m]);
        }
        taps.clear();
        shifts.clear();
        for (const Kernel::Tap& t : kernel.taps)
            if (t.weight != 0) {
                taps.add(floatRow(y + t.v), t.weight);
                shifts.push_back(t.u);
            }
        uchar* out = band.row(y);
        if (insideEnd > inside) {
            WeightedRows all = horizontal;
            for (int i = 0; i < taps.size(); ++i)
                all.add(taps.rows[i] + 4 * shifts[i], taps.weights[i]);
            s.roundedBytes(all.from(inside, scratch), all.weights.data(), all.size(),
                           started ? acc.data() + 4 * inside : nullptr, out + 4 * inside,
                           4 * (insideEnd - inside));
        }
        for (const auto& [a, b] : {std::pair(0, inside), std::pair(insideEnd, w)}) {
            if (b <= a)
                continue;
            float* zone = acc.data() + 4 * a;
            bool zoneStarted = started;
            if (horizontal.size() > 0) {
                s.accumulated(horizontal.from(a, scratch), horizontal.weights.data(), horizontal.size(),
                              zoneStarted ? zone : nullptr, zone, 4 * (b - a));
                zoneStarted = true;
            }
            for (int i = 0; i < taps.size(); ++i) {
                shiftedPixels(taps.rows[i], w, shifts[i], a, b, shifted.data());
                const float* row = shifted.data();
                s.accumulated(&row, &taps.weights[i], 1, zoneStarted ? zone : nullptr, zone, 4 * (b - a));
                zoneStarted = true;
            }
            if (!zoneStarted)
                std::fill_n(zone, 4 * (b - a), 0.0f);
            s.roundedBytes(nullptr, nullptr, 0, zone, out + 4 * a, 4 * (b - a));
        }
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
    if (!kernel.usable()) {
        qWarning("%s: sigma %g gives weights out of range; the image is left unchanged", name, double(sigma));
        return false;
    }
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
    ResultRows result(image, width / 2, 0, Store::Premultiply, argb32Source, 2);
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
