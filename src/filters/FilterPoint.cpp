#include "FilterKernels.h"
#include "FilterThreads.h"
#include "ImageFilters.h"

#include <cmath>
#include <vector>

using namespace filterpixels;

namespace {

// Replaces the colour bytes of every pixel through one table per channel; alpha is left alone.
void applyColourTables(QImage& image, const ByteTable& blue, const ByteTable& green, const ByteTable& red) {
    makeWordImage(image);
    const WordTables tables(red, green, blue);
    forWordRows(image, [&](quint32* words, int w) { tables.apply(words, w); });
}

// Adds delta[c] to channel c's bytes (blue, green, red), clamped.
void shiftColours(QImage& image, int blue, int green, int red) {
    makeWordImage(image);
    quint32 add = 0, sub = 0;
    const int deltas[3] = {blue, green, red};
    for (int c = 0; c < 3; ++c) {
        const int d = std::clamp(deltas[c], -255, 255);
        (d > 0 ? add : sub) |= quint32(std::abs(d)) << (8 * c);
    }
    forWordRows(image, [&](quint32* words, int w) { shiftWords(words, w, add, sub); });
}

ByteTable contrastTable(int mean, int amount) {
    ByteTable t;
    for (int v = 0; v < 256; ++v) {
        const int d = amount >= 1 ? (v - mean) * 256 / (256 - amount) : (v - mean) * (amount + 256) / 256;
        t[v] = clampByte(mean + d);
    }
    return t;
}

// Channel means of the colour bytes, truncated; each band of rows sums its own part.
std::array<int, 3> colourMeans(const QImage& image) {
    const int w = image.width(), h = image.height();
    const int bands = filterthreads::bandCount(h, w);
    std::vector<std::array<quint64, 3>> sums(bands, {0, 0, 0});
    filterthreads::forBands(h, bands, [&](int band, int begin, int end) {
        quint64 s[3] = {0, 0, 0};
        for (int y = begin; y < end; ++y)
            addChannelSums(reinterpret_cast<const quint32*>(image.constScanLine(y)), w, s);
        sums[band] = {s[0], s[1], s[2]};
    });
    std::array<quint64, 3> total{0, 0, 0};
    for (const auto& s : sums)
        for (int c = 0; c < 3; ++c)
            total[c] += s[c];
    const quint64 n = quint64(w) * quint64(h);
    return {int(total[0] / n), int(total[1] / n), int(total[2] / n)};
}

// Straight colour to hue (kept exact), saturation and value with 8-bit components and back, with
// only the saturation scaled; a pixel whose saturation does not change keeps its colour exactly.
// The integer divisions are done in float: every dividend is below 2^16 and every divisor at most
// 255, so the correctly rounded quotient truncates to the same integer. Without branches, so that
// rows of pixels vectorise.
inline quint32 desaturated(quint32 px, float keep) {
    const int r = int(px >> 16 & 0xff), g = int(px >> 8 & 0xff), b = int(px & 0xff);
    const int v = std::max(r, std::max(g, b)), delta = v - std::min(r, std::min(g, b));
    const int s = int(float(255 * delta + v / 2) / float(std::max(v, 1)));
    const int reduced = int(float(s) * keep);
    const int newDelta = int(float(reduced * v + 127) / 255.0f);
    const float scale = float(newDelta) / float(std::max(delta, 1));
    auto channel = [&](int c) { return quint32(uchar(v - int(float(v - c) * scale + 0.5f))); };
    const quint32 changed = (px & 0xff000000u) | channel(r) << 16 | channel(g) << 8 | channel(b);
    const quint32 unchanged = 0u - quint32((delta == 0) | (reduced == s));
    return (px & unchanged) | (changed & ~unchanged);
}

FILTER_ROW_LOOP void desaturateRow(quint32* words, int w, float keep) {
    for (int x = 0; x < w; ++x)
        words[x] = desaturated(words[x], keep);
}

} // namespace

void filterBrightness(QImage& image, int delta) {
    shiftColours(image, delta, delta, delta);
}

void filterColorize(QImage& image, int blue, int green, int red) {
    shiftColours(image, blue, green, red);
}

void filterGamma(QImage& image, double gamma) {
    if (!(gamma > 0))
        gamma = 0.01;
    ByteTable t;
    t[0] = 0;
    for (int i = 1; i < 256; ++i)
        t[i] = clampByte(int(std::floor(std::pow(i / 255.0, 1.0 / gamma) * 255.0)));
    applyColourTables(image, t, t, t);
}

void filterContrast(QImage& image, int amount) {
    makeWordImage(image);
    if (image.width() == 0 || image.height() == 0)
        return;
    amount = std::clamp(amount, -255, 255);
    const auto [blue, green, red] = colourMeans(image);
    applyColourTables(image, contrastTable(blue, amount), contrastTable(green, amount),
                      contrastTable(red, amount));
}

void filterDesaturate(QImage& image, float amount) {
    const float a = amount > 1.0f ? 1.0f : amount > 0.0f ? amount : 0.0f;
    const float keep = 1.0f - a;
    makeWordImage(image);
    if (image.format() == QImage::Format_ARGB32_Premultiplied) {
        transformStraight(image, [keep](uchar& r, uchar& g, uchar& b) {
            const quint32 px = desaturated(quint32(r) << 16 | quint32(g) << 8 | b, keep);
            r = uchar(px >> 16);
            g = uchar(px >> 8);
            b = uchar(px);
        });
        return;
    }
    forWordRows(image, [keep](quint32* words, int w) { desaturateRow(words, w, keep); });
}
