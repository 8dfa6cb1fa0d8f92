#include "ToolLayer.h"

#include <QtGlobal>

#include <cmath>

ToolLayer::ToolLayer() {
    setFlag(ItemHasNoContents);
    setAcceptedMouseButtons(Qt::NoButton);
}

int ToolLayer::capacityFor(qsizetype count) {
    return qBound(16, int(std::lround(std::sqrt(double(count)) / 2)), 4096);
}
