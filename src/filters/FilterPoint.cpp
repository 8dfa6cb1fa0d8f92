#include "FilterPixels.h"
#include "ImageFilters.h"

#include <cmath>

using namespace filterpixels;

namespace {

// Replaces the colour bytes of every pixel through one table per channel; alpha is left alone.
void applyColourTables(QImage& image, const ByteTable& blue, const ByteTable& green, const ByteTable& red) {
    makeWordImage(image);
    const int w = image.width(), h = image.height();
    if (w == 0 || h == 0)
        return;
    uchar* base = image.bits();
    const qsizetype bpl = image.bytesPerLine();
    for (int y = 0; y < h; ++y) {
        uchar* p = base + y * bpl;
        for (int x = 0; x < w; ++x, p += 4) {
            p[Blue] = blue[p[Blue]];
            p[Green] = green[p[Green]];
            p[Red] = red[p[Red]];
        }
    }
}

ByteTable shiftTable(int delta) {
    delta = std::clamp(delta, -255, 255);
    ByteTable t;
    for (int i = 0; i < 256; ++i)
        t[i] = clampByte(i + delta);
    return t;
}

ByteTable contrastTable(int mean, int amount) {
    ByteTable t;
    for (int v = 0; v < 256; ++v) {
        const int d = amount >= 1 ? (v - mean) * 256 / (256 - amount) : (v - mean) * (amount + 256) / 256;
        t[v] = clampByte(mean + d);
    }
    return t;
}

// Channel means of the colour bytes, truncated.
std::array<int, 3> colourMeans(const QImage& image) {
    const int w = image.width(), h = image.height();
    quint64 blue = 0, green = 0, red = 0;
    for (int y = 0; y < h; ++y) {
        const uchar* p = image.constScanLine(y);
        quint32 rowBlue = 0, rowGreen = 0, rowRed = 0;
        for (int x = 0; x < w; ++x, p += 4) {
            rowBlue += p[Blue];
            rowGreen += p[Green];
            rowRed += p[Red];
        }
        blue += rowBlue;
        green += rowGreen;
        red += rowRed;
    }
    const quint64 n = quint64(w) * quint64(h);
    return {int(blue / n), int(green / n), int(red / n)};
}

// Straight colour to hue (kept exact), saturation and value with 8-bit components and back, with
// only the saturation scaled. A pixel whose saturation does not change keeps its colour exactly.
struct Desaturator {
    float keep;
    void operator()(uchar& r, uchar& g, uchar& b) const {
        const int v = std::max({r, g, b});
        const int delta = v - std::min({r, g, b});
        if (delta == 0)
            return;
        const int s = (255 * delta + v / 2) / v;
        const int reduced = int(float(s) * keep);
        if (reduced == s)
            return;
        const int newDelta = (reduced * v + 127) / 255;
        const float scale = float(newDelta) / float(delta);
        r = uchar(v - int(float(v - r) * scale + 0.5f));
        g = uchar(v - int(float(v - g) * scale + 0.5f));
        b = uchar(v - int(float(v - b) * scale + 0.5f));
    }
};

} // namespace

void filterBrightness(QImage& image, int delta) {
    const ByteTable t = shiftTable(delta);
    applyColourTables(image, t, t, t);
}

void filterColorize(QImage& image, int blue, int green, int red) {
    applyColourTables(image, shiftTable(blue), shiftTable(green), shiftTable(red));
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
    transformStraight(image, Desaturator{1.0f - a});
}
