#pragma once

// Bilinear reading of an image as a continuous field: pixel (i, j) covers [i, i + 1) x [j, j + 1) and
// its value sits at the centre (i + 0.5, j + 0.5). Between the outermost centres and the image's edge
// the border pixels' values extend outwards.

#include <QImage>
#include <QPointF>

#include <algorithm>
#include <array>
#include <cmath>

class ImageSampler {
public:
    explicit ImageSampler(const QImage& image)
        : words(image.format() == QImage::Format_ARGB32 || image.format() == QImage::Format_RGB32
                    ? image
                    : image.convertToFormat(QImage::Format_ARGB32)) {}

    int width() const { return words.width(); }
    int height() const { return words.height(); }

    // Whether p lies on the image (its edge included).
    bool contains(const QPointF& p) const {
        return p.x() >= 0 && p.y() >= 0 && p.x() <= width() && p.y() <= height();
    }

    // Grey level (qGray of the colour, alpha ignored) at p, which must be finite.
    double grey(const QPointF& p) const {
        double value = 0;
        blend(p, [&value](QRgb c, double w) { value += w * qGray(c); });
        return value;
    }

    // Premultiplied colour at p, channels as doubles {blue, green, red, alpha} scaled 0..255.
    std::array<double, 4> premultiplied(const QPointF& p) const {
        std::array<double, 4> v{};
        blend(p, [&v](QRgb c, double w) {
            const double a = w * qAlpha(c) / 255.0;
            v[0] += a * qBlue(c);
            v[1] += a * qGreen(c);
            v[2] += a * qRed(c);
            v[3] += w * qAlpha(c);
        });
        return v;
    }

private:
    QImage words;

    QRgb pixel(int x, int y) const {
        x = std::clamp(x, 0, width() - 1);
        y = std::clamp(y, 0, height() - 1);
        const QRgb c = reinterpret_cast<const QRgb*>(words.constScanLine(y))[x];
        return words.format() == QImage::Format_RGB32 ? c | 0xff000000u : c;
    }

    // Calls add(colour, weight) for the four pixels around p.
    template <typename Add> void blend(const QPointF& p, Add add) const {
        const double u = std::clamp(p.x(), 0.0, double(width())) - 0.5;
        const double v = std::clamp(p.y(), 0.0, double(height())) - 0.5;
        const int x0 = int(std::floor(u)), y0 = int(std::floor(v));
        const double fx = u - x0, fy = v - y0;
        add(pixel(x0, y0), (1 - fx) * (1 - fy));
        add(pixel(x0 + 1, y0), fx * (1 - fy));
        add(pixel(x0, y0 + 1), (1 - fx) * fy);
        add(pixel(x0 + 1, y0 + 1), fx * fy);
    }
};
