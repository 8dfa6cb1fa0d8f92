#include "FilterPixels.h"

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
        for (int y = 0; y < result.height(); ++y) {
            auto* p = reinterpret_cast<QRgb*>(result.scanLine(y));
            for (int x = 0; x < result.width(); ++x)
                p[x] = qPremultiply(p[x]);
        }
    }
    result.reinterpretAsFormat(QImage::Format_ARGB32_Premultiplied);
    image = std::move(result);
}

Histograms straightHistograms(const QImage& image) {
    Histograms h;
    auto& [red, green, blue, alpha] = h.count;
    const bool premultiplied = image.format() == QImage::Format_ARGB32_Premultiplied;
    const uchar* unpremultiply = unpremultiplyTable();
    for (int y = 0; y < image.height(); ++y) {
        const uchar* p = image.constScanLine(y);
        for (int x = 0; x < image.width(); ++x, p += 4) {
            const int a = p[Alpha];
            const uchar* u = unpremultiply + (premultiplied ? a * 256 : 256 * 255);
            ++red[premultiplied ? u[p[Red]] : p[Red]];
            ++green[premultiplied ? u[p[Green]] : p[Green]];
            ++blue[premultiplied ? u[p[Blue]] : p[Blue]];
            ++alpha[a];
        }
    }
    return h;
}

} // namespace filterpixels
