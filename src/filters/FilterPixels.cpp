#include "FilterRows.h"

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

void assignPremultiplied(QImage& image, QImage&& result) {
    if (result.format() == QImage::Format_ARGB32) {
        for (int y = 0; y < result.height(); ++y)
            premultiplyRow(result.constScanLine(y), result.scanLine(y), result.width());
    }
    result.reinterpretAsFormat(QImage::Format_ARGB32_Premultiplied);
    image = std::move(result);
}

Histograms straightHistograms(const QImage& image) {
    // Alternate pixels count into two banks, so that equal neighbours do not wait on each other.
    std::array<std::array<quint64, 256>, 6> bank{};
    auto& [red, green, blue, red2, green2, blue2] = bank;
    const bool premultiplied = image.format() == QImage::Format_ARGB32_Premultiplied;
    const uchar* unpremultiply = unpremultiplyTable();
    const int w = image.width();
    for (int y = 0; y < image.height(); ++y) {
        const auto* p = reinterpret_cast<const quint32*>(image.constScanLine(y));
        if (premultiplied) {
            for (int x = 0; x < w; ++x) {
                const uchar* u = unpremultiply + (p[x] >> 24) * 256;
                ++red[u[(p[x] >> 16) & 0xff]];
                ++green[u[(p[x] >> 8) & 0xff]];
                ++blue[u[p[x] & 0xff]];
            }
            continue;
        }
        int x = 0;
        for (; x + 1 < w; x += 2) {
            const quint32 a = p[x], b = p[x + 1];
            ++red[(a >> 16) & 0xff];
            ++green[(a >> 8) & 0xff];
            ++blue[a & 0xff];
            ++red2[(b >> 16) & 0xff];
            ++green2[(b >> 8) & 0xff];
            ++blue2[b & 0xff];
        }
        if (x < w) {
            ++red[(p[x] >> 16) & 0xff];
            ++green[(p[x] >> 8) & 0xff];
            ++blue[p[x] & 0xff];
        }
    }
    Histograms h;
    for (int c = 0; c < 3; ++c)
        for (int level = 0; level < 256; ++level)
            h.count[c][level] = bank[c][level] + bank[c + 3][level];
    return h;
}

} // namespace filterpixels
