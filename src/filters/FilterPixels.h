#pragma once

// Pixel handling shared by the filters: channel offsets, the three ways of reading and writing
// pixels (raw words, straight colour, converted images) and edge-replicating row access.

#include "FilterThreads.h"

#include <QImage>

#include <algorithm>
#include <array>

namespace filterpixels {

// Byte offsets of the channels of a 0xAARRGGBB word in memory.
#if Q_BYTE_ORDER == Q_LITTLE_ENDIAN
constexpr int Blue = 0, Green = 1, Red = 2, Alpha = 3;
#else
constexpr int Blue = 3, Green = 2, Red = 1, Alpha = 0;
#endif

using ByteTable = std::array<uchar, 256>;

// Hot row loops also get AVX-512 and AVX2 clones, picked when the library loads; every clone does the
// same integer or float operations in the same order, so the results do not depend on the machine.
#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__)
#define FILTER_ROW_LOOP __attribute__((target_clones("arch=x86-64-v4", "avx2", "default")))
#else
#define FILTER_ROW_LOOP
#endif

inline uchar clampByte(int v) {
    return uchar(v < 0 ? 0 : v > 255 ? 255 : v);
}

// Rounded c * a / 255, exact for all bytes.
inline uchar premultiplyByte(int c, int a) {
    const int t = c * a + 128;
    return uchar((t + (t >> 8)) >> 8);
}

// c * 255 / a truncated and clamped, indexed [a * 256 + c]; row 0 (no alpha) is all zero.
const uchar* unpremultiplyTable();

// True for the formats whose pixels are 0xAARRGGBB words.
inline bool isWordFormat(QImage::Format f) {
    return f == QImage::Format_RGB32 || f == QImage::Format_ARGB32 ||
           f == QImage::Format_ARGB32_Premultiplied;
}

// Filters that walk 32-bit words convert any other format first, so no row is read past its end.
inline void makeWordImage(QImage& image) {
    if (!isWordFormat(image.format()))
        image.convertTo(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
}

// The straight ARGB32 source of a converted filter; RGB32 already has the same bytes.
inline QImage argb32Source(const QImage& image) {
    const QImage::Format f = image.format();
    if (f == QImage::Format_ARGB32 || f == QImage::Format_RGB32)
        return image;
    return image.convertToFormat(QImage::Format_ARGB32);
}

// True when a converted filter may build its result in the image's own buffer: its pixels are
// already straight 32-bit words and no other image shares them.
inline bool ownsStraightWords(const QImage& image) {
    const QImage::Format f = image.format();
    return (f == QImage::Format_ARGB32 || f == QImage::Format_RGB32) && image.isDetached();
}

// Leaves a straight ARGB32 (or RGB32) image premultiplied, in premultiplied format. Done here
// rather than by QImage::convertTo, whose threads would not follow the filters' setting.
void premultiplyInPlace(QImage& image);

// Ends a converted filter: the image becomes the straight result in premultiplied format.
inline void assignPremultiplied(QImage& image, QImage&& result) {
    premultiplyInPlace(result);
    image = std::move(result);
}

// Calls f(words, width) on every row of a 32-bit image, the rows split over the filter threads.
template <typename F> void forWordRows(QImage& image, F f) {
    const int w = image.width(), h = image.height();
    if (w == 0 || h == 0)
        return;
    uchar* base = image.bits();
    const qsizetype bpl = image.bytesPerLine();
    filterthreads::forRows(h, w, [&](int begin, int end) {
        for (int y = begin; y < end; ++y)
            f(reinterpret_cast<quint32*>(base + y * bpl), w);
    });
}

// Calls f(red, green, blue) with each pixel's straight colour and stores the colour it leaves,
// premultiplying again where the image is premultiplied. Alpha is kept.
template <typename F> void transformStraight(QImage& image, F f) {
    makeWordImage(image);
    const bool premultiplied = image.format() == QImage::Format_ARGB32_Premultiplied;
    const uchar* unpremultiply = unpremultiplyTable();
    forWordRows(image, [&](quint32* words, int w) {
        if (!premultiplied) {
            // Whole words: one store per pixel instead of one per channel.
            for (int x = 0; x < w; ++x) {
                const quint32 px = words[x];
                uchar r = uchar(px >> 16), g = uchar(px >> 8), b = uchar(px);
                f(r, g, b);
                words[x] = (px & 0xff000000u) | quint32(r) << 16 | quint32(g) << 8 | b;
            }
            return;
        }
        auto* p = reinterpret_cast<uchar*>(words);
        for (int x = 0; x < w; ++x, p += 4) {
            const int a = p[Alpha];
            const uchar* u = unpremultiply + a * 256;
            uchar r = u[p[Red]], g = u[p[Green]], b = u[p[Blue]];
            f(r, g, b);
            p[Red] = premultiplyByte(r, a);
            p[Green] = premultiplyByte(g, a);
            p[Blue] = premultiplyByte(b, a);
        }
    });
}

// Counts of the straight red, green and blue levels (no map reads alpha's).
struct Histograms {
    std::array<std::array<quint64, 256>, 3> count{};
    enum { R, G, B };
};
Histograms straightHistograms(const QImage& wordImage);

} // namespace filterpixels
