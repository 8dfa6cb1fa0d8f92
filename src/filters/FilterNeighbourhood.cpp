#include "FilterRows.h"
#include "ImageFilters.h"

#include <cstdlib>
#include <vector>

using namespace filterpixels;

namespace {

// Rows above, at and below output row y, the nearest row standing in past the top and bottom.
struct Rows3 {
    const uchar *t, *m, *b;
    Rows3(const ResultRows::Band& band, int y)
        : t(band.in(y - 1))
        , m(band.in(y))
        , b(band.in(y + 1)) {}
};

// Runs op on the bytes of the first and last pixel of a row, the nearest column standing in past
// the sides; the 3 x 3 filters' vector loops cover the pixels between. The row is at least 2 wide.
template <typename Op> void edgePixels(const Rows3& r, uchar* o, int w, Op op) {
    const int last = 4 * (w - 1);
    const uchar *t = r.t, *m = r.m, *b = r.b;
    for (int c = 0; c < 4; ++c) {
        o[c] = uchar(op(t[c], t[c], t[c + 4], m[c], m[c], m[c + 4], b[c], b[c], b[c + 4]));
        o[last + c] = uchar(op(t[last + c - 4], t[last + c], t[last + c], m[last + c - 4], m[last + c],
                               m[last + c], b[last + c - 4], b[last + c], b[last + c]));
    }
}

// The sharpen rule on 16-bit sums (the raw sum lies in [-1020, 1275]): negative gives 0, bit 8
// set gives 255, else the low byte. Written without branches so that it vectorises.
inline uchar sharpenByte(qint16 s) {
    const qint16 bit8 = qint16(-((s >> 8) & 1));
    return uchar((s | bit8) & ~(s >> 15));
}

FILTER_ROW_LOOP void sharpenRow(const uchar* up, const uchar* c, const uchar* down, uchar* o, int from,
                                int to) {
    for (int j = from; j < to; ++j)
        o[j] = sharpenByte(qint16(5 * c[j] - up[j] - down[j] - c[j - 4] - c[j + 4]));
}

// Sobel sums stay below 2048 and the antialias sums below 5101: both fit 16-bit lanes.
inline int edgeByte(int tl, int t, int tr, int l, int r, int bl, int b, int br) {
    const qint16 gx = qint16((tr + 2 * r + br) - (tl + 2 * l + bl));
    const qint16 gy = qint16((tl + 2 * t + tr) - (bl + 2 * b + br));
    return std::min<qint16>(qint16(std::abs(gx) + std::abs(gy)), 255);
}

FILTER_ROW_LOOP void edgeRow(const uchar* t, const uchar* m, const uchar* b, uchar* o, int from, int to) {
    for (int j = from; j < to; ++j)
        o[j] = uchar(edgeByte(t[j - 4], t[j], t[j + 4], m[j - 4], m[j + 4], b[j - 4], b[j], b[j + 4]));
}

inline int antialiasByte(int tl, int t, int tr, int l, int m, int r, int bl, int b, int br) {
    return quint16(tl + 2 * t + tr + 2 * l + 8 * m + 2 * r + bl + 2 * b + br) / quint16(20);
}

FILTER_ROW_LOOP void antialiasRow(const uchar* t, const uchar* m, const uchar* b, uchar* o, int from,
                                  int to) {
    for (int j = from; j < to; ++j)
        o[j] = uchar(
            antialiasByte(t[j - 4], t[j], t[j + 4], m[j - 4], m[j], m[j + 4], b[j - 4], b[j], b[j + 4]));
}

// Sets the alpha byte of n words from another row (alpha 0xff for a null row).
FILTER_ROW_LOOP void copyAlpha(const uchar* from, uchar* to, int n) {
    auto* o = reinterpret_cast<quint32*>(to);
    const auto* a = reinterpret_cast<const quint32*>(from);
    for (int x = 0; x < n; ++x)
        o[x] = (o[x] & 0x00ffffffu) | (a ? a[x] & 0xff000000u : 0xff000000u);
}

// The grey level (11 red + 16 green + 5 blue) >> 5 as an opaque grey.
FILTER_ROW_LOOP void greyRow(const uchar* in, uchar* out, int w) {
    const auto* s = reinterpret_cast<const quint32*>(in);
    auto* o = reinterpret_cast<quint32*>(out);
    for (int x = 0; x < w; ++x) {
        const quint32 p = s[x];
        const quint32 grey = (11u * ((p >> 16) & 0xff) + 16u * ((p >> 8) & 0xff) + 5u * (p & 0xff)) >> 5;
        o[x] = 0xff000000u + grey * 0x010101u;
    }
}

// Straight 32-bit source of the box blur.
QImage straightSource(const QImage& image) {
    if (image.format() != QImage::Format_ARGB32_Premultiplied)
        return argb32Source(image);
    QImage straight(image.size(), QImage::Format_ARGB32);
    const uchar* unpremultiply = unpremultiplyTable();
    uchar* bits = straight.bits();
    const qsizetype bpl = straight.bytesPerLine();
    filterthreads::forRows(image.height(), image.width(), [&](int begin, int end) {
        for (int y = begin; y < end; ++y) {
            const uchar* s = image.constScanLine(y);
            uchar* d = bits + y * bpl;
            for (int x = 0; x < image.width(); ++x, s += 4, d += 4) {
                const uchar* u = unpremultiply + s[Alpha] * 256;
                d[Blue] = u[s[Blue]];
                d[Green] = u[s[Green]];
                d[Red] = u[s[Red]];
                d[Alpha] = s[Alpha];
            }
        }
    });
    return straight;
}

// floor(sum / count) through a reciprocal offset by half a unit, so that it never falls below the
// exact quotient; float is exact while count stays below 16000.
template <typename Real> inline uchar boxMean(quint32 sum, Real reciprocal) {
    return uchar(int((Real(sum) + Real(0.5)) * reciprocal));
}

// Output bytes [from, to) of a row whose windows all lie inside it: one reciprocal for all, and
// each window sum a difference of the running column sums `prefix` (entry j sums bytes before j).
template <typename Real>
void boxRowInside(const quint32* prefix, int radius, Real reciprocal, uchar* out, int from, int to) {
    const quint32* lo = prefix - 4 * radius;
    const quint32* hi = prefix + 4 * (radius + 1);
    for (int j = from; j < to; ++j)
        out[j] = boxMean(hi[j] - lo[j], reciprocal);
}

template <typename Real> void boxBlur(ResultRows::Band& band, int w, int h, int radius) {
    const int bytes = 4 * w;
    std::vector<quint32> columns(bytes, 0), prefix(bytes + 4, 0);
    const int top = std::max(0, band.begin - radius), bottom = std::min(h - 1, band.begin + radius);
    for (int y = top; y <= bottom; ++y) {
        const uchar* s = band.in(y);
        for (int j = 0; j < bytes; ++j)
            columns[j] += s[j];
    }
    int rowsIn = bottom - top + 1;
    // Pixels closer than the radius to a side have clipped windows of their own size.
    const int insideFrom = std::min(radius, w), insideTo = std::max(w - radius, insideFrom);
    for (int y = band.begin; y < band.end; ++y) {
        for (int j = 0; j < bytes; ++j)
            prefix[j + 4] = prefix[j] + columns[j];
        uchar* out = band.row(y);
        boxRowInside(prefix.data(), radius, Real(1) / Real(rowsIn * (2 * radius + 1)), out, 4 * insideFrom,
                     4 * insideTo);
        for (int x = 0; x < w; x = x + 1 == insideFrom ? insideTo : x + 1) {
            const int left = std::max(x - radius, 0), right = std::min(x + radius, w - 1);
            const Real reciprocal = Real(1) / Real(rowsIn * (right - left + 1));
            for (int c = 0; c < 4; ++c)
                out[4 * x + c] = boxMean(prefix[4 * (right + 1) + c] - prefix[4 * left + c], reciprocal);
        }
        if (y + radius + 1 < h) {
            const uchar* in = band.in(y + radius + 1);
            for (int j = 0; j < bytes; ++j)
                columns[j] += in[j];
            ++rowsIn;
        }
        if (y - radius >= 0) {
            const uchar* gone = band.in(y - radius);
            for (int j = 0; j < bytes; ++j)
                columns[j] -= gone[j];
            --rowsIn;
        }
        band.stored(y);
    }
}

// high >= low + 2, without leaving bytes: the loops below then vectorise in byte lanes.
inline uchar twoAbove(uchar high, uchar low) {
    return uchar(std::max(high, low) - low) >= 2;
}

// The two passes of a hull step on one row of n positions; k is the neighbour's offset.
FILTER_ROW_LOOP void raiseFirst(const uchar* f, uchar* __restrict g, int n, int k) {
    for (int x = 0; x < n; ++x)
        g[x] = uchar(f[x] + twoAbove(f[x + k], f[x]));
}

FILTER_ROW_LOOP void raiseSecond(const uchar* g, uchar* __restrict f, int n, int k) {
    for (int x = 0; x < n; ++x)
        f[x] = uchar(g[x] + (twoAbove(g[x - k], g[x]) & (g[x + k] > g[x])));
}

FILTER_ROW_LOOP void lowerFirst(const uchar* f, uchar* __restrict g, int n, int k) {
    for (int x = 0; x < n; ++x)
        g[x] = uchar(f[x] - twoAbove(f[x], f[x + k]));
}

FILTER_ROW_LOOP void lowerSecond(const uchar* g, uchar* __restrict f, int n, int k) {
    for (int x = 0; x < n; ++x)
        f[x] = uchar(g[x] - (twoAbove(g[x], g[x - k]) & (g[x + k] < g[x])));
}

// One hull step of the speckle removal over the inner positions of f and g (stride `stride`).
// Each pass reads one buffer and writes the other, so its rows may be split over threads.
template <bool Raise> void hullStep(uchar* f, uchar* g, int w, int h, int stride, int k) {
    filterthreads::forRows(h, w, [&](int begin, int end) {
        for (int y = begin + 1; y <= end; ++y) {
            const size_t row = size_t(y) * stride + 1;
            (Raise ? raiseFirst : lowerFirst)(f + row, g + row, w, k);
        }
    });
    filterthreads::forRows(h, w, [&](int begin, int end) {
        for (int y = begin + 1; y <= end; ++y) {
            const size_t row = size_t(y) * stride + 1;
            (Raise ? raiseSecond : lowerSecond)(g + row, f + row, w, k);
        }
    });
}

void despeckleChannel(QImage& image, int channel, std::vector<uchar>& f, std::vector<uchar>& g) {
    const int w = image.width(), h = image.height(), stride = w + 2;
    uchar* bits = image.bits();
    const qsizetype bpl = image.bytesPerLine();
    std::fill(f.begin(), f.end(), 0);
    std::fill(g.begin(), g.end(), 0);
    filterthreads::forRows(h, w, [&](int begin, int end) {
        for (int y = begin; y < end; ++y) {
            const uchar* s = bits + y * bpl + channel;
            uchar* d = f.data() + size_t(y + 1) * stride + 1;
            for (int x = 0; x < w; ++x)
                d[x] = s[4 * x];
        }
    });
    static const int directions[4][2] = {{0, 1}, {1, 0}, {1, 1}, {-1, 1}};
    for (const auto& [dx, dy] : directions) {
        const int k = dy * stride + dx;
        hullStep<true>(f.data(), g.data(), w, h, stride, k);
        hullStep<true>(f.data(), g.data(), w, h, stride, -k);
        hullStep<false>(f.data(), g.data(), w, h, stride, -k);
        hullStep<false>(f.data(), g.data(), w, h, stride, k);
    }
    filterthreads::forRows(h, w, [&](int begin, int end) {
        for (int y = begin; y < end; ++y) {
            const uchar* s = f.data() + size_t(y + 1) * stride + 1;
            uchar* d = bits + y * bpl + channel;
            for (int x = 0; x < w; ++x)
                d[4 * x] = s[x];
        }
    });
}

} // namespace

