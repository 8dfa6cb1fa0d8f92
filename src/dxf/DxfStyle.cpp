#include "DxfStyle.h"

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

int nearestAci(const QColor& color) {
    const QColor c = color.toRgb();
    auto distance = [&](const QColor& o) {
        const int dr = c.red() - o.red(), dg = c.green() - o.green(), db = c.blue() - o.blue();
        return dr * dr + dg * dg + db * db;
    };
    int best = 7;
    int bestDistance = std::min(distance(Qt::white), distance(Qt::black));
    for (int i = 1; i <= 255; ++i) {
        const int d = distance(aciColor(i));
        if (d < bestDistance) {
            bestDistance = d;
            best = i;
        }
    }
    return best;
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
