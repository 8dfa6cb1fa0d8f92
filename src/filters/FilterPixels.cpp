#include "FilterRows.h"

#include <vector>

namespace filterpixels {

const uchar* unpremultiplyTable() {
    static const std::array<uchar, 256 * 256> table = [] {
        std::array<uchar, 256 * 256> t{};
        for (int a = 1; a < 256; ++a)
            for (int c = 0; c < 256; ++c)
                t[a * 256 + c] = uchar(std::min(c * 255 / a, 255));
        return t;
    }();
    return table.data();
}

void premultiplyInPlace(QImage& image) {
    if (image.format() == QImage::Format_ARGB32)
        forWordRows(image, [](quint32* words, int w) {
            premultiplyRow(reinterpret_cast<const uchar*>(words), reinterpret_cast<uchar*>(words), w);
        });
    image.reinterpretAsFormat(QImage::Format_ARGB32_Premultiplied);
}

namespace {

// Four banks of red, green and blue counts, one bank per pixel position modulo four, so that runs of
// equal pixels do not wait on each other's increments. 32-bit counts, added into the totals before
// they can overflow.
using Banks = std::array<std::array<quint32, 256>, 12>;

inline void count(Banks& banks, int bank, uint red, uint green, uint blue) {
    ++banks[3 * bank][red];
    ++banks[3 * bank + 1][green];
    ++banks[3 * bank + 2][blue];
}

void addBanks(Banks& banks, Histograms& h) {
    for (int c = 0; c < 3; ++c)
        for (int level = 0; level < 256; ++level) {
            for (int bank = 0; bank < 4; ++bank)
                h.count[c][level] += banks[3 * bank + c][level];
        }
    banks = Banks{};
}

void countRows(const QImage& image, int begin, int end, Histograms& h) {
    const bool premultiplied = image.format() == QImage::Format_ARGB32_Premultiplied;
    const uchar* unpremultiply = unpremultiplyTable();
    const int w = image.width();
    Banks banks{};
    qint64 counted = 0;
    for (int y = begin; y < end; ++y) {
        const auto* p = reinterpret_cast<const quint32*>(image.constScanLine(y));
        if (premultiplied) {
            for (int x = 0; x < w; ++x) {
                const uchar* u = unpremultiply + (p[x] >> 24) * 256;
                count(banks, x & 3, u[(p[x] >> 16) & 0xff], u[(p[x] >> 8) & 0xff], u[p[x] & 0xff]);
            }
        } else {
            int x = 0;
            for (; x + 4 <= w; x += 4)
                for (int bank = 0; bank < 4; ++bank) {
                    const quint32 q = p[x + bank];
                    count(banks, bank, (q >> 16) & 0xff, (q >> 8) & 0xff, q & 0xff);
                }
            for (; x < w; ++x)
                count(banks, x & 3, (p[x] >> 16) & 0xff, (p[x] >> 8) & 0xff, p[x] & 0xff);
        }
        counted += w;
        if (counted >= qint64(1) << 30) {
            addBanks(banks, h);
            counted = 0;
        }
    }
    addBanks(banks, h);
}

} // namespace

Histograms straightHistograms(const QImage& image) {
    const int bands = filterthreads::bandCount(image.height(), image.width());
    std::vector<Histograms> parts(bands);
    filterthreads::forBands(image.height(), bands,
                            [&](int band, int begin, int end) { countRows(image, begin, end, parts[band]); });
    Histograms h;
    for (const Histograms& part : parts)
        for (int c = 0; c < 3; ++c)
            for (int level = 0; level < 256; ++level)
                h.count[c][level] += part.count[c][level];
    return h;
}

} // namespace filterpixels