void filterBlur(QImage& image, int radius) {
    if (radius < 1 || image.isNull() || qint64(image.width()) < 2 * qint64(radius))
        return;
    const int w = image.width(), h = image.height();
    ResultRows result(image, radius, radius, image.hasAlphaChannel() ? Store::Premultiply : Store::Opaque,
                      straightSource);
    const qint64 side = 2 * qint64(radius) + 1;
    result.forBands([&](ResultRows::Band& band) {
        if (side * side < 16000)
            boxBlur<float>(band, w, h, radius);
        else
            boxBlur<double>(band, w, h, radius);
    });
    result.finish();
}

void filterSharpen(QImage& image, int enable) {
    if (image.isNull() || enable < 1)
        return;
    const int h = image.height(), bytes = 4 * image.width();
    ResultRows result(image, 1, 1, Store::Premultiply);
    result.forBands([&](ResultRows::Band& band) {
        for (int y = band.begin; y < band.end; ++y) {
            const uchar* c = band.in(y);
            uchar* o = band.row(y);
            if (y == 0 || y == h - 1 || bytes < 12) {
                std::copy_n(c, bytes, o);
            } else {
                std::copy_n(c, 4, o);
                std::copy_n(c + bytes - 4, 4, o + bytes - 4);
                sharpenRow(band.in(y - 1), c, band.in(y + 1), o, 4, bytes - 4);
            }
            band.stored(y);
        }
    });
    result.finish();
}

