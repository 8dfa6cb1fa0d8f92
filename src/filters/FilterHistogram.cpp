#include "FilterKernels.h"
#include "ImageFilters.h"

using namespace filterpixels;

namespace {

using Counts = std::array<quint64, 256>;

struct Range {
    int low;
    int high;
};

// One channel's stretch limits, searched inside the previous channel's limits: that chaining is
// how the filter is defined, so green and blue never widen what red found.
Range stretchRange(const Counts& counts, quint64 threshold, Range bounds) {
    Range r{bounds.low, bounds.high};
    quint64 sum = 0;
    for (; r.low < bounds.high; ++r.low) {
        sum += counts[r.low];
        if (sum > threshold)
            break;
    }
    sum = 0;
    for (; r.high != bounds.low && r.high > 0; --r.high) {
        sum += counts[r.high];
        if (sum > threshold)
            break;
    }
    return r;
}

ByteTable stretchTable(Range r) {
    ByteTable t;
    for (int level = 0; level < 256; ++level) {
        if (r.low == r.high)
            t[level] = uchar(level);
        else if (level < r.low)
            t[level] = 0;
        else if (level > r.high)
            t[level] = 255;
        else
            t[level] = uchar(255 * (level - r.low) / (r.high - r.low));
    }
    return t;
}

ByteTable equalizeTable(const Counts& counts) {
    std::array<quint64, 256> cumulative;
    quint64 sum = 0;
    for (int level = 0; level < 256; ++level)
        cumulative[level] = sum += counts[level];
    const quint64 low = cumulative[0], high = cumulative[255];
    ByteTable t;
    for (int level = 0; level < 256; ++level)
        t[level] = high == low ? uchar(level) : uchar((cumulative[level] - low) * 255 / (high - low));
    return t;
}

bool isIdentity(const ByteTable& t) {
    for (int level = 0; level < 256; ++level)
        if (t[level] != level)
            return false;
    return true;
}

// Identity tables leave premultiplied pixels exact instead of rounding them through straight colour.
void applyStraightTables(QImage& image, const ByteTable& red, const ByteTable& green, const ByteTable& blue) {
    if (isIdentity(red) && isIdentity(green) && isIdentity(blue))
        return;
    if (image.format() != QImage::Format_ARGB32_Premultiplied) {
        const WordTables tables(red, green, blue);
        forWordRows(image, [&](quint32* words, int w) { tables.apply(words, w); });
        return;
    }
    transformStraight(image, [&](uchar& r, uchar& g, uchar& b) {
        r = red[r];
        g = green[g];
        b = blue[b];
    });
}

} // namespace

void filterAutoContrast(QImage& image) {
    makeWordImage(image);
    const quint64 pixels = quint64(image.width()) * quint64(image.height());
    if (pixels == 0)
        return;
    const Histograms h = straightHistograms(image);
    const quint64 threshold = pixels / 1000;
    const Range red = stretchRange(h.count[Histograms::R], threshold, {0, 255});
    const Range green = stretchRange(h.count[Histograms::G], threshold, red);
    const Range blue = stretchRange(h.count[Histograms::B], threshold, green);
    applyStraightTables(image, stretchTable(red), stretchTable(green), stretchTable(blue));
}

void filterEqualize(QImage& image) {
    makeWordImage(image);
    if (image.width() == 0 || image.height() == 0)
        return;
    const Histograms h = straightHistograms(image);
    applyStraightTables(image, equalizeTable(h.count[Histograms::R]), equalizeTable(h.count[Histograms::G]),
                        equalizeTable(h.count[Histograms::B]));
}
