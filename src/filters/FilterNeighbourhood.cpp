#include "FilterPixels.h"
#include "ImageFilters.h"

#include <cstdlib>
#include <vector>

using namespace filterpixels;

namespace {

// Runs op on every byte of every pixel with its 3 x 3 neighbourhood (rows t, m, b; offsets -4, 0, +4),
// the nearest row or column standing in for those outside. The image is at least 3 x 3.
template <typename Op> void forEach3x3(const QImage& src, QImage& out, Op op) {
    const int w = src.width(), h = src.height();
    const int last = 4 * (w - 1);
    for (int y = 0; y < h; ++y) {
        const uchar* t = clampedRow(src, y - 1);
        const uchar* m = src.constScanLine(y);
        const uchar* b = clampedRow(src, y + 1);
        uchar* o = out.scanLine(y);
        for (int c = 0; c < 4; ++c) {
            o[c] = op(t[c], t[c], t[c + 4], m[c], m[c], m[c + 4], b[c], b[c], b[c + 4]);
            o[last + c] = op(t[last + c - 4], t[last + c], t[last + c], m[last + c - 4], m[last + c],
                             m[last + c], b[last + c - 4], b[last + c], b[last + c]);
        }
        for (int j = 4; j < last; ++j)
            o[j] = op(t[j - 4], t[j], t[j + 4], m[j - 4], m[j], m[j + 4], b[j - 4], b[j], b[j + 4]);
    }
}

// Straight 32-bit source of the box blur.
QImage straightSource(const QImage& image) {
    if (image.format() != QImage::Format_ARGB32_Premultiplied)
        return argb32Source(image);
    QImage straight(image.size(), QImage::Format_ARGB32);
    const uchar* unpremultiply = unpremultiplyTable();
    for (int y = 0; y < image.height(); ++y) {
        const uchar* s = image.constScanLine(y);
        uchar* d = straight.scanLine(y);
        for (int x = 0; x < image.width(); ++x, s += 4, d += 4) {
            const uchar* u = unpremultiply + s[Alpha] * 256;
            d[Blue] = u[s[Blue]];
            d[Green] = u[s[Green]];
            d[Red] = u[s[Red]];
            d[Alpha] = s[Alpha];
        }
    }
    return straight;
}

// Writes floor(sums / counts) for one output row of the box blur. The reciprocal is offset by half a
// unit so that it never falls below an exact quotient; float is exact while count stays below 16000.
template <typename Real> void divideRow(const quint32* sums, const Real* reciprocal, uchar* out, int bytes) {
    for (int j = 0; j < bytes; ++j)
        out[j] = uchar(int((Real(sums[j]) + Real(0.5)) * reciprocal[j >> 2]));
}

template <typename Real> void boxBlur(const QImage& src, QImage& out, int radius) {
    const int w = src.width(), h = src.height(), bytes = 4 * w;
    std::vector<quint32> columns(bytes, 0), prefix(bytes + 4, 0), sums(bytes);
    std::vector<Real> reciprocal(w);
    for (int y = 0; y <= std::min(radius, h - 1); ++y) {
        const uchar* s = src.constScanLine(y);
        for (int j = 0; j < bytes; ++j)
            columns[j] += s[j];
    }
    int rowsIn = std::min(radius, h - 1) + 1;
    for (int y = 0; y < h; ++y) {
        for (int j = 0; j < bytes; ++j)
            prefix[j + 4] = prefix[j] + columns[j];
        for (int x = 0; x < w; ++x) {
            const int left = std::max(x - radius, 0), right = std::min(x + radius, w - 1);
            for (int c = 0; c < 4; ++c)
                sums[4 * x + c] = prefix[4 * (right + 1) + c] - prefix[4 * left + c];
            reciprocal[x] = Real(1) / Real(rowsIn * (right - left + 1));
        }
        divideRow(sums.data(), reciprocal.data(), out.scanLine(y), bytes);
        if (y + radius + 1 < h) {
            const uchar* in = src.constScanLine(y + radius + 1);
            for (int j = 0; j < bytes; ++j)
                columns[j] += in[j];
            ++rowsIn;
        }
        if (y - radius >= 0) {
            const uchar* gone = src.constScanLine(y - radius);
            for (int j = 0; j < bytes; ++j)
                columns[j] -= gone[j];
            --rowsIn;
        }
    }
}

// One hull step of the speckle removal over the inner positions of f and g (stride `stride`).
template <bool Raise> void hullStep(uchar* f, uchar* g, int w, int h, int stride, int k) {
    for (int y = 1; y <= h; ++y) {
        const uchar* fp = f + y * stride + 1;
        uchar* gp = g + y * stride + 1;
        for (int x = 0; x < w; ++x) {
            const int a = fp[x], n = fp[x + k];
            gp[x] = uchar(Raise ? a + (n >= a + 2) : a - (n <= a - 2));
        }
    }
    for (int y = 1; y <= h; ++y) {
        const uchar* gp = g + y * stride + 1;
        uchar* fp = f + y * stride + 1;
        for (int x = 0; x < w; ++x) {
            const int a = gp[x], before = gp[x - k], after = gp[x + k];
            fp[x] = uchar(Raise ? a + (before >= a + 2 && after > a) : a - (before <= a - 2 && after < a));
        }
    }
}

void despeckleChannel(QImage& image, int channel, std::vector<uchar>& f, std::vector<uchar>& g) {
    const int w = image.width(), h = image.height(), stride = w + 2;
    std::fill(f.begin(), f.end(), 0);
    std::fill(g.begin(), g.end(), 0);
    for (int y = 0; y < h; ++y) {
        const uchar* s = image.constScanLine(y) + channel;
        uchar* d = f.data() + (y + 1) * stride + 1;
        for (int x = 0; x < w; ++x)
            d[x] = s[4 * x];
    }
    static const int directions[4][2] = {{0, 1}, {1, 0}, {1, 1}, {-1, 1}};
    for (const auto& [dx, dy] : directions) {
        const int k = dy * stride + dx;
        hullStep<true>(f.data(), g.data(), w, h, stride, k);
        hullStep<true>(f.data(), g.data(), w, h, stride, -k);
        hullStep<false>(f.data(), g.data(), w, h, stride, -k);
        hullStep<false>(f.data(), g.data(), w, h, stride, k);
    }
    for (int y = 0; y < h; ++y) {
        const uchar* s = f.data() + (y + 1) * stride + 1;
        uchar* d = image.scanLine(y) + channel;
        for (int x = 0; x < w; ++x)
            d[4 * x] = s[x];
    }
}

} // namespace