void filterEdge(QImage& image) {
    if (image.width() < 3 || image.height() < 3)
        return;
    const int w = image.width();
    ResultRows result(image, 1, 1, Store::Opaque);
    result.forBands([&](ResultRows::Band& band) {
        for (int y = band.begin; y < band.end; ++y) {
            const Rows3 r(band, y);
            uchar* o = band.row(y);
            edgePixels(r, o, w, [](int tl, int t, int tr, int l, int, int r, int bl, int b, int br) {
                return edgeByte(tl, t, tr, l, r, bl, b, br);
            });
            edgeRow(r.t, r.m, r.b, o, 4, 4 * (w - 1));
            copyAlpha(nullptr, o, w);
            band.stored(y);
        }
    });
    result.finish();
}

void filterAntialias(QImage& image) {
    if (image.width() < 3 || image.height() < 3)
        return;
    const int w = image.width();
    ResultRows result(image, 1, 1, Store::Premultiply);
    result.forBands([&](ResultRows::Band& band) {
        for (int y = band.begin; y < band.end; ++y) {
            const Rows3 r(band, y);
            uchar* o = band.row(y);
            edgePixels(r, o, w, antialiasByte);
            antialiasRow(r.t, r.m, r.b, o, 4, 4 * (w - 1));
            copyAlpha(r.m, o, w);
            band.stored(y);
        }
    });
    result.finish();
}

