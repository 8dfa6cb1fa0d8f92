#include "DxfStyle.h"

#include <QGradient>
#include <QImage>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace dxf {

namespace {

const std::array<int, 24> kLineweights = {0,  5,  9,  13, 15, 18,  20,  25,  30,  35,  40,  50,
                                          53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};

// The 255 colours of the AutoCAD Color Index: 9 named colours, 24 hues in 5 shades each full and
// half saturated, and 6 greys.
QColor aciColor(int index) {
    static const std::array<QColor, 9> named = {
        QColor(255, 0, 0),     QColor(255, 255, 0),   QColor(0, 255, 0),
        QColor(0, 255, 255),   QColor(0, 0, 255),     QColor(255, 0, 255),
        QColor(255, 255, 255), QColor(128, 128, 128), QColor(192, 192, 192)};
    if (index < 10)
        return named[index - 1];
    if (index >= 250) {
        const int grey = int(std::lround(51 + (index - 250) * 204.0 / 5.0));
        return QColor(grey, grey, grey);
    }
    static const std::array<double, 5> shades = {255.0, 165.0, 127.0, 76.0, 38.0};
    const double hue = (index - 10) / 10 * 15.0;
    const int variant = (index - 10) % 10;
    const double level = shades[variant / 2];
    auto channel = [&](double offset) {
        double h = std::fmod(hue - offset + 360.0, 360.0);
        double f = h <= 60.0    ? 1.0
                   : h < 120.0  ? (120.0 - h) / 60.0
                   : h <= 240.0 ? 0.0
                   : h < 300.0  ? (h - 240.0) / 60.0
                                : 1.0;
        const double full = level * f;
        return int(variant % 2 ? level / 2.0 + full / 2.0 : full);
    };
    return QColor(channel(0.0), channel(120.0), channel(240.0));
}

} // namespace

const std::vector<LinetypeDef>& linetypes() {
    static const std::vector<LinetypeDef> table = {
        {"DASHED", "Dashed __ __ __", {4.0, -2.0}},
        {"DOT", "Dotted . . . .", {1.0, -2.0}},
        {"DASHDOT", "Dash dot __ . __ .", {4.0, -2.0, 1.0, -2.0}},
        {"DIVIDE", "Divide __ . . __", {4.0, -2.0, 1.0, -2.0, 1.0, -2.0}},
    };
    return table;
}

QString linetypeFor(Qt::PenStyle style) {
    static const std::array<std::pair<Qt::PenStyle, const char*>, 5> byStyle = {
        {{Qt::DashLine, "DASHED"},
         {Qt::DotLine, "DOT"},
         {Qt::DashDotLine, "DASHDOT"},
         {Qt::DashDotDotLine, "DIVIDE"},
         {Qt::CustomDashLine, "DASHED"}}};
    for (const auto& [penStyle, name] : byStyle)
        if (penStyle == style)
            return QString::fromLatin1(name);
    return QStringLiteral("Continuous");
}

int nearestAci(QRgb color) {
    static const std::array<QRgb, 256> palette = [] {
        std::array<QRgb, 256> table{};
        for (int i = 1; i <= 255; ++i)
            table[i] = aciColor(i).rgb();
        return table;
    }();
    auto distance = [color](QRgb o) {
        const int dr = qRed(color) - qRed(o), dg = qGreen(color) - qGreen(o), db = qBlue(color) - qBlue(o);
        return dr * dr + dg * dg + db * db;
    };
    int best = 7;
    int bestDistance = std::min(distance(qRgb(255, 255, 255)), distance(qRgb(0, 0, 0)));
    for (int i = 1; i <= 255; ++i) {
        const int d = distance(palette[i]);
        if (d < bestDistance) {
            bestDistance = d;
            best = i;
        }
    }
    return best;
}

namespace {

// Premultiplied colour channels in [0, 1], summed with weights.
struct Mean {
    double r = 0, g = 0, b = 0, a = 0;

    void add(const QColor& c, double weight) {
        const double alpha = c.alphaF() * weight;
        r += c.redF() * alpha;
        g += c.greenF() * alpha;
        b += c.blueF() * alpha;
        a += alpha;
    }
    QColor color(double totalWeight) const {
        if (a <= 0 || totalWeight <= 0)
            return QColor(0, 0, 0, 0);
        return QColor::fromRgbF(float(r / a), float(g / a), float(b / a),
                                float(std::min(a / totalWeight, 1.0)));
    }
};

// A gradient's colour interpolated linearly between its stops, averaged over t in [0, 1]. A radial
// gradient spreads t over rings whose area grows with t, so its weight there is 2t.
QColor gradientMean(const QGradient& gradient) {
    const QGradientStops stops = gradient.stops();
    if (stops.isEmpty())
        return QColor(0, 0, 0, 0);
    const bool radial = gradient.type() == QGradient::RadialGradient;
    Mean mean;
    // The integral of the weight times a colour running linearly from c0 at t0 to c1 at t1.
    auto segment = [&](const QColor& c0, const QColor& c1, double t0, double t1) {
        const double d = t1 - t0;
        if (d <= 0)
            return;
        if (radial) {
            mean.add(c0, 2 * d * (t0 / 2 + d / 6));
            mean.add(c1, 2 * d * (t0 / 2 + d / 3));
        } else {
            mean.add(c0, d / 2);
            mean.add(c1, d / 2);
        }
    };
    segment(stops.first().second, stops.first().second, 0.0, std::clamp(stops.first().first, 0.0, 1.0));
    for (qsizetype i = 1; i < stops.size(); ++i)
        segment(stops[i - 1].second, stops[i].second, std::clamp(stops[i - 1].first, 0.0, 1.0),
                std::clamp(stops[i].first, 0.0, 1.0));
    segment(stops.last().second, stops.last().second, std::clamp(stops.last().first, 0.0, 1.0), 1.0);
    return mean.color(1.0);
}

QColor textureMean(const QBrush& brush) {
    QImage texture = brush.textureImage();
    if (texture.isNull())
        return QColor(0, 0, 0, 0);
    if (texture.depth() == 1) // a bitmap texture is drawn in the brush's colour
        return brush.color();
    // A thumbnail keeps the average and bounds the work.
    if (texture.width() > 64 || texture.height() > 64)
        texture = texture.scaled(std::min(texture.width(), 64), std::min(texture.height(), 64),
                                 Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    texture = texture.convertToFormat(QImage::Format_ARGB32);
    Mean mean;
    for (int y = 0; y < texture.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(texture.constScanLine(y));
        for (int x = 0; x < texture.width(); ++x)
            mean.add(QColor::fromRgba(line[x]), 1.0);
    }
    return mean.color(double(texture.width()) * texture.height());
}

} // namespace

QColor meanColor(const QBrush& brush) {
    switch (brush.style()) {
    case Qt::NoBrush:
        return QColor(0, 0, 0, 0);
    case Qt::LinearGradientPattern:
    case Qt::RadialGradientPattern:
    case Qt::ConicalGradientPattern:
        return brush.gradient() ? gradientMean(*brush.gradient()) : brush.color();
    case Qt::TexturePattern:
        return textureMean(brush);
    default:
        return brush.color();
    }
}

int snapLineweight(double millimetres) {
    const double hundredths = millimetres * 100.0;
    int best = kLineweights.front();
    for (int w : kLineweights)
        if (std::abs(w - hundredths) < std::abs(best - hundredths))
            best = w;
    return best;
}

} // namespace dxf
