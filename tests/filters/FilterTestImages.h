#pragma once

#include <QImage>
#include <QMetaType>

#include <functional>
#include <random>

// Small images for the filter tests.
inline QImage filled(int w, int h, QRgb pixel, QImage::Format format = QImage::Format_ARGB32) {
    QImage image(w, h, format);
    image.fill(pixel);
    return image;
}

inline QImage seeded(int w, int h, unsigned seed, bool opaque = true) {
    QImage image(w, h, QImage::Format_ARGB32);
    std::mt19937 random(seed);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            image.setPixel(x, y, random() | (opaque ? 0xff000000u : 0u));
    return image;
}

// Raw 0xAARRGGBB words, whatever the format's reading of them.
inline QRgb word(const QImage& image, int x, int y) {
    return reinterpret_cast<const QRgb*>(image.constScanLine(y))[x];
}

inline bool sameWords(const QImage& a, const QImage& b) {
    if (a.size() != b.size())
        return false;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            if (word(a, x, y) != word(b, x, y))
                return false;
    return true;
}

using Filter = std::function<void(QImage&)>;
Q_DECLARE_METATYPE(Filter)