void filterDespeckle(QImage& image) {
    if (image.isNull())
        return;
    // An unshared straight image is worked on in place rather than copied.
    const bool own = ownsStraightWords(image);
    QImage out = own ? std::move(image) : argb32Source(image).copy();
    out.reinterpretAsFormat(QImage::Format_ARGB32);
    const size_t size = size_t(out.width() + 2) * size_t(out.height() + 2);
    std::vector<uchar> f(size), g(size);
    for (int channel : {Red, Green, Blue})
        despeckleChannel(out, channel, f, g);
    assignPremultiplied(image, std::move(out));
}

void filterCharcoal(QImage& image) {
    filterEdge(image);
    filterBlur(image, 1);
    filterAutoContrast(image);
    transformStraight(image, [](uchar& r, uchar& g, uchar& b) {
        r = uchar(255 - r);
        g = uchar(255 - g);
        b = uchar(255 - b);
    });
    filterGrayscale(image);
}

void filterGrayscale(QImage& image) {
    if (image.isNull())
        return;
    const int w = image.width();
    ResultRows result(image, 0, 0, Store::Opaque);
    result.forBands([&](ResultRows::Band& band) {
        for (int y = band.begin; y < band.end; ++y) {
            greyRow(band.in(y), band.row(y), w);
            band.stored(y);
        }
    });
    result.finish();
}
