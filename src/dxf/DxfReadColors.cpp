#include "DxfReadColors.h"

#include <array>
#include <cmath>

namespace dxf::read {

QColor aciToColor(int index) {
    static const std::array<QRgb, 9> first = {0xff0000, 0xffff00, 0x00ff00, 0x00ffff, 0x0000ff,
                                              0xff00ff, 0xffffff, 0x808080, 0xc0c0c0};
    static const std::array<QRgb, 6> greys = {0x333333, 0x505050, 0x696969, 0x828282, 0xbebebe, 0xffffff};
    if (index < 1 || index > 255)
        return QColor(first[6]);
    if (index < 10)
        return QColor(first[size_t(index - 1)]);
    if (index >= 250)
        return QColor(greys[size_t(index - 250)]);
    // 24 hues 15 degrees apart; each in five brightnesses, first saturated, then pale (halfway to
    // the brightness's grey).
    static const std::array<double, 5> brightness = {255.0, 165.0, 127.0, 76.0, 38.0};
    const double hue = double((index - 10) / 10) * 15.0;
    const int shade = (index - 10) % 10;
    const double top = brightness[size_t(shade / 2)];
    const bool pale = shade % 2 == 1;
    auto channel = [&](double centre) {
        // Full within 60 degrees of the channel's own hue, fading to nothing at 120.
        double d = std::abs(std::remainder(hue - centre, 360.0));
        const double weight = d <= 60.0 ? 1.0 : d >= 120.0 ? 0.0 : (120.0 - d) / 60.0;
        const double value = top * weight;
        return int(pale ? (top + value) / 2.0 : value);
    };
    return QColor(channel(0.0), channel(120.0), channel(240.0));
}

QColor trueColor(qint64 rgb) {
    return QColor(QRgb(rgb & 0xffffff));
}

} // namespace dxf::read