void filterBlur(QImage& image, int radius) {
    if (radius < 1 || image.isNull() || qint64(image.width()) < 2 * qint64(radius))
        return;
    const QImage src = straightSource(image);
    QImage out(image.size(), image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    const qint64 side = 2 * qint64(radius) + 1;
    if (side * side < 16000)
        boxBlur<float>(src, out, radius);
    else
        boxBlur<double>(src, out, radius);
    assignPremultiplied(image, std::move(out));
}

void filterSharpen(QImage& image, int enable) {
    if (image.isNull() || enable < 1)
        return;
    const QImage src = argb32Source(image);
    QImage out = src.copy();
    out.reinterpretAsFormat(QImage::Format_ARGB32);
    const int w = src.width(), h = src.height(), last = 4 * (w - 1);
    for (int y = 1; y + 1 < h; ++y) {
        const uchar* up = src.constScanLine(y - 1);
        const uchar* c = src.constScanLine(y);
        const uchar* down = src.constScanLine(y + 1);
        uchar* o = out.scanLine(y);
        for (int j = 4; j < last; ++j) {
            const int s = 5 * c[j] - up[j] - down[j] - c[j - 4] - c[j + 4];
            o[j] = uchar(s < 0 ? 0 : (s & 256) ? 255 : s & 255);
        }
    }
    assignPremultiplied(image, std::move(out));
}

void filterEdge(QImage& image) {
    if (image.width() < 3 || image.height() < 3)
        return;
    const QImage src = argb32Source(image);
    QImage out(src.size(), QImage::Format_RGB32);
    forEach3x3(src, out, [](int tl, int t, int tr, int l, int, int r, int bl, int b, int br) {
        const int gx = (tr + 2 * r + br) - (tl + 2 * l + bl);
        const int gy = (tl + 2 * t + tr) - (bl + 2 * b + br);
        return uchar(std::min(std::abs(gx) + std::abs(gy), 255));
    });
    for (int y = 0; y < out.height(); ++y) {
        auto* words = reinterpret_cast<quint32*>(out.scanLine(y));
        for (int x = 0; x < out.width(); ++x)
            words[x] |= 0xff000000u;
    }
    assignPremultiplied(image, std::move(out));
}

void filterAntialias(QImage& image) {
    if (image.width() < 3 || image.height() < 3)
        return;
    const QImage src = argb32Source(image);
    QImage out(src.size(), QImage::Format_ARGB32);
    forEach3x3(src, out, [](int tl, int t, int tr, int l, int m, int r, int bl, int b, int br) {
        return uchar((tl + 2 * t + tr + 2 * l + 8 * m + 2 * r + bl + 2 * b + br) / 20);
    });
    for (int y = 0; y < out.height(); ++y) {
        const uchar* s = src.constScanLine(y);
        uchar* o = out.scanLine(y);
        for (int x = 0; x < out.width(); ++x)
            o[4 * x + Alpha] = s[4 * x + Alpha];
    }
    assignPremultiplied(image, std::move(out));
}

void filterDespeckle(QImage& image) {
    if (image.isNull())
        return;
    QImage out = argb32Source(image).copy();
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
    const QImage src = argb32Source(image);
    QImage out(src.size(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < src.height(); ++y) {
        const uchar* s = src.constScanLine(y);
        auto* o = reinterpret_cast<quint32*>(out.scanLine(y));
        for (int x = 0; x < src.width(); ++x, s += 4) {
            const quint32 grey = (11u * s[Red] + 16u * s[Green] + 5u * s[Blue]) >> 5;
            o[x] = 0xff000000u + grey * 0x010101u;
        }
    }
    image = std::move(out);
}
