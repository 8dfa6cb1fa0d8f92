#include "DxfReadStore.h"

namespace dxf::read {

namespace {

constexpr int kMostProblems = 50;
constexpr int kMostRemembered = 10000; // distinct lines told apart when counting those not listed

} // namespace

const std::array<const char*, TypeCount> kTypeNames = {"LINE",       "POINT",    "CIRCLE", "ARC",  "ELLIPSE",
                                                       "LWPOLYLINE", "POLYLINE", "SPLINE", "TEXT", "MTEXT",
                                                       "ATTRIB",     "ATTDEF",   "INSERT"};

int Store::layerFor(const QString& name) {
    const QString key = name.isEmpty() ? QStringLiteral("0") : name.toUpper();
    const auto found = layerIndex.constFind(key);
    if (found != layerIndex.constEnd())
        return found.value();
    DxfLayer layer;
    layer.name = name.isEmpty() ? QStringLiteral("0") : name;
    layers.append(layer);
    layerIndex.insert(key, int(layers.size() - 1));
    return int(layers.size() - 1);
}

int Store::blockFor(const QString& name) {
    const QString key = name.toUpper();
    const auto found = blockIndex.constFind(key);
    if (found != blockIndex.constEnd())
        return found.value();
    blocks.push_back(Block{name, QPointF(), {}, false, false});
    blockIndex.insert(key, int(blocks.size() - 1));
    return int(blocks.size() - 1);
}

void Problems::add(const QString& line) {
    if (m_seen.contains(line))
        return;
    if (m_seen.size() < kMostRemembered)
        m_seen.insert(line);
    if (m_lines.size() < kMostProblems)
        m_lines.append(line);
    else
        ++m_dropped;
}

QStringList Problems::lines() const {
    QStringList all = m_lines;
    if (m_dropped > 0)
        all.append(QStringLiteral("%1 more problems not listed").arg(m_dropped));
    return all;
}

} // namespace dxf::read
