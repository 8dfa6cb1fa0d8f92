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

// One word per column, repeated on every row.
inline QImage columns(const QList<QRgb>& words, QImage::Format format = QImage::Format_ARGB32, int h = 1) {
    QImage image(int(words.size()), h, format);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, words[x]);
    return image;
}

// A filled image with one other pixel.
inline QImage spot(int w, int h, QRgb background, QPoint at, QRgb pixel,
                   QImage::Format format = QImage::Format_ARGB32) {
    QImage image = filled(w, h, background, format);
    image.setPixel(at, pixel);
    return image;
}

inline QRgb grey(int level) {
    return qRgb(level, level, level);
}

// Raw 0xAARRGGBB words, whatever the format's reading of them.
inline QRgb word(const QImage& image, int x, int y) {
    return reinterpret_cast<const QRgb*>(image.constScanLine(y))[x];
}

// Where two images' words first differ, or an empty text.
inline QString difference(const QImage& a, const QImage& b) {
    if (a.size() != b.size())
        return QString("sizes differ");
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            if (word(a, x, y) != word(b, x, y))
                return QString("(%1, %2): %3 instead of %4")
                    .arg(x)
                    .arg(y)
                    .arg(word(a, x, y), 8, 16, QChar('0'))
                    .arg(word(b, x, y), 8, 16, QChar('0'));
    return QString();
}

using Filter = std::function<void(QImage&)>;
Q_DECLARE_METATYPE(Filter)

inline QImage applied(const Filter& filter, QImage image) {
    filter(image);
    return image;
}
